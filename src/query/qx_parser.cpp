#include "query/qx_parser.h"

#include <algorithm>

#include "query/qx_arith_expr.h"
#include "query/qx_compare_expr.h"
#include "query/qx_control_expr.h"
#include "query/qx_convert_expr.h"
#include "query/qx_field_expr.h"
#include "query/qx_fnc_expr.h"
#include "query/qx_logic_expr.h"
#include "query/qx_math_expr.h"
#include "query/qx_value_expr.h"
#include "query/qx_var_expr.h"

namespace verdal::query {

namespace {

QX_Error Err(QX_ErrDefs::Index index) { return QX_ErrDefs::Err(index); }

constexpr int kRelationLevel = 2;

// Binding of the binary operators, from the weakest: or, and, relations, &, + and -, * and /.
int BinaryLevel(int32_t code) {
  switch (code) {
    case kTokOr: return 0;
    case kTokAnd: return 1;
    case kTokAppend: return 3;
    case kTokPlus:
    case kTokMinus: return 4;
    case kTokMul:
    case kTokDiv: return 5;
    default: return code >= kTokLt && code <= kTokSearch ? kRelationLevel : -1;
  }
}

QX_Value BinaryNode(int32_t code, QX_Value l, QX_Value r) {
  switch (code) {
    case kTokOr: return std::make_unique<QX_OrExpr>(std::move(l), std::move(r));
    case kTokAnd: return std::make_unique<QX_AndExpr>(std::move(l), std::move(r));
    case kTokLt: return std::make_unique<QX_LtExpr>(std::move(l), std::move(r));
    case kTokLe: return std::make_unique<QX_LeExpr>(std::move(l), std::move(r));
    case kTokEq: return std::make_unique<QX_EqExpr>(std::move(l), std::move(r));
    case kTokNe: return std::make_unique<QX_NeExpr>(std::move(l), std::move(r));
    case kTokGe: return std::make_unique<QX_GeExpr>(std::move(l), std::move(r));
    case kTokGt: return std::make_unique<QX_GtExpr>(std::move(l), std::move(r));
    case kTokSearch: return std::make_unique<QX_SearchExpr>(std::move(l), std::move(r));
    case kTokAppend: return std::make_unique<QX_AppExpr>(std::move(l), std::move(r));
    case kTokPlus: return std::make_unique<QX_AddExpr>(std::move(l), std::move(r));
    case kTokMinus: return std::make_unique<QX_SubExpr>(std::move(l), std::move(r));
    case kTokMul: return std::make_unique<QX_MulExpr>(std::move(l), std::move(r));
    default: return std::make_unique<QX_DivExpr>(std::move(l), std::move(r));
  }
}

}  // namespace

// Counts one level of nesting for as long as a rule runs.
class QX_Parser::Nesting {
 public:
  explicit Nesting(QX_Parser& parser) : parser_(parser) { ++parser_.nesting_; }
  ~Nesting() { --parser_.nesting_; }
  bool TooDeep() const { return parser_.nesting_ > kMaxNesting; }

 private:
  QX_Parser& parser_;
};

QX_Parser::QX_Parser(QueryExpr* owner, QX_SymbolTable& symbols)
    : owner_(owner), symbols_(symbols), scanner_(symbols) {}

QX_Error QX_Parser::Parse(const char* text, QX_Value& treeOut) {
  scanner_.Reset(text);
  nesting_ = 0;
  Next();
  if (token_.type == kTokError) return token_.error;
  if (token_.type == kTokEnd) return Err(QX_ErrDefs::kEmptyInput);
  Tree program;
  while (token_.type != kTokEnd) {
    Tree statement;
    if (QX_Error e = Statement(statement)) return e;
    Append(program, std::move(statement));
  }
  treeOut = std::move(program.node);
  return nullptr;
}

QX_Error QX_Parser::Expect(int32_t code, QX_ErrDefs::Index otherwise) const {
  if (token_.type == code) return nullptr;
  // A token the scanner could not read is reported as what it is.
  return token_.type == kTokError ? token_.error : Err(otherwise);
}

QX_Error QX_Parser::Grow(Tree& out, QX_Value node, uint32_t childHeight) const {
  out.node = std::move(node);
  out.height = childHeight + 1;
  return out.height > kMaxHeight ? Err(QX_ErrDefs::kNoMemory) : nullptr;
}

void QX_Parser::Append(Tree& chain, Tree statement) {
  if (statement.node == nullptr) return;  // an empty block stands for nothing
  if (chain.node == nullptr) {
    chain = std::move(statement);
    return;
  }
  // A chain is one level above its highest statement, however long it is.
  const bool wasChain = chain.node->Kind() == kKindSeq;
  chain.height = wasChain ? std::max(chain.height, statement.height + 1)
                          : std::max(chain.height, statement.height) + 1;
  chain.node = std::make_unique<QX_SeqExpr>(std::move(chain.node), std::move(statement.node));
}

QX_Error QX_Parser::ToNumber(Tree& t) const {
  if (t.node->IsNumber()) return nullptr;
  return Grow(t, std::make_unique<QX_ToNumExpr>(std::move(t.node)), t.height);
}

QX_Error QX_Parser::ToString(Tree& t) const {
  if (t.node->IsString()) return nullptr;
  return Grow(t, std::make_unique<QX_ToStrExpr>(std::move(t.node)), t.height);
}

QX_Error QX_Parser::Statement(Tree& out) {
  const Nesting level(*this);
  if (level.TooDeep()) return Err(QX_ErrDefs::kNoMemory);
  switch (token_.type) {
    case kTokLBrace: return Block(out);
    case kTokIf: return IfStatement(out);
    case kTokWhile: return WhileStatement(out);
    case kTokRepeat: return RepeatStatement(out);
    case kTokGlobal:
    case kTokVar: return Declaration(out);
    default: return Simple(out);
  }
}

QX_Error QX_Parser::Block(Tree& out) {
  Next();
  Tree chain;
  while (token_.type != kTokRBrace) {
    if (token_.type == kTokEnd) return Err(QX_ErrDefs::kBraceExpected);
    Tree statement;
    if (QX_Error e = Statement(statement)) return e;
    Append(chain, std::move(statement));
  }
  Next();
  out = std::move(chain);
  return nullptr;
}

QX_Error QX_Parser::IfStatement(Tree& out) {
  Next();
  Tree condition, thenPart, elsePart;
  if (QX_Error e = Expression(condition)) return e;
  if (QX_Error e = Expect(kTokThen, QX_ErrDefs::kThenExpected)) return e;
  Next();
  if (QX_Error e = Statement(thenPart)) return e;
  if (token_.type == kTokElse) {
    Next();
    if (QX_Error e = Statement(elsePart)) return e;
  }
  const uint32_t h = std::max({condition.height, thenPart.height, elsePart.height});
  return Grow(out,
              std::make_unique<QX_CondExpr>(std::move(condition.node), std::move(thenPart.node),
                                            std::move(elsePart.node)),
              h);
}

QX_Error QX_Parser::WhileStatement(Tree& out) {
  Next();
  Tree condition, body;
  if (QX_Error e = Expression(condition)) return e;
  if (QX_Error e = Expect(kTokDo, QX_ErrDefs::kDoExpected)) return e;
  Next();
  if (QX_Error e = Statement(body)) return e;
  const uint32_t h = std::max(condition.height, body.height);
  return Grow(out,
              std::make_unique<QX_WhileExpr>(owner_, std::move(condition.node), std::move(body.node)),
              h);
}

QX_Error QX_Parser::RepeatStatement(Tree& out) {
  Next();
  Tree body, condition;
  if (QX_Error e = Statement(body)) return e;
  if (QX_Error e = Expect(kTokUntil, QX_ErrDefs::kUntilExpected)) return e;
  Next();
  if (QX_Error e = Simple(condition)) return e;
  const uint32_t h = std::max(condition.height, body.height);
  return Grow(out,
              std::make_unique<QX_RepeatExpr>(owner_, std::move(body.node), std::move(condition.node)),
              h);
}

QX_Error QX_Parser::Declaration(Tree& out) {
  const bool global = token_.type == kTokGlobal;
  if (global) {
    Next();
    if (token_.type != kTokVar) return Err(QX_ErrDefs::kVarExpected);
  }
  Next();
  QX_VariableDef* definition = nullptr;
  if (token_.type == kTokVariableName) {
    definition = static_cast<QX_VariableDef*>(token_.symbol->definition);
  } else if (token_.type == kTokError && token_.error == Err(QX_ErrDefs::kUnknownIdentifier)) {
    // A new name: defined at once, with the number 0, so that the rest of the text knows it.
    if (QX_Error e = symbols_.DefineVariable(token_.text, global, std::make_unique<QX_NumExpr>(0),
                                             &definition)) {
      return e;
    }
  } else if (token_.type == kTokError) {
    return token_.error;
  } else {
    return Err(QX_ErrDefs::kVariableNameExpected);
  }
  Next();
  if (QX_Error e = Expect(kTokAssign, QX_ErrDefs::kAssignExpected)) return e;
  Next();
  Tree value;
  if (QX_Error e = Simple(value)) return e;
  return Grow(out,
              std::make_unique<QX_AssExpr>(std::make_unique<QX_VarExpr>(definition),
                                           std::move(value.node)),
              value.height);
}

QX_Error QX_Parser::Simple(Tree& out) {
  if (QX_Error e = Expression(out)) return e;
  if (QX_Error e = Expect(kTokSemicolon, QX_ErrDefs::kSemicolonExpected)) return e;
  Next();
  return nullptr;
}

QX_Error QX_Parser::Expression(Tree& out) {
  const Nesting level(*this);
  if (level.TooDeep()) return Err(QX_ErrDefs::kNoMemory);
  Tree target;
  if (QX_Error e = Conditional(target)) return e;
  if (token_.type != kTokAssign) {
    out = std::move(target);
    return nullptr;
  }
  if (!target.node->IsAssignable()) return Err(QX_ErrDefs::kIllegalAssignment);
  Next();
  Tree value;
  if (QX_Error e = Expression(value)) return e;
  const uint32_t h = std::max(target.height, value.height);
  return Grow(out, std::make_unique<QX_AssExpr>(std::move(target.node), std::move(value.node)), h);
}

QX_Error QX_Parser::Conditional(Tree& out) {
  Tree condition;
  if (QX_Error e = Binary(condition, 0)) return e;
  if (token_.type != kTokQuestion) {
    out = std::move(condition);
    return nullptr;
  }
  Next();
  Tree a, b;
  if (QX_Error e = Expression(a)) return e;
  if (QX_Error e = Expect(kTokColon, QX_ErrDefs::kColonExpected)) return e;
  Next();
  if (QX_Error e = Expression(b)) return e;
  const uint32_t h = std::max({condition.height, a.height, b.height});
  return Grow(out,
              std::make_unique<QX_IfExpr>(std::move(condition.node), std::move(a.node),
                                          std::move(b.node)),
              h);
}

QX_Error QX_Parser::Binary(Tree& out, int level) {
  if (level == kBinaryLevels) return Unary(out);
  if (QX_Error e = Binary(out, level + 1)) return e;
  // The chain stands one level above its highest operand, however many it has.
  uint32_t operands = 0;
  bool chained = false;
  while (BinaryLevel(token_.type) == level) {
    const int32_t code = token_.type;
    Next();
    Tree right;
    if (QX_Error e = Binary(right, level + 1)) return e;
    if (code == kTokSearch || code == kTokAppend) {
      if (QX_Error e = ToString(out)) return e;
      if (QX_Error e = ToString(right)) return e;
    } else if (code == kTokPlus || code == kTokMinus || code == kTokMul || code == kTokDiv) {
      if (QX_Error e = ToNumber(out)) return e;
      if (QX_Error e = ToNumber(right)) return e;
    }
    operands = std::max({operands, chained ? 0 : out.height, right.height});
    chained = true;
    if (QX_Error e = Grow(out, BinaryNode(code, std::move(out.node), std::move(right.node)), operands)) {
      return e;
    }
    if (level == kRelationLevel) break;  // relations do not chain
  }
  return nullptr;
}

QX_Error QX_Parser::Unary(Tree& out) {
  const int32_t code = token_.type;
  switch (code) {
    case kTokNot:
    case kTokUpcase:
    case kTokToNum:
    case kTokToStr:
    case kTokPlus:
    case kTokMinus: break;
    default: return Operand(out);
  }
  const Nesting level(*this);
  if (level.TooDeep()) return Err(QX_ErrDefs::kNoMemory);
  Next();
  Tree operand;
  if (QX_Error e = Unary(operand)) return e;
  switch (code) {
    case kTokNot:
      return Grow(out, std::make_unique<QX_NotExpr>(std::move(operand.node)), operand.height);
    case kTokUpcase:
      if (QX_Error e = ToString(operand)) return e;
      return Grow(out, std::make_unique<QX_UpcaseExpr>(std::move(operand.node)), operand.height);
    case kTokToNum:
      return Grow(out, std::make_unique<QX_ToNumExpr>(std::move(operand.node)), operand.height);
    case kTokToStr:
      return Grow(out, std::make_unique<QX_ToStrExpr>(std::move(operand.node)), operand.height);
    default: break;
  }
  // A sign belongs to a number literal, perhaps in parentheses; it changes the literal itself.
  // A variable is refused even when it holds a number now: its value may change.
  auto* literal = dynamic_cast<QX_NumExpr*>(operand.node.get());
  if (literal == nullptr) return Err(QX_ErrDefs::kNumberExpected);
  if (code == kTokMinus) literal->SetValue(-literal->Value());
  out = std::move(operand);
  return nullptr;
}

QX_Error QX_Parser::Operand(Tree& out) {
  switch (token_.type) {
    case kTokNumber:
      out.node = std::make_unique<QX_NumExpr>(token_.number);
      Next();
      return nullptr;
    case kTokString:
      out.node = QX_StrExpr::Copy(token_.text, static_cast<size_t>(token_.length));
      if (out.node == nullptr) return Err(QX_ErrDefs::kNoMemory);
      Next();
      return nullptr;
    case kTokAt: return FieldByNumber(out);
    case kTokField: return FieldByExpression(out);
    case kTokFieldName:
      out.node = std::make_unique<QX_FIdxExpr>(
          owner_, static_cast<QX_FieldDef*>(token_.symbol->definition)->index);
      Next();
      return nullptr;
    case kTokLParen: {
      Next();
      if (QX_Error e = Expression(out)) return e;
      if (QX_Error e = Expect(kTokRParen, QX_ErrDefs::kParenExpected)) return e;
      Next();
      return nullptr;
    }
    case kTokFunctionName: return UserCall(out);
    case kTokVariableName:
      out.node = std::make_unique<QX_VarExpr>(static_cast<QX_VariableDef*>(token_.symbol->definition));
      Next();
      return nullptr;
    case kTokError: return token_.error;
    default:
      if (token_.type >= kTokMathFirst && token_.type <= kTokMathLast) return MathCall(out);
      return Err(QX_ErrDefs::kSyntax);
  }
}

QX_Error QX_Parser::FieldByNumber(Tree& out) {
  Next();
  if (QX_Error e = Expect(kTokNumber, QX_ErrDefs::kNumberExpected)) return e;
  int32_t number = 0;
  if (QX_Error e = QX_Utilities::NumberToInt(token_.number, &number)) return e;
  if (number < 1 || number - 1 > kQxMaxFieldIndex) return Err(QX_ErrDefs::kBadFieldIndex);
  out.node = std::make_unique<QX_FIdxExpr>(owner_, number - 1);
  Next();
  return nullptr;
}

QX_Error QX_Parser::FieldByExpression(Tree& out) {
  Next();
  if (QX_Error e = Expect(kTokLBracket, QX_ErrDefs::kBracketOpenExpected)) return e;
  Next();
  Tree index;
  if (QX_Error e = Expression(index)) return e;
  if (QX_Error e = Expect(kTokRBracket, QX_ErrDefs::kBracketCloseExpected)) return e;
  Next();
  return Grow(out, std::make_unique<QX_FArrExpr>(owner_, std::move(index.node)), index.height);
}

QX_Error QX_Parser::MathCall(Tree& out) {
  const int32_t code = token_.type;
  const char* name = token_.symbol->name;
  Next();
  if (QX_Error e = Expect(kTokLParen, QX_ErrDefs::kParameterListOpen)) return e;
  Next();
  Tree a, b;
  if (QX_Error e = Expression(a)) return e;
  if (QX_Error e = ToNumber(a)) return e;
  const bool twoArguments = code == kTokMod || code == kTokPow;
  if (twoArguments) {
    if (QX_Error e = Expect(kTokComma, QX_ErrDefs::kParameterExpected)) return e;
    Next();
    if (QX_Error e = Expression(b)) return e;
    if (QX_Error e = ToNumber(b)) return e;
  }
  if (QX_Error e = Expect(kTokRParen, QX_ErrDefs::kParameterListClose)) return e;
  Next();
  const uint32_t h = std::max(a.height, b.height);
  if (twoArguments) {
    return Grow(out,
                std::make_unique<QX_Opn2Expr>(name, QX_MathFunction2(code), std::move(a.node),
                                              std::move(b.node)),
                h);
  }
  return Grow(out, std::make_unique<QX_Opn1Expr>(name, QX_MathFunction1(code), std::move(a.node)), h);
}

QX_Error QX_Parser::UserCall(Tree& out) {
  auto* definition = static_cast<QX_FunctionDef*>(token_.symbol->definition);
  Next();
  QX_Value arguments[QX_FncExpr::kSlots];
  uint32_t h = 0;
  const int32_t n = definition->parameterCount;
  if (n > 0) {
    if (QX_Error e = Expect(kTokLParen, QX_ErrDefs::kParameterListOpen)) return e;
    Next();
    for (int32_t i = 0; i < n; ++i) {
      if (i > 0) {
        if (QX_Error e = Expect(kTokComma, QX_ErrDefs::kParameterExpected)) return e;
        Next();
      }
      Tree argument;
      if (QX_Error e = Expression(argument)) return e;
      if (QX_Error e = ToString(argument)) return e;
      h = std::max(h, argument.height);
      arguments[i] = std::move(argument.node);
    }
    if (QX_Error e = Expect(kTokRParen, QX_ErrDefs::kParameterListClose)) return e;
    Next();
  }
  return Grow(out, std::make_unique<QX_FncExpr>(definition, arguments), h);
}

}  // namespace verdal::query
