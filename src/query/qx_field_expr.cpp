#include "query/qx_field_expr.h"

#include <cstdlib>

#include "query/query_expr.h"
#include "query/qx_value_expr.h"

namespace verdal::query {

namespace {

QX_Error ReadField(QueryExpr* owner, int32_t index, QX_Value& valueOut) {
  QX_FieldText field;
  if (QX_Error e = owner->GetField(&field, index)) {
    if (field.owned) std::free(const_cast<char*>(field.text));
    return e;
  }
  if (field.text == nullptr) {
    valueOut = QX_StrExpr::Borrow("");
  } else if (field.owned) {
    valueOut = QX_StrExpr::Own(const_cast<char*>(field.text));
  } else {
    valueOut = QX_StrExpr::Borrow(field.text);
  }
  return nullptr;
}

QX_Error WriteField(QueryExpr* owner, int32_t index, const QX_Expression* value) {
  char buffer[48];
  return owner->SetField(index, QX_ValueText(value, buffer));
}

}  // namespace

QX_Error QX_FIdxExpr::Eval(QX_Value& valueOut) { return ReadField(owner_, index_, valueOut); }

QX_Error QX_FIdxExpr::Assign(const QX_Expression* value) { return WriteField(owner_, index_, value); }

void QX_FIdxExpr::Print(std::ostream& stream, int indent) const {
  Indent(stream, indent);
  stream << "@(" << index_ << ")\n";
}

QX_Error QX_FArrExpr::FieldIndex(int32_t* indexOut) {
  QX_Value value;
  if (QX_Error e = index_->Eval(value)) return e;
  int32_t number = 0;
  if (QX_Error e = ToInt(value.get(), &number)) return e;
  if (number < 1 || number - 1 > kQxMaxFieldIndex) return Err(kBadFieldIndex);
  *indexOut = number - 1;
  return nullptr;
}

QX_Error QX_FArrExpr::Eval(QX_Value& valueOut) {
  int32_t index = 0;
  if (QX_Error e = FieldIndex(&index)) return e;
  return ReadField(owner_, index, valueOut);
}

QX_Error QX_FArrExpr::Assign(const QX_Expression* value) {
  int32_t index = 0;
  if (QX_Error e = FieldIndex(&index)) return e;
  return WriteField(owner_, index, value);
}

void QX_FArrExpr::Print(std::ostream& stream, int indent) const {
  Indent(stream, indent);
  stream << "field (\n";
  index_->Print(stream, indent + 1);
  Indent(stream, indent);
  stream << ")\n";
}

}  // namespace verdal::query
