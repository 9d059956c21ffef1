#pragma once
// Fields of the current node: by a fixed index (@n or a bound name) or by a computed one
// (Field[...]). Reads and writes go through the owning query.
#include "query/qx_expression.h"

namespace verdal::query {

class QueryExpr;

constexpr int32_t kQxMaxFieldIndex = 4095;  // the node's title

class QX_FIdxExpr final : public QX_Expression {
 public:
  QX_FIdxExpr(QueryExpr* owner, int32_t index) : owner_(owner), index_(index) {}

  bool IsString() const override { return true; }
  bool IsAssignable() const override { return true; }
  int32_t Kind() const override { return kKindFIdx; }
  const char* Name() const override { return "@"; }
  QX_Error Eval(QX_Value& valueOut) override;
  void Print(std::ostream& stream, int indent) const override;
  QX_Error Assign(const QX_Expression* value) override;

  int32_t Index() const { return index_; }

 private:
  QueryExpr* owner_;
  int32_t index_;
};

class QX_FArrExpr final : public QX_Expression {
 public:
  QX_FArrExpr(QueryExpr* owner, QX_Value index) : owner_(owner), index_(std::move(index)) {}

  bool IsString() const override { return true; }
  bool IsAssignable() const override { return true; }
  int32_t Kind() const override { return kKindFArr; }
  const char* Name() const override { return "field"; }
  QX_Error Eval(QX_Value& valueOut) override;
  void Print(std::ostream& stream, int indent) const override;
  QX_Error Assign(const QX_Expression* value) override;

 private:
  QX_Error FieldIndex(int32_t* indexOut);

  QueryExpr* owner_;
  QX_Value index_;
};

}  // namespace verdal::query
