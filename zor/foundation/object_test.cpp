#include "zor/foundation/object.h"

#include <cstring>
#include <memory>
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

// Leaves dirty blocks of `n` bytes in the allocator's free lists, so that the next allocation of
// that size is likely to reuse garbage rather than fresh zero pages.
void dirty_the_heap(std::size_t n) {
    for (int round = 0; round < 8; ++round) {
        void* block = ::operator new[](n);
        std::memset(block, 0xAB, n);
        ::operator delete[](block);
    }
}

TEST(ObjectTest, OperatorNewReturnsZeroedBlocks) {
    dirty_the_heap(16);
    void* block = CZorObj::operator new(16);
    ASSERT_NE(block, nullptr);
    EXPECT_TRUE(all_zero(block, 16));
    CZorObj::operator delete(block);

    dirty_the_heap(1000);
    block = CZorObj::operator new[](1000);
    EXPECT_TRUE(all_zero(block, 1000));
    CZorObj::operator delete[](block);
}

TEST(ObjectTest, DerivedObjectsAndArraysStartAsZeroBytes) {
    dirty_the_heap(sizeof(Untouched));
    std::unique_ptr<Untouched> one(new Untouched);
    EXPECT_TRUE(all_zero(one->bytes, sizeof one->bytes));

    Untouched* many = new Untouched[5];
    for (int i = 0; i < 5; ++i) EXPECT_TRUE(all_zero(many[i].bytes, sizeof many[i].bytes));
    delete[] many;
}

TEST(ObjectTest, PlacementNewLeavesTheStorageAlone) {
    alignas(Untouched) unsigned char storage[sizeof(Untouched)];
    std::memset(storage, 0xAB, sizeof storage);
    Untouched* placed = new (storage) Untouched;
    EXPECT_EQ(placed->bytes[0], 0xAB);
    EXPECT_EQ(placed->bytes[39], 0xAB);
    placed->~Untouched();
}

TEST(ObjectTest, DeletesThroughTheRootPointer) {
    // The virtual destructor lets a derived object go through a pointer to the root; the
    // sanitizer build checks that the class's own delete frees it correctly.
    CZorObj* object = new Untouched;
    delete object;
}

}  // namespace
