#include "query/qx_expression.h"

namespace verdal::query {

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
  QX_PrintComposite(stream, indent, Name(), {left_.get(), right_.get()});
}

void QX_TernaryExpr::Print(std::ostream& stream, int indent) const {
  QX_PrintComposite(stream, indent, Name(), {first_.get(), second_.get(), third_.get()});
}

}  // namespace verdal::query
