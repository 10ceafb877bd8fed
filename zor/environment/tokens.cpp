#include "zor/environment/tokens.h"

namespace ZOR::detail {

std::vector<CZorString> splitTokens(const wchar_t* text, wchar_t delimiter) {
    std::vector<CZorString> parts;
    if (text == nullptr) return parts;
    const wchar_t* begin = text;
    for (const wchar_t* p = text;; ++p) {
        if (*p != delimiter && *p != 0) continue;
        if (p > begin)
            parts.push_back(CZorString(begin).left(static_cast<unsigned int>(p - begin)));
        if (*p == 0) break;
        begin = p + 1;
    }
    return parts;
}

}  // namespace ZOR::detail
