#include "zor/foundation/uniq_pointer.h"

#include <stdexcept>
#include <utility>

#include "gtest/gtest.h"

namespace {

// Leaks or mismatched releases show up in the sanitizer build.
TEST(UniqPointerTest, ReleasesOnEveryPathAndMovesHandTheBufferOver) {
    EXPECT_THROW(
        {
            const ZOR::CUniqPointer<wchar_t> buffer(new wchar_t[8]);
            throw std::runtime_error("conversion failed");
        },
        std::runtime_error);
    { const ZOR::CUniqPointer<char> none(nullptr); }

    auto* block = new unsigned char[4];
    ZOR::CUniqPointer<unsigned char> first(block);
    ZOR::CUniqPointer<unsigned char> second(new unsigned char[2]);
    second = std::move(first);  // releases second's own buffer
    EXPECT_EQ(first.get(), nullptr);
    EXPECT_EQ(second.get(), block);
}

}  // namespace
