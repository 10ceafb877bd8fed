#include "zor/text/text_lists.h"

#include <array>
#include <initializer_list>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include "gtest/gtest.h"
#include "zor/text/test_text.h"

namespace {

using List = CZorArrayTempl<CZorString>;
using zor_text_test::text;

std::vector<std::wstring> entries(const List& list) {
    std::vector<std::wstring> out;
    for (std::uint32_t i = 0; i < list.len(); ++i) out.push_back(text(list[static_cast<int>(i)]));
    return out;
}

List listOf(std::initializer_list<const wchar_t*> items) {
    List list;
    for (const wchar_t* item : items) list.append(CZorString(item));
    return list;
}

using Texts = std::vector<std::wstring>;

// A list as texts, with a last entry "false" when the call that filled it returned false.
Texts outcome(const List& list, bool result) {
    Texts out = entries(list);
    if (!result) out.push_back(L"false");
    return out;
}

// strTok into a list that held "old".
Texts tokens(const wchar_t* s, const wchar_t* delimiters, bool keepEmpty) {
    List list = listOf({L"old"});
    return outcome(list, ZOR::strTok(list, s, delimiters, keepEmpty));
}

TEST(StrTokTest, SplitsWithAndWithoutEmptyTokensAndImplodeJoins) {
    EXPECT_EQ(tokens(L"a,,b", L",", false), (Texts{L"a", L"b"}));
    EXPECT_EQ(tokens(L"a,,b", L",", true), (Texts{L"a", L"", L"b"}));
    EXPECT_EQ(tokens(L";a;;b;", L";", true), (Texts{L"", L"a", L"", L"b", L""}));
    EXPECT_EQ(tokens(L",", L",", true), (Texts{L"", L""}));
    EXPECT_EQ(tokens(L",,", L",", false), (Texts{L"false"}));
    EXPECT_EQ(tokens(L"", L",", true), (Texts{L"false"}));
    EXPECT_EQ(tokens(L"a,b", nullptr, true), (Texts{L"a,b"}));
    EXPECT_EQ(tokens(nullptr, L",", false), (Texts{L"old", L"false"}));  // the list stays
    EXPECT_EQ(entries(ZOR::explode(L"x y", L" ", false)), (Texts{L"x", L"y"}));
    // Implode joins, and gives null for nothing.
    EXPECT_TRUE(ZOR::implode(List(), L",").isNull());
    EXPECT_EQ(text(ZOR::implode(listOf({L"a", L"b"}), L", ")), L"a, b");
    EXPECT_EQ(text(ZOR::implode(listOf({L"a", L"b"}), nullptr)), L"ab");
    EXPECT_EQ(text(ZOR::implode(listOf({nullptr, L"b", nullptr}), L";")), L";b;");
    EXPECT_EQ(text(ZOR::implode(ZOR::explode(L";a;;b;", L";", true), L";")), L";a;;b;");
}

TEST(ParseTest, FirstBalancedPair) {
    EXPECT_EQ(text(ZOR::parse(L"a(b(c)d)e", L"(", L")", false)), L"b(c)d");
    EXPECT_EQ(text(ZOR::parse(L"a(b(c)d)e", L"(", L")", true)), L"(b(c)d)");
    EXPECT_EQ(text(ZOR::parse(L"(a)(b)", L"(", L")", true)), L"(a)");
    EXPECT_EQ(text(ZOR::parse(L"()", L"(", L")", false)), L"");
    EXPECT_FALSE(ZOR::parse(L"()", L"(", L")", false).isNull());
    EXPECT_EQ(text(ZOR::parse(L"x <a:1<b:2>> y", L"<a:", L">", false)), L"1<b:2");
    // No pair, a pair whose open and close are the same (it never closes), or no text: null.
    const std::array<const wchar_t*, 3> unpaired[] = {
        {L"x(y", L"(", L")"},  {L"x", L"(", L")"},  {L"x)(", L"(", L")"},   {L"|a|", L"|", L"|"},
        {nullptr, L"(", L")"}, {L"(a)", L"", L")"}, {L"(a)", L"(", nullptr}};
    for (const auto& [s, open, close] : unpaired) {
        EXPECT_TRUE(ZOR::parse(s, open, close, true).isNull()) << s;
        EXPECT_TRUE(ZOR::parse(s, open, close, false).isNull()) << s;
    }
}

bool match(const wchar_t* s, const wchar_t* pattern, wchar_t separator = 0) {
    return CZorString(s).match(pattern, separator);
}

// Nothing behind an inner star is looked at ("a*b" takes "ac"); behind a leading star the
// second occurrence of the head may fit, and the rest is split at commas whatever the
// separator: in "ax,b" the pattern "*x,b" finds "x,b", but neither "x" nor "b" is the whole
// text from there. Matching is case-sensitive.
TEST(MatchTest, WildcardsAndAlternatives) {
    const std::tuple<const wchar_t*, const wchar_t*, wchar_t, bool> cases[] = {
        {L"abc", L"a?c", 0, true}, {L"abc", L"a?", 0, false},    {L"abc", L"*c", 0, true},
        {L"abc", L"*b", 0, false}, {L"xaya", L"*a?z", 0, false}, {L"abc", L"ABC", 0, false},
        {L"", L"*", 0, true},      {L"abc", L"a*", 0, true},     {L"ac", L"a*b", 0, true},
        {L"abab", L"*ab", 0, true}};
    const std::tuple<const wchar_t*, const wchar_t*, wchar_t, bool> alternatives[] = {
        {L"file.dwg", L"*.dxf,*.dwg", L',', true},
        {L"file.dwg", L"*.dxf,*.dwg", 0, false},
        {L"file.dxf", L";;*.dxf;", L';', true},
        {L"", L",,", L',', false},
        {L"ax,b", L"*x,b", 0, false},
        {L"ax,b", L"*x,*", 0, true}};
    const auto expectAll = [](const auto& table) {
        for (const auto& [s, pattern, separator, matches] : table)
            EXPECT_EQ(match(s, pattern, separator), matches) << s << " " << pattern;
    };
    expectAll(cases);
    expectAll(alternatives);
    EXPECT_FALSE(CZorString().match(L"*", 0));
    EXPECT_FALSE(CZorString(L"a").match(nullptr, 0));
}

// The rule as stated, without folding runs of leading stars.
bool referenceMatch(std::wstring_view s, std::wstring_view pattern, wchar_t separator) {
    std::vector<std::wstring_view> alternatives;
    if (separator == 0) {
        alternatives.push_back(pattern);
    } else {
        std::size_t start = 0;
        for (std::size_t i = 0; i <= pattern.size(); ++i) {
            if (i == pattern.size() || pattern[i] == separator) {
                if (i > start) alternatives.push_back(pattern.substr(start, i - start));
                start = i + 1;
            }
        }
    }
    for (const std::wstring_view alt : alternatives) {
        if (alt.size() > 1 && alt[0] == L'*') {
            const std::wstring_view rest = alt.substr(1);
            const std::wstring_view head = rest.substr(0, rest.find_first_of(L"*?"));
            for (std::size_t at = 0; at <= s.size(); ++at) {
                if (s.substr(at).starts_with(head) && referenceMatch(s.substr(at), rest, L',')) {
                    return true;
                }
            }
            continue;
        }
        bool ok = true;
        std::size_t i = 0;
        for (; i < alt.size(); ++i) {
            if (alt[i] == L'*') break;
            if (i >= s.size() || (alt[i] != L'?' && alt[i] != s[i])) {
                ok = false;
                break;
            }
        }
        if (ok && (i < alt.size() || s.size() == alt.size())) return true;
    }
    return false;
}

TEST(MatchTest, AgreesWithThePlainRuleOnRandomPatterns) {
    std::mt19937 random(11);
    const std::wstring textUnits = L"ab,";
    const std::wstring patternUnits = L"ab*?,";
    for (int i = 0; i < 20000; ++i) {
        std::wstring s, pattern;
        for (unsigned n = random() % 7; n > 0; --n) s += textUnits[random() % textUnits.size()];
        for (unsigned n = random() % 7; n > 0; --n)
            pattern += patternUnits[random() % patternUnits.size()];
        for (const wchar_t separator : {L'\0', L','}) {
            ASSERT_EQ(CZorString(s.c_str()).match(pattern.c_str(), separator),
                      referenceMatch(s, pattern, separator))
                << "text " << std::string(s.begin(), s.end()) << " pattern "
                << std::string(pattern.begin(), pattern.end()) << " separator " << int(separator);
        }
    }
}

TEST(MatchTest, RunsOfStarsOnLongTextsFinish) {
    const std::wstring longText(20000, L'a');
    EXPECT_FALSE(match(longText.c_str(), L"**********b"));
    EXPECT_TRUE(match(longText.c_str(), L"**********a"));
    EXPECT_TRUE(match(longText.c_str(), L"*?*?*?*?b"));  // made at the first inner star
    EXPECT_FALSE(match(longText.c_str(), L"***b,***b,***b"));
    // Searches nested in searches: each occurrence of "a," starts a search for "a".
    std::wstring pairs;
    for (int i = 0; i < 20000; ++i) pairs += L"a,";
    EXPECT_FALSE(match(pairs.c_str(), L"*a,*a,*q"));
    EXPECT_TRUE(match((pairs + L"q").c_str(), L"*a,*a,*q"));
}

// getMarkerList into a list that held "old": heads are appended.
Texts heads(const wchar_t* s) {
    List list = listOf({L"old"});
    ZOR::getMarkerList(s, list);
    return entries(list);
}

// The entries of a list of `items` after `edit`.
Texts edited(void (*edit)(List&), std::initializer_list<const wchar_t*> items) {
    List list = listOf(items);
    edit(list);
    return entries(list);
}

// The search goes on behind a marker, into a nested one.
TEST(MarkerTest, HeadsClearAndRemove) {
    EXPECT_EQ(heads(L"<a:1> and <b:2>"), (Texts{L"old", L"<a:", L"<b:"}));
    EXPECT_EQ(heads(L"<x>"), (Texts{L"old"}));
    EXPECT_EQ(heads(L"<a:1><a:2> <unclosed:"), (Texts{L"old", L"<a:", L"<a:"}));
    EXPECT_EQ(heads(L"<outer:<inner:1>>"), (Texts{L"old", L"<outer:"}));
    EXPECT_EQ(heads(nullptr), (Texts{L"old"}));
    EXPECT_EQ(edited(ZOR::clearMarker, {L"<a:1> x", L"y <b:22> <a:3>"}),
              (Texts{L"<a:> x", L"y <b:> <a:>"}));
    EXPECT_EQ(edited(ZOR::removeMarker, {L"<a:1> x", L"<a:>", L" <b:2>", L"", L"<c:3>z"}),
              (Texts{L"1 x", L" 2", L"3z"}));
    EXPECT_EQ(edited(ZOR::removeMarker, {L"<a:> x"}), (Texts{L"x"}));
}

std::wstring replaced(const wchar_t* s, const List& values, bool whole) {
    CZorString out(s);
    ZOR::txtListReplace(listOf({L"<a:"}), out, values, whole);
    return text(out);
}

TEST(MarkerTest, TxtListReplace) {
    EXPECT_EQ(replaced(L"p <a:1> q", listOf({L"<a:2>"}), false), L"p 2 q");
    EXPECT_EQ(replaced(L"p <a:1> q", listOf({L"<a:2>"}), true), L"p <a:2> q");
    EXPECT_EQ(replaced(L"p <a:1> q", List(), false), L"p q");
    EXPECT_EQ(replaced(L"p <a:1> q", List(), true), L"p <a:1> q");
    // Empty entries and empty values are passed over; the first real value wins.
    EXPECT_EQ(replaced(L"<a:1>/<a:1>", listOf({L"", L"<a:>", L"x <a:7> y", L"<a:8>"}), false),
              L"7/7");
    // Double blanks go in one pass: three blanks become two.
    EXPECT_EQ(replaced(L"a   b", List(), false), L"a  b");
}

TEST(NumberingTest, Classes) {
    std::wstring delimiters, bases;
    for (wchar_t c = 0; c < 0x100; ++c) {
        wchar_t base = L'?';
        if (ZOR::str_incr_delimit(c)) delimiters += c;
        if (ZOR::str_incr_type(base, c)) {
            bases += base;
        } else {
            EXPECT_EQ(base, L'?') << static_cast<int>(c);  // stays
        }
    }
    EXPECT_EQ(delimiters, L"-./_");
    EXPECT_EQ(bases, std::wstring(10, L'0') + std::wstring(26, L'A') + std::wstring(26, L'a'));
}

// str_incr_parse into a list that held "old".
Texts runs(const wchar_t* s) {
    List list = listOf({L"old"});
    return outcome(list, ZOR::str_incr_parse(list, s));
}

TEST(NumberingTest, Runs) {
    EXPECT_EQ(runs(L"AB-12"), (Texts{L"AB", L"-", L"12"}));
    EXPECT_EQ(runs(L"ab cd"), (Texts{L"abcd"}));
    EXPECT_EQ(runs(L"--Ab9./x"), (Texts{L"A", L"b", L"9", L"./", L"x"}));
    // A skipped character ends a run of delimiters but not one of letters.
    EXPECT_EQ(runs(L"A- -B C"), (Texts{L"A", L"-", L"-", L"BC"}));
    EXPECT_EQ(runs(L"-- !"), (Texts{L"false"}));
    EXPECT_EQ(runs(nullptr), (Texts{L"old", L"false"}));
}

std::wstring incremented(const wchar_t* s, int step, bool expected = true) {
    CZorString name(s);
    EXPECT_EQ(ZOR::str_increment(name, step), expected) << s;
    return text(name);
}

// In "Pos 9" the blank is dropped and the carry runs on; in "#9" it leaves through the dropped
// unit. A step of zero or below changes nothing.
TEST(NumberingTest, CountsLikeAnOdometer) {
    const std::tuple<const wchar_t*, int, const wchar_t*> cases[] = {
        {L"A9", 1, L"B0"},     {L"1-9", 1, L"2-0"}, {L"9", 1, L"10"},       {L"Z", 1, L"BA"},
        {L"Zz", 1, L"BAa"},    {L"a.9", 1, L"b.0"}, {L"A8", 12, L"C0"},     {L"A8", 0, L"A8"},
        {L"9", 1000, L"1009"}, {L"z", 27, L"ca"},   {L"Pos 9", 1, L"Pot0"}, {L"#9", 1, L"10"},
        {L"A8", -5, L"A8"}};
    for (const auto& [name, step, next] : cases) EXPECT_EQ(incremented(name, step), next);
    EXPECT_EQ(incremented(L"A", 2147483647), L"GYTISYX");
}

TEST(NumberingTest, OverflowIntoADelimiterEmptiesTheText) {
    for (const wchar_t* name : {L"-9", L"_5", L"", L"#"})
        EXPECT_EQ(incremented(name, 1, false), L"");
    CZorString null;
    EXPECT_FALSE(ZOR::str_increment(null, 1));
    EXPECT_TRUE(null.isNull());
}

TEST(FileNameTest, StrNameAndRemoveLastSlash) {
    EXPECT_EQ(text(ZOR::str_name(L" a/b?c ", L'_')), L"a_b_c");
    EXPECT_EQ(text(ZOR::str_name(L"/\\|*?:,<>\"@", L'-')), L"-----------");
    EXPECT_EQ(text(ZOR::str_name(L"ab:c/d", 0)), L"ab");
    EXPECT_TRUE(ZOR::str_name(nullptr, L'_').isNull());

    CZorString path(L"c:\\dir\\/");
    EXPECT_TRUE(ZOR::removeLastSlash(path));
    EXPECT_EQ(text(path), L"c:\\dir");
    EXPECT_FALSE(ZOR::removeLastSlash(path));
    EXPECT_EQ(text(path), L"c:\\dir");
    path = L"///";
    EXPECT_TRUE(ZOR::removeLastSlash(path));
    EXPECT_EQ(text(path), L"");
    CZorString null;
    EXPECT_FALSE(ZOR::removeLastSlash(null));
    EXPECT_FALSE(null.isNull());
    // An open string comes out closed, with its length measured.
    CZorString open(L"");
    wcscpy(open.GetBuffer(8), L"x/");
    EXPECT_TRUE(ZOR::removeLastSlash(open));
    EXPECT_EQ(open.len(), 1);
    EXPECT_EQ(text(open), L"x");
}

}  // namespace
