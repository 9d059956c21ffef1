#include "query/qx_expression.h"

#include <vector>

namespace verdal::query {

// The links of a chain from the top down, as long as they are of the top's level.
class QX_BinaryExpr::Spine {
 public:
  explicit Spine(const QX_BinaryExpr* top) {
    const int32_t level = top->ChainLevel();
    const QX_BinaryExpr* node = top;
    for (;;) {
      Push(node);
      const QX_Expression* left = node->left_.get();
      if (level < 0 || left == nullptr || left->ChainLevel() != level) break;
      node = static_cast<const QX_BinaryExpr*>(left);
    }
  }
  Spine(const Spine&) = delete;
  Spine& operator=(const Spine&) = delete;

  size_t Size() const { return size_; }
  QX_BinaryExpr* At(size_t i) const {
    return const_cast<QX_BinaryExpr*>(i < kLocal ? local_[i] : more_[i - kLocal]);
  }

 private:
  void Push(const QX_BinaryExpr* node) {
    if (size_ < kLocal)
      local_[size_] = node;
    else
      more_.push_back(node);
    ++size_;
  }
  static constexpr size_t kLocal = 16;
  const QX_BinaryExpr* local_[kLocal];
  std::vector<const QX_BinaryExpr*> more_;
  size_t size_ = 0;
};

QX_BinaryExpr::~QX_BinaryExpr() {
  // Unlinks the spine below, so that each link dies with no chain left under it.
  QX_Value next = std::move(left_);
  while (next != nullptr && next->ChainLevel() >= 0) {
    QX_Value inner = std::move(static_cast<QX_BinaryExpr*>(next.get())->left_);
    next = std::move(inner);
  }
}

QX_Error QX_BinaryExpr::EvalChain(QX_Value& valueOut) {
  const Spine spine(this);
  const size_t n = spine.Size();
  QX_Value value;
  if (QX_Error e = spine.At(n - 1)->left_->Eval(value)) return e;
  for (size_t i = n; i-- > 0;) {
    if (QX_Error e = spine.At(i)->Fold(value)) return e;
  }
  valueOut = std::move(value);
  return nullptr;
}

QX_Error QX_BinaryExpr::Fold(QX_Value&) { return Err(kSyntax); }

QX_Error QX_Expression::Assign(const QX_Expression*) { return Err(kIllegalAssignment); }

void QX_PrintComposite(std::ostream& stream, int indent, const char* name,
                       std::initializer_list<const QX_Expression*> children) {
  QX_Utilities::Indent(stream, indent);
  stream << name << "(\n";
  for (const QX_Expression* child : children) {
    if (child != nullptr) child->Print(stream, indent + 1);
  }
  QX_Utilities::Indent(stream, indent);
  stream << ")\n";
}

void QX_UnaryExpr::Print(std::ostream& stream, int indent) const {
  QX_PrintComposite(stream, indent, Name(), {operand_.get()});
}

void QX_BinaryExpr::Print(std::ostream& stream, int indent) const {
  // As nested composites would print it, one level deeper per link.
  const Spine spine(this);
  const size_t n = spine.Size();
  for (size_t i = 0; i < n; ++i) {
    Indent(stream, indent + static_cast<int>(i));
    stream << spine.At(i)->Name() << "(\n";
  }
  if (const QX_Expression* first = spine.At(n - 1)->left_.get())
    first->Print(stream, indent + static_cast<int>(n));
  for (size_t i = n; i-- > 0;) {
    if (const QX_Expression* right = spine.At(i)->right_.get()) right->Print(stream, indent + static_cast<int>(i) + 1);
    Indent(stream, indent + static_cast<int>(i));
    stream << ")\n";
  }
}

void QX_TernaryExpr::Print(std::ostream& stream, int indent) const {
  QX_PrintComposite(stream, indent, Name(), {first_.get(), second_.get(), third_.get()});
}

}  // namespace verdal::query
