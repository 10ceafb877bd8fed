#include "zor/text/escapes.h"

#include <string>

#include "gtest/gtest.h"
#include "zor/text/test_text.h"

namespace {

using zor_text_test::expectTexts;
using zor_text_test::text;
using zor_text_test::TextCase;

CZorString escaped(const wchar_t* s) {
    return CZorString(s).escape();
}
CZorString unEscaped(const wchar_t* s) {
    return CZorString(s).unEscape();
}
CZorString wideEscaped(const wchar_t* s) {
    return CZorString(s).escapeWideChar();
}
CZorString wideUnEscaped(const wchar_t* s) {
    return CZorString(s).unEscapeWideChar();
}

// Units outside the table stay; a lone backslash at the end goes away; null becomes empty.
TEST(BackslashEscapeTest, EscapesTheTableAndUnEscapesAnyUnit) {
    const TextCase escapes[] = {{L"a\\b", L"a\\\\b"},
                                {L"\a\b\t\n\v\f\r\x1b\"", L"\\a\\b\\t\\n\\v\\f\\r\\e\\\""},
                                {L"plain \x1f", L"plain \x1f"},
                                {nullptr, L"<null>"}};
    expectTexts(escaped, escapes);
    const TextCase unEscapes[] = {
        {L"\\q", L"q"}, {L"a\\tb\\e", L"a\tb\x1b"}, {L"\\\\n", L"\\n"}, {L"\\\"x\\\"", L"\"x\""},
        {L"\\", L""},   {L"end\\", L"end"},         {nullptr, L""},     {L"\\\\\\", L"\\"}};
    expectTexts(unEscaped, unEscapes);
    const wchar_t* original = L"tab\there \"quoted\" \\ back\r\n\x1b";
    EXPECT_EQ(text(unEscaped(text(escaped(original)).c_str())), original);
}

// Beyond 0xFFFF the two UTF-16 halves, each with four digits; a lone half comes back alone.
// Cut-off escapes end quietly, and the value is taken in 16 bits.
TEST(WideCharEscapeTest, UnitsAboveLatin1AsFourDigitsAndBack) {
    const TextCase escapes[] = {{L"\x416", L"\\U+0416"},
                                {L"5\x20ac!\xff", L"5\\U+20ac!\xff"},
                                {L"\U0001F600", L"\\U+d83d\\U+de00"},
                                {nullptr, L"<null>"}};
    expectTexts(wideEscaped, escapes);
    const TextCase unEscapes[] = {
        {L"\\u+0416x", L"\x416x"},  {L"\\U+20AC1", L"\u20ac1"}, {L"\\U+d83dx", L"\xd83dx"},
        {L"\\X+0416", L"\\X+0416"}, {L"ab\\U+", L"ab"},         {L"ab\\U+4", L"ab\x4"},
        {L"ab\\U+41", L"abA"},      {L"\\U+zzzzq", L"q"},       {L"\\U+0000q", L"q"},
        {L"\\U+-001", L"\xffff"},   {L"\\U", L"\\U"},           {nullptr, L"<null>"}};
    expectTexts(wideUnEscaped, unEscapes);
    for (const wchar_t* s : {L"\x416\x20ac\U0001F600 plain", L"\xdfff", L"\xd800!"}) {
        EXPECT_EQ(text(wideUnEscaped(text(wideEscaped(s)).c_str())), s);
    }
}

TEST(QuoteTest, QuoteAlwaysWrapsUnQuoteOnlyAPair) {
    const TextCase quotes[] = {{L"", L"\"\""}, {nullptr, L"\"\""}, {L"\"a\"", L"\"\"a\"\""}};
    expectTexts([](const wchar_t* s) { return CZorString(s).quote(); }, quotes);
    const TextCase unQuotes[] = {{L"\"\"", L""},   {L"\"a b\"", L"a b"}, {L"\"", L"\""},
                                 {L"\"a", L"\"a"}, {L"a\"", L"a\""},     {nullptr, L"<null>"}};
    expectTexts([](const wchar_t* s) { return CZorString(s).unQuote(); }, unQuotes);
}

// A marker at the very end adds nothing; what is still switched on at the end is closed.
TEST(TxtToRtfTest, MarkersBecomeSymbolsAndToggles) {
    const TextCase cases[] = {{L"%%Uab", L"{\\Lab}"}, {L"%%c10", L"\u220510"},
                              {L"%%x%%%", L"x%"},     {L"%%uab%%u cd", L"{\\Lab} cd"},
                              {L"a%b", L"a%b"},       {L"%%oa%%Ub", L"{\\Oa{\\Lb}}"},
                              {L"end%%", L"end"},     {L"%%d%%d", L"\xb0\xb0"},
                              {L"end%", L"end%"},     {L"%%p0.5", L"\u00b10.5"},
                              {nullptr, L""}};
    expectTexts(ZOR::txtToRTF, cases);
}

}  // namespace
