#include "zor/text/utf8.h"

#include <cstdint>

namespace ZOR::detail {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

void appendUtf8(std::string& out, char32_t c) {
    if (c > 0x10FFFF || (c >= 0xD800 && c <= 0xDFFF)) c = kReplacement;
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | (c >> 6));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        out += static_cast<char>(0xE0 | (c >> 12));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (c >> 18));
        out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
}

}  // namespace

std::string toUtf8(const wchar_t* text) {
    std::string out;
    if (text == nullptr) return out;
    for (; *text != 0; ++text) appendUtf8(out, static_cast<char32_t>(*text));
    return out;
}

std::string toUtf8(const std::wstring& text) {
    return toUtf8(text.c_str());
}

std::wstring fromUtf8(const char* text) {
    std::wstring out;
    if (text == nullptr) return out;
    const auto* p = reinterpret_cast<const unsigned char*>(text);
    while (*p) {
        const unsigned char lead = *p;
        int extra = lead >= 0xF0 && lead < 0xF5 ? 3 : lead >= 0xE0 ? 2 : lead >= 0xC2 ? 1 : 0;
        if (lead < 0x80 || lead > 0xF4) extra = 0;
        std::uint32_t code = extra == 3 ? lead & 0x07u : extra == 2 ? lead & 0x0Fu : lead & 0x1Fu;
        int i = 1;
        for (; i <= extra && (p[i] & 0xC0) == 0x80; ++i) code = (code << 6) | (p[i] & 0x3Fu);
        const bool shortest =
            (extra == 2 && code >= 0x800) || (extra == 3 && code >= 0x10000) || extra == 1;
        if (extra == 0 || i <= extra || !shortest || code > 0x10FFFF) {
            out += static_cast<wchar_t>(lead);
            ++p;
        } else {
            out += static_cast<wchar_t>(code);
            p += extra + 1;
        }
    }
    return out;
}

std::wstring fromUtf8(const std::string& text) {
    return fromUtf8(text.c_str());
}

}  // namespace ZOR::detail
