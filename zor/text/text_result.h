// Small helpers shared by the text conversions of this folder.
#pragma once

#include <string>

#include "zor/text/string.h"

namespace ZOR::detail {

// U+FFFD, which stands in for what cannot be read or written as a character.
inline constexpr wchar_t kReplacementCharacter = 0xFFFD;

// Gives `s` the text of a conversion result. An open string is closed first, so that the
// result is closed with its length stored; the empty text makes `s` empty, not null.
inline void assignResult(CZorString& s, const std::wstring& text) {
    s.ReleaseBuffer();
    s = text.c_str();
}

}  // namespace ZOR::detail
