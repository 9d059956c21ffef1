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

// Evaluates the right child only while the left one has not decided: for "and" when it is
// true, for "or" when it is false.
QX_Error ShortCircuit(QX_Expression* left, QX_Expression* right, bool goOnWhen,
                      QX_Value& valueOut) {
  bool truth = false;
  if (QX_Error e = TruthOf(left, &truth)) return e;
  if (truth == goOnWhen) {
    if (QX_Error e = TruthOf(right, &truth)) return e;
  }
  valueOut = std::make_unique<QX_NumExpr>(truth ? 1 : 0);
  return nullptr;
}

}  // namespace

QX_Error QX_AndExpr::Eval(QX_Value& valueOut) {
  return ShortCircuit(left_.get(), right_.get(), true, valueOut);
}

QX_Error QX_OrExpr::Eval(QX_Value& valueOut) {
  return ShortCircuit(left_.get(), right_.get(), false, valueOut);
}

QX_Error QX_NotExpr::Eval(QX_Value& valueOut) {
  bool truth = false;
  if (QX_Error e = TruthOf(operand_.get(), &truth)) return e;
  valueOut = std::make_unique<QX_NumExpr>(truth ? 0 : 1);
  return nullptr;
}

}  // namespace verdal::query
