#include "zor/foundation/object.h"

#include <cstring>
#include <new>

#include "gtest/gtest.h"

namespace {

// A derived class whose constructor leaves its fields alone: what `new` hands it is what it keeps.
struct Untouched : CZorObj {
    Untouched() {}  // NOLINT: deliberately no initialisation
    unsigned char bytes[40];
};

bool all_zero(const void* block, std::size_t n) {
    const auto* bytes = static_cast<const unsigned char*>(block);
    for (std::size_t i = 0; i < n; ++i)
        if (bytes[i] != 0) return false;
    return true;
}

// Leaves dirty blocks of `n` bytes in the allocator's free lists, so that the next allocation
// of that size is likely to reuse garbage rather than fresh zero pages.
void dirty_the_heap(std::size_t n) {
    for (int round = 0; round < 8; ++round) {
        void* block = ::operator new[](n);
        std::memset(block, 0xAB, n);
        ::operator delete[](block);
    }
}

TEST(ObjectTest, NewGivesZeroBytesToBlocksObjectsAndArrays) {
    dirty_the_heap(16);
    void* block = CZorObj::operator new(16);
    EXPECT_TRUE(all_zero(block, 16));
    CZorObj::operator delete(block);

    dirty_the_heap(sizeof(Untouched));
    CZorObj* one = new Untouched;
    EXPECT_TRUE(all_zero(static_cast<Untouched*>(one)->bytes, 40));
    delete one;  // through the root, by the virtual destructor

    Untouched* many = new Untouched[5];
    for (int i = 0; i < 5; ++i) EXPECT_TRUE(all_zero(many[i].bytes, 40));
    delete[] many;

    // The allocator must not hide construction in storage the caller provides.
    alignas(Untouched) unsigned char storage[sizeof(Untouched)];
    EXPECT_EQ(static_cast<void*>(new (storage) Untouched), static_cast<void*>(storage));
    std::launder(reinterpret_cast<Untouched*>(storage))->~Untouched();
}

}  // namespace
