#include "query/qx_compare_expr.h"

#include <cstring>

#include "query/qx_value_expr.h"

namespace verdal::query {

QX_Error QX_CompareExpr::Decide(QX_Value& valueOut, bool (*test)(long double difference)) {
  QX_Value a, b;
  if (QX_Error e = left_->Eval(a)) return e;
  if (QX_Error e = right_->Eval(b)) return e;
  long double difference = 0;
  const QX_StrExpr* s = AsStr(a.get());
  const QX_StrExpr* t = AsStr(b.get());
  if (s != nullptr && t != nullptr) {
    difference = CompareText(s->Text(), t->Text());
  } else {
    long double x = 0, y = 0;
    if (QX_Error e = ToNumber(a.get(), &x)) return e;
    if (QX_Error e = ToNumber(b.get(), &y)) return e;
    difference = x - y;
  }
  valueOut = std::make_unique<QX_NumExpr>(test(difference) ? 1 : 0);
  return nullptr;
}

QX_Error QX_LtExpr::Eval(QX_Value& v) { return Decide(v, [](long double d) { return d < 0; }); }
QX_Error QX_LeExpr::Eval(QX_Value& v) { return Decide(v, [](long double d) { return d <= 0; }); }
QX_Error QX_EqExpr::Eval(QX_Value& v) { return Decide(v, [](long double d) { return d == 0; }); }
QX_Error QX_NeExpr::Eval(QX_Value& v) { return Decide(v, [](long double d) { return d != 0; }); }
QX_Error QX_GeExpr::Eval(QX_Value& v) { return Decide(v, [](long double d) { return d >= 0; }); }
QX_Error QX_GtExpr::Eval(QX_Value& v) { return Decide(v, [](long double d) { return d > 0; }); }

QX_Error QX_SearchExpr::Eval(QX_Value& valueOut) {
  QX_Value a, b;
  if (QX_Error e = left_->Eval(a)) return e;
  if (QX_Error e = right_->Eval(b)) return e;
  const QX_StrExpr* text = AsStr(a.get());
  const QX_StrExpr* part = AsStr(b.get());
  if (text == nullptr || part == nullptr) return Err(kStringExpected);
  const bool found = std::strstr(text->Text(), part->Text()) != nullptr;
  valueOut = std::make_unique<QX_NumExpr>(found ? 1 : 0);
  return nullptr;
}

}  // namespace verdal::query
