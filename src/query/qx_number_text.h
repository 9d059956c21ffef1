#pragma once
// Number and text in the language's own notation, independent of the process locale: decimal
// point ".", numbers printed with up to 18 significant digits.
#include <cstddef>

namespace verdal::query {

// Enough for "%.18Lg" of any 80-bit value.
constexpr size_t kQxNumberBuffer = 48;

// Prints value with "%.18Lg" in the "C" locale; returns the length.
int QX_FormatNumber(long double value, char (&buffer)[kQxNumberBuffer]);

// Length of the decimal number at text: [sign] digits [. digits] [e [sign] digits], with at
// least one digit in the mantissa; an exponent without digits is not part of the number. 0 when
// text holds no number. The old runtime's conversion knew neither hex nor inf/nan, so neither
// does this one.
size_t QX_DecimalLength(const char* text, bool allowSign);

// Converts the first length bytes of text, which QX_DecimalLength accepted. rangeError tells
// whether the value overflowed or underflowed.
long double QX_ConvertDecimal(const char* text, size_t length, bool* rangeError);

}  // namespace verdal::query
