#include "query/qx_control_expr.h"

#include <vector>

#include "query/query_expr.h"

namespace verdal::query {

namespace {

// The left spine of a statement chain, top first. Programs can be long, so chains are walked
// with this list instead of recursion.
class Spine {
 public:
  explicit Spine(const QX_Expression* top) {
    for (const QX_Expression* node = top; node->Kind() == kKindSeq;
         node = static_cast<const QX_SeqExpr*>(node)->Left()) {
      Push(static_cast<const QX_SeqExpr*>(node));
    }
  }
  size_t Size() const { return size_; }
  const QX_SeqExpr* At(size_t i) const { return i < kLocal ? local_[i] : more_[i - kLocal]; }

 private:
  void Push(const QX_SeqExpr* s) {
    if (size_ < kLocal) {
      local_[size_] = s;
    } else {
      more_.push_back(s);
    }
    ++size_;
  }
  static constexpr size_t kLocal = 16;
  const QX_SeqExpr* local_[kLocal];
  std::vector<const QX_SeqExpr*> more_;
  size_t size_ = 0;
};

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

QX_SeqExpr::~QX_SeqExpr() {
  QX_Value next = std::move(left_);
  while (next != nullptr && next->Kind() == kKindSeq) {
    QX_Value inner = std::move(static_cast<QX_SeqExpr*>(next.get())->left_);
    next = std::move(inner);  // destroys the emptied link
  }
}

QX_Error QX_SeqExpr::Eval(QX_Value& valueOut) {
  const Spine spine(this);
  const size_t n = spine.Size();
  {
    QX_Value first;
    if (QX_Error e = const_cast<QX_Expression*>(spine.At(n - 1)->Left())->Eval(first)) return e;
  }
  for (size_t i = n; i-- > 0;) {
    QX_Value value;
    if (QX_Error e = const_cast<QX_Expression*>(spine.At(i)->Right())->Eval(value)) return e;
    if (i == 0) valueOut = std::move(value);
  }
  return nullptr;
}

void QX_SeqExpr::Print(std::ostream& stream, int indent) const {
  const Spine spine(this);
  const size_t n = spine.Size();
  for (size_t i = 0; i < n; ++i) {
    Indent(stream, indent + static_cast<int>(i));
    stream << Name() << "(\n";
  }
  spine.At(n - 1)->Left()->Print(stream, indent + static_cast<int>(n));
  for (size_t i = n; i-- > 0;) {
    spine.At(i)->Right()->Print(stream, indent + static_cast<int>(i) + 1);
    Indent(stream, indent + static_cast<int>(i));
    stream << ")\n";
  }
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
