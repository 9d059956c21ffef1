#pragma once
// Statements and the nodes that steer evaluation: sequence, if statement, loops, assignment and
// the ?: operator.
#include "query/qx_expression.h"

namespace verdal::query {

class QueryExpr;

class QX_SeqExpr final : public QX_BinaryExpr {
 public:
  QX_SeqExpr(QX_Value left, QX_Value right) : QX_BinaryExpr(std::move(left), std::move(right)) {}

  bool IsString() const override { return right_->IsString(); }
  bool IsNumber() const override { return right_->IsNumber(); }
  int32_t Kind() const override { return kKindSeq; }
  // Statements chain like the operators, one level below all of them.
  int32_t ChainLevel() const override { return 100; }
  const char* Name() const override { return "seq"; }
  QX_Error Eval(QX_Value& valueOut) override { return EvalChain(valueOut); }

 protected:
  QX_Error Fold(QX_Value& value) override;
};

// The if statement; its branches may be empty (an empty block).
class QX_CondExpr final : public QX_TernaryExpr {
 public:
  QX_CondExpr(QX_Value condition, QX_Value thenPart, QX_Value elsePart)
      : QX_TernaryExpr(std::move(condition), std::move(thenPart), std::move(elsePart)) {}

  bool IsString() const override;
  bool IsNumber() const override;
  int32_t Kind() const override { return kKindCond; }
  const char* Name() const override { return "cond"; }
  QX_Error Eval(QX_Value& valueOut) override;
};

// The operator ?:, which always has both branches.
class QX_IfExpr final : public QX_TernaryExpr {
 public:
  QX_IfExpr(QX_Value condition, QX_Value thenPart, QX_Value elsePart)
      : QX_TernaryExpr(std::move(condition), std::move(thenPart), std::move(elsePart)) {}

  bool IsString() const override { return second_->IsString() && third_->IsString(); }
  bool IsNumber() const override { return second_->IsNumber() && third_->IsNumber(); }
  int32_t Kind() const override { return kKindIf; }
  const char* Name() const override { return "if"; }
  QX_Error Eval(QX_Value& valueOut) override;
};

// Loops ask their query for each iteration, so that a host can stop them.
class QX_WhileExpr final : public QX_BinaryExpr {
 public:
  QX_WhileExpr(QueryExpr* owner, QX_Value condition, QX_Value body)
      : QX_BinaryExpr(std::move(condition), std::move(body)), owner_(owner) {}

  int32_t Kind() const override { return kKindWhile; }
  const char* Name() const override { return "while"; }
  QX_Error Eval(QX_Value& valueOut) override;

 private:
  QueryExpr* owner_;
};

class QX_RepeatExpr final : public QX_BinaryExpr {
 public:
  QX_RepeatExpr(QueryExpr* owner, QX_Value body, QX_Value condition)
      : QX_BinaryExpr(std::move(body), std::move(condition)), owner_(owner) {}

  int32_t Kind() const override { return kKindRepeat; }
  const char* Name() const override { return "repeat"; }
  QX_Error Eval(QX_Value& valueOut) override;

 private:
  QueryExpr* owner_;
};

class QX_AssExpr final : public QX_BinaryExpr {
 public:
  QX_AssExpr(QX_Value target, QX_Value value) : QX_BinaryExpr(std::move(target), std::move(value)) {}

  bool IsString() const override { return right_->IsString(); }
  bool IsNumber() const override { return right_->IsNumber(); }
  int32_t Kind() const override { return kKindAss; }
  const char* Name() const override { return "ass"; }
  QX_Error Eval(QX_Value& valueOut) override;
};

}  // namespace verdal::query
