#include "query/qx_fnc_expr.h"

#include <cstring>

#include "query/qx_value_expr.h"

namespace verdal::query {

QX_FncExpr::QX_FncExpr(QX_FunctionDef* definition, QX_Value (&arguments)[kSlots])
    : definition_(definition) {
  for (int i = 0; i < kSlots; ++i) arguments_[i] = std::move(arguments[i]);
}

QX_Error QX_FncExpr::Eval(QX_Value& valueOut) {
  QX_Value values[kSlots];
  char buffers[kSlots][48];
  const char* texts[kSlots] = {};
  for (int i = 0; i < kSlots; ++i) {
    if (arguments_[i] == nullptr) continue;
    if (QX_Error e = arguments_[i]->Eval(values[i])) return e;
    texts[i] = QX_ValueText(values[i].get(), buffers[i]);
  }
  const char* result = nullptr;
  if (QX_Error e = definition_->function(&result, definition_->context, texts[0], texts[1],
                                         texts[2], texts[3])) {
    return e;
  }
  if (result == nullptr) result = "";
  valueOut = QX_StrExpr::Copy(result, std::strlen(result));
  return valueOut != nullptr ? nullptr : Err(kNoMemory);
}

void QX_FncExpr::Print(std::ostream& stream, int indent) const {
  Indent(stream, indent);
  stream << "fnc '" << definition_->name << "' (\n";
  for (const QX_Value& argument : arguments_) {
    if (argument != nullptr) argument->Print(stream, indent + 1);
  }
  Indent(stream, indent);
  stream << ")\n";
}

}  // namespace verdal::query
