#include "query/qx_var_expr.h"

#include <cstring>

#include "query/qx_value_expr.h"

namespace verdal::query {

QX_Error QX_VarExpr::Eval(QX_Value& valueOut) {
  // A string is read as a copy: the statement that reads the variable may also assign it
  // (x := x, or x & (x := "b")), and a borrowed text would then outlive its block.
  if (const QX_StrExpr* s = AsStr(definition_->value)) {
    valueOut = QX_StrExpr::Copy(s->Text(), std::strlen(s->Text()));
    return valueOut != nullptr ? nullptr : Err(kNoMemory);
  }
  return definition_->value->Eval(valueOut);
}

QX_Error QX_VarExpr::Assign(const QX_Expression* value) {
  QX_Value copy;
  if (const QX_StrExpr* s = AsStr(value)) {
    copy = QX_StrExpr::Copy(s->Text(), std::strlen(s->Text()));
    if (copy == nullptr) return Err(kNoMemory);
  } else {
    long double number = 0;
    if (QX_Error e = ToNumber(value, &number)) return e;
    copy = std::make_unique<QX_NumExpr>(number);
  }
  delete definition_->value;
  definition_->value = copy.release();
  return nullptr;
}

void QX_VarExpr::Print(std::ostream& stream, int indent) const {
  Indent(stream, indent);
  stream << "var('" << definition_->name << "')\n";
}

}  // namespace verdal::query
