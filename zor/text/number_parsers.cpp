// The thin parsers of number text. The runtime's `wcstol`/`wcstoul` are read as they behave
// where `long` has 32 bits, so that a text gives the same number on every platform.
#include <cerrno>
#include <cstdint>
#include <cwchar>
#include <cwctype>

#include "zor/text/number_text.h"

namespace ZOR {
namespace {

constexpr std::uint32_t kMaxUnsigned32 = 0xFFFFFFFFu;

// `wcstoul` with a 32-bit result: the magnitude saturates at 0xffffffff and a minus sign
// negates in 32-bit arithmetic, so "-1" is 0xffffffff.
std::uint32_t readUnsigned32(const wchar_t* text, int base) {
    const wchar_t* digits = text;
    while (std::iswspace(static_cast<wint_t>(*digits))) ++digits;
    const bool negative = *digits == L'-';
    if (*digits == L'-' || *digits == L'+') ++digits;
    // Only digits may follow the one sign; the 64-bit reader below would accept more.
    if (*digits == L'-' || *digits == L'+' || std::iswspace(static_cast<wint_t>(*digits))) {
        return 0;
    }
    const int savedErrno = errno;
    errno = 0;
    wchar_t* end = nullptr;
    const unsigned long long value = std::wcstoull(digits, &end, base);
    const bool overflow = errno == ERANGE;
    errno = savedErrno;
    if (end == digits) return 0;
    if (overflow || value > kMaxUnsigned32) return kMaxUnsigned32;
    const auto low = static_cast<std::uint32_t>(value);
    return negative ? 0u - low : low;
}

// `wcstol` with a 32-bit result, saturating at the limits of a 32-bit `int`.
std::int32_t readSigned32(const wchar_t* text) {
    const int savedErrno = errno;
    const long long value = std::wcstoll(text, nullptr, 10);
    errno = savedErrno;
    if (value < INT32_MIN) return INT32_MIN;
    if (value > INT32_MAX) return INT32_MAX;
    return static_cast<std::int32_t>(value);
}

}  // namespace

double atof(const wchar_t* text) {
    return text ? std::wcstod(text, nullptr) : 0.0;
}

int atoi(const wchar_t* text) {
    if (!text) return 0;
    if (*text == L'-') return readSigned32(text);
    return static_cast<std::int32_t>(readUnsigned32(text, 10));
}

unsigned long atoui(const wchar_t* text) {
    return static_cast<std::uint32_t>(atoi(text));
}

unsigned long xtol(const wchar_t* text) {
    return text ? readUnsigned32(text, 16) : 0;
}

const wchar_t* ltox(wchar_t* buffer, unsigned long value, int width) {
    if (!buffer) return nullptr;
    wchar_t reversed[2 * sizeof value];
    int count = 0;
    for (; value != 0; value >>= 4) reversed[count++] = L"0123456789abcdef"[value & 0xF];
    wchar_t* out = buffer;
    for (int pad = width - count; pad > 0; --pad) *out++ = L'0';
    while (count > 0) *out++ = reversed[--count];
    *out = 0;
    return buffer;
}

}  // namespace ZOR
