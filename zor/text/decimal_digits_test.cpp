#include "zor/text/decimal_digits.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <random>

#include "gtest/gtest.h"

namespace {

using ZOR::detail::fixedDigits;
using ZOR::detail::isDecimalTie;

TEST(DecimalDigitsTest, TiesAtWholePlacesAndTheirLimits) {
    EXPECT_TRUE(isDecimalTie(25.0, -1));
    EXPECT_TRUE(isDecimalTie(1500.0, -3));
    EXPECT_FALSE(isDecimalTie(1500.0, -2));  // exact, no rounding at all
    EXPECT_FALSE(isDecimalTie(0.0, 0));
    EXPECT_FALSE(isDecimalTie(INFINITY, 0));
    EXPECT_FALSE(isDecimalTie(1e300, -300));             // 5^300 does not fit; no tie, no overflow
    EXPECT_EQ(fixedDigits(0.0004, 2).decimalPoint, -2);  // rounds to nothing
    EXPECT_EQ(fixedDigits(99.996, 2).digits, "10000");   // rounding lengthens the whole part
}

// Against a plain reference: away from ties the digits are the runtime's own rounding; at a
// tie (decided on the exact binary value) they are the larger neighbour.
TEST(DecimalDigitsTest, AgreesWithPlainRoundingOnRandomValues) {
    std::mt19937_64 random(7);
    for (int i = 0; i < 20000; ++i) {
        const int precision = static_cast<int>(random() % 8);
        // Multiples of 1/16 hit ties often; the noise makes most values plain.
        double value = static_cast<double>(static_cast<long long>(random() % 200000) - 100000) / 16;
        if (i % 2) value += std::ldexp(static_cast<double>(random() % 1000), -30);
        const double magnitude = std::fabs(value);
        const double scale = std::pow(10.0, precision);
        const double scaled = magnitude * scale;
        const bool tie = scaled - std::floor(scaled) == 0.5;
        ASSERT_EQ(isDecimalTie(magnitude, precision), tie) << value;
        char reference[64];
        std::snprintf(reference, sizeof reference, "%.*f", precision,
                      tie ? (std::floor(scaled) + 1) / scale : magnitude);
        std::string digits(reference);
        digits.erase(std::remove(digits.begin(), digits.end(), '.'), digits.end());
        digits.erase(0, std::min(digits.find_first_not_of('0'), digits.size()));
        const auto d = fixedDigits(value, precision);
        ASSERT_EQ(d.digits, digits) << value << " at " << precision;
        ASSERT_EQ(d.negative, value < 0) << value;
    }
}

}  // namespace
