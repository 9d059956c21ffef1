#include "query/qx_control_expr.h"

#include <vector>

#include "query/query_expr.h"

namespace verdal::query {

namespace {

QX_Error EvalBranch(QX_Expression* branch, QX_Value& valueOut) {
  return branch != nullptr ? branch->Eval(valueOut) : nullptr;
}

QX_Error Condition(QX_Expression* condition, bool* truth) {
  QX_Value value;
  if (QX_Error e = condition->Eval(value)) return e;
  *truth = QX_Utilities::Truth(value.get());
  return nullptr;
}

}  // namespace

QX_Error QX_SeqExpr::Fold(QX_Value& value) {
  // What the statements before gave is dropped; the chain's value is that of its last one.
  value.reset();
  return right_->Eval(value);
}

bool QX_CondExpr::IsString() const {
  return second_ != nullptr && third_ != nullptr && second_->IsString() && third_->IsString();
}

bool QX_CondExpr::IsNumber() const {
  return second_ != nullptr && third_ != nullptr && second_->IsNumber() && third_->IsNumber();
}

QX_Error QX_CondExpr::Eval(QX_Value& valueOut) {
  bool truth = false;
  if (QX_Error e = Condition(first_.get(), &truth)) return e;
  return EvalBranch(truth ? second_.get() : third_.get(), valueOut);
}

QX_Error QX_IfExpr::Eval(QX_Value& valueOut) {
  bool truth = false;
  if (QX_Error e = Condition(first_.get(), &truth)) return e;
  return (truth ? second_ : third_)->Eval(valueOut);
}

QX_Error QX_WhileExpr::Eval(QX_Value&) {
  for (;;) {
    bool truth = false;
    if (QX_Error e = Condition(left_.get(), &truth)) return e;
    if (!truth) return nullptr;
    if (QX_Error e = owner_->Step()) return e;
    QX_Value discarded;
    if (QX_Error e = EvalBranch(right_.get(), discarded)) return e;
  }
}

QX_Error QX_RepeatExpr::Eval(QX_Value&) {
  for (;;) {
    if (QX_Error e = owner_->Step()) return e;
    {
      QX_Value discarded;
      if (QX_Error e = EvalBranch(left_.get(), discarded)) return e;
    }
    bool truth = false;
    if (QX_Error e = Condition(right_.get(), &truth)) return e;
    if (truth) return nullptr;
  }
}

QX_Error QX_AssExpr::Eval(QX_Value& valueOut) {
  QX_Value value;
  if (QX_Error e = right_->Eval(value)) return e;
  if (QX_Error e = left_->Assign(value.get())) return e;
  valueOut = std::move(value);
  return nullptr;
}

}  // namespace verdal::query
