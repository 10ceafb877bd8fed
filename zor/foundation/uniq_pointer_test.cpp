#include "zor/foundation/uniq_pointer.h"

#include <cwchar>
#include <stdexcept>
#include <utility>

#include "gtest/gtest.h"

namespace {

// The guard's purpose: the buffer goes on the exception path as well. The sanitizer build
// reports a leak or a mismatched release if it does not.
void fill_then_fail(wchar_t*& seen) {
    ZOR::CUniqPointer<wchar_t> buffer(new wchar_t[8]);
    std::wcscpy(buffer, L"scratch");
    seen = buffer.get();
    throw std::runtime_error("conversion failed");
}

TEST(UniqPointerTest, ReleasesOnEveryPath) {
    wchar_t* seen = nullptr;
    EXPECT_THROW(fill_then_fail(seen), std::runtime_error);
    EXPECT_NE(seen, nullptr);

    { const ZOR::CUniqPointer<char> none(nullptr); }
    { const ZOR::CUniqPointer<unsigned char> bytes(new unsigned char[3]{1, 2, 3}); }
}

TEST(UniqPointerTest, MovingHandsTheBufferOver) {
    auto* block = new unsigned char[4];
    ZOR::CUniqPointer<unsigned char> first(block);
    ZOR::CUniqPointer<unsigned char> second(std::move(first));
    EXPECT_EQ(first.get(), nullptr);
    EXPECT_EQ(second.get(), block);

    ZOR::CUniqPointer<unsigned char> third(new unsigned char[2]);
    third = std::move(second);  // releases third's own buffer
    EXPECT_EQ(third.get(), block);
    EXPECT_EQ(second.get(), nullptr);
}

}  // namespace
