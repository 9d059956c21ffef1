#pragma once
// Calls of the built-in math functions: one argument, or two for mod and pow.
#include "query/qx_expression.h"

namespace verdal::query {

using QX_Math1 = long double (*)(long double);
using QX_Math2 = long double (*)(long double, long double);

// Name of the math function with token code 40 to 57, null for other codes.
const char* QX_MathFunctionName(int32_t code);
// The function of a one-argument code, or of mod and pow; null for the other kind.
QX_Math1 QX_MathFunction1(int32_t code);
QX_Math2 QX_MathFunction2(int32_t code);

class QX_Opn1Expr final : public QX_UnaryExpr {
 public:
  QX_Opn1Expr(const char* name, QX_Math1 function, QX_Value operand)
      : QX_UnaryExpr(std::move(operand)), name_(name), function_(function) {}
  bool IsNumber() const override { return true; }
  int32_t Kind() const override { return kKindOpn1; }
  const char* Name() const override { return name_; }
  QX_Error Eval(QX_Value& valueOut) override;

 private:
  const char* name_;
  QX_Math1 function_;
};

class QX_Opn2Expr final : public QX_BinaryExpr {
 public:
  QX_Opn2Expr(const char* name, QX_Math2 function, QX_Value left, QX_Value right)
      : QX_BinaryExpr(std::move(left), std::move(right)), name_(name), function_(function) {}
  bool IsNumber() const override { return true; }
  int32_t Kind() const override { return kKindOpn2; }
  const char* Name() const override { return name_; }
  QX_Error Eval(QX_Value& valueOut) override;

 private:
  const char* name_;
  QX_Math2 function_;
};

}  // namespace verdal::query
