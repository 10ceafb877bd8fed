// Base64 of RFC 4648 with the standard alphabet.
#include <cstdint>
#include <cwchar>
#include <string>

#include "zor/text/encodings.h"
#include "zor/text/text_result.h"

namespace {

constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

// The value of a character. Nothing is rejected: characters outside the alphabet get a value
// by the same arithmetic as the letters and digits, and only the low six bits count.
std::uint32_t sextet(unsigned char c) {
    if (c == '=') return 0;
    if (c == '/') return 63;
    if (c == '+') return 62;
    if (c >= 'a') return c - 71u;
    if (c >= 'A') return c - 65u;
    return c + 4u;
}

}  // namespace

namespace ZOR {

bool base64Encode(const CZorArrayTempl<unsigned char>& data, CZorString& text) {
    const std::uint32_t n = data.len();
    const unsigned char* bytes = data.entry();
    std::wstring out;
    out.reserve((n + 2) / 3 * 4);
    for (std::uint32_t i = 0; i < n; i += 3) {
        const std::uint32_t rest = n - i;
        std::uint32_t group = static_cast<std::uint32_t>(bytes[i]) << 16;
        if (rest > 1) group |= static_cast<std::uint32_t>(bytes[i + 1]) << 8;
        if (rest > 2) group |= bytes[i + 2];
        out += static_cast<wchar_t>(kAlphabet[(group >> 18) & 63]);
        out += static_cast<wchar_t>(kAlphabet[(group >> 12) & 63]);
        out += rest > 1 ? static_cast<wchar_t>(kAlphabet[(group >> 6) & 63]) : L'=';
        out += rest > 2 ? static_cast<wchar_t>(kAlphabet[group & 63]) : L'=';
    }
    detail::assignResult(text, out);
    return true;
}

bool base64Decode(const wchar_t* text, CZorArrayTempl<unsigned char>& data) {
    if (!text) return false;
    data.setLogicalLength(0);
    const std::size_t n = std::wcslen(text);
    for (std::size_t i = 0; i < n; i += 4) {
        // A group cut short by the end of the text counts as padded.
        unsigned char c[4];
        for (std::size_t k = 0; k < 4; ++k) {
            c[k] = i + k < n ? static_cast<unsigned char>(text[i + k] & 0xFF) : '=';
        }
        const std::uint32_t group = (sextet(c[0]) & 63) << 18 | (sextet(c[1]) & 63) << 12 |
                                    (sextet(c[2]) & 63) << 6 | (sextet(c[3]) & 63);
        const int count = c[0] == '=' ? 0 : (c[1] == '=' || c[2] == '=') ? 1 : c[3] == '=' ? 2 : 3;
        for (int k = 0; k < count; ++k) {
            data.append(static_cast<unsigned char>(group >> (16 - 8 * k)));
        }
    }
    return true;
}

}  // namespace ZOR
