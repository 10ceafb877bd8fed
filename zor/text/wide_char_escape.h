// The `\U+xxxx` notation shared by CZorString::escapeWideChar and the code page conversion,
// which sends a character that a code page lacks in this form.
#pragma once

#include <string>

namespace ZOR::detail {

// The notation of `unit`: "\U+20ac" for U+20AC; a unit beyond 0xFFFF as the two escapes of its
// UTF-16 halves, so that every escape has four digits. Only units above 0xFF are escaped;
// others are returned as they are.
std::wstring wideCharEscape(wchar_t unit);

// Undoes wideCharEscape throughout `text`.
std::wstring wideCharUnescape(const wchar_t* text);

}  // namespace ZOR::detail
