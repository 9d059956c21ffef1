#include "query/qx_convert_expr.h"

#include <cstring>

#include "query/qx_char_upper.h"
#include "query/qx_number_text.h"
#include "query/qx_value_expr.h"

namespace verdal::query {

QX_Error QX_UpcaseExpr::Eval(QX_Value& valueOut) {
  QX_Value value;
  if (QX_Error e = operand_->Eval(value)) return e;
  if (AsStr(value.get()) == nullptr) return Err(kStringExpected);
  // A borrowed text belongs to a literal or a field: change a copy.
  auto* s = static_cast<QX_StrExpr*>(value.get());
  if (!s->MakeOwned()) return Err(kNoMemory);
  QX_UpcaseInPlace(s->MutableText());
  valueOut = std::move(value);
  return nullptr;
}

QX_Error QX_ToNumExpr::Eval(QX_Value& valueOut) {
  QX_Value value;
  if (QX_Error e = operand_->Eval(value)) return e;
  if (AsNum(value.get()) != nullptr) {
    valueOut = std::move(value);
    return nullptr;
  }
  long double number = 0;
  if (QX_Error e = ToNumber(value.get(), &number)) return e;
  valueOut = std::make_unique<QX_NumExpr>(number);
  return nullptr;
}

QX_Error QX_ToStrExpr::Eval(QX_Value& valueOut) {
  QX_Value value;
  if (QX_Error e = operand_->Eval(value)) return e;
  if (AsStr(value.get()) != nullptr) {
    valueOut = std::move(value);
    return nullptr;
  }
  if (QX_NumExpr* n = AsNum(value.get())) {
    char buffer[kQxNumberBuffer];
    const int length = QX_FormatNumber(n->Value(), buffer);
    valueOut = QX_StrExpr::Copy(buffer, static_cast<size_t>(length));
    return valueOut != nullptr ? nullptr : Err(kNoMemory);
  }
  valueOut = QX_StrExpr::Borrow("");
  return nullptr;
}

}  // namespace verdal::query
