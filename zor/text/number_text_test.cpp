#include "zor/text/number_text.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "gtest/gtest.h"

namespace {

using Zor::lArchitectural;
using Zor::lDecimal;
using Zor::lEngineering;
using Zor::lFractional;
using Zor::lScientific;

std::wstring rtos(double value, Zor::lFormat format, int precision, bool trimZeros = false) {
    wchar_t buffer[56];
    buffer[0] = L'?';
    EXPECT_TRUE(zorRtoS(buffer, value, format, precision, trimZeros));
    return buffer;
}

TEST(NumberTextTest, NonFiniteValuesWriteNanInEveryForm) {
    const double inf = std::numeric_limits<double>::infinity();
    for (const int format : {0, 1, 2, 3, 4, 5, 6, -1}) {
        for (const double value : {std::nan(""), -std::nan(""), inf, -inf}) {
            const std::wstring text = rtos(value, static_cast<Zor::lFormat>(format), 2);
            EXPECT_EQ(text, L"NAN");
            EXPECT_TRUE(std::isnan(zorAtoF(text.c_str())));
        }
    }
    EXPECT_FALSE(zorRtoS(nullptr, 1.0, lDecimal, 2, false));
}

TEST(NumberTextTest, BadBufferPointerGivesFalseInsteadOfACrash) {
    void* page = mmap(nullptr, static_cast<std::size_t>(sysconf(_SC_PAGESIZE)), PROT_NONE,
                      MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    ASSERT_NE(page, MAP_FAILED);
    EXPECT_FALSE(zorRtoS(static_cast<wchar_t*>(page), 66.5, lArchitectural, 2, false));
    EXPECT_FALSE(zorRtoS(static_cast<wchar_t*>(page), std::nan(""), lDecimal, 2, false));
    munmap(page, static_cast<std::size_t>(sysconf(_SC_PAGESIZE)));
    // The scope is gone again: a good buffer still works afterwards.
    EXPECT_EQ(rtos(1.25, lDecimal, 2), L"1.25");
}

TEST(NumberTextTest, PrecisionIsClampedAndUnknownFormsAreDecimal) {
    EXPECT_EQ(rtos(1.0 / 3.0, lDecimal, 20), L"0.33333333333333");  // as 14
    EXPECT_EQ(rtos(2.7, lDecimal, -3), L"3");
    for (const int format : {0, 2, 6, -1}) {
        EXPECT_EQ(rtos(66.5, static_cast<Zor::lFormat>(format), 2), L"66.50");
    }
}

TEST(NumberTextTest, ScientificHasAThreeDigitExponent) {
    EXPECT_EQ(rtos(66.5, lScientific, 2), L"6.65E+001");
    EXPECT_EQ(rtos(-0.00012346, lScientific, 3), L"-1.235E-004");
    EXPECT_EQ(rtos(9.99, lScientific, 1), L"1.0E+001");  // rounding moves the exponent
    EXPECT_EQ(rtos(1e300, lScientific, 1), L"1.0E+300");
    EXPECT_EQ(rtos(0.0, lScientific, 2), L"0.00E+000");
    EXPECT_EQ(rtos(5e-324, lScientific, 2), L"4.94E-324");
    // Exact ties round away from zero (the runtime alone rounds them to even).
    EXPECT_EQ(rtos(25.0, lScientific, 0), L"3E+001");
    EXPECT_EQ(rtos(0.125, lScientific, 1), L"1.3E-001");
}

TEST(NumberTextTest, DecimalForm) {
    EXPECT_EQ(rtos(3.14159, lDecimal, 2), L"3.14");
    EXPECT_EQ(rtos(1.5, lDecimal, 4, true), L"1.5");
    EXPECT_EQ(rtos(2.0, lDecimal, 4, true), L"2.0");
    EXPECT_EQ(rtos(0.05, lDecimal, 2), L"0.05");
    EXPECT_EQ(rtos(-0.0, lDecimal, 2), L"0.00");
    EXPECT_EQ(rtos(-0.001, lDecimal, 2), L"0.00");
    EXPECT_EQ(rtos(-0.006, lDecimal, 2), L"-0.01");
    EXPECT_EQ(rtos(-3.5, lDecimal, 1), L"-3.5");
    EXPECT_EQ(rtos(0.125, lDecimal, 2), L"0.13");
    EXPECT_EQ(rtos(-2.5, lDecimal, 0), L"-3");
    // Near ties are not ties: 2.675 and 1.005 are stored a little below.
    EXPECT_EQ(rtos(2.675, lDecimal, 2), L"2.67");
    EXPECT_EQ(rtos(1.005, lDecimal, 2), L"1.00");
    // Fourteen digits in front of the point still fit; fifteen fall back to 8 decimals.
    EXPECT_EQ(rtos(99999999999999.0, lDecimal, 1), L"99999999999999.0");
    EXPECT_EQ(rtos(99999999999999.9, lDecimal, 0), L"1.00000000E+014");
    EXPECT_EQ(rtos(1e15, lDecimal, 2), L"1.00000000E+015");
    EXPECT_EQ(rtos(std::numeric_limits<double>::max(), lDecimal, 14), L"1.79769313E+308");
}

TEST(NumberTextTest, EngineeringForm) {
    EXPECT_EQ(rtos(66.5, lEngineering, 2), L"5'-6.50\"");
    EXPECT_EQ(rtos(66.5, lEngineering, 2, true), L"5'-6.5\"");
    EXPECT_EQ(rtos(60.0, lEngineering, 2), L"5'");
    EXPECT_EQ(rtos(12.25, lEngineering, 2), L"1'-0.25\"");
    EXPECT_EQ(rtos(6.0, lEngineering, 2), L"6.00\"");
    EXPECT_EQ(rtos(6.0, lEngineering, 2, true), L"6.0\"");
    EXPECT_EQ(rtos(-66.5, lEngineering, 2), L"-5'-6.50\"");
    EXPECT_EQ(rtos(70.0, lEngineering, 0, true), L"5'-10\"");
    // No carry from the inches into the feet.
    EXPECT_EQ(rtos(59.999, lEngineering, 2), L"4'-12.00\"");
    // Feet with inches that round to zero show as whole feet.
    EXPECT_EQ(rtos(60.001, lEngineering, 2), L"5'");
    EXPECT_EQ(rtos(-60.001, lEngineering, 2), L"-5'");
    // A negative length too small to show: the zero it rounds to, without a bare minus.
    EXPECT_EQ(rtos(-0.001, lEngineering, 2), L"0.00\"");
    EXPECT_EQ(rtos(-0.001, lEngineering, 2, true), L"0.0\"");
}

TEST(NumberTextTest, FeetFormsFallBackToScientificBeyond32Bits) {
    for (const auto format : {lEngineering, lArchitectural, lFractional}) {
        EXPECT_EQ(rtos(-3e9, format, 2), L"-3.00000000E+009");
        EXPECT_EQ(rtos(2147483648.0, format, 2), L"2.14748365E+009");
        EXPECT_EQ(rtos(-std::numeric_limits<double>::max(), format, 9), L"-1.79769313E+308");
    }
    // The largest whole value still counts in feet, even when its fraction carries past it.
    EXPECT_EQ(rtos(2147483647.0, lFractional, 3), L"2147483647");
    EXPECT_EQ(rtos(2147483646.9999, lFractional, 3), L"2147483647");
    EXPECT_EQ(rtos(2147483647.0, lArchitectural, 3), L"178956970'-7\"");
}

TEST(NumberTextTest, ArchitecturalForm) {
    EXPECT_EQ(rtos(66.5, lArchitectural, 2), L"5'-6 1/2\"");
    EXPECT_EQ(rtos(60.5, lArchitectural, 2), L"5' 1/2\"");
    EXPECT_EQ(rtos(60.0, lArchitectural, 2), L"5'");
    EXPECT_EQ(rtos(6.0, lArchitectural, 2), L"6\"");
    EXPECT_EQ(rtos(0.5, lArchitectural, 2), L"1/2\"");
    EXPECT_EQ(rtos(0.0, lArchitectural, 2), L"0\"");
    EXPECT_EQ(rtos(-66.5, lArchitectural, 2), L"-5'-6 1/2\"");
    EXPECT_EQ(rtos(6.75, lArchitectural, 4), L"6 3/4\"");
    // Carries: the fraction rounds up to a whole inch, and the inches to a whole foot.
    EXPECT_EQ(rtos(11.999, lArchitectural, 3), L"1'");
    EXPECT_EQ(rtos(6.96875, lArchitectural, 2), L"7\"");
    // Precision 0 drops the fraction instead of rounding it.
    EXPECT_EQ(rtos(6.9, lArchitectural, 0), L"6\"");
    EXPECT_EQ(rtos(-0.0001, lArchitectural, 2), L"-0\"");
}

TEST(NumberTextTest, FractionalForm) {
    EXPECT_EQ(rtos(0.5, lFractional, 3), L"1/2");
    EXPECT_EQ(rtos(2.125, lFractional, 3), L"2 1/8");
    EXPECT_EQ(rtos(2.99, lFractional, 3), L"3");
    EXPECT_EQ(rtos(0.0, lFractional, 3), L"0");
    EXPECT_EQ(rtos(-6.5, lFractional, 3), L"-6 1/2");
    EXPECT_EQ(rtos(1.0 / 3.0, lFractional, 14), L"5461/16384");
}

TEST(NumberTextTest, FractionSearchStopsAtTheFirstCloseDenominator) {
    // 0.3: 1/2, 1/4 and 2/8 are more than 1/32 away; 5/16 is the first that is not.
    EXPECT_EQ(rtos(0.3, lFractional, 4), L"5/16");
    EXPECT_EQ(rtos(0.3, lFractional, 2), L"1/4");
    // An exact tie at the finest step never satisfies the strict test: the last numerator then
    // stands over the doubled denominator.
    EXPECT_EQ(rtos(0.25, lFractional, 1), L"1/4");
    EXPECT_EQ(rtos(0.375, lFractional, 2), L"1/4");
}

TEST(NumberTextTest, ReadsEveryForm) {
    EXPECT_EQ(zorAtoF(nullptr), 0.0);
    EXPECT_EQ(zorAtoF(L"5'-6 1/2\""), 66.5);
    EXPECT_EQ(zorAtoF(L"-5'-6 1/2\""), -66.5);
    EXPECT_EQ(zorAtoF(L"5' 1/2\""), 60.5);
    EXPECT_EQ(zorAtoF(L"6 1/2"), 6.5);
    EXPECT_EQ(zorAtoF(L"1/2\""), 0.5);
    EXPECT_EQ(zorAtoF(L"5'"), 60.0);
    EXPECT_EQ(zorAtoF(L"66.5"), 66.5);
    EXPECT_EQ(zorAtoF(L"+2.5E1"), 25.0);
    EXPECT_EQ(zorAtoF(L"4'-12.00\""), 60.0);
    // Feet and whole inches are integers.
    EXPECT_EQ(zorAtoF(L"1.5'"), 12.0);
    EXPECT_EQ(zorAtoF(L"2.5 1/2"), 2.5);
}

TEST(NumberTextTest, HostileTextNeverFails) {
    const double inf = std::numeric_limits<double>::infinity();
    EXPECT_EQ(zorAtoF(L"1/0"), inf);
    EXPECT_EQ(zorAtoF(L"-1/0"), -inf);
    EXPECT_TRUE(std::isnan(zorAtoF(L"0/0")));
    EXPECT_TRUE(std::isnan(zorAtoF(L"NAN")));
    EXPECT_TRUE(std::isnan(zorAtoF(L"-nan")));
    EXPECT_EQ(zorAtoF(L"-Infinity"), -inf);
    EXPECT_EQ(zorAtoF(L"5'-inf\""), inf);
    EXPECT_EQ(zorAtoF(L"1e99999"), inf);
    EXPECT_TRUE(std::isnan(zorAtoF(L"/")));
    EXPECT_TRUE(std::isnan(zorAtoF(L"a'b c/d")));
    for (const wchar_t* text : {L"", L"-", L"+", L"'", L"''", L" ", L"\"", L"-'-", L"x", L"+'+"}) {
        EXPECT_EQ(zorAtoF(text), 0.0) << text;
    }
    // One sign is taken off; what follows is read as it stands.
    EXPECT_EQ(zorAtoF(L"--5"), 5.0);
    EXPECT_EQ(zorAtoF(L"+-5"), -5.0);
    // Saturated feet wrap as 32-bit products do: 0xffffffff feet are -1 foot.
    EXPECT_EQ(zorAtoF(L"99999999999999999999'"), -12.0);
    EXPECT_EQ(zorAtoF(L"1 99999999999999999999/1"), 1e20 + 1.0);
}

// Half the step of the last digit that `text` shows, at `precision` places unless the text is
// scientific.
double halfStep(const std::wstring& text, int precision) {
    const std::size_t mark = text.find(L'E');
    if (mark == std::wstring::npos) return 0.5 * std::pow(10.0, -precision);
    const std::size_t point = text.find(L'.');
    const int places = point == std::wstring::npos ? 0 : static_cast<int>(mark - point - 1);
    return 0.5 * std::pow(10.0, std::wcstol(text.c_str() + mark + 1, nullptr, 10) - places);
}

// Every text zorRtoS writes in the digit forms reads back as the value it shows, within half a
// step of its last digit, and writing the read value again shows the same text. The feet form
// does not carry 12 inches into a foot, so only its value has to come back the same.
TEST(NumberTextTest, RoundTripOverFormsAndPrecisions) {
    std::vector<double> values = {0.0,          -0.0,         5e-324, 59.999, -59.999,
                                  2147483647.0, 2147483648.0, -3e9,   1e15,   99999999999999.9,
                                  -1.5e300,     1.5e300};
    std::mt19937_64 random(20171);
    std::uniform_real_distribution<double> mantissa(-1.0, 1.0);
    std::uniform_int_distribution<int> exponent(-6, 12);
    for (int i = 0; i < 400; ++i)
        values.push_back(mantissa(random) * std::pow(10.0, exponent(random)));
    for (const double value : values) {
        for (int precision = 0; precision <= 14; ++precision) {
            for (const auto format : {lScientific, lDecimal, lEngineering}) {
                for (const bool trim : {false, true}) {
                    const std::wstring text = rtos(value, format, precision, trim);
                    const double back = zorAtoF(text.c_str());
                    ASSERT_LE(std::fabs(back - value),
                              halfStep(text, precision) * (1 + 1e-9) + 1e-15 * std::fabs(value))
                        << text << " of " << value;
                    const std::wstring again = rtos(back, format, precision, trim);
                    if (format != lEngineering) {
                        ASSERT_EQ(again, text) << value;
                    }
                    ASSERT_EQ(zorAtoF(again.c_str()), back) << text;
                }
            }
        }
    }
}

// The fraction forms are exact for multiples of the finest step: such a value reads back as
// itself, through every carry.
TEST(NumberTextTest, FractionFormsRoundTripExactly) {
    std::mt19937_64 random(4);
    for (int i = 0; i < 500; ++i) {
        for (int precision = 0; precision <= 14; ++precision) {
            const auto steps = static_cast<long long>(std::ldexp(1.0, precision));
            const auto count =
                std::uniform_int_distribution<long long>(-2000000 * steps, 2000000 * steps)(random);
            const double value = static_cast<double>(count) / static_cast<double>(steps);
            for (const auto format : {lArchitectural, lFractional}) {
                const std::wstring text = rtos(value, format, precision);
                ASSERT_EQ(zorAtoF(text.c_str()), value) << text;
            }
        }
    }
}

TEST(NumberParsersTest, IntegersBehaveAsWith32BitLong) {
    EXPECT_EQ(ZOR::atoi(nullptr), 0);
    EXPECT_EQ(ZOR::atoi(L"-42"), -42);
    EXPECT_EQ(ZOR::atoi(L"4294967295"), -1);
    EXPECT_EQ(ZOR::atoi(L"2147483648"), INT32_MIN);
    EXPECT_EQ(ZOR::atoi(L"99999999999"), -1);          // unsigned saturation
    EXPECT_EQ(ZOR::atoi(L"-99999999999"), INT32_MIN);  // signed saturation
    EXPECT_EQ(ZOR::atoi(L" -5"), -5);                  // unsigned parser, negated in 32 bits
    EXPECT_EQ(ZOR::atoi(L"12abc"), 12);
    EXPECT_EQ(ZOR::atoi(L"--1"), 0);
    EXPECT_EQ(ZOR::atoi(L"- 1"), 0);
    EXPECT_EQ(ZOR::atoui(L"-1"), 4294967295ul);
    EXPECT_EQ(ZOR::atoui(nullptr), 0ul);
    EXPECT_EQ(ZOR::atof(nullptr), 0.0);
    EXPECT_EQ(ZOR::atof(L" 2.5x"), 2.5);
}

TEST(NumberParsersTest, Hexadecimal) {
    EXPECT_EQ(ZOR::xtol(L"00ff"), 255ul);
    EXPECT_EQ(ZOR::xtol(L"0xFF"), 255ul);
    EXPECT_EQ(ZOR::xtol(L"ffffffffff"), 0xFFFFFFFFul);
    EXPECT_EQ(ZOR::xtol(nullptr), 0ul);
    wchar_t buffer[32];
    EXPECT_STREQ(ZOR::ltox(buffer, 255, 4), L"00ff");
    EXPECT_STREQ(ZOR::ltox(buffer, 0, 0), L"");
    EXPECT_STREQ(ZOR::ltox(buffer, 0xDEADBEEF, 2), L"deadbeef");
    EXPECT_EQ(ZOR::ltox(nullptr, 1, 1), nullptr);
}

}  // namespace
