#include "zor/text/encodings.h"

#include <malloc.h>

#include <string>
#include <tuple>
#include <utility>

#include "gtest/gtest.h"
#include "zor/text/languages.h"
#include "zor/text/test_text.h"

namespace {

using zor_text_test::text;

// toMultiByte into a fresh buffer, as a std::string.
std::string multiByte(const CZorString& s, int codePage) {
    char* buffer = nullptr;
    EXPECT_EQ(s.toMultiByte(buffer, codePage), buffer);
    std::string bytes(buffer);
    delete[] buffer;
    return bytes;
}

std::wstring wide(const char* bytes, int codePage) {
    CZorString s(L"old");
    return text(s.fromMultiByte(bytes, codePage));
}

// Code page 1 is the OEM one.
TEST(CodePageTest, ConvertsTheCodePagesOfTheProduct) {
    const std::tuple<const wchar_t*, int, const char*> cases[] = {
        {L"\xe4\x20ac", 1252, "\xe4\x80"},  {L"\x436", 1251, "\xe6"},
        {L"\x4e2d", 936, "\xd6\xd0"},       {L"\xe4", 1, "\x84"},
        {L"\x159\x10d", 1250, "\xf8\xe8"},  {L"", 1252, ""},
        {L"\x20ac", 65001, "\xe2\x82\xac"}, {L"\U0001F600", 65001, "\xf0\x9f\x98\x80"}};
    for (const auto& [units, codePage, bytes] : cases) {
        EXPECT_EQ(multiByte(units, codePage), bytes) << codePage;
        EXPECT_EQ(wide(bytes, codePage), units) << codePage;  // the empty text is not null
    }
}

// What a code page lacks travels as an escape; bad, null and unknown input never fails.
TEST(CodePageTest, MissingCharactersTravelAsEscapesAndBadInputConverts) {
    // The OEM code page has no euro sign.
    EXPECT_EQ(multiByte(L"5\x20ac", 1), "5\\U+20ac");
    EXPECT_EQ(wide("5\\U+20ac", 1), L"5\x20ac");
    // Every occurrence, and characters beyond 0xFFFF as two halves.
    const wchar_t* original = L"\x416-\x416 \U0001F600 \xe4";
    const std::string bytes = multiByte(original, 1252);
    EXPECT_EQ(bytes, "\\U+0416-\\U+0416 \\U+d83d\\U+de00 \xe4");
    EXPECT_EQ(wide(bytes.c_str(), 1252), original);
    // UTF-8 needs no escapes and undoes none.
    EXPECT_EQ(wide("\\U+20ac", 65001), L"\\U+20ac");
    // 1251 has no a-umlaut; its escape would be itself, so the default character stands in.
    EXPECT_EQ(multiByte(L"a\xe4z", 1251), "a?z");
    CZorString s(L"x");
    EXPECT_TRUE(s.fromMultiByte(nullptr, 1252).isNull());
    // Bytes that the code page doesn't define, and a cut-off sequence.
    EXPECT_EQ(wide("a\377b", 65001), L"a\ufffdb");
    EXPECT_EQ(wide("a\xe2\x82", 65001), L"a\xfffd\xfffd");
    // A code page that cannot be used converts to the empty text.
    EXPECT_EQ(wide("abc", 424242), L"");
    EXPECT_EQ(multiByte(L"abc", 424242), "");
    // Not characters at all: UTF-8 writes the replacement character.
    EXPECT_EQ(multiByte(L"a\xd800", 65001), "a\xef\xbf\xbd");
}

TEST(CodePageTest, BufferIsKeptWhenLargeEnoughAndReplacedOtherwise) {
    // A null string gives the empty text in a buffer of at least 7 bytes.
    char* buffer = nullptr;
    CZorString().toMultiByte(buffer, 1252);
    ASSERT_NE(buffer, nullptr);
    EXPECT_STREQ(buffer, "");
    EXPECT_GE(malloc_usable_size(buffer), 7u);
    delete[] buffer;
    char* big = new char[64];
    char* const kept = big;
    CZorString(L"hello").toMultiByte(big, 1252);
    EXPECT_EQ(big, kept);
    EXPECT_STREQ(big, "hello");
    CZorString().toMultiByte(big, 1252);
    EXPECT_EQ(big, kept);
    delete[] big;

    char* small = new char[2];
    CZorString(std::wstring(300, L'x').c_str()).toMultiByte(small, 1252);
    EXPECT_EQ(std::string(small), std::string(300, 'x'));
    delete[] small;
}

TEST(OemCodePageTest, DosAndWinAreInverse) {
    wchar_t dos[] = {0x84, 0x94, 0x81, L'A', 0x15, 0};  // a-, o-, u-umlaut, A, a control code
    EXPECT_EQ(ZOR::dosToWin(dos), dos);
    EXPECT_EQ(std::wstring(dos), L"\u00e4\u00f6\u00fcA\x15");
    EXPECT_EQ(ZOR::winToDos(dos), dos);
    EXPECT_EQ(std::wstring(dos), L"\x84\x94\x81\x41\x15");
    // Only the low byte counts on the way in; what the code page lacks becomes '?' on the way
    // out, one unit for one unit.
    wchar_t high[] = {0x184, 0x20ac, L'z', 0};
    EXPECT_EQ(ZOR::dosToWin(high)[0], 0xe4);
    wchar_t euro[] = {0x20ac, L'z', 0};
    EXPECT_EQ(std::wstring(ZOR::winToDos(euro)), L"?z");
    EXPECT_EQ(ZOR::dosToWin(nullptr), nullptr);
    EXPECT_EQ(ZOR::winToDos(nullptr), nullptr);
}

CZorArrayTempl<unsigned char> bytes(const std::string& s) {
    CZorArrayTempl<unsigned char> data;
    for (const char c : s) data.append(static_cast<unsigned char>(c));
    return data;
}

std::wstring encoded(const std::string& s) {
    CZorString out(L"old");
    EXPECT_TRUE(ZOR::base64Encode(bytes(s), out));
    return text(out);
}

std::string decoded(const wchar_t* s) {
    CZorArrayTempl<unsigned char> data = bytes("old");
    EXPECT_TRUE(ZOR::base64Decode(s, data));
    return std::string(reinterpret_cast<const char*>(data.entry()), data.len());
}

// Decoding is lenient and never fails: missing units count as padding, one byte comes out when
// the second or third unit is '=', only the low byte of a unit counts, and characters outside
// the alphabet count by the same arithmetic ('0' + 4 being 52 as it is).
TEST(Base64Test, EncodesByTheStandardAndDecodesAnything) {
    const std::pair<const char*, const wchar_t*> standard[] = {
        {"abc", L"YWJj"}, {"a", L"YQ=="}, {"ab", L"YWI="}, {"", L""}};
    for (const auto& [plain, code] : standard) {
        EXPECT_EQ(encoded(plain), code);
        EXPECT_EQ(decoded(code), plain);
    }
    std::string all;
    for (int i = 0; i < 256; ++i) all += static_cast<char>(i);
    const std::wstring code = encoded(all);
    EXPECT_EQ(code.substr(code.size() - 8), L"/P3+/w==");
    EXPECT_EQ(decoded(code.c_str()), all);

    const std::pair<const wchar_t*, const char*> lenient[] = {
        {L"YQ", "a"}, {L"====", ""}, {L"YR=j", "a"}, {L"YQ==YQ==", "aa"}, {L"\x159\x157Jj", "abc"}};
    for (const auto& [code, plain] : lenient) EXPECT_EQ(decoded(code), plain);
    EXPECT_EQ(decoded(L"!@#$").size(), 3u);
    EXPECT_EQ(decoded(L"\x1\xff\x80\x7f\x5b").size(), 4u);
    std::wstring noise;
    for (int i = 1; i < 0x300; ++i) noise += static_cast<wchar_t>(i);
    // 191 groups and 3 units; three groups start with a low byte '=' and give nothing.
    EXPECT_EQ(decoded(noise.c_str()).size(), 188u * 3 + 2);
    CZorArrayTempl<unsigned char> data = bytes("keep");
    EXPECT_FALSE(ZOR::base64Decode(nullptr, data));
    EXPECT_EQ(data.len(), 4u);
}

TEST(LanguagesTest, TableAndCodePages) {
    const zor_country_st* table = zorDlCountrys();
    int rows = 0;
    while (table[rows].number) ++rows;
    EXPECT_EQ(rows, 18);
    EXPECT_STREQ(table[0].name, L"\u010de\u0161tina");
    EXPECT_STREQ(table[16].name, L"\x4e2d\x6587");
    EXPECT_STREQ(table[17].number, L"07");
    EXPECT_EQ(table[17].codePage, 1251);
    EXPECT_EQ(ZOR::codePage(L"86"), 936);
    EXPECT_EQ(ZOR::codePage(L"049"), 1252);
    EXPECT_EQ(ZOR::codePage(L""), 1252);
    EXPECT_EQ(ZOR::codePage(nullptr), 1252);
    // Every language's name is written in its own code page, with no escape.
    for (int i = 0; i < rows; ++i) {
        const std::string bytes = multiByte(table[i].name, table[i].codePage);
        EXPECT_EQ(bytes.find('\\'), std::string::npos) << i;
        EXPECT_EQ(wide(bytes.c_str(), table[i].codePage), table[i].name);
    }
}

}  // namespace
