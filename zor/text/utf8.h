// UTF-8 at the boundary to the operating system, which speaks it where the library speaks wide
// text: environment values, file names, database text, bus messages.
#pragma once

#include <string>

namespace ZOR::detail {

// UTF-8 form of a wide text; a null pointer gives the empty text. Units that are no valid code
// point (surrogates, values past U+10FFFF) become U+FFFD.
std::string toUtf8(const wchar_t* text);
std::string toUtf8(const std::wstring& text);

// Wide form of a UTF-8 text; a null pointer gives the empty text. A byte that does not start a
// well-formed, shortest-form sequence stands for itself, so no byte of a value is lost.
std::wstring fromUtf8(const char* text);
std::wstring fromUtf8(const std::string& text);

}  // namespace ZOR::detail
