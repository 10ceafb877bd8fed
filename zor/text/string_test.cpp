#include "zor/text/string.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <optional>
#include <random>
#include <string>

namespace {

// Sets or clears an environment variable for the length of a test and restores it afterwards.
class ScopedEnv {
  public:
    ScopedEnv(const char* name, const char* value) : name_(name) {
        if (const char* old = std::getenv(name)) old_ = old;
        if (value) {
            setenv(name, value, 1);
        } else {
            unsetenv(name);
        }
    }
    ~ScopedEnv() {
        if (old_) {
            setenv(name_, old_->c_str(), 1);
        } else {
            unsetenv(name_);
        }
    }

  private:
    const char* name_;
    std::optional<std::string> old_;
};

// A reallocation always moves the buffer (the old one is freed only after the copy), so a stable
// pointer proves that an operation fitted the capacity.
const wchar_t* raw(const CZorString& s) {
    return s;
}

TEST(StringTest, NullAndEmptyAreDistinctEverywhere) {
    const CZorString null;
    const CZorString empty(L"");
    EXPECT_TRUE(null.isNull());
    EXPECT_EQ(null.len(), 0);
    EXPECT_EQ(raw(null), nullptr);
    EXPECT_FALSE(empty.isNull());
    ASSERT_NE(raw(empty), nullptr);
    EXPECT_EQ(raw(empty)[0], L'\0');

    // == tells them apart, != agrees with it, the ordering treats null as the empty text.
    EXPECT_FALSE(null == L"");
    EXPECT_FALSE(null == empty);
    EXPECT_FALSE(empty == null);
    EXPECT_TRUE(null != L"");
    EXPECT_TRUE(null <= L"");
    EXPECT_TRUE(null >= L"");
    EXPECT_FALSE(null < L"");
    EXPECT_TRUE(empty <= null);
    EXPECT_TRUE(empty >= null);
    EXPECT_TRUE(null == nullptr);
    EXPECT_TRUE(null == CZorString());
    EXPECT_FALSE(empty == nullptr);
    EXPECT_TRUE(empty == L"");
    EXPECT_TRUE(null < L"a");

    EXPECT_TRUE(CZorString(null).isNull());
    EXPECT_TRUE(CZorString(static_cast<const wchar_t*>(nullptr)).isNull());
    EXPECT_FALSE(CZorString(empty).isNull());
    CZorString s(L"text");
    s = null;
    EXPECT_TRUE(s.isNull());
    s = L"";
    EXPECT_FALSE(s.isNull());
    s.setNull();
    EXPECT_TRUE(s.isNull());
}

TEST(StringTest, ComparisonIsByCodeUnitAndCaseSensitive) {
    const CZorString abc(L"abc");
    EXPECT_TRUE(abc == CZorString(L"abc"));
    EXPECT_TRUE(abc == abc);
    EXPECT_FALSE(abc == L"ABC");
    EXPECT_TRUE(abc < L"abd");
    EXPECT_TRUE(abc > L"ab");
    EXPECT_TRUE(CZorString(L"B") < L"a");
    EXPECT_TRUE(abc >= CZorString(L"abc"));
    EXPECT_TRUE(L"abc" == abc);
    EXPECT_TRUE(abc != CZorString(L"abd"));
}

TEST(StringTest, CapacityStartsAt16DoublesAndNeverFalls) {
    CZorString s(L"");
    const wchar_t* p = s;
    for (int i = 0; i < 16; ++i) s += L'a';
    EXPECT_EQ(raw(s), p);  // 16 units fit the first buffer
    s += L'b';
    EXPECT_NE(raw(s), p);
    p = s;
    s += std::wstring(15, L'c').c_str();
    EXPECT_EQ(raw(s), p);  // doubled to 32
    EXPECT_EQ(s.len(), 32);

    s = L"x";  // a short text keeps the large buffer
    EXPECT_EQ(raw(s), p);
    s = L"";  // so does the empty text
    EXPECT_EQ(raw(s), p);
    s += std::wstring(32, L'd').c_str();
    EXPECT_EQ(raw(s), p);
    s = static_cast<const wchar_t*>(nullptr);  // only null frees it
    EXPECT_TRUE(s.isNull());

    // A copy sizes from the text, not from the source's capacity.
    CZorString big;
    big.GetBuffer(100);
    big.ReleaseBuffer();
    CZorString copy(big);
    const wchar_t* q = copy;
    copy += std::wstring(17, L'e').c_str();
    EXPECT_NE(raw(copy), q);
}

TEST(StringTest, SelfAliasingAssignAppendInsertReplace) {
    CZorString s(L"abcd");
    const wchar_t* p = s;
    s = p + 2;
    EXPECT_STREQ(s, L"cd");
    EXPECT_EQ(s.len(), 2);
    EXPECT_EQ(raw(s), p);

    s = L"ab";
    s += s;
    EXPECT_STREQ(s, L"abab");
    s += static_cast<const wchar_t*>(s) + 1;
    EXPECT_STREQ(s, L"ababbab");
    s += s;  // the next append grows past 16 while reading its own text
    s += static_cast<const wchar_t*>(s) + 4;
    EXPECT_STREQ(s,
                 L"ababbabababbab"
                 L"babababbab");

    s = L"abc";
    s.insertAt(1, static_cast<const wchar_t*>(s));
    EXPECT_STREQ(s, L"aabcbc");
    s = L"xyx";
    s.replace(static_cast<const wchar_t*>(s) + 2, static_cast<const wchar_t*>(s));  // "x" -> "xyx"
    EXPECT_STREQ(s, L"xyxyxyx");
    s = s;
    EXPECT_STREQ(s, L"xyxyxyx");
}

TEST(StringTest, OpenBufferMeasuresUntilReleased) {
    CZorString s;
    wchar_t* b = s.GetBuffer(10);
    for (int i = 0; i <= 10; ++i) EXPECT_EQ(b[i], L'\0');
    b[0] = L'x';
    b[1] = L'y';
    EXPECT_EQ(s.len(), 2);
    b[1] = L'\0';
    EXPECT_EQ(s.len(), 1);  // still open: measured
    b[1] = L'y';
    s += L"z";  // appends at the measured end
    EXPECT_STREQ(s, L"xyz");
    EXPECT_EQ(s.ReleaseBuffer().len(), 3);
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
    CZorString u;
    wchar_t* ub = u.GetBuffer(8);
    std::wcscpy(ub, L"  ab ");
    u.trim();
    ub[1] = L'\0';
    EXPECT_EQ(u.len(), 1);
    // A caller who overran the terminator slot gets the text cut at the capacity.
    CZorString v;
    wchar_t* vb = v.GetBuffer(16);
    std::wmemset(vb, L'z', 17);
    EXPECT_EQ(v.ReleaseBuffer().len(), 16);
}

TEST(StringTest, IndexingNegativeAndOutOfRange) {
    const CZorString abc(L"abc");
    EXPECT_EQ(abc[-1], L'c');
    EXPECT_EQ(abc[-3], L'a');
    EXPECT_EQ(abc[-4], L'\0');
    EXPECT_EQ(abc[2], L'c');
    EXPECT_EQ(abc[3], L'\0');
    EXPECT_EQ(abc[100], L'\0');
    EXPECT_EQ(CZorString(L"x")[-5], L'x');  // one unit: every negative index is 0
    EXPECT_EQ(CZorString(L"")[-1], L'\0');
    EXPECT_EQ(CZorString()[-1], L'\0');
    EXPECT_EQ(CZorString()[0], L'\0');

    CZorString s;
    s.setAt(0, L'a');
    EXPECT_STREQ(s, L"a");
    s = L"abc";
    s.setAt(-1, L'z');
    EXPECT_STREQ(s, L"abz");
    s.setAt(5, L'x');  // past the terminator: no new text
    EXPECT_EQ(s.len(), 3);
    s.setAt(1, L'\0');
    EXPECT_STREQ(s, L"a");
    EXPECT_EQ(s.len(), 1);
    s.setAt(-9, L'q');  // one unit: any negative index is 0
    EXPECT_STREQ(s, L"q");
    s = L"abc";
    s.setAt(-4, L'q');  // below -len(): ignored
    EXPECT_STREQ(s, L"abc");
    CZorString full(std::wstring(16, L'f').c_str());
    full.setAt(16, L'g');  // the last unit of the buffer must not lose its terminator
    EXPECT_EQ(full.len(), 17);
}

TEST(StringTest, ConcatenationAndNullness) {
    CZorString s;
    s += CZorString();
    EXPECT_TRUE(s.isNull());
    s += L'\0';
    EXPECT_TRUE(s.isNull());
    s += static_cast<const wchar_t*>(nullptr);
    EXPECT_TRUE(s.isNull());
    s += CZorString(L"");
    EXPECT_FALSE(s.isNull());
    CZorString t;
    t += L"";
    EXPECT_FALSE(t.isNull());

    const CZorString ab(L"ab");
    EXPECT_STREQ(ab + L'c', L"abc");
    EXPECT_STREQ(ab + ab, L"abab");
    EXPECT_STREQ(L"x" + ab, L"xab");
    EXPECT_STREQ(CZorString() + L'c', L"c");
    EXPECT_TRUE((static_cast<const wchar_t*>(nullptr) + CZorString()).isNull());
    EXPECT_STREQ(static_cast<const wchar_t*>(nullptr) + ab, L"ab");
}

TEST(StringTest, FindAndReplace) {
    const CZorString abc(L"abc");
    EXPECT_EQ(abc.find(L'b'), 1);
    EXPECT_EQ(abc.find(L'\0'), 3);
    EXPECT_EQ(abc.find(L"bc"), 1);
    EXPECT_EQ(abc.find(L""), 0);
    EXPECT_EQ(abc.find(L"cd"), -1);
    EXPECT_EQ(abc.find(static_cast<const wchar_t*>(nullptr)), -1);
    EXPECT_EQ(CZorString().find(L'\0'), -1);
    EXPECT_EQ(CZorString().find(L""), -1);

    CZorString s(L"xaya");
    s.replace(L'a', L'\0');
    EXPECT_STREQ(s, L"x");
    EXPECT_EQ(s.len(), 1);
    s = L"aaaa";
    EXPECT_STREQ(s.replace(L"aa", L"b"), L"bb");
    s = L"aba";
    EXPECT_STREQ(s.replace(L"a", nullptr), L"b");
    s = L"aa";
    EXPECT_STREQ(s.replace(L"a", L"aa"), L"aaaa");  // inserted text isn't scanned again
    s = L"a.b.c";
    EXPECT_STREQ(s.replace(L".", L"--"), L"a--b--c");
    s = L"aba";
    const wchar_t* p = s;
    s.replace(L"a", L"a");
    EXPECT_EQ(raw(s), p);
    s = L"abc";
    s.replace(L"abc", L"");
    EXPECT_FALSE(s.isNull());
    EXPECT_EQ(s.len(), 0);
    CZorString null;
    null.replace(L"a", L"b");
    EXPECT_TRUE(null.isNull());
    s = L"abc";
    EXPECT_STREQ(s.replace(L"", L"x").replace(nullptr, L"x").replace(L"q", L"x"), L"abc");
}

TEST(StringTest, InsertTrimFillAndCase) {
    CZorString s(L"abc");
    EXPECT_STREQ(s.insertAt(9, L"x"), L"abc");
    EXPECT_STREQ(s.insertAt(3, L"x"), L"abcx");
    EXPECT_STREQ(s.insertAt(0, L'>'), L">abcx");
    EXPECT_STREQ(s.insertAt(2, L'\0').insertAt(2, nullptr), L">abcx");
    CZorString null;
    EXPECT_TRUE(null.insertAt(1, L"x").isNull());
    EXPECT_FALSE(null.insertAt(0, L"").isNull());

    s = L" \t\n\rab \r\n";
    EXPECT_STREQ(s.trim(), L"ab");
    EXPECT_EQ(s.len(), 2);
    s = L"\fa\xA0";
    EXPECT_STREQ(s.trim(), L"\fa\xA0");
    s = L" \t ";
    EXPECT_FALSE(s.trim().isNull());
    EXPECT_EQ(s.len(), 0);
    EXPECT_TRUE(CZorString().trim().isNull());

    s = L"42";
    EXPECT_STREQ(s.lfill(5, L'0'), L"00042");
    EXPECT_EQ(s.len(), 5);
    s = L"abc";
    EXPECT_STREQ(s.rfill(2, L'x').rfill(5, L'\0').lfill(5, L'\0'), L"abc");
    EXPECT_STREQ(s.rfill(5, L'.'), L"abc..");
    EXPECT_STREQ(CZorString().lfill(3, L'*'), L"***");
    EXPECT_TRUE(CZorString().lfill(0, L'*').isNull());
    CZorString open;
    std::wcscpy(open.GetBuffer(2), L"7");
    wchar_t* filled = const_cast<wchar_t*>(raw(open.lfill(3, L'0')));
    filled[1] = L'\0';
    EXPECT_EQ(open.len(), 1);  // lfill kept it open
    open.rfill(4, L'-');
    const_cast<wchar_t*>(raw(open))[0] = L'\0';
    EXPECT_EQ(open.len(), 4);  // rfill closed it

    s = L"Mixed 1a";
    EXPECT_STREQ(s.makeUpper(), L"MIXED 1A");
    EXPECT_STREQ(s.makeLower(), L"mixed 1a");
    EXPECT_STREQ(s.revert(), L"a1 dexim");
    EXPECT_STREQ(CZorString(L"abc").reverse(), L"cba");
    EXPECT_TRUE(CZorString().reverse().isNull());
}

TEST(StringTest, LeftRightMidCutAtTheText) {
    const CZorString abc(L"abc");
    const CZorString null;
    EXPECT_FALSE(abc.left(0).isNull());
    EXPECT_EQ(abc.left(0).len(), 0);
    EXPECT_TRUE(null.left(0).isNull());
    EXPECT_STREQ(abc.left(2), L"ab");
    EXPECT_STREQ(abc.left(9), L"abc");
    EXPECT_STREQ(abc.right(2), L"bc");
    EXPECT_FALSE(abc.right(0).isNull());
    EXPECT_EQ(abc.right(0).len(), 0);
    EXPECT_TRUE(null.right(0).isNull());
    EXPECT_STREQ(abc.right(9), L"abc");
    EXPECT_TRUE(abc.mid(4, 1).isNull());
    EXPECT_FALSE(abc.mid(3, 1).isNull());
    EXPECT_EQ(abc.mid(3, 1).len(), 0);
    EXPECT_STREQ(abc.mid(1, 1), L"b");
    EXPECT_STREQ(abc.mid(1, 100), L"bc");
    EXPECT_TRUE(null.mid(0, 3).isNull());
}

TEST(StringTest, FormatUsesWideStringConventions) {
    CZorString s;
    EXPECT_STREQ(s.format(L"%s=%d %c%%", L"x", 5, L'\x00e9'), L"x=5 \x00e9%");
    EXPECT_STREQ(s.format(L"%S|%hs|%ls|%ws|%C", "nar", "row", L"wi", L"de", 'c'),
                 L"nar|row|wi|de|c");
    EXPECT_STREQ(
        s.format(L"%I64d %I64x %-4s|%.2s", INT64_C(-9000000000), UINT64_C(255), L"a", L"xyz"),
        L"-9000000000 ff a   |xy");
    for (const int units : {127, 128, 129, 1000}) {
        const std::wstring text(static_cast<std::size_t>(units), L'k');
        EXPECT_EQ(s.format(L"%s", text.c_str()).len(), units);
        EXPECT_STREQ(s, text.c_str());
    }
    EXPECT_STREQ(s.format(L"a%cb", L'\0'), L"a");  // an embedded 0 cuts
    EXPECT_STREQ(s.format(nullptr), L"a");
    EXPECT_STREQ(s.format(L""), L"");
    EXPECT_FALSE(s.isNull());
}

TEST(StringTest, ExpandEnvironmentStrings) {
    const ScopedEnv var("ZOR_STRING_TEST", "valu\xC3\xA9");
    const ScopedEnv upper("ZOR_STRING_UPPER", "up");
    const ScopedEnv missing("ZOR_STRING_MISSING", nullptr);
    CZorString s(L"a%ZOR_STRING_TEST%b%zor_string_upper%");
    EXPECT_STREQ(s.expandEnvironmentStrings(),
                 L"avalu\x00e9"
                 L"bup");
    s = L"%ZOR_STRING_MISSING%ZOR_STRING_TEST%";
    EXPECT_STREQ(s.expandEnvironmentStrings(), L"%ZOR_STRING_MISSING%ZOR_STRING_TEST%");
    s = L"50% and %% and %";
    EXPECT_STREQ(s.expandEnvironmentStrings(), L"50% and %% and %");
    EXPECT_TRUE(CZorString().expandEnvironmentStrings().isNull());
    {
        const ScopedEnv temp("TEMP", nullptr);
        const ScopedEnv tmpdir("TMPDIR", "/scratch");
        s = L"%TEMP%\\ZORWERK";
        EXPECT_STREQ(s.expandEnvironmentStrings(), L"/scratch\\ZORWERK");
        const ScopedEnv noTmpdir("TMPDIR", nullptr);
        s = L"%temp%";
        EXPECT_STREQ(s.expandEnvironmentStrings(), L"/tmp");
    }
    // Up to 259 units are kept; a longer expansion leaves the text as it was.
    const std::string fill(250, 'v');
    const ScopedEnv longVar("ZOR_STRING_LONG", fill.c_str());
    s = L"123456789%ZOR_STRING_LONG%";
    EXPECT_EQ(s.expandEnvironmentStrings().len(), 259);
    s = L"1234567890%ZOR_STRING_LONG%";
    EXPECT_STREQ(s.expandEnvironmentStrings(), L"1234567890%ZOR_STRING_LONG%");
}

TEST(StringTest, MoveLeavesTheSourceNull) {
    CZorString a(L"abc");
    CZorString b(std::move(a));
    EXPECT_TRUE(a.isNull());  // the moved-from state is part of the contract
    EXPECT_STREQ(b, L"abc");
    CZorString c;
    wchar_t* cb = c.GetBuffer(8);
    c = std::move(b);  // into an open string: copied, so the caller's pointer stays good
    EXPECT_EQ(raw(c), cb);
    EXPECT_STREQ(c, L"abc");
}

// Random edits against a plain wide-string model: lengths and texts must agree at every step.
TEST(StringTest, RandomEditsMatchPlainModel) {
    std::mt19937 rng(7);
    CZorString s(L"");
    std::wstring model;
    for (int step = 0; step < 3000; ++step) {
        const std::wstring piece(rng() % 5, static_cast<wchar_t>(L'a' + rng() % 3));
        const unsigned pos = rng() % (model.size() + 2);
        switch (rng() % 6) {
            case 0:
                s += piece.c_str();
                model += piece;
                break;
            case 1:
                s.insertAt(pos, piece.c_str());
                if (pos <= model.size()) model.insert(pos, piece);
                break;
            case 2:
                s = s.mid(pos, 7);
                if (pos > model.size()) {
                    ASSERT_TRUE(s.isNull()) << step;
                    s = L"";
                    model.clear();
                } else {
                    model = model.substr(pos, 7);
                }
                break;
            case 3:
                if (!piece.empty()) {
                    s.replace(piece.c_str(), L"c");
                    for (std::size_t at = 0; (at = model.find(piece, at)) != model.npos; ++at)
                        model.replace(at, piece.size(), L"c");
                }
                break;
            case 4:
                s += s;
                model += model;
                if (model.size() > 400) {
                    s = s.right(50);
                    model = model.substr(model.size() - 50);
                }
                break;
            default:
                if (!model.empty()) {
                    s.setAt(-1, L'z');
                    model.back() = L'z';
                }
                break;
        }
        ASSERT_EQ(s.len(), static_cast<int>(model.size())) << step;
        ASSERT_STREQ(s, model.c_str()) << step;
    }
}

}  // namespace
