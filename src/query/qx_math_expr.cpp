#include "query/qx_math_expr.h"

#include <cmath>

#include "query/qx_math_fault.h"
#include "query/qx_token.h"
#include "query/qx_value_expr.h"

namespace verdal::query {

namespace {

// Remainder with the sign of the first argument; a divisor of 0 gives 0 and no error.
long double Mod(long double x, long double y) { return y == 0 ? 0.0L : fmodl(x, y); }
long double Abs(long double x) { return fabsl(x); }

struct MathEntry {
  const char* name;
  QX_Math1 one;
  QX_Math2 two;
};

// In token code order, from 40.
const MathEntry kMath[] = {
    {"abs", Abs, nullptr},      {"acos", acosl, nullptr},  {"asin", asinl, nullptr},
    {"atan", atanl, nullptr},   {"ceil", ceill, nullptr},  {"cosh", coshl, nullptr},
    {"cos", cosl, nullptr},     {"exp", expl, nullptr},    {"floor", floorl, nullptr},
    {"log10", log10l, nullptr}, {"log", logl, nullptr},    {"mod", nullptr, Mod},
    {"pow", nullptr, powl},     {"sinh", sinhl, nullptr},  {"sin", sinl, nullptr},
    {"sqrt", sqrtl, nullptr},   {"tanh", tanhl, nullptr},  {"tan", tanl, nullptr},
};
static_assert(sizeof kMath / sizeof kMath[0] == kTokMathLast - kTokMathFirst + 1);

const MathEntry* Entry(int32_t code) {
  return code >= kTokMathFirst && code <= kTokMathLast ? &kMath[code - kTokMathFirst] : nullptr;
}

// The operand of a math call is a number; the parser wrapped anything else.
QX_Error NumberOf(QX_Expression* operand, QX_Value& value, long double* number) {
  if (QX_Error e = operand->Eval(value)) return e;
  return QX_Utilities::ToNumber(value.get(), number);
}

QX_Error Finish(long double result, QX_Value& valueOut) {
  const QX_MathFault fault = QX_TakeMathFault(result);
  if (fault != QX_MathFault::kNone) return QX_Utilities::MathError(fault, result);
  valueOut = std::make_unique<QX_NumExpr>(result);
  return nullptr;
}

}  // namespace

const char* QX_MathFunctionName(int32_t code) {
  const MathEntry* e = Entry(code);
  return e != nullptr ? e->name : nullptr;
}

QX_Math1 QX_MathFunction1(int32_t code) {
  const MathEntry* e = Entry(code);
  return e != nullptr ? e->one : nullptr;
}

QX_Math2 QX_MathFunction2(int32_t code) {
  const MathEntry* e = Entry(code);
  return e != nullptr ? e->two : nullptr;
}

QX_Error QX_Opn1Expr::Eval(QX_Value& valueOut) {
  QX_Value value;
  long double x = 0;
  if (QX_Error e = NumberOf(operand_.get(), value, &x)) return e;
  QX_ClearMathFault();
  return Finish(function_(x), valueOut);
}

QX_Error QX_Opn2Expr::Eval(QX_Value& valueOut) {
  QX_Value a, b;
  long double x = 0, y = 0;
  if (QX_Error e = NumberOf(left_.get(), a, &x)) return e;
  if (QX_Error e = NumberOf(right_.get(), b, &y)) return e;
  QX_ClearMathFault();
  return Finish(function_(x, y), valueOut);
}

}  // namespace verdal::query
