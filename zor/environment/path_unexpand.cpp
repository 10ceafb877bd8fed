#include "zor/environment/path_unexpand.h"

#include <cstdlib>
#include <cwchar>
#include <string>

#include "zor/environment/native_text.h"

namespace ZOR {
namespace {

constexpr const char* kCandidates[] = {
    "APPDATA",        "LOCALAPPDATA", "USERPROFILE",     "ALLUSERSPROFILE",
    "ProgramFiles",   "SystemRoot",   "XDG_CONFIG_HOME", "XDG_DATA_HOME",
    "XDG_CACHE_HOME", "TEMP",         "TMPDIR",          "HOME",
};

bool isSeparator(wchar_t c) {
    return c == L'/' || c == L'\\';
}

// Length of the part of `path` that `value` covers, ending at a component boundary; 0 if none.
std::size_t coveredLength(const std::wstring& value, const wchar_t* path) {
    std::size_t n = value.size();
    while (n > 1 && isSeparator(value[n - 1])) --n;  // "/home/ann/" covers like "/home/ann"
    for (std::size_t i = 0; i < n; ++i) {
        const wchar_t a = value[i];
        const wchar_t b = path[i];
        if (b == 0) return 0;
        if (a != b && !(isSeparator(a) && isSeparator(b))) return 0;
    }
    return path[n] == 0 || isSeparator(path[n]) ? n : 0;
}

}  // namespace

bool PathUnExpandEnvStringsW(const wchar_t* path, wchar_t* buffer, unsigned int size) {
    if (path == nullptr || buffer == nullptr) return false;
    const char* bestName = nullptr;
    std::size_t bestLength = 0;
    for (const char* name : kCandidates) {
        const char* raw = std::getenv(name);
        if (raw == nullptr || raw[0] != '/') continue;
        const std::size_t covered = coveredLength(detail::fromUtf8(raw), path);
        // A root "/" alone would turn every path into a reference; it explains nothing.
        if (covered > 1 && covered > bestLength) {
            bestLength = covered;
            bestName = name;
        }
    }
    if (bestName == nullptr) return false;
    const std::wstring result = L"%" + detail::fromUtf8(bestName) + L"%" + (path + bestLength);
    if (result.size() + 1 > size) return false;
    std::wmemcpy(buffer, result.c_str(), result.size() + 1);
    return true;
}

}  // namespace ZOR
