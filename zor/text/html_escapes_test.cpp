#include <cstdint>
#include <string>

#include "gtest/gtest.h"
#include "zor/text/escapes.h"
#include "zor/text/html_entities.h"

namespace {

std::wstring text(const CZorString& s) {
    return s.isNull() ? L"<null>" : static_cast<const wchar_t*>(s);
}

std::wstring unEscaped(const wchar_t* s) {
    return text(CZorString(s).unEscapeHtml());
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

TEST(HtmlEscapeTest, SpecialCharactersOnly) {
    EXPECT_EQ(text(CZorString(L"a<b&c").escapeHtmlSpecial()), L"a&lt;b&amp;c");
    EXPECT_EQ(text(CZorString(L"\"x\" > \xe9").escapeHtmlSpecial()), L"&quot;x&quot; &gt; \xe9");
    EXPECT_EQ(unEscaped(L"a&lt;b&amp;c"), L"a<b&c");
    EXPECT_TRUE(CZorString().escapeHtmlSpecial().isNull());

    CZorString out(L"unchanged");
    EXPECT_FALSE(ZOR::htmlSpecialChars(out, nullptr));
    EXPECT_EQ(text(out), L"unchanged");
    EXPECT_TRUE(ZOR::htmlSpecialChars(out, L"1 < 2"));
    EXPECT_EQ(text(out), L"1 &lt; 2");
}

TEST(HtmlEscapeTest, NumericReferencesForWhatIsNotPlainAscii) {
    EXPECT_EQ(text(CZorString(L"\xe9").escapeHtml(nullptr)), L"&#xe9;");
    EXPECT_EQ(text(CZorString(L"\n").escapeHtml(nullptr)), L"&#xa;");
    EXPECT_EQ(text(CZorString(L"a&\x7f\x20ac\U0001F600").escapeHtml(nullptr)),
              L"a&amp;&#x7f;&#x20ac;&#x1f600;");
    // With a set of characters given, exactly those are referenced; the special table is out.
    EXPECT_EQ(text(CZorString(L"az<").escapeHtml(L"z")), L"a&#x7a;<");
    EXPECT_EQ(text(CZorString(L"a&\xe9").escapeHtml(L"")), L"a&\xe9");
    EXPECT_TRUE(CZorString().escapeHtml(nullptr).isNull());
    // Everything escaped comes back.
    const wchar_t* original = L"<\xc4\xe4> & \"\x20ac\" \t\U0001F600";
    EXPECT_EQ(text(CZorString(original).escapeHtml(nullptr).unEscapeHtml()), original);
}

TEST(HtmlUnEscapeTest, NamedAndNumericEntities) {
    EXPECT_EQ(unEscaped(L"&Auml;"), L"\xc4");
    EXPECT_EQ(unEscaped(L"&#196;"), L"\xc4");
    EXPECT_EQ(unEscaped(L"&#xC4;&#xc4;"), L"\xc4\xc4");
    EXPECT_EQ(unEscaped(L"&#x1F600;"), L"\U0001F600");
}

TEST(HtmlUnEscapeTest, MalformedEntitiesStay) {
    EXPECT_EQ(unEscaped(L"&auml"), L"&auml");
    EXPECT_EQ(unEscaped(L"&foo;"), L"&foo;");
    EXPECT_EQ(unEscaped(L"&AUML;"), L"&AUML;");  // case-sensitive
    EXPECT_EQ(unEscaped(L"&#12x;"), L"&#12x;");
    EXPECT_EQ(unEscaped(L"&#xg;"), L"&#xg;");
    EXPECT_EQ(unEscaped(L"&#X41;"), L"&#X41;");
    EXPECT_EQ(unEscaped(L"&;"), L"&;");
    EXPECT_EQ(unEscaped(L"&"), L"&");
    EXPECT_EQ(unEscaped(L"&&&amp"), L"&&&amp");
    // The first semicolon ends the entity.
    EXPECT_EQ(unEscaped(L"&amp;;"), L"&;");
    EXPECT_EQ(unEscaped(L"&lt &gt;"), L"&lt >");  // "&lt &gt;" is no entity; "&gt;" is
    EXPECT_EQ(unEscaped(L"&&lt;"), L"&<");
    // Numeric entities without digits, or of the unit 0, yield nothing.
    EXPECT_EQ(unEscaped(L"a&#;b"), L"ab");
    EXPECT_EQ(unEscaped(L"a&#x;b"), L"ab");
    EXPECT_EQ(unEscaped(L"a&#0;b"), L"ab");
    // Huge numbers are cut to the width of a unit instead of overflowing.
    EXPECT_EQ(unEscaped(L"&#x100000041;"), L"A");
    EXPECT_EQ(unEscaped(L"&#4294967361;"), L"A");
    EXPECT_TRUE(CZorString().unEscapeHtml().isNull());
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
