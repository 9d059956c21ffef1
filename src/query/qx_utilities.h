#pragma once
// Conversions between the two kinds of run-time value, shared by all tree nodes.
#include <cstdint>
#include <iosfwd>

#include "query/qx_err_defs.h"
#include "query/qx_math_fault.h"

namespace verdal::query {

class QX_Expression;

// Compares two texts the way the system compares strings (negative, 0, positive).
using QX_TextCompare = int (*)(const char* left, const char* right);

class QX_Utilities : public QX_ErrDefs {
 public:
  // A string is true when not empty, a number when not 0; an absent value is false.
  static bool Truth(const QX_Expression* value);
  static QX_Error ToNumber(const QX_Expression* value, long double* numberOut);
  // Leading white space is skipped, trailing text ignored; no number at all reads as 0.
  static QX_Error TextToNumber(const char* text, long double* numberOut);
  // The number cut toward 0; error 9 outside the 32-bit signed range.
  static QX_Error NumberToInt(long double number, int32_t* intOut);
  static QX_Error ToInt(const QX_Expression* value, int32_t* intOut);
  static QX_Error MathError(QX_MathFault fault, long double value);
  static void Indent(std::ostream& stream, int level);

  // The comparison of two strings by the relations. By default bytes compare unsigned, as the
  // case-sensitive system comparison does for plain ASCII; the engine may install its collation.
  static int CompareText(const char* left, const char* right) { return textCompare(left, right); }
  static void SetTextCompare(QX_TextCompare compare);

 private:
  static QX_TextCompare textCompare;
};

}  // namespace verdal::query
