#pragma once
// and, or (short-circuit) and not; their values are the numbers 1 and 0.
#include "query/qx_expression.h"

namespace verdal::query {

class QX_AndExpr final : public QX_BinaryExpr {
 public:
  using QX_BinaryExpr::QX_BinaryExpr;
  bool IsNumber() const override { return true; }
  int32_t Kind() const override { return kKindAnd; }
  int32_t ChainLevel() const override { return 1; }
  const char* Name() const override { return "and"; }
  QX_Error Eval(QX_Value& valueOut) override { return EvalChain(valueOut); }

 protected:
  QX_Error Fold(QX_Value& value) override;
};

class QX_OrExpr final : public QX_BinaryExpr {
 public:
  using QX_BinaryExpr::QX_BinaryExpr;
  bool IsNumber() const override { return true; }
  int32_t Kind() const override { return kKindOr; }
  int32_t ChainLevel() const override { return 0; }
  const char* Name() const override { return "or"; }
  QX_Error Eval(QX_Value& valueOut) override { return EvalChain(valueOut); }

 protected:
  QX_Error Fold(QX_Value& value) override;
};

class QX_NotExpr final : public QX_UnaryExpr {
 public:
  using QX_UnaryExpr::QX_UnaryExpr;
  bool IsNumber() const override { return true; }
  int32_t Kind() const override { return kKindNot; }
  const char* Name() const override { return "not"; }
  QX_Error Eval(QX_Value& valueOut) override;
};

}  // namespace verdal::query
