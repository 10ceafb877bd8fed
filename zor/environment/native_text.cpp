#include "zor/environment/native_text.h"

#include <cwctype>

namespace ZOR::detail {

std::string toNativePath(const wchar_t* path) {
    if (path == nullptr) return {};
    if (path[0] != 0 && path[1] == L':' && std::iswalpha(static_cast<wint_t>(path[0]))) path += 2;
    std::string out = toUtf8(path);
    for (char& c : out) {
        if (c == '\\') c = '/';
    }
    return out;
}

}  // namespace ZOR::detail
