#pragma once
// A compiled query: the front object of the language. It owns its local symbol table, the
// parser with its token, and the expression tree. Engine queries derive from it and serve the
// field reads and writes.
#include <cstdint>
#include <iosfwd>
#include <string>

#include "query/qx_err_defs.h"
#include "query/qx_expression.h"
#include "query/qx_field_text.h"
#include "query/qx_parser.h"
#include "query/qx_symbol_table.h"

namespace verdal::query {

// Called once per loop iteration; a host returns an error (row 39, "Abbruch durch Benutzer!")
// to stop an evaluation that runs too long.
using QX_StepHook = QX_Error (*)(void* context);

class QueryExpr : public QX_ErrDefs {
 public:
  QueryExpr();
  virtual ~QueryExpr();
  QueryExpr(const QueryExpr&) = delete;
  QueryExpr& operator=(const QueryExpr&) = delete;

  // Reads field index (0 to 4095) of the current node. Here: no field, error 17.
  virtual QX_Error GetField(QX_FieldText* textOut, int32_t index);
  // Writes field index. Here: error 18.
  virtual QX_Error SetField(int32_t index, const char* text);

  // Replaces the tree by the one of text; after an error the query holds no tree.
  QX_Error Parse(const char* text);
  void Clear();

  QX_Error DefineFunction(const char* name, bool global, int32_t parameterCount,
                          QX_UserFunction function, void* context);
  QX_Error DefineField(const char* name, bool global, int32_t index);
  // A string variable that borrows text, which must outlive the variable's value.
  QX_Error DefineString(const char* name, bool global, const char* text);
  QX_Error DefineNumber(const char* name, bool global, long double value);

  // Position and text of the token the parser stopped at.
  int32_t ErrorPosition() const { return parser_.Token().position; }
  const char* ErrorToken() const { return parser_.Token().text; }

  // Truth of the value, false when absent; resultOut is untouched after an error.
  QX_Error EvalBool(bool* resultOut);
  // The value as new text: a number printed with "%.18Lg", empty when absent.
  QX_Error EvalString(std::string* textOut);
  // Writes the tree at indent level 1 to standard output, or to stream.
  void PrintTree() const;
  void PrintTree(std::ostream& stream) const;

  void SetStepHook(QX_StepHook hook, void* context) {
    stepHook_ = hook;
    stepContext_ = context;
  }
  // One loop iteration; the loop nodes stop on its error.
  QX_Error Step() { return stepHook_ != nullptr ? stepHook_(stepContext_) : nullptr; }

  const QX_Expression* Tree() const { return tree_.get(); }
  QX_SymbolTable& Symbols() { return local_; }

 private:
  QX_Error Evaluate(QX_Value& valueOut);

  QX_SymbolTable local_;
  QX_Parser parser_;
  QX_Value tree_;
  QX_StepHook stepHook_ = nullptr;
  void* stepContext_ = nullptr;
};

}  // namespace verdal::query
