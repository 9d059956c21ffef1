#include "query/query_expr.h"

#include <iostream>

#include "query/qx_number_text.h"
#include "query/qx_value_expr.h"

namespace verdal::query {

QueryExpr::QueryExpr()
    : local_(QX_SymbolTable::kLocalBuckets, &QX_GlobalSymbols()), parser_(this, local_) {
  QX_GlobalSymbols().EnterKeywords();
}

// The tree goes first: its nodes point into the tables.
QueryExpr::~QueryExpr() { tree_.reset(); }

QX_Error QueryExpr::GetField(QX_FieldText* textOut, int32_t) {
  textOut->text = nullptr;
  textOut->owned = false;
  return Err(kFieldReadFailed);
}

QX_Error QueryExpr::SetField(int32_t, const char*) { return Err(kAssignmentFailed); }

QX_Error QueryExpr::Parse(const char* text) {
  tree_.reset();
  QX_Value tree;
  QX_Error e = parser_.Parse(text, tree);
  if (e == nullptr) tree_ = std::move(tree);
  return e;
}

void QueryExpr::Clear() { tree_.reset(); }

QX_Error QueryExpr::DefineFunction(const char* name, bool global, int32_t parameterCount,
                                   QX_UserFunction function, void* context) {
  return local_.DefineFunction(name, global, parameterCount, function, context);
}

QX_Error QueryExpr::DefineField(const char* name, bool global, int32_t index) {
  return local_.DefineField(name, global, index);
}

QX_Error QueryExpr::DefineString(const char* name, bool global, const char* text) {
  return local_.DefineVariable(name, global, QX_StrExpr::Borrow(text != nullptr ? text : ""), nullptr);
}

QX_Error QueryExpr::DefineNumber(const char* name, bool global, long double value) {
  return local_.DefineVariable(name, global, std::make_unique<QX_NumExpr>(value), nullptr);
}

QX_Error QueryExpr::Evaluate(QX_Value& valueOut) {
  if (tree_ == nullptr) return Err(kNoQuery);
  return tree_->Eval(valueOut);
}

QX_Error QueryExpr::EvalBool(bool* resultOut) {
  QX_Value value;
  if (QX_Error e = Evaluate(value)) return e;
  *resultOut = QX_Utilities::Truth(value.get());
  return nullptr;
}

QX_Error QueryExpr::EvalString(std::string* textOut) {
  QX_Value value;
  if (QX_Error e = Evaluate(value)) return e;
  char buffer[kQxNumberBuffer];
  textOut->assign(QX_ValueText(value.get(), buffer));
  return nullptr;
}

void QueryExpr::PrintTree() const { PrintTree(std::cout); }

void QueryExpr::PrintTree(std::ostream& stream) const {
  if (tree_ != nullptr) tree_->Print(stream, 1);
}

}  // namespace verdal::query
