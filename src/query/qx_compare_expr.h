#pragma once
// The relations and the substring search. Two strings compare as strings; anything else as
// numbers.
#include "query/qx_expression.h"

namespace verdal::query {

class QX_CompareExpr : public QX_BinaryExpr {
 public:
  using QX_BinaryExpr::QX_BinaryExpr;
  bool IsNumber() const override { return true; }

 protected:
  // Evaluates both children and gives 1 when test holds for the difference left - right.
  QX_Error Decide(QX_Value& valueOut, bool (*test)(long double difference));
};

#define QX_DECLARE_COMPARE(Class, kind, name)                                  \
  class Class final : public QX_CompareExpr {                                 \
   public:                                                                    \
    using QX_CompareExpr::QX_CompareExpr;                                     \
    int32_t Kind() const override { return kind; }                            \
    const char* Name() const override { return name; }                        \
    QX_Error Eval(QX_Value& valueOut) override;                               \
  };

QX_DECLARE_COMPARE(QX_LtExpr, kKindLt, "lt")
QX_DECLARE_COMPARE(QX_LeExpr, kKindLe, "le")
QX_DECLARE_COMPARE(QX_EqExpr, kKindEq, "eq")
QX_DECLARE_COMPARE(QX_NeExpr, kKindNe, "ne")
QX_DECLARE_COMPARE(QX_GeExpr, kKindGe, "ge")
QX_DECLARE_COMPARE(QX_GtExpr, kKindGt, "gt")

#undef QX_DECLARE_COMPARE

// 1 when the right text occurs in the left one, bytes compared exactly.
class QX_SearchExpr final : public QX_BinaryExpr {
 public:
  using QX_BinaryExpr::QX_BinaryExpr;
  bool IsNumber() const override { return true; }
  int32_t Kind() const override { return kKindSearch; }
  const char* Name() const override { return "search"; }
  QX_Error Eval(QX_Value& valueOut) override;
};

}  // namespace verdal::query
