#include "query/qx_value_expr.h"

#include <cstdlib>
#include <cstring>

#include "query/qx_number_text.h"

namespace verdal::query {

QX_Value QX_StrExpr::Borrow(const char* text) { return QX_Value(new QX_StrExpr(text, true)); }

QX_Value QX_StrExpr::Own(char* text) { return QX_Value(new QX_StrExpr(text, false)); }

char* QX_StrExpr::AllocText(size_t length) {
  if (length > kQxMaxValueLength) return nullptr;
  return static_cast<char*>(std::malloc(length + 1));
}

QX_Value QX_StrExpr::Copy(const char* text, size_t length) {
  char* block = AllocText(length);
  if (block == nullptr) return nullptr;
  std::memcpy(block, text, length);
  block[length] = '\0';
  return Own(block);
}

QX_StrExpr::~QX_StrExpr() {
  if (!borrowed_) std::free(const_cast<char*>(text_));
}

bool QX_StrExpr::MakeOwned() {
  if (!borrowed_) return true;
  const size_t length = std::strlen(text_);
  char* block = AllocText(length);
  if (block == nullptr) return false;
  std::memcpy(block, text_, length + 1);
  text_ = block;
  borrowed_ = false;
  return true;
}

QX_Error QX_StrExpr::Eval(QX_Value& valueOut) {
  valueOut = Borrow(text_);
  return nullptr;
}

void QX_StrExpr::Print(std::ostream& stream, int indent) const {
  Indent(stream, indent);
  stream << "str(\"" << text_ << "\"," << (borrowed_ ? 1 : 0) << ")\n";
}

QX_Error QX_NumExpr::Eval(QX_Value& valueOut) {
  valueOut = std::make_unique<QX_NumExpr>(value_);
  return nullptr;
}

void QX_NumExpr::Print(std::ostream& stream, int indent) const {
  char buffer[kQxNumberBuffer];
  QX_FormatNumber(value_, buffer);
  Indent(stream, indent);
  stream << "num(" << buffer << ")\n";
}

const char* QX_ValueText(const QX_Expression* value, char (&buffer)[48]) {
  static_assert(sizeof buffer == kQxNumberBuffer);
  if (const QX_StrExpr* s = AsStr(value)) return s->Text();
  if (value != nullptr && value->Kind() == kKindNum) {
    QX_FormatNumber(static_cast<const QX_NumExpr*>(value)->Value(), buffer);
    return buffer;
  }
  return "";
}

}  // namespace verdal::query
