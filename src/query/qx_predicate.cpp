#include "query/qx_predicate.h"

#include <cstdlib>
#include <cstring>

#include "model/number_text.h"
#include "query/query_expr.h"
#include "query/qx_char_upper.h"
#include "query/qx_convert_expr.h"
#include "query/qx_field_expr.h"
#include "query/qx_value_expr.h"

namespace verdal::query {

namespace {

// Deeper trees are rare enough to leave to the tree, and the recursion here stays shallow.
constexpr int kMaxDepth = 64;

bool IsRelation(int32_t kind) { return kind >= kKindLt && kind <= kKindGt; }

// The relation's verdict on left - right, as the relation nodes decide it.
bool Holds(int32_t kind, long double difference) {
  switch (kind) {
    case kKindLt: return difference < 0;
    case kKindLe: return difference <= 0;
    case kKindEq: return difference == 0;
    case kKindNe: return difference != 0;
    case kKindGe: return difference >= 0;
    default: return difference > 0;
  }
}

// Kind alone does not tell a node's class: a variable reports the kind of its present value.
const QX_Expression* LeftOf(const QX_Expression* node) {
  const auto* binary = dynamic_cast<const QX_BinaryExpr*>(node);
  return binary != nullptr ? binary->Left() : nullptr;
}
const QX_Expression* RightOf(const QX_Expression* node) {
  const auto* binary = dynamic_cast<const QX_BinaryExpr*>(node);
  return binary != nullptr ? binary->Right() : nullptr;
}
const QX_Expression* OperandOf(const QX_Expression* node) {
  const auto* unary = dynamic_cast<const QX_UnaryExpr*>(node);
  return unary != nullptr ? unary->Operand() : nullptr;
}

}  // namespace

std::unique_ptr<QX_Predicate> QX_Predicate::Compile(const QX_Expression* tree) {
  if (tree == nullptr) return nullptr;
  std::unique_ptr<QX_Predicate> predicate(new QX_Predicate());
  if (predicate->AddStep(tree, 0) != 0) return nullptr;
  // Upper-cased literals are placed now that the operands no longer move; each field named
  // gets one read, shared by all its operands.
  std::vector<FieldRead>& reads = predicate->reads_;
  for (Operand& o : predicate->operands_) {
    if (o.source == Operand::kText && o.upcase) o.text = o.ownText.c_str();
    if (o.source != Operand::kField) continue;
    for (size_t i = 0; i < reads.size() && o.read < 0; ++i)
      if (reads[i].field == o.field) o.read = static_cast<int32_t>(i);
    if (o.read < 0) {
      o.read = static_cast<int32_t>(reads.size());
      reads.emplace_back();
      reads.back().field = o.field;
    }
    reads[static_cast<size_t>(o.read)].asText |= o.asText;
  }
  return predicate;
}

// Adds the step for node and its children; the root becomes step 0. -1 when the shape is not
// covered.
int32_t QX_Predicate::AddStep(const QX_Expression* node, int depth) {
  if (node == nullptr || depth > kMaxDepth) return -1;
  const int32_t kind = node->Kind();
  const int32_t at = static_cast<int32_t>(steps_.size());
  steps_.push_back(Step{kind, -1, -1});
  int32_t first = -1, second = -1;
  if (kind == kKindAnd || kind == kKindOr) {
    first = AddStep(LeftOf(node), depth + 1);
    second = first < 0 ? -1 : AddStep(RightOf(node), depth + 1);
  } else if (kind == kKindNot) {
    first = AddStep(OperandOf(node), depth + 1);
    second = 0;
  } else if (IsRelation(kind) || kind == kKindSearch) {
    first = AddOperand(LeftOf(node));
    second = first < 0 ? -1 : AddOperand(RightOf(node));
    // A search of or in a number is an error every time: the tree reports it.
    if (second >= 0) {
      Operand& a = operands_[static_cast<size_t>(first)];
      Operand& b = operands_[static_cast<size_t>(second)];
      const bool numbers = a.source == Operand::kNumber || b.source == Operand::kNumber;
      if (kind == kKindSearch && numbers) return -1;
      a.asText = b.asText = !numbers;
      const bool fieldFirst = a.source == Operand::kField && !a.upcase && b.source == Operand::kNumber;
      const bool fieldSecond = b.source == Operand::kField && !b.upcase && a.source == Operand::kNumber;
      if (IsRelation(kind) && (fieldFirst || fieldSecond)) {
        Step& s = steps_[static_cast<size_t>(at)];
        s.field = fieldFirst ? first : second;
        // With the constant first the relation reads the difference the other way round.
        for (int sign = -1; sign <= 1; ++sign) s.verdict[sign + 1] = Holds(kind, fieldFirst ? sign : -sign);
      }
    }
  }
  if (first < 0 || second < 0) return -1;
  steps_[static_cast<size_t>(at)].first = first;
  steps_[static_cast<size_t>(at)].second = second;
  return at;
}

int32_t QX_Predicate::AddOperand(const QX_Expression* node) {
  if (node == nullptr) return -1;
  Operand o;
  const QX_Expression* inner = node;
  if (dynamic_cast<const QX_UpcaseExpr*>(node) != nullptr) {
    o.upcase = true;
    inner = OperandOf(node);
    if (inner == nullptr) return -1;
  }
  if (const auto* field = dynamic_cast<const QX_FIdxExpr*>(inner)) {
    o.source = Operand::kField;
    o.field = field->Index();
  } else if (const auto* text = dynamic_cast<const QX_StrExpr*>(inner)) {
    o.source = Operand::kText;
    o.text = text->Text();
    if (o.upcase) {
      o.ownText = o.text;
      QX_UpcaseInPlace(o.ownText.data());
    }
  } else if (const auto* number = dynamic_cast<const QX_NumExpr*>(inner); number != nullptr && !o.upcase) {
    // An upper-cased number is an error at every node: left to the tree.
    o.source = Operand::kNumber;
    o.number = number->Value();
    o.bound = model::DecimalBound(o.number);
  } else {
    return -1;  // variables, calls, computations
  }
  operands_.push_back(std::move(o));
  return static_cast<int32_t>(operands_.size() - 1);
}

std::vector<QX_Predicate::FieldUse> QX_Predicate::Fields() const {
  std::vector<FieldUse> fields;
  for (const FieldRead& read : reads_) fields.push_back({read.field, read.asText});
  return fields;
}

QX_Predicate::Answer QX_Predicate::Decide(QueryExpr& query) {
  ++generation_;
  return Run(query, 0);
}

inline QX_Predicate::FieldRead* QX_Predicate::ReadOf(QueryExpr& query, const Operand& operand) {
  FieldRead* read = &reads_[static_cast<size_t>(operand.read)];
  if (read->generation == generation_) return read->text != nullptr ? read : nullptr;
  read->generation = generation_;
  read->numbered = false;
  read->text = nullptr;
  QX_FieldText value;
  const QX_Error e = query.GetField(&value, read->field);
  if (value.owned) {
    // Computed texts handed over are left to the tree, which frees them with its values.
    std::free(const_cast<char*>(value.text));
    return nullptr;
  }
  if (e != nullptr) return nullptr;
  read->text = value.text != nullptr ? value.text : "";
  return read;
}

bool QX_Predicate::TextOf(QueryExpr& query, Operand& operand, const char** textOut) {
  if (operand.source == Operand::kText) {
    *textOut = operand.text;
    return true;
  }
  const FieldRead* read = ReadOf(query, operand);
  if (read == nullptr) return false;
  if (!operand.upcase) {
    *textOut = read->text;
    return true;
  }
  operand.scratch.assign(read->text);
  QX_UpcaseInPlace(operand.scratch.data());
  *textOut = operand.scratch.c_str();
  return true;
}

inline bool QX_Predicate::NumberOf(QueryExpr& query, Operand& operand, long double* numberOut) {
  if (operand.source == Operand::kNumber) {
    *numberOut = operand.number;
    return true;
  }
  if (operand.source == Operand::kText || operand.upcase) {
    const char* text = nullptr;
    if (!TextOf(query, operand, &text)) return false;
    return QX_Utilities::TextToNumber(text, numberOut) == nullptr;
  }
  FieldRead* read = NumberRead(query, operand);
  if (read == nullptr) return false;
  if (!read->valued) {
    read->number = read->decimal.Value();
    read->valued = true;
  }
  *numberOut = read->number;
  return !read->numberFailed;
}

inline QX_Predicate::FieldRead* QX_Predicate::NumberRead(QueryExpr& query, const Operand& operand) {
  FieldRead* read = ReadOf(query, operand);
  if (read == nullptr || read->numbered) return read;
  read->numbered = true;
  read->plain = model::ReadPlainDecimal(read->text, &read->decimal);
  read->valued = !read->plain;
  if (!read->plain) read->numberFailed = QX_Utilities::TextToNumber(read->text, &read->number) != nullptr;
  return read;
}

inline QX_Predicate::Answer QX_Predicate::CompareInIntegers(QueryExpr& query, const Step& step) {
  const FieldRead* read = NumberRead(query, operands_[static_cast<size_t>(step.field)]);
  const Operand& number = operands_[static_cast<size_t>(step.field == step.first ? step.second : step.first)];
  int sign = 0;
  if (read == nullptr || !read->plain || !number.bound.Compare(read->decimal, &sign)) return kUndecided;
  return step.verdict[sign + 1] ? kYes : kNo;
}

QX_Predicate::Answer QX_Predicate::Run(QueryExpr& query, int32_t index) {
  const Step& step = steps_[static_cast<size_t>(index)];
  switch (step.kind) {
    case kKindAnd:
    case kKindOr: {
      const Answer first = Run(query, step.first);
      if (first == kUndecided) return kUndecided;
      // Short-circuit as the tree does: the right side is not even read.
      if ((first == kYes) == (step.kind == kKindOr)) return first;
      return Run(query, step.second);
    }
    case kKindNot: {
      const Answer inner = Run(query, step.first);
      return inner == kUndecided ? kUndecided : inner == kYes ? kNo : kYes;
    }
    default:
      break;
  }
  if (step.field >= 0) {
    // Stored numbers against a constant: most often decided in integers.
    const Answer quick = CompareInIntegers(query, step);
    if (quick != kUndecided) return quick;
  }
  Operand& left = operands_[static_cast<size_t>(step.first)];
  Operand& right = operands_[static_cast<size_t>(step.second)];
  if (step.kind == kKindSearch) {
    const char* text = nullptr;
    const char* part = nullptr;
    if (!TextOf(query, left, &text) || !TextOf(query, right, &part)) return kUndecided;
    return std::strstr(text, part) != nullptr ? kYes : kNo;
  }
  long double difference = 0;
  if (left.source != Operand::kNumber && right.source != Operand::kNumber) {
    const char* a = nullptr;
    const char* b = nullptr;
    if (!TextOf(query, left, &a) || !TextOf(query, right, &b)) return kUndecided;
    difference = QX_Utilities::CompareText(a, b);
  } else {
    long double x = 0, y = 0;
    if (!NumberOf(query, left, &x) || !NumberOf(query, right, &y)) return kUndecided;
    difference = x - y;
  }
  return Holds(step.kind, difference) ? kYes : kNo;
}

}  // namespace verdal::query
