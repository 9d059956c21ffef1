#pragma once
// The two kinds of value, which are also the literal nodes of a tree: strings and 80-bit numbers.
#include <cstddef>

#include "query/qx_expression.h"

namespace verdal::query {

// Longest text a computation may build. Concatenation beyond it fails like exhausted memory, so
// that a runaway program cannot take the whole heap.
constexpr size_t kQxMaxValueLength = size_t{1} << 24;

class QX_StrExpr final : public QX_Expression {
 public:
  // A node that reads text owned by something that outlives it.
  static QX_Value Borrow(const char* text);
  // A node that takes over text, a block from QX_StrExpr::AllocText (or malloc).
  static QX_Value Own(char* text);
  // A node with its own copy of length bytes of text; empty when memory fails.
  static QX_Value Copy(const char* text, size_t length);
  // A block for length characters and a terminator; null beyond kQxMaxValueLength or when the
  // heap refuses.
  static char* AllocText(size_t length);

  ~QX_StrExpr() override;

  bool IsString() const override { return true; }
  int32_t Kind() const override { return kKindStr; }
  const char* Name() const override { return "str"; }
  QX_Error Eval(QX_Value& valueOut) override;
  void Print(std::ostream& stream, int indent) const override;

  const char* Text() const { return text_; }
  bool Borrowed() const { return borrowed_; }
  // Gives the node a copy of a borrowed text, so that it may be changed; false when memory fails.
  bool MakeOwned();
  // The text of an owned node, for changes in place.
  char* MutableText() { return borrowed_ ? nullptr : const_cast<char*>(text_); }

 private:
  QX_StrExpr(const char* text, bool borrowed) : borrowed_(borrowed), text_(text) {}

  bool borrowed_;
  const char* text_;
};

class QX_NumExpr final : public QX_Expression {
 public:
  explicit QX_NumExpr(long double value) : value_(value) {}

  bool IsNumber() const override { return true; }
  int32_t Kind() const override { return kKindNum; }
  const char* Name() const override { return "num"; }
  QX_Error Eval(QX_Value& valueOut) override;
  void Print(std::ostream& stream, int indent) const override;

  long double Value() const { return value_; }
  void SetValue(long double value) { value_ = value; }

 private:
  long double value_;
};

// Views of a value whose kind has been checked.
inline const QX_StrExpr* AsStr(const QX_Expression* value) {
  return value != nullptr && value->Kind() == kKindStr ? static_cast<const QX_StrExpr*>(value)
                                                       : nullptr;
}
inline QX_NumExpr* AsNum(QX_Expression* value) {
  return value != nullptr && value->Kind() == kKindNum ? static_cast<QX_NumExpr*>(value) : nullptr;
}

// A value as text: a string as it is, a number printed with "%.18Lg", an absent value empty.
// buffer holds the printed number and must live as long as the result is used.
const char* QX_ValueText(const QX_Expression* value, char (&buffer)[48]);

}  // namespace verdal::query
