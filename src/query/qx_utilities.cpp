#include "query/qx_utilities.h"

#include <cmath>
#include <cstring>
#include <ostream>

#include "model/number_text.h"
#include "query/qx_number_text.h"
#include "query/qx_value_expr.h"

namespace verdal::query {

namespace {

int CompareBytes(const char* left, const char* right) { return std::strcmp(left, right); }

bool IsBlank(char c) { return c == ' ' || (c >= 9 && c <= 13); }

}  // namespace

QX_TextCompare QX_Utilities::textCompare = CompareBytes;

void QX_Utilities::SetTextCompare(QX_TextCompare compare) {
  textCompare = compare != nullptr ? compare : CompareBytes;
}

bool QX_Utilities::Truth(const QX_Expression* value) {
  if (value == nullptr) return false;
  if (const QX_StrExpr* s = AsStr(value)) return s->Text()[0] != '\0';
  if (value->Kind() == kKindNum) return static_cast<const QX_NumExpr*>(value)->Value() != 0;
  return false;
}

QX_Error QX_Utilities::ToNumber(const QX_Expression* value, long double* numberOut) {
  if (const QX_StrExpr* s = AsStr(value)) return TextToNumber(s->Text(), numberOut);
  if (value != nullptr && value->Kind() == kKindNum) {
    *numberOut = static_cast<const QX_NumExpr*>(value)->Value();
  } else {
    *numberOut = 0;
  }
  return nullptr;
}

QX_Error QX_Utilities::TextToNumber(const char* text, long double* numberOut) {
  // Stored numbers nearly always have the plain form, read in one pass.
  if (model::PlainDecimal d; model::ReadPlainDecimal(text, &d)) {
    *numberOut = d.Value();
    return nullptr;
  }
  while (IsBlank(*text)) ++text;
  const size_t length = QX_DecimalLength(text, true);
  if (length == 0) {
    *numberOut = 0;
    return nullptr;
  }
  bool rangeError = false;
  *numberOut = QX_ConvertDecimal(text, length, &rangeError);
  return rangeError ? MathError(QX_MathFault::kRange, *numberOut) : nullptr;
}

QX_Error QX_Utilities::NumberToInt(long double number, int32_t* intOut) {
  // The negated tests also refuse NaN.
  if (!(number >= -2147483648.0L && number <= 2147483647.0L)) return Err(kIntRange);
  *intOut = static_cast<int32_t>(number);
  return nullptr;
}

QX_Error QX_Utilities::ToInt(const QX_Expression* value, int32_t* intOut) {
  long double number = 0;
  if (QX_Error e = ToNumber(value, &number)) return e;
  return NumberToInt(number, intOut);
}

QX_Error QX_Utilities::MathError(QX_MathFault fault, long double value) {
  if (fault == QX_MathFault::kDomain) return Err(kDomain);
  if (fault != QX_MathFault::kRange && std::isfinite(value)) return Err(kNumberExpected);
  return value != 0 ? Err(kOverflow) : Err(kUnderflow);
}

void QX_Utilities::Indent(std::ostream& stream, int level) {
  for (int i = 0; i < level; ++i) stream << "  ";
}

}  // namespace verdal::query
