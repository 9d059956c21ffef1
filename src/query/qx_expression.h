#pragma once
// The root of all tree nodes, and the abstract nodes with one, two and three children.
// A run-time value is itself a node (QX_StrExpr or QX_NumExpr) owned by whoever receives it.
#include <cstdint>
#include <memory>
#include <ostream>

#include "query/qx_utilities.h"

namespace verdal::query {

class QX_Expression;
using QX_Value = std::unique_ptr<QX_Expression>;

// Class codes returned by Kind.
enum QX_Kind : int32_t {
  kKindStr = 0,
  kKindNum = 1,
  kKindFnc = 3,
  kKindOpn1 = 4,
  kKindOpn2 = 5,
  kKindFIdx = 6,
  kKindFArr = 7,
  kKindSeq = 8,
  kKindCond = 9,
  kKindWhile = 10,
  kKindRepeat = 11,
  kKindAss = 12,
  kKindIf = 13,
  kKindApp = 14,
  kKindMul = 15,
  kKindDiv = 16,
  kKindAdd = 17,
  kKindSub = 18,
  kKindAnd = 19,
  kKindOr = 20,
  kKindNot = 21,
  kKindLt = 22,
  kKindLe = 23,
  kKindEq = 24,
  kKindNe = 25,
  kKindGe = 26,
  kKindGt = 27,
  kKindSearch = 28,
  kKindUpcase = 29,
  kKindToNum = 30,
  kKindToStr = 31,
};

class QX_Expression : public QX_Utilities {
 public:
  static constexpr uint32_t kLiveSignature = 0xC2D3E4F5u;

  QX_Expression() = default;
  QX_Expression(const QX_Expression&) = delete;
  QX_Expression& operator=(const QX_Expression&) = delete;
  virtual ~QX_Expression() { signature = 0; }

  virtual bool IsString() const { return false; }
  virtual bool IsNumber() const { return false; }
  virtual bool IsAssignable() const { return false; }
  virtual int32_t Kind() const = 0;
  virtual const char* Name() const = 0;
  // valueOut is empty on entry and stays empty after an error or for an absent value.
  virtual QX_Error Eval(QX_Value& valueOut) = 0;
  virtual void Print(std::ostream& stream, int indent) const = 0;
  virtual QX_Error Assign(const QX_Expression* value);
  // Operators of one binding level chain to the left (a or b or c ...): the binding level of
  // such an operator, -1 for every other node. See QX_BinaryExpr.
  virtual int32_t ChainLevel() const { return -1; }

  // A debugging mark; nothing tests it.
  uint32_t signature = kLiveSignature;
};

class QX_UnaryExpr : public QX_Expression {
 public:
  explicit QX_UnaryExpr(QX_Value operand) : operand_(std::move(operand)) {}
  void Print(std::ostream& stream, int indent) const override;
  const QX_Expression* Operand() const { return operand_.get(); }

 protected:
  QX_Value operand_;
};

// A chain of operators of one level is as long as its text: it is evaluated, printed and
// destroyed along its left spine, so that its length costs no stack.
class QX_BinaryExpr : public QX_Expression {
 public:
  QX_BinaryExpr(QX_Value left, QX_Value right) : left_(std::move(left)), right_(std::move(right)) {}
  ~QX_BinaryExpr() override;
  void Print(std::ostream& stream, int indent) const override;
  const QX_Expression* Left() const { return left_.get(); }
  const QX_Expression* Right() const { return right_.get(); }

 protected:
  // For an operator that chains: evaluates the chain's first operand, then folds each link in.
  QX_Error EvalChain(QX_Value& valueOut);
  // One link of a chain: value holds what the links below gave; combines it with the right child.
  virtual QX_Error Fold(QX_Value& value);

  QX_Value left_;
  QX_Value right_;

 private:
  class Spine;
};

class QX_TernaryExpr : public QX_Expression {
 public:
  QX_TernaryExpr(QX_Value first, QX_Value second, QX_Value third)
      : first_(std::move(first)), second_(std::move(second)), third_(std::move(third)) {}
  void Print(std::ostream& stream, int indent) const override;

 protected:
  QX_Value first_;
  QX_Value second_;
  QX_Value third_;  // may be empty: an if statement without else
};

// Writes name "(", the children one level deeper, and ")" at the node's own level. Empty
// children (an empty block as a branch) are left out.
void QX_PrintComposite(std::ostream& stream, int indent, const char* name,
                       std::initializer_list<const QX_Expression*> children);

}  // namespace verdal::query
