#include "query/qx_arith_expr.h"

#include <cstring>

#include "query/qx_value_expr.h"

namespace verdal::query {

QX_Error QX_ArithExpr::Fold(QX_Value& a) {
  QX_Value b;
  if (QX_Error e = right_->Eval(b)) return e;
  long double x = 0, y = 0, result = 0;
  if (QX_Error e = ToNumber(a.get(), &x)) return e;
  if (QX_Error e = ToNumber(b.get(), &y)) return e;
  if (QX_Error e = Compute(x, y, &result)) return e;
  // The left operand's node carries the result on.
  if (QX_NumExpr* n = AsNum(a.get()))
    n->SetValue(result);
  else
    a = std::make_unique<QX_NumExpr>(result);
  return nullptr;
}

QX_Error QX_AddExpr::Compute(long double left, long double right, long double* resultOut) const {
  *resultOut = left + right;
  return nullptr;
}

QX_Error QX_SubExpr::Compute(long double left, long double right, long double* resultOut) const {
  *resultOut = left - right;
  return nullptr;
}

QX_Error QX_MulExpr::Compute(long double left, long double right, long double* resultOut) const {
  *resultOut = left * right;
  return nullptr;
}

QX_Error QX_DivExpr::Compute(long double left, long double right, long double* resultOut) const {
  if (right == 0) return Err(kDivisionByZero);
  *resultOut = left / right;
  return nullptr;
}

QX_Error QX_AppExpr::Fold(QX_Value& a) {
  QX_Value b;
  if (QX_Error e = right_->Eval(b)) return e;
  char bufferA[48], bufferB[48];
  const char* left = QX_ValueText(a.get(), bufferA);
  const char* right = QX_ValueText(b.get(), bufferB);
  const size_t n = std::strlen(left), m = std::strlen(right);
  char* text = n + m >= n ? QX_StrExpr::AllocText(n + m) : nullptr;
  if (text == nullptr) return Err(kNoMemory);
  std::memcpy(text, left, n);
  std::memcpy(text + n, right, m + 1);
  a = QX_StrExpr::Own(text);
  return nullptr;
}

}  // namespace verdal::query
