#pragma once
// Arithmetic on 80-bit numbers, and concatenation of strings.
#include "query/qx_expression.h"

namespace verdal::query {

class QX_ArithExpr : public QX_BinaryExpr {
 public:
  using QX_BinaryExpr::QX_BinaryExpr;
  bool IsNumber() const override { return true; }
  QX_Error Eval(QX_Value& valueOut) final { return EvalChain(valueOut); }

 protected:
  QX_Error Fold(QX_Value& value) final;
  virtual QX_Error Compute(long double left, long double right, long double* resultOut) const = 0;
};

class QX_AddExpr final : public QX_ArithExpr {
 public:
  using QX_ArithExpr::QX_ArithExpr;
  int32_t Kind() const override { return kKindAdd; }
  int32_t ChainLevel() const override { return 4; }
  const char* Name() const override { return "add"; }

 protected:
  QX_Error Compute(long double left, long double right, long double* resultOut) const override;
};

class QX_SubExpr final : public QX_ArithExpr {
 public:
  using QX_ArithExpr::QX_ArithExpr;
  int32_t Kind() const override { return kKindSub; }
  int32_t ChainLevel() const override { return 4; }
  const char* Name() const override { return "sub"; }

 protected:
  QX_Error Compute(long double left, long double right, long double* resultOut) const override;
};

class QX_MulExpr final : public QX_ArithExpr {
 public:
  using QX_ArithExpr::QX_ArithExpr;
  int32_t Kind() const override { return kKindMul; }
  int32_t ChainLevel() const override { return 5; }
  const char* Name() const override { return "mul"; }

 protected:
  QX_Error Compute(long double left, long double right, long double* resultOut) const override;
};

class QX_DivExpr final : public QX_ArithExpr {
 public:
  using QX_ArithExpr::QX_ArithExpr;
  int32_t Kind() const override { return kKindDiv; }
  int32_t ChainLevel() const override { return 5; }
  const char* Name() const override { return "div"; }

 protected:
  QX_Error Compute(long double left, long double right, long double* resultOut) const override;
};

class QX_AppExpr final : public QX_BinaryExpr {
 public:
  using QX_BinaryExpr::QX_BinaryExpr;
  bool IsString() const override { return true; }
  int32_t Kind() const override { return kKindApp; }
  int32_t ChainLevel() const override { return 3; }
  const char* Name() const override { return "&"; }
  QX_Error Eval(QX_Value& valueOut) override { return EvalChain(valueOut); }

 protected:
  QX_Error Fold(QX_Value& value) override;
};

}  // namespace verdal::query
