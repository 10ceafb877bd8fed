#include "zor/text/number_text.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>
#include <string_view>

#include "zor/foundation/error_handler.h"
#include "zor/text/decimal_digits.h"

namespace {

constexpr int kMaxPrecision = 14;
// The whole-number forms count in 32-bit integers; beyond that they fall back to scientific.
constexpr double kLargestWhole = 2147483647.0;
// The decimal form writes at most this many digits in front of the point.
constexpr int kMaxWholeDigits = 14;
constexpr int kFallbackPrecision = 8;

std::wstring scientificFallback(double value) {
    return ZOR::detail::scientificText(value, kFallbackPrecision);
}

// Strips trailing zeros behind the point but keeps one decimal: "1.500" -> "1.5", "2.00" -> "2.0".
void trimTrailingZeros(std::wstring& text) {
    while (!text.empty() && text.back() == L'0') text.pop_back();
    if (!text.empty() && text.back() == L'.') text.push_back(L'0');
}

std::wstring decimalText(double value, int precision, bool trimZeros) {
    ZOR::detail::FixedDigits fixed = ZOR::detail::fixedDigits(value, precision);
    if (fixed.decimalPoint > kMaxWholeDigits) return scientificFallback(value);
    bool negative = fixed.negative && value != 0.0;
    if (fixed.decimalPoint <= -precision) {
        // Nothing is left at this precision, and "-0.00" would be noise.
        negative = false;
        fixed.decimalPoint = -precision;
    }
    if (fixed.decimalPoint < 0) {
        fixed.digits.insert(0, static_cast<std::size_t>(-fixed.decimalPoint), '0');
        fixed.decimalPoint = 0;
    }
    const auto point = static_cast<std::size_t>(fixed.decimalPoint);
    std::wstring text = negative ? L"-" : L"";
    if (point == 0) {
        text += L'0';
    } else {
        text.append(fixed.digits.begin(),
                    fixed.digits.begin() + static_cast<std::ptrdiff_t>(point));
    }
    if (precision > 0) {
        text += L'.';
        text.append(fixed.digits.begin() + static_cast<std::ptrdiff_t>(point), fixed.digits.end());
        if (trimZeros) trimTrailingZeros(text);
    }
    return text;
}

// Feet and decimal inches. The inches are rounded on their own, without a carry into the
// feet, so 59.999 at two places is 4'-12.00".
std::wstring engineeringText(double value, int precision, bool trimZeros) {
    const double magnitude = std::fabs(value);
    if (magnitude > kLargestWhole) return scientificFallback(value);
    const auto whole = static_cast<std::int64_t>(magnitude);
    const std::int64_t feet = whole / 12;
    const double inches =
        static_cast<double>(whole % 12) + (magnitude - static_cast<double>(whole));

    std::wstring text = value < 0.0 ? L"-" : L"";
    if (feet > 0) text += std::to_wstring(feet) + L'\'';
    const std::wstring inchText = decimalText(inches, precision, false);
    if (inchText.find_first_of(L"123456789") == std::wstring::npos && !text.empty()) {
        // A whole number of feet shows without an inch part. A negative length too small to
        // show any inches would leave a bare minus; it is written as the zero it rounds to.
        if (feet > 0) return text;
        text.clear();
    }
    if (feet > 0) text += L'-';
    text += inchText;
    if (trimZeros && precision > 0) trimTrailingZeros(text);
    text += L'"';
    return text;
}

// A magnitude as a whole number and a binary fraction num/den in lowest terms, den at most
// 2^precision. The fraction search stops at the first denominator that comes within half a
// step of the finest denominator; a fraction that rounds up to 1 carries into the whole part.
struct WholeAndFraction {
    std::int64_t whole = 0;
    int num = 0;
    int den = 2;
};

WholeAndFraction splitFraction(double magnitude, int precision) {
    WholeAndFraction result;
    result.whole = static_cast<std::int64_t>(magnitude);
    const double fraction = magnitude - static_cast<double>(result.whole);
    const double tolerance = 0.5 / std::ldexp(1.0, precision);
    for (int count = 0; count < precision; ++count) {
        result.num = static_cast<int>(result.den * fraction + 0.5);
        if (std::fabs(fraction - static_cast<double>(result.num) / result.den) < tolerance) break;
        // When the search runs out, the last numerator stands over the doubled denominator.
        result.den *= 2;
    }
    if (result.num == result.den) {
        result.num = 0;
        ++result.whole;
    }
    while (result.num % 2 == 0 && result.den % 2 == 0) {
        result.num /= 2;
        result.den /= 2;
    }
    return result;
}

std::wstring fractionText(const WholeAndFraction& f) {
    return std::to_wstring(f.num) + L'/' + std::to_wstring(f.den);
}

// Feet, inches and a fraction of an inch: 5'-6 1/2", 5' 1/2", 6", 1/2", 0".
std::wstring architecturalText(double value, int precision) {
    const double magnitude = std::fabs(value);
    if (magnitude > kLargestWhole) return scientificFallback(value);
    const WholeAndFraction f = splitFraction(magnitude, precision);
    const std::int64_t feet = f.whole / 12;
    const std::int64_t inches = f.whole % 12;

    std::wstring text = value < 0.0 ? L"-" : L"";
    if (feet > 0) text += std::to_wstring(feet) + L'\'';
    if (inches == 0 && f.num == 0) {
        if (feet > 0) return text;
        text += L'0';
    } else {
        if (inches > 0) {
            if (feet > 0) text += L'-';
            text += std::to_wstring(inches);
        }
        if (f.num > 0) {
            if (inches > 0 || feet > 0) text += L' ';
            text += fractionText(f);
        }
    }
    text += L'"';
    return text;
}

// Whole number and a fraction: 6 1/2, 1/2, 6, 0.
std::wstring fractionalText(double value, int precision) {
    const double magnitude = std::fabs(value);
    if (magnitude > kLargestWhole) return scientificFallback(value);
    const WholeAndFraction f = splitFraction(magnitude, precision);
    std::wstring text = value < 0.0 ? L"-" : L"";
    if (f.whole > 0 || f.num == 0) {
        text += std::to_wstring(f.whole);
        if (f.num > 0) text += L' ';
    }
    if (f.num > 0) text += fractionText(f);
    return text;
}

std::wstring formatted(double value, Zor::lFormat format, int precision, bool trimZeros) {
    switch (format) {
        case Zor::lScientific:
            return ZOR::detail::scientificText(value, precision);
        case Zor::lEngineering:
            return engineeringText(value, precision, trimZeros);
        case Zor::lArchitectural:
            return architecturalText(value, precision);
        case Zor::lFractional:
            return fractionalText(value, precision);
        case Zor::lDecimal:
        default:
            return decimalText(value, precision, trimZeros);
    }
}

// Copies unit by unit through a volatile pointer, so that the stores stay in this translation
// unit (built to let a faulting store throw) and are not turned into a call of the runtime.
void writeText(wchar_t* buffer, std::wstring_view text) {
    volatile wchar_t* out = buffer;
    for (const wchar_t c : text) *out++ = c;
    *out = 0;
}

}  // namespace

bool zorRtoS(wchar_t* buffer, double value, Zor::lFormat format, int precision, bool trimZeros) {
    if (!buffer) return false;
    try {
        // A bad buffer pointer is a processor fault; the scope turns it into an exception.
        CZorErrorHandler faults;
        if (!std::isfinite(value)) {
            writeText(buffer, L"NAN");
            return true;
        }
        writeText(buffer, L"");
        precision = std::clamp(precision, 0, kMaxPrecision);
        writeText(buffer, formatted(value, format, precision, trimZeros));
        return true;
    } catch (...) {
        return false;
    }
}

double zorAtoF(const wchar_t* text) {
    if (!text) return 0.0;
    const bool negative = *text == L'-';
    if (*text == L'-' || *text == L'+') ++text;
    std::wstring_view rest(text);

    double sum = 0.0;
    if (rest.find_first_of(L"\"'/ ") == std::wstring_view::npos) {
        sum = ZOR::atof(text);
    } else {
        // Each piece is read from its own copy: the runtime's readers skip leading blanks and
        // would take a number from behind the separator.
        const auto piece = [](std::wstring_view view) { return std::wstring(view); };
        const std::size_t apostrophe = rest.find(L'\'');
        if (apostrophe != std::wstring_view::npos) {
            // Feet count as integers, and their product wraps as 32-bit arithmetic does.
            const auto feet =
                static_cast<std::uint32_t>(ZOR::atoi(piece(rest.substr(0, apostrophe)).c_str()));
            sum += static_cast<std::int32_t>(feet * 12u);
            rest.remove_prefix(apostrophe + 1);
            if (!rest.empty() && rest.front() == L'-') rest.remove_prefix(1);
        }
        const std::size_t blank = rest.find(L' ');
        if (blank != std::wstring_view::npos) {
            sum += ZOR::atoi(piece(rest.substr(0, blank)).c_str());
            rest.remove_prefix(blank + 1);
        }
        const std::size_t slash = rest.find(L'/');
        if (slash != std::wstring_view::npos) {
            sum += ZOR::atof(piece(rest.substr(0, slash)).c_str()) /
                   ZOR::atoi(piece(rest.substr(slash + 1)).c_str());
        } else {
            sum += ZOR::atof(piece(rest).c_str());
        }
    }
    return negative ? -sum : sum;
}
