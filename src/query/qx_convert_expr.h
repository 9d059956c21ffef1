#pragma once
// Conversions: upper case (^), to number (#) and to string ($). The parser also inserts the last
// two wherever an operator needs a type its operand does not have.
#include "query/qx_expression.h"

namespace verdal::query {

class QX_UpcaseExpr final : public QX_UnaryExpr {
 public:
  using QX_UnaryExpr::QX_UnaryExpr;
  bool IsString() const override { return true; }
  int32_t Kind() const override { return kKindUpcase; }
  const char* Name() const override { return "upcase"; }
  QX_Error Eval(QX_Value& valueOut) override;
};

class QX_ToNumExpr final : public QX_UnaryExpr {
 public:
  using QX_UnaryExpr::QX_UnaryExpr;
  bool IsNumber() const override { return true; }
  int32_t Kind() const override { return kKindToNum; }
  const char* Name() const override { return "tonum"; }
  QX_Error Eval(QX_Value& valueOut) override;
};

class QX_ToStrExpr final : public QX_UnaryExpr {
 public:
  using QX_UnaryExpr::QX_UnaryExpr;
  bool IsString() const override { return true; }
  int32_t Kind() const override { return kKindToStr; }
  const char* Name() const override { return "tostr"; }
  QX_Error Eval(QX_Value& valueOut) override;
};

}  // namespace verdal::query
