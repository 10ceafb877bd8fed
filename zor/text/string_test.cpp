#include "zor/text/string.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

namespace {

// Not null, with the stored length agreeing with the text.
::testing::AssertionResult IsText(const CZorString& s, const std::wstring& text) {
    if (s.isNull()) return ::testing::AssertionFailure() << "null";
    const std::wstring have = static_cast<const wchar_t*>(s);
    if (have != text || s.len() != static_cast<int>(text.size()))
        return ::testing::AssertionFailure() << "len " << s.len() << " text size " << have.size();
    return ::testing::AssertionSuccess();
}

// Sets or clears an environment variable for the length of a test and restores it afterwards.
class ScopedEnv {
  public:
    ScopedEnv(const char* name, const char* value) : name_(name) {
        if (const char* old = std::getenv(name)) old_ = old;
        value ? setenv(name, value, 1) : unsetenv(name);
    }
    ~ScopedEnv() { old_ ? setenv(name_, old_->c_str(), 1) : unsetenv(name_); }

  private:
    const char* name_;
    std::optional<std::string> old_;
};

// A reallocation always moves the buffer (the old one is freed only after the copy), so a stable
// pointer proves that an operation fitted the capacity.
const wchar_t* raw(const CZorString& s) {
    return s;
}
const wchar_t* kNone = nullptr;

TEST(StringTest, ComparisonTellsNullFromEmptyOnlyInEquality) {
    const CZorString null;
    const CZorString empty(L"");
    EXPECT_TRUE(null.isNull());
    EXPECT_EQ(null.len(), 0);
    EXPECT_EQ(raw(null), nullptr);
    EXPECT_TRUE(IsText(empty, L""));

    EXPECT_FALSE(null == L"" || null == empty || empty == null || empty == nullptr);
    EXPECT_TRUE(null == nullptr && null == CZorString() && null != L"" && empty != null);
    EXPECT_TRUE(null <= L"" && null >= L"" && empty <= null && empty >= null);
    EXPECT_FALSE(null < L"" || null > L"");
    EXPECT_TRUE(null < L"a" && CZorString(L"a") > null);

    const CZorString abc(L"abc");  // by code unit value, case-sensitive
    EXPECT_TRUE(abc == abc && abc == CZorString(L"abc") && L"abc" == abc && abc <= L"abc");
    EXPECT_FALSE(abc == L"ABC" || abc != CZorString(L"abc") || abc > L"abd" || abc < L"ab");
    EXPECT_TRUE(CZorString(L"B") < L"a" && abc >= CZorString(L"abc"));

    EXPECT_TRUE(CZorString(null).isNull());
    EXPECT_TRUE(CZorString::kNull.isNull() && CZorString::kNull == null);
    EXPECT_TRUE(CZorString(kNone).isNull());
    CZorString s(L"text");
    EXPECT_TRUE((s = null).isNull());
    EXPECT_TRUE(IsText(s = L"", L""));
    s.setNull();
    EXPECT_TRUE(s.isNull());
}

TEST(StringTest, CapacityStartsAt16DoublesAndNeverFalls) {
    CZorString s(L"");
    const wchar_t* p = s;
    s += std::wstring(16, L'a').c_str();
    EXPECT_EQ(raw(s), p);  // 16 units fit the first buffer
    s += L'b';
    EXPECT_NE(raw(s), p);
    p = s;
    s += std::wstring(15, L'c').c_str();
    EXPECT_EQ(raw(s), p);  // doubled to 32
    s = L"x";              // shorter texts keep the buffer...
    s = L"";
    s += std::wstring(32, L'd').c_str();
    EXPECT_EQ(raw(s), p);
    s = kNone;  // ...only null frees it
    EXPECT_TRUE(s.isNull());

    // A copy sizes from the text, not from the source's capacity.
    CZorString big;
    big.GetBuffer(100);
    CZorString copy(big.ReleaseBuffer());
    p = copy;
    copy += std::wstring(17, L'e').c_str();
    EXPECT_NE(raw(copy), p);
}

TEST(StringTest, SelfAliasingAssignAppendInsertReplace) {
    CZorString s(L"abcd");
    const wchar_t* p = s;
    s = p + 2;
    EXPECT_TRUE(IsText(s, L"cd"));
    EXPECT_EQ(raw(s), p);

    s = L"ab";
    EXPECT_TRUE(IsText(s += s, L"abab"));
    EXPECT_TRUE(IsText(s += raw(s) + 1, L"ababbab"));
    s += s;  // the next append grows past 16 while reading its own text
    EXPECT_TRUE(IsText(s += raw(s) + 4, L"ababbabababbabbabababbab"));

    s = L"abc";
    EXPECT_TRUE(IsText(s.insertAt(1, raw(s)), L"aabcbc"));
    s = L"xyx";
    EXPECT_TRUE(IsText(s.replace(raw(s) + 2, raw(s)), L"xyxyxyx"));  // "x" -> "xyx"
    EXPECT_TRUE(IsText(s = s, L"xyxyxyx"));
}

TEST(StringTest, OpenBufferMeasuresUntilReleased) {
    CZorString s;
    wchar_t* b = s.GetBuffer(10);
    EXPECT_EQ(std::wstring(b, 11), std::wstring(11, L'\0'));
    std::wcscpy(b, L"xy");
    EXPECT_EQ(s.len(), 2);
    b[1] = L'\0';
    EXPECT_EQ(s.len(), 1);  // still open: measured
    b[1] = L'y';
    s += L"z";  // appends at the measured end
    EXPECT_TRUE(IsText(s.ReleaseBuffer(), L"xyz"));
    b[0] = L'\0';  // closed now: the stored length stands
    EXPECT_EQ(s.len(), 3);

    // Assigning a text that fits leaves it open and the pointer good; a longer one closes it.
    CZorString t;
    wchar_t* tb = t.GetBuffer(4);
    t = L"hello";
    EXPECT_EQ(raw(t), tb);
    tb[2] = L'\0';
    EXPECT_EQ(t.len(), 2);
    t = CZorString(std::wstring(40, L'q').c_str());
    const_cast<wchar_t*>(raw(t))[0] = L'\0';
    EXPECT_EQ(t.len(), 40);

    // Edits keep an open string open.
    wchar_t* ub = s.GetBuffer(8);
    std::wcscpy(ub, L"  ab ");
    s.trim();
    ub[1] = L'\0';
    EXPECT_EQ(s.len(), 1);
    // A caller who overran the terminator slot gets the text cut at the capacity.
    std::wmemset(s.GetBuffer(16), L'z', 17);
    EXPECT_EQ(s.ReleaseBuffer().len(), 16);
}

TEST(StringTest, IndexingNegativeAndOutOfRange) {
    const CZorString abc(L"abc");
    EXPECT_EQ(std::wstring({abc[-1], abc[-3], abc[2]}), L"cac");
    for (int i : {3, 100, -4}) EXPECT_EQ(abc[i], L'\0') << i;
    EXPECT_EQ(CZorString(L"x")[-5], L'x');  // one unit: every negative index is 0
    EXPECT_EQ(CZorString(L"")[-1], L'\0');
    EXPECT_EQ(CZorString()[-1], L'\0');

    CZorString s;
    EXPECT_TRUE(IsText(s.setAt(0, L'a'), L"a"));  // no longer null
    s = L"abc";
    EXPECT_TRUE(IsText(s.setAt(-1, L'z'), L"abz"));
    EXPECT_TRUE(IsText(s.setAt(5, L'x'), L"abz"));   // past the terminator: no new text
    EXPECT_TRUE(IsText(s.setAt(-4, L'q'), L"abz"));  // below -len(): ignored
    EXPECT_TRUE(IsText(s.setAt(1, L'\0'), L"a"));
    EXPECT_TRUE(IsText(s.setAt(-9, L'q'), L"q"));
    CZorString full(std::wstring(16, L'f').c_str());
    EXPECT_EQ(full.setAt(16, L'g').len(), 17);  // the buffer keeps a terminator behind it
}

TEST(StringTest, ConcatenationAndNullness) {
    CZorString s;
    EXPECT_TRUE((s += CZorString()).isNull());
    EXPECT_TRUE((s += L'\0').isNull());
    EXPECT_TRUE((s += kNone).isNull());
    EXPECT_TRUE(IsText(s += CZorString(L""), L""));
    EXPECT_TRUE(IsText(CZorString() += L"", L""));

    const CZorString ab(L"ab");
    EXPECT_TRUE(IsText(ab + L'c', L"abc"));
    EXPECT_TRUE(IsText(ab + ab, L"abab"));
    EXPECT_TRUE(IsText(L"x" + ab, L"xab"));
    EXPECT_TRUE(IsText(CZorString() + L'c', L"c"));
    EXPECT_TRUE((kNone + CZorString()).isNull());
    EXPECT_TRUE(IsText(kNone + ab, L"ab"));
}

TEST(StringTest, FindAndReplace) {
    const CZorString abc(L"abc");
    const CZorString null;
    EXPECT_EQ((std::vector{abc.find(L'b'), abc.find(L'\0'), abc.find(L"bc"), abc.find(L"")}),
              (std::vector{1, 3, 1, 0}));
    EXPECT_EQ((std::vector{abc.find(L"cd"), abc.find(kNone), null.find(L'\0'), null.find(L"")}),
              (std::vector{-1, -1, -1, -1}));

    EXPECT_TRUE(IsText(CZorString(L"xaya").replace(L'a', L'\0'), L"x"));
    EXPECT_TRUE(IsText(CZorString(L"aaaa").replace(L"aa", L"b"), L"bb"));
    EXPECT_TRUE(IsText(CZorString(L"aba").replace(L"a", nullptr), L"b"));
    EXPECT_TRUE(IsText(CZorString(L"aa").replace(L"a", L"aa"), L"aaaa"));  // no rescanning
    EXPECT_TRUE(IsText(CZorString(L"a.b.c").replace(L".", L"--"), L"a--b--c"));
    EXPECT_TRUE(IsText(CZorString(L"abc").replace(L"abc", L""), L""));
    CZorString s(L"aba");
    const wchar_t* p = s;
    EXPECT_EQ(raw(s.replace(L"a", L"a")), p);  // in place, by the single-unit path
    EXPECT_TRUE(CZorString().replace(L"a", L"b").isNull());
    EXPECT_TRUE(IsText(s.replace(L"", L"x").replace(nullptr, L"x").replace(L"q", L"x"), L"aba"));
}

TEST(StringTest, InsertTrimFillAndCase) {
    CZorString s(L"abc");
    EXPECT_TRUE(IsText(s.insertAt(9, L"x"), L"abc"));
    EXPECT_TRUE(IsText(s.insertAt(3, L"x").insertAt(0, L'>'), L">abcx"));
    EXPECT_TRUE(IsText(s.insertAt(2, L'\0').insertAt(2, nullptr), L">abcx"));
    CZorString null;
    EXPECT_TRUE(null.insertAt(1, L"x").isNull());
    EXPECT_TRUE(IsText(null.insertAt(0, L""), L""));

    EXPECT_TRUE(IsText(CZorString(L" \t\n\rab \r\n").trim(), L"ab"));
    EXPECT_TRUE(IsText(CZorString(L"\fa\xA0").trim(), L"\fa\xA0"));
    EXPECT_TRUE(IsText(CZorString(L" \t ").trim(), L""));
    EXPECT_TRUE(CZorString().trim().isNull());

    EXPECT_TRUE(IsText(CZorString(L"42").lfill(5, L'0'), L"00042"));
    s = L"abc";
    EXPECT_TRUE(IsText(s.rfill(2, L'x').rfill(5, L'\0').lfill(5, L'\0'), L"abc"));
    EXPECT_TRUE(IsText(s.rfill(5, L'.'), L"abc.."));
    EXPECT_TRUE(IsText(CZorString().lfill(3, L'*'), L"***"));
    EXPECT_TRUE(CZorString().lfill(0, L'*').isNull());
    std::wcscpy(s.GetBuffer(2), L"7");
    const_cast<wchar_t*>(raw(s.lfill(3, L'0')))[1] = L'\0';
    EXPECT_EQ(s.len(), 1);  // lfill kept it open
    const_cast<wchar_t*>(raw(s.rfill(4, L'-')))[0] = L'\0';
    EXPECT_EQ(s.len(), 4);  // rfill closed it

    s = L"Mixed 1a";
    EXPECT_TRUE(IsText(s.makeUpper(), L"MIXED 1A"));
    EXPECT_TRUE(IsText(s.makeLower().revert(), L"a1 dexim"));
    EXPECT_TRUE(IsText(CZorString(L"abc").reverse(), L"cba"));
    EXPECT_TRUE(CZorString().reverse().isNull());
}

TEST(StringTest, LeftRightMidCutAtTheText) {
    const CZorString abc(L"abc");
    const CZorString null;
    EXPECT_TRUE(IsText(abc.left(0), L"") && IsText(abc.left(2), L"ab"));
    EXPECT_TRUE(IsText(abc.left(9), L"abc") && null.left(0).isNull());
    EXPECT_TRUE(IsText(abc.right(0), L"") && IsText(abc.right(2), L"bc"));
    EXPECT_TRUE(IsText(abc.right(9), L"abc") && null.right(0).isNull());
    EXPECT_TRUE(abc.mid(4, 1).isNull() && null.mid(0, 3).isNull());
    EXPECT_TRUE(IsText(abc.mid(3, 1), L"") && IsText(abc.mid(1, 1), L"b"));
    EXPECT_TRUE(IsText(abc.mid(1, 100), L"bc"));
}

TEST(StringTest, FormatUsesWideStringConventions) {
    CZorString s;
    EXPECT_TRUE(IsText(s.format(L"%s=%d %c%%", L"x", 5, L'\x00e9'), L"x=5 \x00e9%"));
    EXPECT_TRUE(IsText(s.format(L"%S|%hs|%ls|%ws|%C", "nar", "row", L"wi", L"de", 'c'),
                       L"nar|row|wi|de|c"));
    EXPECT_TRUE(IsText(s.format(L"%I64d %I64x %ld %-4s|%.2s", INT64_C(-9000000000), UINT64_C(255),
                                -7L, L"a", L"xyz"),
                       L"-9000000000 ff -7 a   |xy"));
    for (const int units : {127, 128, 129, 1000}) {
        const std::wstring text(static_cast<std::size_t>(units), L'k');
        EXPECT_TRUE(IsText(s.format(L"%s", text.c_str()), text)) << units;
    }
    EXPECT_TRUE(IsText(s.format(L"a%cb", L'\0'), L"a"));  // an embedded 0 cuts
    EXPECT_TRUE(IsText(s.format(nullptr), L"a"));
    EXPECT_TRUE(IsText(s.format(L""), L""));
}

TEST(StringTest, ExpandEnvironmentStrings) {
    const ScopedEnv var("ZOR_STRING_TEST", "valu\xC3\xA9");
    const ScopedEnv upper("ZOR_STRING_UPPER", "up");
    const ScopedEnv missing("ZOR_STRING_MISSING", nullptr);
    CZorString s(L"a%ZOR_STRING_TEST%b%zor_string_upper%");
    EXPECT_TRUE(IsText(s.expandEnvironmentStrings(),
                       L"avalu\x00e9"
                       L"bup"));
    for (const wchar_t* kept : {L"%ZOR_STRING_MISSING%ZOR_STRING_TEST%", L"50% and %% and %"})
        EXPECT_TRUE(IsText(CZorString(kept).expandEnvironmentStrings(), kept));
    EXPECT_TRUE(CZorString().expandEnvironmentStrings().isNull());
    {
        const ScopedEnv temp("TEMP", nullptr);
        const ScopedEnv tmpdir("TMPDIR", "/scratch");
        EXPECT_TRUE(IsText((s = L"%TEMP%\\Z").expandEnvironmentStrings(), L"/scratch\\Z"));
        const ScopedEnv noTmpdir("TMPDIR", nullptr);
        EXPECT_TRUE(IsText((s = L"%temp%").expandEnvironmentStrings(), L"/tmp"));
    }
    // Up to 259 units are kept; a longer expansion leaves the text as it was.
    const ScopedEnv longVar("ZOR_STRING_LONG", std::string(250, 'v').c_str());
    EXPECT_EQ((s = L"123456789%ZOR_STRING_LONG%").expandEnvironmentStrings().len(), 259);
    s = L"1234567890%ZOR_STRING_LONG%";
    EXPECT_TRUE(IsText(s.expandEnvironmentStrings(), L"1234567890%ZOR_STRING_LONG%"));
}

TEST(StringTest, MoveLeavesTheSourceNullAndRespectsAnOpenTarget) {
    CZorString a(L"abc");
    CZorString b(std::move(a));
    EXPECT_TRUE(a.isNull());  // the moved-from state is part of the contract
    CZorString c;
    wchar_t* cb = c.GetBuffer(8);
    c = std::move(b);  // copied into the open buffer: the caller's pointer stays good
    EXPECT_EQ(raw(c), cb);
    EXPECT_STREQ(c, L"abc");
}

// The string list is compiled with the class: its order reads null as the empty text, its
// equality doesn't.
TEST(StringTest, StringListsSortByTextAndKeepNullApart) {
    CZorArrayTempl<CZorString> list;
    list.append(L"b").append(CZorString()).append(L"a").append(L"");
    list.sort();
    EXPECT_TRUE(list[0].isNull() && IsText(list[1], L"") && IsText(list[3], L"b"));
    EXPECT_EQ(list.indexOf(L""), 1);
    CZorMapTempl<CZorString, CZorString> map;
    map.setAt(L"key", L"value");
    CZorString value;
    EXPECT_TRUE(map.getAt(L"key", value) && IsText(value, L"value") && !map.hasKey(L"KEY"));
}

}  // namespace
