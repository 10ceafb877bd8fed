// Text conversions beside the plain string operations: backslash escapes, HTML entities, the
// `\U+xxxx` notation of wide characters, quoting, and the control codes of drawing text.
//
// Most of them are members of CZorString (declared in string.h, implemented with this header):
//
//   escape() / unEscape()          control codes, `"` and `\` as backslash escapes (\a \b \t \n
//                                  \v \f \r \e \" \\); a lone backslash at the end goes away
//   escapeHtml(chars)              with chars null: & < > " as entities, other units that are
//                                  not printable or above 127 as "&#x..;"; with chars given:
//                                  exactly the units of chars as "&#x..;"
//   escapeHtmlSpecial()            & < > " as entities, nothing else
//   unEscapeHtml()                 named (HTML 4 Latin-1) and numeric entities back to units;
//                                  unknown and malformed ones stay as text
//   escapeWideChar()               units above 0xFF as "\U+xxxx" (lower case); a unit beyond
//                                  0xFFFF as the escapes of its two UTF-16 halves
//   unEscapeWideChar()             "\U+xxxx" (any case of U) back to one unit, joining the two
//                                  escaped halves of a character beyond 0xFFFF
//   quote() / unQuote()            wraps in `"` always; unwraps only a text that starts and
//                                  ends with `"`
//
// All of them work in place and return the object, and leave a null string alone, except
// `unEscape` and `quote`, which make it empty and `""`. Malformed input is never an error: it
// passes through or decodes by the rules above.
#pragma once

#include "zor/text/string.h"

namespace ZOR {

// False for a null `text`. Otherwise `out` becomes `text` with & < > " replaced by their
// entities, and the result is true.
bool htmlSpecialChars(CZorString& out, const wchar_t* text);

// Drawing text to rich-text formatting: the two-character marker "%%" and the letter behind it
// (either case) become c: U+2205, d: U+00B0, p: U+00B1, o: "{\O" and "}" in turn (overline),
// u: "{\L" and "}" in turn (underline), any other letter: itself. A marker at the very end adds
// nothing, and what is still switched on at the end is closed. A null `text` gives the empty
// text.
CZorString txtToRTF(const wchar_t* text);

}  // namespace ZOR
