#include "zor/environment/native_text.h"

#include <cwctype>

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
    while (*p != 0) {
        const unsigned char lead = *p;
        int follow = 0;
        char32_t c = 0;
        if (lead < 0x80) {
            c = lead;
        } else if ((lead & 0xE0) == 0xC0) {
            follow = 1;
            c = lead & 0x1F;
        } else if ((lead & 0xF0) == 0xE0) {
            follow = 2;
            c = lead & 0x0F;
        } else if ((lead & 0xF8) == 0xF0) {
            follow = 3;
            c = lead & 0x07;
        } else {
            out += static_cast<wchar_t>(kReplacement);
            ++p;
            continue;
        }
        ++p;
        bool ok = true;
        for (int i = 0; i < follow; ++i, ++p) {
            if ((*p & 0xC0) != 0x80) {
                ok = false;
                break;
            }
            c = (c << 6) | (*p & 0x3F);
        }
        out += static_cast<wchar_t>(ok ? c : kReplacement);
    }
    return out;
}

std::wstring fromUtf8(const std::string& text) {
    return fromUtf8(text.c_str());
}

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
