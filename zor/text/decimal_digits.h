// Decimal digits of a double, rounded the way the number text of this library shows them.
//
// The runtime's printf rounds an exact tie to the even digit (0.125 at two places gives
// "0.12"); a user reading lengths expects the tie to go away from zero ("0.13"), and that is
// what these helpers deliver. They also give the exponent of scientific text at least three
// digits ("6.65E+001"), so that the text is the same on every platform.
#pragma once

#include <string>

namespace ZOR::detail {

// The rounded digits of a value at a fixed number of places behind the point, without the
// point, without leading zeros and without a sign. `decimalPoint` is the position of the point
// within `digits`: 0 or negative when the value is below 1 (0.05 at 2 places: "5" and -1).
// A value that rounds to zero gives no digits and a position of -precision.
struct FixedDigits {
    std::string digits;
    int decimalPoint = 0;
    bool negative = false;
};

// `value` must be finite; `precision` is 0 or more.
FixedDigits fixedDigits(double value, int precision);

// `value` in the form d.dddE+xxx with `precision` digits behind the point (none and no point
// for 0) and an exponent of at least three digits. `value` must be finite.
std::wstring scientificText(double value, int precision);

// Whether `magnitude` times 10 to the power of `places` lies exactly halfway between two
// integers, by the exact binary value of `magnitude`, not by its rounded decimal digits.
bool isDecimalTie(double magnitude, int places);

}  // namespace ZOR::detail
