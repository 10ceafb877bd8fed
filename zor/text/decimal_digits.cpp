#include "zor/text/decimal_digits.h"

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace ZOR::detail {
namespace {

// printf into a std::string of exactly the size the text needs.
std::string printed(const char* format, int precision, double value) {
    const int size = std::snprintf(nullptr, 0, format, precision, value);
    std::string text(static_cast<std::size_t>(size) + 1, '\0');
    std::snprintf(text.data(), text.size(), format, precision, value);
    text.resize(static_cast<std::size_t>(size));
    return text;
}

// printf rounds an exact tie to even; moving a tie one step away from zero makes it round
// away from zero instead, and cannot disturb any other rounding because only exact ties move.
double awayFromZeroOnTie(double magnitude, int places) {
    return isDecimalTie(magnitude, places) ? std::nextafter(magnitude, HUGE_VAL) : magnitude;
}

}  // namespace

bool isDecimalTie(double magnitude, int places) {
    if (!std::isfinite(magnitude) || magnitude == 0.0) return false;
    // magnitude = odd * 2^exponent exactly.
    int exponent = 0;
    const double fraction = std::frexp(std::fabs(magnitude), &exponent);
    auto odd = static_cast<std::uint64_t>(std::ldexp(fraction, 53));
    exponent -= 53;
    while ((odd & 1u) == 0) {
        odd >>= 1;
        ++exponent;
    }
    // magnitude * 10^places = odd * 5^places * 2^(exponent + places). It is an odd number of
    // halves exactly when the power of two is 2^-1 and, for negative places, 5^-places
    // divides the odd part.
    if (exponent + places != -1) return false;
    if (places >= 0) return true;
    std::uint64_t power = 1;
    for (int i = 0; i < -places; ++i) {
        if (power > odd / 5) return false;
        power *= 5;
    }
    return odd % power == 0;
}

FixedDigits fixedDigits(double value, int precision) {
    FixedDigits result;
    result.negative = std::signbit(value);
    const double magnitude = awayFromZeroOnTie(std::fabs(value), precision);
    const std::string text = printed("%.*f", precision, magnitude);
    // The locale decides the point character; the digits end wherever it stands.
    const std::size_t point = text.find_first_not_of("0123456789");
    const std::string whole = text.substr(0, point);
    const std::string fraction =
        point == std::string::npos ? std::string() : text.substr(point + 1);
    if (whole != "0") {
        result.digits = whole + fraction;
        result.decimalPoint = static_cast<int>(whole.size());
        return result;
    }
    const std::size_t first = fraction.find_first_not_of('0');
    if (first == std::string::npos) {
        result.decimalPoint = -precision;
        return result;
    }
    result.digits = fraction.substr(first);
    result.decimalPoint = -static_cast<int>(first);
    return result;
}

std::wstring scientificText(double value, int precision) {
    std::string text = printed("%.*E", precision, value);
    const std::size_t mark = text.find('E');
    const int exponent = std::atoi(text.c_str() + mark + 1);
    const double magnitude = std::fabs(value);
    const double moved = awayFromZeroOnTie(magnitude, precision - exponent);
    if (moved != magnitude) text = printed("%.*E", precision, std::copysign(moved, value));
    // printf writes at least two exponent digits; three are shown.
    const std::size_t digits = text.find('E') + 2;
    if (text.size() - digits < 3) text.insert(digits, 3 - (text.size() - digits), '0');
    return std::wstring(text.begin(), text.end());
}

}  // namespace ZOR::detail
