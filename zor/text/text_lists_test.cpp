#include "zor/text/text_lists.h"

#include <initializer_list>
#include <random>
#include <string>
#include <vector>

#include "gtest/gtest.h"

namespace {

using List = CZorArrayTempl<CZorString>;

std::wstring text(const CZorString& s) {
    return s.isNull() ? L"<null>" : static_cast<const wchar_t*>(s);
}

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

TEST(StrTokTest, WithAndWithoutEmptyTokens) {
    EXPECT_EQ(tokens(L"a,,b", L",", false), (Texts{L"a", L"b"}));
    EXPECT_EQ(tokens(L"a,,b", L",", true), (Texts{L"a", L"", L"b"}));
    EXPECT_EQ(tokens(L";a;;b;", L";", true), (Texts{L"", L"a", L"", L"b", L""}));
    EXPECT_EQ(tokens(L",", L",", true), (Texts{L"", L""}));
    EXPECT_EQ(tokens(L",,", L",", false), (Texts{L"false"}));
    EXPECT_EQ(tokens(L"", L",", true), (Texts{L"false"}));
    EXPECT_EQ(tokens(L"a,b", nullptr, true), (Texts{L"a,b"}));
    EXPECT_EQ(tokens(nullptr, L",", false), (Texts{L"old", L"false"}));  // the list stays
    EXPECT_EQ(entries(ZOR::explode(L"x y", L" ", false)), (Texts{L"x", L"y"}));
}

TEST(ImplodeTest, JoinsAndKeepsNullForNothing) {
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
    EXPECT_TRUE(ZOR::parse(L"x(y", L"(", L")", false).isNull());
    EXPECT_TRUE(ZOR::parse(L"x", L"(", L")", true).isNull());
    EXPECT_TRUE(ZOR::parse(L"x)(", L"(", L")", true).isNull());
    EXPECT_TRUE(ZOR::parse(L"|a|", L"|", L"|", true).isNull());  // open == close never closes
    EXPECT_TRUE(ZOR::parse(nullptr, L"(", L")", true).isNull());
    EXPECT_TRUE(ZOR::parse(L"(a)", L"", L")", true).isNull());
    EXPECT_TRUE(ZOR::parse(L"(a)", L"(", nullptr, true).isNull());
}

bool match(const wchar_t* s, const wchar_t* pattern, wchar_t separator = 0) {
    return CZorString(s).match(pattern, separator);
}

TEST(MatchTest, Wildcards) {
    EXPECT_TRUE(match(L"abc", L"a?c"));
    EXPECT_FALSE(match(L"abc", L"a?"));
    EXPECT_TRUE(match(L"abc", L"*c"));
    EXPECT_FALSE(match(L"abc", L"*b"));
    EXPECT_FALSE(match(L"xaya", L"*a?z"));
    EXPECT_FALSE(match(L"abc", L"ABC"));
    EXPECT_TRUE(match(L"", L"*"));
    EXPECT_TRUE(match(L"abc", L"a*"));
    EXPECT_TRUE(match(L"ac", L"a*b"));    // nothing behind an inner star is looked at
    EXPECT_TRUE(match(L"abab", L"*ab"));  // the second occurrence of the head fits
    EXPECT_FALSE(CZorString().match(L"*", 0));
    EXPECT_FALSE(CZorString(L"a").match(nullptr, 0));
}

TEST(MatchTest, AlternativesAtTheSeparator) {
    EXPECT_TRUE(match(L"file.dwg", L"*.dxf,*.dwg", L','));
    EXPECT_FALSE(match(L"file.dwg", L"*.dxf,*.dwg"));
    EXPECT_TRUE(match(L"file.dxf", L";;*.dxf;", L';'));
    EXPECT_FALSE(match(L"", L",,", L','));
    // Behind a leading star the rest is split at commas, whatever the separator: "x,b" is
    // found, but then neither "x" nor "b" is the whole text from there.
    EXPECT_FALSE(match(L"ax,b", L"*x,b"));
    EXPECT_TRUE(match(L"ax,b", L"*x,*"));
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

TEST(MarkerTest, HeadsOfMarkers) {
    List heads = listOf({L"old"});
    ZOR::getMarkerList(L"<a:1> and <b:2>", heads);
    EXPECT_EQ(entries(heads), (Texts{L"old", L"<a:", L"<b:"}));
    heads.removeAll();
    ZOR::getMarkerList(L"<x>", heads);
    EXPECT_TRUE(heads.isEmpty());
    ZOR::getMarkerList(L"<a:1><a:2> <unclosed:", heads);
    EXPECT_EQ(entries(heads), (Texts{L"<a:", L"<a:"}));
    heads.removeAll();
    ZOR::getMarkerList(L"<outer:<inner:1>>", heads);  // the search goes on behind a marker
    EXPECT_EQ(entries(heads), (Texts{L"<outer:"}));
    ZOR::getMarkerList(nullptr, heads);
    EXPECT_EQ(heads.len(), 1u);
}

TEST(MarkerTest, ClearAndRemove) {
    List list = listOf({L"<a:1> x", L"y <b:22> <a:3>"});
    ZOR::clearMarker(list);
    EXPECT_EQ(entries(list), (Texts{L"<a:> x", L"y <b:> <a:>"}));

    list = listOf({L"<a:1> x", L"<a:>", L" <b:2>", L"", L"<c:3>z"});
    ZOR::removeMarker(list);
    EXPECT_EQ(entries(list), (Texts{L"1 x", L" 2", L"3z"}));

    list = listOf({L"<a:> x"});
    ZOR::removeMarker(list);
    EXPECT_EQ(entries(list), (Texts{L"x"}));
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

TEST(NumberingTest, CountsLikeAnOdometer) {
    EXPECT_EQ(incremented(L"A9", 1), L"B0");
    EXPECT_EQ(incremented(L"1-9", 1), L"2-0");
    EXPECT_EQ(incremented(L"9", 1), L"10");
    EXPECT_EQ(incremented(L"Z", 1), L"BA");
    EXPECT_EQ(incremented(L"Zz", 1), L"BAa");
    EXPECT_EQ(incremented(L"a.9", 1), L"b.0");
    EXPECT_EQ(incremented(L"A8", 12), L"C0");
    EXPECT_EQ(incremented(L"A8", 0), L"A8");
    EXPECT_EQ(incremented(L"9", 1000), L"1009");
    EXPECT_EQ(incremented(L"z", 27), L"ca");
    EXPECT_EQ(incremented(L"Pos 9", 1), L"Pot0");  // the blank is dropped, the carry runs on
    EXPECT_EQ(incremented(L"#9", 1), L"10");       // the carry leaves through a dropped unit
    EXPECT_EQ(incremented(L"A", 2147483647), L"GYTISYX");
    EXPECT_EQ(incremented(L"A8", -5), L"A8");
}

TEST(NumberingTest, OverflowIntoADelimiterEmptiesTheText) {
    EXPECT_EQ(incremented(L"-9", 1, false), L"");
    EXPECT_EQ(incremented(L"_5", 1, false), L"");
    EXPECT_EQ(incremented(L"", 1, false), L"");
    EXPECT_EQ(incremented(L"#", 1, false), L"");
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
