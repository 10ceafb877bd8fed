// Conversions at the boundary to the operating system, which speaks UTF-8 where the library
// speaks wide text: file names, environment values, database text, bus messages.
#pragma once

#include <string>

namespace ZOR::detail {

// UTF-8 form of a wide text; a null pointer gives the empty text. Units that are no valid code
// point become U+FFFD so that nothing is silently dropped.
std::string toUtf8(const wchar_t* text);
std::string toUtf8(const std::wstring& text);

// Wide form of a UTF-8 text; a null pointer gives the empty text, malformed bytes U+FFFD.
std::wstring fromUtf8(const char* text);
std::wstring fromUtf8(const std::string& text);

// A path as the file system takes it: every `\` becomes `/`, and a leading drive ("c:") is
// dropped, since the platform has no drives.
std::string toNativePath(const wchar_t* path);

}  // namespace ZOR::detail
