#include "zor/text/utf8.h"

#include <gtest/gtest.h>

namespace {

using ZOR::detail::fromUtf8;
using ZOR::detail::toUtf8;

TEST(Utf8, EveryLengthOfSequenceRoundTripsAndNonCharactersAreReplaced) {
    const std::wstring text = L"a\u00e9\u20ac\U0001F600";
    EXPECT_EQ(toUtf8(text), "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80");
    EXPECT_EQ(fromUtf8(toUtf8(text)), text);
    EXPECT_EQ(toUtf8(static_cast<const wchar_t*>(nullptr)), "");
    EXPECT_EQ(fromUtf8(static_cast<const char*>(nullptr)), L"");
    // Units without a code point become the replacement character.
    const wchar_t surrogate[] = {0xD800, 0};
    const wchar_t beyond[] = {static_cast<wchar_t>(0x110000), 0};
    EXPECT_EQ(toUtf8(surrogate), "\xEF\xBF\xBD");
    EXPECT_EQ(toUtf8(beyond), "\xEF\xBF\xBD");
}

TEST(Utf8, MalformedBytesStandForThemselves) {
    // A lone continuation byte, a cut sequence, an over-long form and a lead past U+10FFFF.
    EXPECT_EQ(fromUtf8("\x80z"), std::wstring(L"\u0080z"));
    EXPECT_EQ(fromUtf8("\xE2\x82"), std::wstring(L"\u00e2\u0082"));
    EXPECT_EQ(fromUtf8("\xC0\xAF"), std::wstring(L"\u00c0\u00af"));
    EXPECT_EQ(fromUtf8("\xF5\x80\x80\x80").size(), 4u);
}

}  // namespace
