#pragma once
// A variable in a tree: reads and writes the value held by its definition.
#include "query/qx_expression.h"
#include "query/qx_symbol_table.h"

namespace verdal::query {

class QX_VarExpr final : public QX_Expression {
 public:
  explicit QX_VarExpr(QX_VariableDef* definition) : definition_(definition) {}

  bool IsAssignable() const override { return true; }
  // The class code of the variable's present value.
  int32_t Kind() const override { return definition_->value->Kind(); }
  const char* Name() const override { return "var"; }
  QX_Error Eval(QX_Value& valueOut) override;
  void Print(std::ostream& stream, int indent) const override;
  QX_Error Assign(const QX_Expression* value) override;

 private:
  QX_VariableDef* definition_;
};

}  // namespace verdal::query
