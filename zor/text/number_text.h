// Number text: doubles written and read the way a drawing program shows lengths to its user.
//
// `zorRtoS` writes a value in one of five forms; `zorAtoF` reads all of them back. In the feet
// forms a value counts inches, twelve to the foot. Beside them stand thin wrappers of the
// runtime's wide parsers that behave as they do where `long` has 32 bits, whatever the width of
// `long` on this platform.
#pragma once

namespace Zor {

// The number forms of `zorRtoS`. Any other value of the `int` is written as `lDecimal`; the
// fixed underlying type makes every `int` a valid value.
enum lFormat : int {
    lScientific = 1,     // 6.65E+001: mantissa and a signed exponent of at least three digits
    lDecimal = 2,        // 66.50
    lEngineering = 3,    // 5'-6.50"  feet and decimal inches
    lArchitectural = 4,  // 5'-6 1/2" feet, inches and a fraction of an inch
    lFractional = 5,     // 66 1/2    whole number and a fraction
};

}  // namespace Zor

// Writes `value` into `buffer` (56 units are enough for every form) and returns true; false
// for a null buffer or when the formatting is left by an exception, a processor fault within
// it included. A value that is not finite writes "NAN" in every form.
//
// `precision` is clamped to 0..14. For the scientific, decimal and engineering forms it counts
// the digits behind the point; for the architectural and fractional forms the halvings of the
// fraction, so that the denominator goes up to 2 to the power of `precision`. `trimZeros`
// strips trailing zeros of the decimal and engineering forms, keeping one decimal. Magnitudes
// that these forms cannot hold fall back to scientific text with 8 decimals.
bool zorRtoS(wchar_t* buffer, double value, Zor::lFormat format, int precision, bool trimZeros);

// Reads the text of every form `zorRtoS` writes: "5'-6 1/2\"", "6 1/2", "1/2\"", "+2.5E1".
// Feet and the whole inches in front of a fraction are read as integers. A null pointer is 0.
double zorAtoF(const wchar_t* text);

namespace ZOR {

// The runtime's `wcstod`; 0.0 for a null pointer.
double atof(const wchar_t* text);

// 0 for a null pointer. A text starting with a minus is read as a signed, any other as an
// unsigned 32-bit decimal, each saturating at its limits; the low 32 bits are the result, so
// "4294967295" gives -1.
int atoi(const wchar_t* text);

// `atoi` with the result read as unsigned: "-1" gives 4294967295.
unsigned long atoui(const wchar_t* text);

// An unsigned 32-bit hexadecimal reading, saturating at 0xffffffff; 0 for a null pointer.
unsigned long xtol(const wchar_t* text);

// Writes `value` in lower-case hexadecimal, left-padded with '0' to `width` units, and
// returns `buffer`; null for a null buffer. The value 0 with width 0 is the empty text.
const wchar_t* ltox(wchar_t* buffer, unsigned long value, int width);

}  // namespace ZOR
