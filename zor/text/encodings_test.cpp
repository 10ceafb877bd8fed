#include "zor/text/encodings.h"

#include <malloc.h>

#include <cstring>
#include <string>

#include "gtest/gtest.h"
#include "zor/text/languages.h"

namespace {

std::wstring text(const CZorString& s) {
    return s.isNull() ? L"<null>" : static_cast<const wchar_t*>(s);
}

// toMultiByte into a fresh buffer, as a std::string.
std::string multiByte(const CZorString& s, int codePage) {
    char* buffer = nullptr;
    char* result = s.toMultiByte(buffer, codePage);
    EXPECT_EQ(result, buffer);
    std::string bytes(result);
    delete[] buffer;
    return bytes;
}

CZorString wide(const char* bytes, int codePage) {
    CZorString s(L"old");
    s.fromMultiByte(bytes, codePage);
    return s;
}

TEST(CodePageTest, ConvertsTheCodePagesOfTheProduct) {
    EXPECT_EQ(multiByte(L"\xe4\x20ac", 1252), "\xe4\x80");
    EXPECT_EQ(multiByte(L"\x159\x10d", 1250), "\xf8\xe8");
    EXPECT_EQ(multiByte(L"\x436", 1251), "\xe6");
    EXPECT_EQ(multiByte(L"\x4e2d", 936), "\xd6\xd0");
    EXPECT_EQ(multiByte(L"\x20ac", 65001), "\xe2\x82\xac");
    EXPECT_EQ(multiByte(L"\xe4", 1), "\x84");  // OEM
    EXPECT_EQ(text(wide("\xe4\x80", 1252)), L"\xe4\x20ac");
    EXPECT_EQ(text(wide("\xd6\xd0", 936)), L"\x4e2d");
    EXPECT_EQ(text(wide("\xf0\x9f\x98\x80", 65001)), L"\U0001F600");
    EXPECT_EQ(text(wide("", 1252)), L"");
    EXPECT_FALSE(wide("", 1252).isNull());
}

TEST(CodePageTest, MissingCharactersTravelAsEscapes) {
    // The OEM code page has no euro sign.
    EXPECT_EQ(multiByte(L"5\x20ac", 1), "5\\U+20ac");
    EXPECT_EQ(text(wide("5\\U+20ac", 1)), L"5\x20ac");
    // Every occurrence, and characters beyond 0xFFFF as two halves.
    const wchar_t* original = L"\x416-\x416 \U0001F600 \xe4";
    const std::string bytes = multiByte(original, 1252);
    EXPECT_EQ(bytes, "\\U+0416-\\U+0416 \\U+d83d\\U+de00 \xe4");
    EXPECT_EQ(text(wide(bytes.c_str(), 1252)), original);
    // UTF-8 needs no escapes and undoes none.
    EXPECT_EQ(text(wide("\\U+20ac", 65001)), L"\\U+20ac");
}

TEST(CodePageTest, UnitsBelow256ThatACodePageLacksBecomeTheDefaultCharacter) {
    // 1251 has no a-umlaut; its escape would be itself, so the default character stands in.
    EXPECT_EQ(multiByte(L"a\xe4z", 1251), "a?z");
}

TEST(CodePageTest, NullAndUnknownInput) {
    CZorString s(L"x");
    s.fromMultiByte(nullptr, 1252);
    EXPECT_TRUE(s.isNull());

    // A null string gives the empty text in a buffer of at least 7 bytes.
    char* buffer = nullptr;
    CZorString().toMultiByte(buffer, 1252);
    ASSERT_NE(buffer, nullptr);
    EXPECT_STREQ(buffer, "");
    EXPECT_GE(malloc_usable_size(buffer), 7u);
    delete[] buffer;

    // Bytes that the code page doesn't define, and a cut-off sequence.
    EXPECT_EQ(text(wide("a\xff"
                        "b",
                        65001)),
              L"a\xfffd"
              L"b");
    EXPECT_EQ(text(wide("a\xe2\x82", 65001)), L"a\xfffd\xfffd");
    // A code page that cannot be used converts to the empty text.
    EXPECT_EQ(text(wide("abc", 424242)), L"");
    EXPECT_EQ(multiByte(L"abc", 424242), "");
    // Not characters at all: UTF-8 writes the replacement character.
    EXPECT_EQ(multiByte(L"a\xd800", 65001), "a\xef\xbf\xbd");
}

TEST(CodePageTest, BufferIsKeptWhenLargeEnoughAndReplacedOtherwise) {
    char* big = new char[64];
    char* kept = big;
    CZorString(L"hello").toMultiByte(big, 1252);
    EXPECT_EQ(big, kept);
    EXPECT_STREQ(big, "hello");
    CZorString().toMultiByte(big, 1252);
    EXPECT_EQ(big, kept);
    EXPECT_STREQ(big, "");
    delete[] big;

    char* small = new char[2];
    const std::wstring longText(300, L'x');
    CZorString(longText.c_str()).toMultiByte(small, 1252);
    EXPECT_EQ(std::string(small), std::string(300, 'x'));
    delete[] small;
}

TEST(OemCodePageTest, DosAndWinAreInverse) {
    wchar_t dos[] = {0x84, 0x94, 0x81, L'A', 0x15, 0};  // a-, o-, u-umlaut, A, a control code
    EXPECT_EQ(ZOR::dosToWin(dos), dos);
    EXPECT_EQ(std::wstring(dos),
              L"\xe4\xf6\xfc"
              L"A\x15");
    EXPECT_EQ(ZOR::winToDos(dos), dos);
    EXPECT_EQ(std::wstring(dos), std::wstring(L"\x84\x94\x81"
                                              L"A\x15"));
    // Only the low byte counts on the way in; what the code page lacks becomes '?' on the way
    // out, one unit for one unit.
    wchar_t high[] = {0x184, 0x20ac, L'z', 0};
    ZOR::dosToWin(high);
    EXPECT_EQ(high[0], 0xe4);
    wchar_t euro[] = {0x20ac, L'z', 0};
    ZOR::winToDos(euro);
    EXPECT_EQ(std::wstring(euro), L"?z");
    wchar_t empty[] = {0};
    EXPECT_EQ(ZOR::dosToWin(empty), empty);
    EXPECT_EQ(ZOR::dosToWin(nullptr), nullptr);
    EXPECT_EQ(ZOR::winToDos(nullptr), nullptr);
}

CZorArrayTempl<unsigned char> bytes(const char* s) {
    CZorArrayTempl<unsigned char> data;
    for (const char* p = s; *p; ++p) data.append(static_cast<unsigned char>(*p));
    return data;
}

std::string asString(const CZorArrayTempl<unsigned char>& data) {
    return std::string(reinterpret_cast<const char*>(data.entry()), data.len());
}

std::wstring encoded(const char* s) {
    CZorString out(L"old");
    EXPECT_TRUE(ZOR::base64Encode(bytes(s), out));
    return text(out);
}

std::string decoded(const wchar_t* s) {
    CZorArrayTempl<unsigned char> data = bytes("old");
    EXPECT_TRUE(ZOR::base64Decode(s, data));
    return asString(data);
}

TEST(Base64Test, EncodesByTheStandard) {
    EXPECT_EQ(encoded("abc"), L"YWJj");
    EXPECT_EQ(encoded("a"), L"YQ==");
    EXPECT_EQ(encoded("ab"), L"YWI=");
    EXPECT_EQ(encoded("foobar"), L"Zm9vYmFy");
    EXPECT_EQ(encoded(""), L"");
    CZorString out;
    ZOR::base64Encode(CZorArrayTempl<unsigned char>(), out);
    EXPECT_FALSE(out.isNull());
    CZorArrayTempl<unsigned char> all;
    for (int i = 0; i < 256; ++i) all.append(static_cast<unsigned char>(i));
    ZOR::base64Encode(all, out);
    EXPECT_EQ(std::wstring(out).substr(0, 8), L"AAECAwQF");
    EXPECT_EQ(std::wstring(out).substr(std::wstring(out).size() - 8), L"/P3+/w==");
    CZorArrayTempl<unsigned char> back;
    EXPECT_TRUE(ZOR::base64Decode(out, back));
    EXPECT_TRUE(back == all);
}

TEST(Base64Test, DecodesLeniently) {
    EXPECT_EQ(decoded(L"YWJj"), "abc");
    EXPECT_EQ(decoded(L"YQ=="), "a");
    EXPECT_EQ(decoded(L"YQ"), "a");  // missing units count as padding
    EXPECT_EQ(decoded(L"Zm9vYmFy"), "foobar");
    EXPECT_EQ(decoded(L""), "");
    EXPECT_EQ(decoded(L"===="), "");
    EXPECT_EQ(decoded(L"YR=j"), "a");  // one byte when the second or third is '='
    EXPECT_EQ(decoded(L"YQ==YQ=="), "aa");
    // Only the low byte of a unit counts.
    EXPECT_EQ(decoded(L"\x159\x157Jj"), "abc");
    CZorArrayTempl<unsigned char> data = bytes("keep");
    EXPECT_FALSE(ZOR::base64Decode(nullptr, data));
    EXPECT_EQ(asString(data), "keep");
}

TEST(Base64Test, GarbageDecodesWithoutFailing) {
    // Characters outside the alphabet count by the same arithmetic: '0' + 4 is 52, as it is.
    EXPECT_EQ(decoded(L"!@#$").size(), 3u);
    EXPECT_EQ(decoded(L"\x1\xff\x80\x7f\x5b").size(), 4u);
    std::wstring noise;
    for (int i = 1; i < 0x300; ++i) noise += static_cast<wchar_t>(i);
    CZorArrayTempl<unsigned char> data;
    EXPECT_TRUE(ZOR::base64Decode(noise.c_str(), data));
}

TEST(LanguagesTest, TableAndCodePages) {
    const zor_country_st* table = zorDlCountrys();
    int rows = 0;
    while (table[rows].number) ++rows;
    EXPECT_EQ(rows, 18);
    EXPECT_STREQ(table[0].number, L"42");
    EXPECT_STREQ(table[0].name,
                 L"\x10d"
                 L"e\x161tina");
    EXPECT_STREQ(table[16].name, L"\x4e2d\x6587");
    EXPECT_STREQ(table[17].number, L"07");
    EXPECT_EQ(table[17].codePage, 1251);
    EXPECT_EQ(table[18].name, nullptr);
    EXPECT_EQ(ZOR::codePage(L"86"), 936);
    EXPECT_EQ(ZOR::codePage(L"421"), 1250);
    EXPECT_EQ(ZOR::codePage(L"049"), 1252);
    EXPECT_EQ(ZOR::codePage(L""), 1252);
    EXPECT_EQ(ZOR::codePage(nullptr), 1252);
    // Every code page of the table converts.
    for (int i = 0; i < rows; ++i) {
        CZorString name(table[i].name);
        char* buffer = nullptr;
        name.toMultiByte(buffer, table[i].codePage);
        CZorString back;
        back.fromMultiByte(buffer, table[i].codePage);
        delete[] buffer;
        EXPECT_EQ(text(back), table[i].name);
    }
}

}  // namespace
