// Paths at the boundary to the file system (UTF-8 conversion itself is in zor/text/utf8.h).
#pragma once

#include <string>

#include "zor/text/utf8.h"

namespace ZOR::detail {

// A path as the file system takes it: every `\` becomes `/`, and a leading drive ("c:") is
// dropped, since the platform has no drives.
std::string toNativePath(const wchar_t* path);

}  // namespace ZOR::detail
