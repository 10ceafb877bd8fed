#include "zor/text/escapes.h"

#include <string>

#include "gtest/gtest.h"

namespace {

std::wstring text(const CZorString& s) {
    return s.isNull() ? L"<null>" : static_cast<const wchar_t*>(s);
}

CZorString escaped(const wchar_t* s) {
    return CZorString(s).escape();
}
CZorString unEscaped(const wchar_t* s) {
    return CZorString(s).unEscape();
}

TEST(BackslashEscapeTest, EscapesTheTableAndRoundTrips) {
    EXPECT_EQ(text(escaped(L"a\\b")), L"a\\\\b");
    EXPECT_EQ(text(escaped(L"\a\b\t\n\v\f\r\x1b\"")), L"\\a\\b\\t\\n\\v\\f\\r\\e\\\"");
    EXPECT_EQ(text(escaped(L"plain \x1f")), L"plain \x1f");  // units outside the table stay
    const wchar_t* original = L"tab\there \"quoted\" \\ back\r\n\x1b";
    EXPECT_EQ(text(unEscaped(text(escaped(original)).c_str())), original);
    EXPECT_TRUE(CZorString().escape().isNull());
}

TEST(BackslashEscapeTest, UnEscapeRules) {
    EXPECT_EQ(text(unEscaped(L"\\q")), L"q");
    EXPECT_EQ(text(unEscaped(L"\\\\n")), L"\\n");  // escaped backslash, then the letter n
    EXPECT_EQ(text(unEscaped(L"a\\tb\\e")), L"a\tb\x1b");
    EXPECT_EQ(text(unEscaped(L"\\\"x\\\"")), L"\"x\"");
    EXPECT_EQ(text(unEscaped(L"end\\")), L"end");  // a lone backslash at the end goes away
    EXPECT_EQ(text(unEscaped(L"\\")), L"");
    EXPECT_EQ(text(unEscaped(L"\\\\\\")), L"\\");
    EXPECT_EQ(text(CZorString().unEscape()), L"");  // null becomes empty
}

TEST(WideCharEscapeTest, UnitsAboveLatin1AsFourDigitsAndBack) {
    EXPECT_EQ(text(CZorString(L"\x416").escapeWideChar()), L"\\U+0416");
    EXPECT_EQ(text(CZorString(L"5\x20ac!\xff").escapeWideChar()), L"5\\U+20ac!\xff");
    // Beyond 0xFFFF the two UTF-16 halves, each with four digits.
    EXPECT_EQ(text(CZorString(L"\U0001F600").escapeWideChar()), L"\\U+d83d\\U+de00");
    EXPECT_TRUE(CZorString().escapeWideChar().isNull());
    EXPECT_EQ(text(CZorString(L"\\u+0416x").unEscapeWideChar()), L"\x416x");
    EXPECT_EQ(text(CZorString(L"\\U+20AC1").unEscapeWideChar()), L"\u20ac1");
    EXPECT_EQ(text(CZorString(L"\\U+d83dx").unEscapeWideChar()), L"\xd83dx");  // a lone half
    EXPECT_EQ(text(CZorString(L"\\X+0416").unEscapeWideChar()), L"\\X+0416");
    for (const wchar_t* s : {L"\x416\x20ac\U0001F600 plain", L"\xdfff", L"\xd800!"}) {
        EXPECT_EQ(text(CZorString(s).escapeWideChar().unEscapeWideChar()), s);
    }
}

TEST(WideCharEscapeTest, CutOffEscapesEndQuietly) {
    EXPECT_EQ(text(CZorString(L"ab\\U+").unEscapeWideChar()), L"ab");
    EXPECT_EQ(text(CZorString(L"ab\\U+4").unEscapeWideChar()), L"ab\x4");
    EXPECT_EQ(text(CZorString(L"ab\\U+41").unEscapeWideChar()), L"abA");
    EXPECT_EQ(text(CZorString(L"\\U+zzzzq").unEscapeWideChar()), L"q");
    EXPECT_EQ(text(CZorString(L"\\U+0000q").unEscapeWideChar()), L"q");
    EXPECT_EQ(text(CZorString(L"\\U+-001").unEscapeWideChar()), L"\xffff");  // 16 bits
    EXPECT_EQ(text(CZorString(L"\\U").unEscapeWideChar()), L"\\U");
    EXPECT_TRUE(CZorString().unEscapeWideChar().isNull());
}

TEST(QuoteTest, QuoteAlwaysWrapsUnQuoteOnlyAPair) {
    EXPECT_EQ(text(CZorString(L"").quote()), L"\"\"");
    EXPECT_EQ(text(CZorString().quote()), L"\"\"");
    EXPECT_EQ(text(CZorString(L"\"a\"").quote()), L"\"\"a\"\"");
    CZorString empty = CZorString(L"\"\"").unQuote();
    EXPECT_FALSE(empty.isNull());
    EXPECT_EQ(text(empty), L"");
    EXPECT_EQ(text(CZorString(L"\"a b\"").unQuote()), L"a b");
    for (const wchar_t* s : {L"\"", L"\"a", L"a\""}) EXPECT_EQ(text(CZorString(s).unQuote()), s);
    EXPECT_TRUE(CZorString().unQuote().isNull());
}

TEST(TxtToRtfTest, MarkersBecomeSymbolsAndToggles) {
    EXPECT_EQ(text(ZOR::txtToRTF(L"%%c10")), L"\u220510");
    EXPECT_EQ(text(ZOR::txtToRTF(L"%%Uab")), L"{\\Lab}");
    EXPECT_EQ(text(ZOR::txtToRTF(L"%%uab%%u cd")), L"{\\Lab} cd");
    EXPECT_EQ(text(ZOR::txtToRTF(L"%%oa%%Ub")), L"{\\Oa{\\Lb}}");
    EXPECT_EQ(text(ZOR::txtToRTF(L"%%d%%d")), L"\xb0\xb0");
    EXPECT_EQ(text(ZOR::txtToRTF(L"%%p0.5")), L"\u00b10.5");
    EXPECT_EQ(text(ZOR::txtToRTF(L"%%x%%%")), L"x%");
    EXPECT_EQ(text(ZOR::txtToRTF(L"a%b")), L"a%b");
    EXPECT_EQ(text(ZOR::txtToRTF(L"end%%")), L"end");
    EXPECT_EQ(text(ZOR::txtToRTF(L"end%")), L"end%");
    EXPECT_EQ(text(ZOR::txtToRTF(nullptr)), L"");
    EXPECT_FALSE(ZOR::txtToRTF(nullptr).isNull());
}

}  // namespace
