#include "zor/text/number_text.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <utility>
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
        for (const double value : {std::nan(""), -std::nan(""), inf, -inf})
            EXPECT_EQ(rtos(value, static_cast<Zor::lFormat>(format), 2), L"NAN");
    }
}

TEST(NumberTextTest, BadBufferPointerGivesFalseInsteadOfACrash) {
    EXPECT_FALSE(zorRtoS(nullptr, 1.0, lDecimal, 2, false));
    void* page = mmap(nullptr, static_cast<std::size_t>(sysconf(_SC_PAGESIZE)), PROT_NONE,
                      MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    ASSERT_NE(page, MAP_FAILED);
    EXPECT_FALSE(zorRtoS(static_cast<wchar_t*>(page), 66.5, lArchitectural, 2, false));
    EXPECT_FALSE(zorRtoS(static_cast<wchar_t*>(page), std::nan(""), lDecimal, 2, false));
    munmap(page, static_cast<std::size_t>(sysconf(_SC_PAGESIZE)));
    // The scope is gone again: a good buffer still works afterwards.
    EXPECT_EQ(rtos(1.25, lDecimal, 2), L"1.25");
}

struct Shown {
    double value;
    int precision;
    const wchar_t* text;
};

// Expects every value written in `format` to show exactly as its case says.
template <std::size_t N>
void expectShown(Zor::lFormat format, const Shown (&cases)[N], bool trimZeros = false) {
    for (const Shown& c : cases) {
        SCOPED_TRACE(::testing::Message() << c.value << " at " << c.precision << " in form "
                                          << format << (trimZeros ? " trimmed" : ""));
        EXPECT_EQ(rtos(c.value, format, c.precision, trimZeros), c.text);
    }
}

TEST(NumberTextTest, DecimalAndScientificForms) {
    // Ties round away from zero, but 2.675 and 1.005 are stored a little below and are no ties;
    // precision is clamped to 0..14. Fourteen digits in front of the point still fit; fifteen
    // fall back to 8 decimals.
    const Shown decimal[] = {
        {0.05, 2, L"0.05"},  {3.14159, 2, L"3.14"},
        {-0.0, 2, L"0.00"},  {-0.001, 2, L"0.00"},
        {-3.5, 1, L"-3.5"},  {-0.006, 2, L"-0.01"},
        {0.125, 2, L"0.13"}, {1.0 / 3.0, 20, L"0.33333333333333"},
        {-2.5, 0, L"-3"},    {99999999999999.0, 1, L"99999999999999.0"},
        {2.675, 2, L"2.67"}, {99999999999999.9, 0, L"1.00000000E+014"},
        {1.005, 2, L"1.00"}, {1e15, 2, L"1.00000000E+015"},
        {2.7, -3, L"3"},     {std::numeric_limits<double>::max(), 14, L"1.79769313E+308"}};
    expectShown(lDecimal, decimal);
    const Shown decimalTrimmed[] = {{1.5, 4, L"1.5"}, {2.0, 4, L"2.0"}};
    expectShown(lDecimal, decimalTrimmed, true);
    // A three-digit exponent, moved by rounding where it must; exact ties round away from zero
    // (the runtime alone rounds them to even).
    const Shown scientific[] = {{66.5, 2, L"6.65E+001"}, {-0.00012346, 3, L"-1.235E-004"},
                                {9.99, 1, L"1.0E+001"},  {1e300, 1, L"1.0E+300"},
                                {0.0, 2, L"0.00E+000"},  {5e-324, 2, L"4.94E-324"},
                                {25.0, 0, L"3E+001"},    {0.125, 1, L"1.3E-001"}};
    expectShown(lScientific, scientific);
    for (const int format : {0, 2, 6, -1}) {  // unknown forms write decimals
        EXPECT_EQ(rtos(66.5, static_cast<Zor::lFormat>(format), 2), L"66.50");
    }
}

TEST(NumberTextTest, FeetAndInchForms) {
    // No carry from the inches into the feet; inches that round to zero show whole feet; a
    // negative length too small to show is the zero it rounds to, without a bare minus.
    const Shown engineering[] = {
        {66.5, 2, L"5'-6.50\""}, {60.0, 2, L"5'"},          {12.25, 2, L"1'-0.25\""},
        {6.0, 2, L"6.00\""},     {-66.5, 2, L"-5'-6.50\""}, {59.999, 2, L"4'-12.00\""},
        {60.001, 2, L"5'"},      {-60.001, 2, L"-5'"},      {-0.001, 2, L"0.00\""},
    };
    expectShown(lEngineering, engineering);
    const Shown engineeringTrimmed[] = {
        {66.5, 2, L"5'-6.5\""}, {6.0, 2, L"6.0\""}, {70.0, 0, L"5'-10\""}, {-0.001, 2, L"0.0\""}};
    expectShown(lEngineering, engineeringTrimmed, true);
    // The fraction carries into a whole inch and the inches into a foot; precision 0 drops the
    // fraction instead of rounding it.
    const Shown architectural[] = {
        {60.0, 2, L"5'"},       {66.5, 2, L"5'-6 1/2\""}, {6.0, 2, L"6\""},
        {60.5, 2, L"5' 1/2\""}, {0.5, 2, L"1/2\""},       {-66.5, 2, L"-5'-6 1/2\""},
        {0.0, 2, L"0\""},       {6.75, 4, L"6 3/4\""},    {11.999, 3, L"1'"},
        {-0.0001, 2, L"-0\""},  {6.96875, 2, L"7\""},     {2147483647.0, 3, L"178956970'-7\""},
        {6.9, 0, L"6\""}};
    expectShown(lArchitectural, architectural);
    // The search stops at the first denominator close enough: for 0.3, 1/2, 1/4 and 2/8 are more
    // than 1/32 away and 5/16 is not. An exact tie at the finest step never satisfies the strict
    // test, so the last numerator stands over the doubled denominator. The largest whole value
    // still counts in feet, even when its fraction carries past it.
    const Shown fractional[] = {{0.5, 3, L"1/2"},  {2.125, 3, L"2 1/8"},
                                {2.99, 3, L"3"},   {-6.5, 3, L"-6 1/2"},
                                {0.0, 3, L"0"},    {0.375, 2, L"1/4"},
                                {0.3, 4, L"5/16"}, {1.0 / 3.0, 14, L"5461/16384"},
                                {0.3, 2, L"1/4"},  {2147483647.0, 3, L"2147483647"},
                                {0.25, 1, L"1/4"}, {2147483646.9999, 3, L"2147483647"}};
    expectShown(lFractional, fractional);
    // Beyond 32 bits of feet the three forms fall back to scientific.
    for (const auto format : {lEngineering, lArchitectural, lFractional}) {
        const Shown beyond32Bits[] = {
            {-3e9, 2, L"-3.00000000E+009"},
            {2147483648.0, 2, L"2.14748365E+009"},
            {-std::numeric_limits<double>::max(), 9, L"-1.79769313E+308"}};
        expectShown(format, beyond32Bits);
    }
}

TEST(NumberTextTest, ReadsEveryFormAndHostileTextNeverFails) {
    const double inf = std::numeric_limits<double>::infinity();
    // Feet and whole inches are integers. One sign is taken off and what follows is read as it
    // stands. Saturated feet wrap as 32-bit products do: 0xffffffff feet are -1 foot.
    const std::pair<const wchar_t*, double> reads[] = {
        {L"5'-6 1/2\"", 66.5}, {L"-5'-6 1/2\"", -66.5}, {L"5' 1/2\"", 60.5}, {L"6 1/2", 6.5},
        {L"1/2\"", 0.5},       {L"5'", 60.0},           {L"66.5", 66.5},     {L"+2.5E1", 25.0},
        {L"4'-12.00\"", 60.0}, {L"1.5'", 12.0},         {L"2.5 1/2", 2.5},   {L"1/0", inf},
        {L"-1/0", -inf},       {L"-Infinity", -inf},    {L"5'-inf\"", inf},  {L"1e99999", inf},
        {L"--5", 5.0},         {L"+-5", -5.0}};
    for (const auto& [text, value] : reads) EXPECT_EQ(zorAtoF(text), value) << text;
    for (const wchar_t* text : {L"0/0", L"NAN", L"-nan", L"/", L"a'b c/d"}) {
        EXPECT_TRUE(std::isnan(zorAtoF(text))) << text;
    }
    for (const wchar_t* text : {L"", L"-", L"+", L"'", L"''", L" ", L"\"", L"-'-", L"x", L"+'+"}) {
        EXPECT_EQ(zorAtoF(text), 0.0) << text;
    }
    EXPECT_EQ(zorAtoF(nullptr), 0.0);
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

// Unsigned saturation gives -1, signed saturation INT32_MIN; a sign before blanks is read by the
// unsigned parser and negated in 32 bits.
TEST(NumberParsersTest, IntegersBehaveAsWith32BitLong) {
    const std::pair<const wchar_t*, std::int32_t> integers[] = {
        {nullptr, 0}, {L"4294967295", -1},          {L" -5", -5}, {L"-42", -42},
        {L"--1", 0},  {L"2147483648", INT32_MIN},   {L"- 1", 0},  {L"99999999999", -1},
        {L"+-1", 0},  {L"-99999999999", INT32_MIN}, {L" --1", 0}, {L"12abc", 12}};
    for (const auto& [text, value] : integers) EXPECT_EQ(ZOR::atoi(text), value) << text;
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
