#pragma once
// Recursive descent over the token stream with one token of look-ahead. Each rule returns an
// error and, on success, an owned subtree; on an error what was built is destroyed.
#include <cstdint>

#include "query/qx_expression.h"
#include "query/qx_scanner.h"
#include "query/qx_symbol_table.h"
#include "query/qx_token.h"

namespace verdal::query {

class QueryExpr;

class QX_Parser {
 public:
  // Nesting of blocks, parentheses, brackets, arguments and prefix operators, and the height of
  // a tree, are bounded so that parsing, evaluating and destroying stay well inside the stack;
  // both bounds lie far above what anyone writes. Chains of statements or of operators of one
  // level (a or b or c ...) are walked without recursion and count as one level, however long.
  static constexpr uint32_t kMaxNesting = 500;
  static constexpr uint32_t kMaxHeight = 2000;
  static constexpr int kBinaryLevels = 6;

  QX_Parser(QueryExpr* owner, QX_SymbolTable& symbols);

  // A program; treeOut stays empty for a program without statements ("{ }").
  QX_Error Parse(const char* text, QX_Value& treeOut);
  const QX_Token& Token() const { return token_; }

 private:
  struct Tree {
    QX_Value node;
    uint32_t height = 0;
  };
  class Nesting;

  void Next() { scanner_.NextToken(token_); }
  QX_Error Expect(int32_t code, QX_ErrDefs::Index otherwise) const;
  // out becomes node over children of the given height.
  QX_Error Grow(Tree& out, QX_Value node, uint32_t childHeight) const;
  static void Append(Tree& chain, Tree statement);
  QX_Error ToNumber(Tree& t) const;
  QX_Error ToString(Tree& t) const;

  QX_Error Statement(Tree& out);
  QX_Error Block(Tree& out);
  QX_Error IfStatement(Tree& out);
  QX_Error WhileStatement(Tree& out);
  QX_Error RepeatStatement(Tree& out);
  QX_Error Declaration(Tree& out);
  QX_Error Simple(Tree& out);
  QX_Error Expression(Tree& out);
  QX_Error Conditional(Tree& out);
  // The binary operators of one binding level and all stronger ones.
  QX_Error Binary(Tree& out, int level);
  QX_Error Unary(Tree& out);
  QX_Error Operand(Tree& out);
  QX_Error FieldByNumber(Tree& out);
  QX_Error FieldByExpression(Tree& out);
  QX_Error MathCall(Tree& out);
  QX_Error UserCall(Tree& out);

  QueryExpr* owner_;
  QX_SymbolTable& symbols_;
  QX_Scanner scanner_;
  uint32_t nesting_ = 0;
  QX_Token token_;
};

}  // namespace verdal::query
