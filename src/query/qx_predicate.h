#pragma once
// The common shape of a filter (fields compared with or searched for literals, joined by and,
// or and not) decided straight from the field texts, without a value object per step. The tree
// stays the authority: a tree of any other shape gets no predicate, and a node at which a step
// would fail (a number out of range, a field that cannot be read) is left undecided for the
// tree to evaluate and report.
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "model/decimal_bound.h"
#include "query/qx_expression.h"

namespace verdal::query {

class QueryExpr;

class QX_Predicate {
 public:
  enum Answer { kNo, kYes, kUndecided };

  // Null when the tree has another shape. The predicate borrows the tree's literal texts, so it
  // must not outlive the tree.
  static std::unique_ptr<QX_Predicate> Compile(const QX_Expression* tree);

  // The truth the tree would give for the query's current node.
  Answer Decide(QueryExpr& query);

  struct FieldUse {
    int32_t field;
    bool asText;  // read as text, not only as a number

    bool operator==(const FieldUse& other) const { return field == other.field && asText == other.asText; }
  };
  // The fields the predicate reads, each once.
  std::vector<FieldUse> Fields() const;

 private:
  struct Operand {
    enum Source { kField, kText, kNumber } source = kText;
    int32_t field = 0;            // kField
    int32_t read = -1;            // kField: its entry in reads_
    bool upcase = false;          // kField: the text upper-cased
    bool asText = false;          // kField: read as text
    const char* text = nullptr;   // kText, upper-cased already where asked
    long double number = 0;       // kNumber
    model::DecimalBound bound;    // kNumber, for comparisons in integers
    std::string ownText;          // an upper-cased literal
    std::string scratch;          // an upper-cased field, per node
  };
  struct Step {
    int32_t kind = 0;  // kKindAnd, kKindOr, kKindNot, a relation or kKindSearch
    int32_t first = 0, second = 0;  // steps for and/or/not, operands otherwise
    // A relation of a field's number and a constant, which integers may decide: the operand
    // that is the field, and the verdict for the field's value below, at and above the constant.
    int32_t field = -1;
    bool verdict[3] = {};
  };
  // A field's text and number, read once per node however often the filter names it. The
  // number is kept in the plain decimal form where the text has it, and made an 80-bit value
  // only when a comparison needs one.
  struct FieldRead {
    int32_t field = 0;
    bool asText = false;
    uint64_t generation = 0;
    const char* text = nullptr;
    bool numbered = false;
    bool plain = false;
    bool valued = false;
    bool numberFailed = false;
    model::PlainDecimal decimal;
    long double number = 0;
  };

  int32_t AddStep(const QX_Expression* node, int depth);
  int32_t AddOperand(const QX_Expression* node);
  Answer Run(QueryExpr& query, int32_t step);
  // False when the step cannot be decided here.
  bool TextOf(QueryExpr& query, Operand& operand, const char** textOut);
  // Inlined into Run as well: 80-bit numbers handed through memory cost more than the reading.
  [[gnu::always_inline]] bool NumberOf(QueryExpr& query, Operand& operand, long double* numberOut);
  // These three run for every node of a walk and are inlined into Run.
  [[gnu::always_inline]] FieldRead* ReadOf(QueryExpr& query, const Operand& operand);
  // The read with its number parsed; null when the field cannot be read.
  [[gnu::always_inline]] FieldRead* NumberRead(QueryExpr& query, const Operand& operand);
  // A field compared with a number in integers; kUndecided when that cannot tell.
  [[gnu::always_inline]] Answer CompareInIntegers(QueryExpr& query, const Step& step);

  std::vector<Step> steps_;
  std::vector<Operand> operands_;
  std::vector<FieldRead> reads_;
  uint64_t generation_ = 0;
};

}  // namespace verdal::query
