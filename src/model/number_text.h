#pragma once
// Numbers as text, independent of the process locale: the reader and printer behind every
// conversion of numeric values.
#include <cstdint>
#include <string>
#include <string_view>

namespace verdal::model {

// Reads the decimal number at the start of the text as an 80-bit value: white space, sign, digits,
// a point and digits, an exponent. Reading stops at the first character that cannot belong to the
// number; text without a number gives 0. Hexadecimal forms, "inf" and "nan" are not numbers here.
// A number too large for the format gives the largest finite value of its sign.
long double ReadNumber(std::string_view text);

// A decimal in the plain form [sign] digits [. digits], exactly ±mantissa / 10^fractionDigits.
struct PlainDecimal {
  uint64_t mantissa = 0;
  int32_t fractionDigits = 0;
  bool negative = false;

  // As ReadNumber gives it: correctly rounded to 80 bits.
  long double Value() const;
};

// The common case of ReadNumber in one pass, for hot loops over stored values: a NUL-terminated
// text that starts, after white space, with [sign] digits [. digits] and no exponent mark after
// them. Text without digits reads as 0. False, with out untouched, for any other form (an
// exponent, more than 19 significant digits).
bool ReadPlainDecimal(const char* text, PlainDecimal* out);

// Prints with exactly `decimals` digits after a point; with 0 (or less) without a point. A value
// that is not finite prints as 0.
void FormatNumber(long double value, int decimals, std::string& out);

// Reads an integer like atoi: white space, sign, digits up to the first other character; 0 when
// there are none. Saturates at the limits of 32 bits.
int32_t ReadInteger(std::string_view text);

}  // namespace verdal::model
