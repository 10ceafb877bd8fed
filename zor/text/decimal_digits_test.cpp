#include "zor/text/decimal_digits.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <random>

#include "gtest/gtest.h"

namespace {

using ZOR::detail::fixedDigits;
using ZOR::detail::isDecimalTie;
using ZOR::detail::scientificText;

TEST(DecimalDigitsTest, FixedDigitsGiveDigitsAndPointPosition) {
    auto d = fixedDigits(3.14159, 2);
    EXPECT_EQ(d.digits, "314");
    EXPECT_EQ(d.decimalPoint, 1);
    EXPECT_FALSE(d.negative);

    d = fixedDigits(-0.05, 2);
    EXPECT_EQ(d.digits, "5");
    EXPECT_EQ(d.decimalPoint, -1);
    EXPECT_TRUE(d.negative);

    d = fixedDigits(0.0004, 2);  // rounds to nothing
    EXPECT_EQ(d.digits, "");
    EXPECT_EQ(d.decimalPoint, -2);

    d = fixedDigits(99.996, 2);  // rounding lengthens the whole part
    EXPECT_EQ(d.digits, "10000");
    EXPECT_EQ(d.decimalPoint, 3);

    d = fixedDigits(1e20, 0);
    EXPECT_EQ(d.digits, "100000000000000000000");
    EXPECT_EQ(d.decimalPoint, 21);
}

TEST(DecimalDigitsTest, TiesAreDecidedByTheExactBinaryValue) {
    EXPECT_TRUE(isDecimalTie(0.5, 0));
    EXPECT_TRUE(isDecimalTie(0.125, 2));
    EXPECT_TRUE(isDecimalTie(0.25, 1));
    EXPECT_TRUE(isDecimalTie(25.0, -1));
    EXPECT_TRUE(isDecimalTie(1500.0, -3));
    EXPECT_FALSE(isDecimalTie(0.125, 3));  // exact, no rounding at all
    EXPECT_FALSE(isDecimalTie(0.75, 0));
    EXPECT_FALSE(isDecimalTie(2.675, 2));  // stored below the tie
    EXPECT_FALSE(isDecimalTie(0.15, 1));   // stored above the tie
    EXPECT_FALSE(isDecimalTie(0.0, 0));
    EXPECT_FALSE(isDecimalTie(INFINITY, 0));
    EXPECT_FALSE(isDecimalTie(1e300, -300));
}

// Against a plain reference: away from ties the digits are the runtime's own rounding; at a
// tie they are the larger neighbour.
TEST(DecimalDigitsTest, AgreesWithPlainRoundingOnRandomValues) {
    std::mt19937_64 random(7);
    for (int i = 0; i < 20000; ++i) {
        const int precision = static_cast<int>(random() % 8);
        // Multiples of 1/16 hit ties often; the noise makes most values plain.
        double value = static_cast<double>(static_cast<long long>(random() % 200000) - 100000) / 16;
        if (i % 2) value += std::ldexp(static_cast<double>(random() % 1000), -30);
        const double magnitude = std::fabs(value);
        char reference[64];
        std::snprintf(reference, sizeof reference, "%.*f", precision, magnitude);
        const double scale = std::pow(10.0, precision);
        const double scaled = magnitude * scale;
        const bool tie = scaled - std::floor(scaled) == 0.5;
        ASSERT_EQ(isDecimalTie(magnitude, precision), tie) << value;
        if (tie) {
            std::snprintf(reference, sizeof reference, "%.*f", precision,
                          (std::floor(scaled) + 1) / scale);
        }
        const auto d = fixedDigits(value, precision);
        std::string digits(reference);
        digits.erase(std::remove(digits.begin(), digits.end(), '.'), digits.end());
        digits.erase(0, std::min(digits.find_first_not_of('0'), digits.size()));
        ASSERT_EQ(d.digits, digits) << value << " at " << precision;
    }
}

TEST(DecimalDigitsTest, ScientificExponentHasAtLeastThreeDigits) {
    EXPECT_EQ(scientificText(66.5, 2), L"6.65E+001");
    EXPECT_EQ(scientificText(-1.5e-7, 1), L"-1.5E-007");
    EXPECT_EQ(scientificText(1e100, 0), L"1E+100");
    EXPECT_EQ(scientificText(9.99, 1), L"1.0E+001");
}

}  // namespace
