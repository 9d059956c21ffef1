#include "query/qx_logic_expr.h"

#include "query/qx_value_expr.h"

namespace verdal::query {

namespace {

QX_Error TruthOf(QX_Expression* node, bool* truth) {
  QX_Value value;
  if (QX_Error e = node->Eval(value)) return e;
  *truth = QX_Utilities::Truth(value.get());
  return nullptr;
}

// Evaluates the right child only while the value so far has not decided: for "and" when it is
// true, for "or" when it is false. The value becomes 1 or 0.
QX_Error ShortCircuit(QX_Value& value, QX_Expression* right, bool goOnWhen) {
  bool truth = QX_Utilities::Truth(value.get());
  if (truth == goOnWhen) {
    if (QX_Error e = TruthOf(right, &truth)) return e;
  }
  if (QX_NumExpr* n = AsNum(value.get()))
    n->SetValue(truth ? 1 : 0);
  else
    value = std::make_unique<QX_NumExpr>(truth ? 1 : 0);
  return nullptr;
}

}  // namespace

QX_Error QX_AndExpr::Fold(QX_Value& value) { return ShortCircuit(value, right_.get(), true); }

QX_Error QX_OrExpr::Fold(QX_Value& value) { return ShortCircuit(value, right_.get(), false); }

QX_Error QX_NotExpr::Eval(QX_Value& valueOut) {
  bool truth = false;
  if (QX_Error e = TruthOf(operand_.get(), &truth)) return e;
  valueOut = std::make_unique<QX_NumExpr>(truth ? 0 : 1);
  return nullptr;
}

}  // namespace verdal::query
