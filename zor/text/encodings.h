// 8-bit text and the code pages of the product, Base64.
//
// Code pages are given by their Windows numbers: 1250, 1251, 1252, 1254 and 936 for the
// languages of the product, 65001 for UTF-8, 1 for the system's OEM code page (850 here) and 0
// for the system's ANSI code page (1252 here); any other number is tried as "CP<number>".
// A code page that cannot be used converts to and from the empty text.
//
// The members of CZorString that take and give 8-bit text (declared in string.h):
//
//   fromMultiByte(text, codePage)  a null `text` makes the string null; otherwise the text is
//                                  decoded (a byte sequence the code page doesn't define gives
//                                  U+FFFD), and for code pages other than UTF-8 the `\U+xxxx`
//                                  escapes are undone, so that what toMultiByte escaped comes back
//   toMultiByte(buffer, codePage)  fills `buffer` (from array new, may be null; replaced by a new
//                                  one when its allocation is too small) and returns it. A
//                                  character that the code page lacks travels as its `\U+xxxx`
//                                  escape; one below 0x100 becomes '?'. A null string gives the
//                                  empty text in a buffer of at least 7 bytes
#pragma once

#include "zor/foundation/array.h"
#include "zor/text/string.h"

namespace ZOR {

// Reads the low byte of each unit as a byte of the OEM code page and writes the character it
// stands for into the same unit. Returns `text`; a null `text` is returned as it is.
wchar_t* dosToWin(wchar_t* text);

// The inverse: each unit becomes the byte of the OEM code page for its character, '?' where
// the code page has none, stored in one unit. Returns `text`; null stays null.
wchar_t* winToDos(wchar_t* text);

// Base64 of RFC 4648 (standard alphabet, '=' padding, no line breaks). `text` is replaced; no
// data gives the empty text, not a null one. Always true.
bool base64Encode(const CZorArrayTempl<unsigned char>& data, CZorString& text);

// Reads Base64 into `data`, which is emptied first; false only for a null `text`. Only the low
// byte of each unit counts, a group short of four at the end counts as padded, and no
// character is rejected: '=' reads as 0, characters outside the alphabet as their code plus 4
// (only the defined alphabet gives meaningful bytes). A group gives no byte when its first
// character is '=', one when its second or third is, two when its fourth is, else three.
bool base64Decode(const wchar_t* text, CZorArrayTempl<unsigned char>& data);

}  // namespace ZOR
