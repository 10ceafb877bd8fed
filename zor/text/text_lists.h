// Text lists and patterns: cutting text into lists and joining them, balanced brackets, the
// `<name:value>` markers of the product's text lists, and the counting of names ("A9" -> "B0").
//
// Lists are CZorArrayTempl<CZorString>; a null string in a list counts as empty. Wildcard
// matching is the member CZorString::match (declared in string.h):
//
//   match(pattern, separator)  Case-sensitive, by code unit. With `separator` not 0 the pattern
//                              is a list of alternatives split at it ("*.dxf,*.dwg"). `?` is
//                              exactly one unit. `*` is anything, but note: past the first
//                              character the match is made at the first `*` whatever follows,
//                              so "a*b" matches "ac". A leading `*` searches: "*x?z" matches
//                              where the rest matches from an occurrence of "x" on. A null string
//                              or a null pattern never match.
#pragma once

#include "zor/foundation/array.h"
#include "zor/text/string.h"

namespace ZOR {

// Splits `text` at any of the units of `delimiters` into `list`, which is emptied first, and
// returns whether it has entries. Without `keepEmpty` runs of delimiters count as one and
// leading and trailing ones yield nothing; with it every delimiter ends a token, so ";a;;b;"
// gives "", "a", "", "b", "". A null `text` gives false and leaves `list` as it was. A null
// `delimiters` splits nowhere.
bool strTok(CZorArrayTempl<CZorString>& list, const wchar_t* text, const wchar_t* delimiters,
            bool keepEmpty);

// strTok into a new array.
CZorArrayTempl<CZorString> explode(const wchar_t* text, const wchar_t* delimiters, bool keepEmpty);

// The entries joined with `delimiter` between them (none for a null delimiter). An empty list
// gives a null string.
CZorString implode(const CZorArrayTempl<CZorString>& list, const wchar_t* delimiter);

// The first balanced pair of `open` and `close` in `text`, which may nest: with `withBrackets`
// from the first unit of `open` to the last of `close`, without it what lies between. A null
// string when `text` has no `open` or the pair doesn't close before the end ("x(y"), and for
// brackets that are null or empty. Since `open` is tested first, an `open` equal to `close`
// never closes.
CZorString parse(const wchar_t* text, const wchar_t* open, const wchar_t* close, bool withBrackets);

// Appends the heads ("<name:") of the markers of `text` to `heads`, duplicates included.
// A bracketed text without a colon is no marker. A null `text` does nothing.
void getMarkerList(const wchar_t* text, CZorArrayTempl<CZorString>& heads);

// Empties the value of every marker in every entry: "<a:1> x" becomes "<a:> x".
void clearMarker(CZorArrayTempl<CZorString>& list);

// Replaces every marker by its value, "<a:1> x" becomes "1 x", trimming the left of an entry
// that didn't start with a blank. Entries that end up empty are removed from `list`.
void removeMarker(CZorArrayTempl<CZorString>& list);

// For each head, fills the first marker of `text` with that head from the first entry of
// `values` that holds a non-empty one: with `whole` the whole marker of the entry replaces it,
// else only the entry's value; throughout `text`. Without `whole` a marker that finds no value
// is removed; with `whole` it stays. Afterwards two blanks in a row become one.
void txtListReplace(const CZorArrayTempl<CZorString>& heads, CZorString& text,
                    const CZorArrayTempl<CZorString>& values, bool whole);

// Whether `c` is one of the delimiters "-./_" of numbered names; false for 0.
bool str_incr_delimit(wchar_t c);

// Whether `c` is a capital letter, small letter or digit (ASCII), with `base` set to 'A', 'a'
// or '0'. Otherwise false, and `base` stays.
bool str_incr_type(wchar_t& base, wchar_t c);

// Cuts `text` into runs of capitals, small letters, digits and delimiters, into `list` (emptied
// first): "AB-12" gives "AB", "-", "12". Leading delimiters are passed over, other characters
// skipped without ending a run ("ab cd" gives "abcd"). False for a null text and when nothing
// is found.
bool str_incr_parse(CZorArrayTempl<CZorString>& list, const wchar_t* text);

// Counts `text` on by `step` like an odometer: "A9" + 1 = "B0", "9" + 1 = "10", "Z" + 1 = "BA",
// "Zz" + 1 = "BAa". Capitals and small letters count in 26, digits in 10, delimiters pass the
// carry on, and other characters are dropped. A carry out of the first character adds one in
// front. A result starting with a delimiter ("-9" + 1) is the empty text. Returns whether the
// text isn't empty. A negative step counts as 0; a null text stays null and gives false.
bool str_increment(CZorString& text, int step);

// A copy of `text` with each of / \ | * ? : , < > " @ replaced by `replacement`, trimmed on both
// sides. A replacement of 0 cuts the text at the first of them.
CZorString str_name(const wchar_t* text, wchar_t replacement);

// Strips all trailing '/' and '\' and returns whether there were any. The string comes out
// closed; a null string comes out empty.
bool removeLastSlash(CZorString& text);

}  // namespace ZOR
