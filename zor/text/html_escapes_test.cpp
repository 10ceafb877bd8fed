#include <cstdint>
#include <string>

#include "gtest/gtest.h"
#include "zor/text/escapes.h"
#include "zor/text/html_entities.h"
#include "zor/text/test_text.h"

namespace {

using zor_text_test::expectTexts;
using zor_text_test::text;
using zor_text_test::TextCase;

CZorString unEscapedHtml(const wchar_t* s) {
    return CZorString(s).unEscapeHtml();
}
std::wstring unEscaped(const wchar_t* s) {
    return text(unEscapedHtml(s));
}

TEST(HtmlEntitiesTest, TablesHoldTheirUnitsInOrderAndAllReadBack) {
    const auto& table = ZOR::detail::kHtmlEntities;
    for (int i = 0; i < 100; ++i) {
        const wchar_t unit = i < 4 ? ZOR::detail::kHtmlSpecialEntities[i].unit : 0xA0 + i - 4;
        EXPECT_EQ(table[i].unit, unit) << i;
        EXPECT_EQ(unEscaped(table[i].text), std::wstring(1, unit)) << table[i].text;
    }
    EXPECT_STREQ(table[3].text, L"&quot;");
    EXPECT_STREQ(table[4].text, L"&nbsp;");
    EXPECT_STREQ(table[4 + 0xC4 - 0xA0].text, L"&Auml;");
    EXPECT_STREQ(table[4 + 0xD7 - 0xA0].text, L"&times;");
    EXPECT_STREQ(table[99].text, L"&yuml;");
}

TEST(HtmlEscapeTest, SpecialCharactersAndNumericReferences) {
    EXPECT_EQ(text(CZorString(L"a<b&c").escapeHtmlSpecial()), L"a&lt;b&amp;c");
    EXPECT_EQ(text(CZorString(L"\"x\" > \xe9").escapeHtmlSpecial()), L"&quot;x&quot; &gt; \xe9");
    EXPECT_TRUE(CZorString().escapeHtmlSpecial().isNull());

    CZorString out(L"unchanged");
    EXPECT_FALSE(ZOR::htmlSpecialChars(out, nullptr));
    EXPECT_EQ(text(out), L"unchanged");
    EXPECT_TRUE(ZOR::htmlSpecialChars(out, L"1 < 2"));
    EXPECT_EQ(text(out), L"1 &lt; 2");

    // The full escape also references what is not plain ASCII.
    const auto all = [](const wchar_t* s) { return CZorString(s).escapeHtml(nullptr); };
    const TextCase cases[] = {{L"\xe9", L"&#xe9;"},
                              {L"\n", L"&#xa;"},
                              {nullptr, L"<null>"},
                              {L"a&\x7f\x20ac\U0001F600", L"a&amp;&#x7f;&#x20ac;&#x1f600;"}};
    expectTexts(all, cases);
    // With a set of characters given, exactly those are referenced; the special table is out.
    EXPECT_EQ(text(CZorString(L"az<").escapeHtml(L"z")), L"a&#x7a;<");
    EXPECT_EQ(text(CZorString(L"a&\xe9").escapeHtml(L"")), L"a&\xe9");
    // Everything escaped comes back.
    const wchar_t* original = L"<\xc4\xe4> & \"\x20ac\" \t\U0001F600";
    EXPECT_EQ(unEscaped(text(all(original)).c_str()), original);
}

// The first semicolon ends the entity, so "&lt &gt;" holds only "&gt;". Numeric entities without
// digits, or of the unit 0, yield nothing; huge numbers are cut to the width of a unit instead of
// overflowing. Malformed and unknown entities stay as they are; names are case-sensitive.
TEST(HtmlUnEscapeTest, EntitiesAndWhatBadOnesGive) {
    const TextCase entities[] = {{L"&Auml;", L"\xc4"}, {L"&#xC4;&#xc4;", L"\xc4\xc4"},
                                 {L"&#196;", L"\xc4"}, {L"&#x1F600;", L"\U0001F600"},
                                 {L"&amp;;", L"&;"},   {L"a&lt;b&amp;c", L"a<b&c"},
                                 {L"&&lt;", L"&<"},    {L"&lt &gt;", L"&lt >"},
                                 {L"a&#;b", L"ab"},    {L"&#x100000041;", L"A"},
                                 {L"a&#x;b", L"ab"},   {L"&#4294967361;", L"A"},
                                 {L"a&#0;b", L"ab"},   {nullptr, L"<null>"}};
    expectTexts(unEscapedHtml, entities);
    for (const wchar_t* kept :
         {L"&auml", L"&foo;", L"&AUML;", L"&#12x;", L"&#xg;", L"&#X41;", L"&;", L"&", L"&&&amp"}) {
        EXPECT_EQ(unEscaped(kept), kept);
    }
}

// Each '&' looks for the next ';' only once, so long hostile texts finish at once.
TEST(HtmlUnEscapeTest, LongTextsWithManyAmpersandsFinish) {
    const std::wstring many(200000, L'&');
    EXPECT_EQ(unEscaped(many.c_str()), many);
    std::wstring mixed, expected;
    for (int i = 0; i < 20000; ++i) {
        mixed += L"&lt;&x";
        expected += L"<&x";
    }
    EXPECT_EQ(unEscaped((mixed + L";").c_str()), expected + L";");
}

}  // namespace
