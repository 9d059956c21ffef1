#pragma once
// A call of a function that the engine or a host registered.
#include "query/qx_expression.h"
#include "query/qx_symbol_table.h"

namespace verdal::query {

class QX_FncExpr final : public QX_Expression {
 public:
  static constexpr int kSlots = QX_SymbolTable::kMaxParameters;

  // arguments: as many as the definition has parameters, each already a string node.
  QX_FncExpr(QX_FunctionDef* definition, QX_Value (&arguments)[kSlots]);

  bool IsString() const override { return true; }
  int32_t Kind() const override { return kKindFnc; }
  const char* Name() const override { return "fnc"; }
  QX_Error Eval(QX_Value& valueOut) override;
  void Print(std::ostream& stream, int indent) const override;

 private:
  QX_FunctionDef* definition_;
  QX_Value arguments_[kSlots];
};

}  // namespace verdal::query
