#include "query/qx_symbol_table.h"

#include <cstring>
#include <new>

#include "query/qx_math_expr.h"
#include "query/qx_token.h"
#include "query/qx_value_expr.h"

namespace verdal::query {

QX_SymbolTable::QX_SymbolTable(uint32_t buckets_, QX_SymbolTable* global)
    : bucketCount(buckets_), globalTable(global) {
  buckets = static_cast<QX_Symbol**>(arena.Alloc(bucketCount * sizeof(QX_Symbol*)));
  if (buckets == nullptr) throw std::bad_alloc();
}

QX_SymbolTable::~QX_SymbolTable() {
  for (QX_VariableDef* v = variables; v != nullptr; v = v->next) delete v->value;
}

uint32_t QX_SymbolTable::Hash(const char* name) {
  uint32_t hash = 0;
  for (const char* p = name; *p != '\0'; ++p) {
    hash = (hash + static_cast<uint32_t>(static_cast<int32_t>(static_cast<signed char>(*p)))) *
           0x52ABu;
  }
  return hash;
}

QX_Symbol* QX_SymbolTable::Find(const char* name, uint32_t hash) const {
  for (QX_Symbol* s = buckets[hash & (bucketCount - 1)]; s != nullptr; s = s->next) {
    if (s->hash == hash && std::strcmp(s->name, name) == 0) return s;
  }
  return nullptr;
}

QX_Symbol* QX_SymbolTable::Lookup(const char* name) const {
  const uint32_t hash = Hash(name);
  if (QX_Symbol* s = Find(name, hash)) return s;
  return globalTable != nullptr ? globalTable->Find(name, hash) : nullptr;
}

void* QX_SymbolTable::AllocRecord(uint32_t size) {
  // Names are packed in blocks of four bytes; records with pointers need eight.
  if ((reinterpret_cast<uintptr_t>(arena.Cursor()) & 7u) != 0 && arena.Remaining() >= 4) {
    arena.Alloc(4);
  }
  return arena.Alloc((size + 7u) & ~7u);
}

const char* QX_SymbolTable::CopyName(const char* name) {
  const size_t length = std::strlen(name);
  if (length > UINT32_MAX - 8) return nullptr;
  auto* block = static_cast<char*>(arena.Alloc((static_cast<uint32_t>(length) + 4u) & ~3u));
  if (block != nullptr) std::memcpy(block, name, length + 1);
  return block;
}

QX_Symbol* QX_SymbolTable::Enter(const char* name, uint16_t code, void* definition) {
  const uint32_t hash = Hash(name);
  if (QX_Symbol* existing = Find(name, hash)) return existing;
  const char* copy = definition != nullptr ? name : CopyName(name);  // definitions hold the copy
  auto* symbol = static_cast<QX_Symbol*>(AllocRecord(sizeof(QX_Symbol)));
  if (copy == nullptr || symbol == nullptr) return nullptr;
  QX_Symbol*& bucket = buckets[hash & (bucketCount - 1)];
  *symbol = QX_Symbol{bucket, hash, code, copy, definition};
  bucket = symbol;
  ++symbolCount;
  return symbol;
}

QX_Error QX_SymbolTable::DefineFunction(const char* name, bool global, int32_t parameterCount,
                                        QX_UserFunction function, void* context) {
  if (Lookup(name) != nullptr) return QX_ErrDefs::Err(QX_ErrDefs::kAlreadyDefined);
  if (parameterCount < 0 || parameterCount > kMaxParameters) {
    return QX_ErrDefs::Err(QX_ErrDefs::kTooManyDefinitions);
  }
  QX_SymbolTable* t = Target(global);
  const char* copy = t->CopyName(name);
  auto* def = static_cast<QX_FunctionDef*>(t->AllocRecord(sizeof(QX_FunctionDef)));
  if (copy == nullptr || def == nullptr) return QX_ErrDefs::Err(QX_ErrDefs::kNoMemory);
  *def = QX_FunctionDef{t->functions, copy, parameterCount, function, context};
  if (t->Enter(copy, kTokFunctionName, def) == nullptr) return QX_ErrDefs::Err(QX_ErrDefs::kNoMemory);
  t->functions = def;
  ++t->functionCount;
  return nullptr;
}

QX_Error QX_SymbolTable::DefineVariable(const char* name, bool global, QX_Value value,
                                        QX_VariableDef** definitionOut) {
  QX_SymbolTable* t = Target(global);
  const uint32_t hash = Hash(name);
  QX_Symbol* known = t->Find(name, hash);
  // A keyword or other global name cannot be shadowed by a local variable either.
  if (known == nullptr && t != globalTable && globalTable != nullptr) {
    QX_Symbol* outer = globalTable->Find(name, hash);
    if (outer != nullptr && outer->code != kTokVariableName) known = outer;
  }
  if (known != nullptr) {
    if (known->code != kTokVariableName) return QX_ErrDefs::Err(QX_ErrDefs::kVariableNameExpected);
    auto* def = static_cast<QX_VariableDef*>(known->definition);
    delete def->value;
    def->value = value.release();
    if (definitionOut != nullptr) *definitionOut = def;
    return nullptr;
  }
  const char* copy = t->CopyName(name);
  auto* def = static_cast<QX_VariableDef*>(t->AllocRecord(sizeof(QX_VariableDef)));
  if (copy == nullptr || def == nullptr) return QX_ErrDefs::Err(QX_ErrDefs::kNoMemory);
  *def = QX_VariableDef{t->variables, copy, nullptr};
  if (t->Enter(copy, kTokVariableName, def) == nullptr) return QX_ErrDefs::Err(QX_ErrDefs::kNoMemory);
  def->value = value.release();
  t->variables = def;
  ++t->variableCount;
  if (definitionOut != nullptr) *definitionOut = def;
  return nullptr;
}

QX_Error QX_SymbolTable::DefineField(const char* name, bool global, int32_t index) {
  if (Lookup(name) != nullptr) return QX_ErrDefs::Err(QX_ErrDefs::kAlreadyDefined);
  if (static_cast<uint32_t>(index) > 4096u) return QX_ErrDefs::Err(QX_ErrDefs::kBadFieldIndex);
  QX_SymbolTable* t = Target(global);
  const char* copy = t->CopyName(name);
  auto* def = static_cast<QX_FieldDef*>(t->AllocRecord(sizeof(QX_FieldDef)));
  if (copy == nullptr || def == nullptr) return QX_ErrDefs::Err(QX_ErrDefs::kNoMemory);
  *def = QX_FieldDef{t->fields, copy, index};
  if (t->Enter(copy, kTokFieldName, def) == nullptr) return QX_ErrDefs::Err(QX_ErrDefs::kNoMemory);
  t->fields = def;
  ++t->fieldCount;
  return nullptr;
}

void QX_SymbolTable::EnterKeywords() {
  static const struct {
    const char* name;
    uint16_t code;
  } kLeading[] = {{"Field", kTokField}, {"and", kTokAnd}, {"or", kTokOr}, {"not", kTokNot}};
  static const struct {
    const char* name;
    uint16_t code;
  } kTrailing[] = {{"while", kTokWhile}, {"do", kTokDo},       {"repeat", kTokRepeat},
                   {"until", kTokUntil}, {"if", kTokIf},       {"then", kTokThen},
                   {"else", kTokElse},   {"global", kTokGlobal}, {"var", kTokVar}};
  for (const auto& k : kLeading) Enter(k.name, k.code, nullptr);
  for (int32_t code = kTokMathFirst; code <= kTokMathLast; ++code) {
    Enter(QX_MathFunctionName(code), static_cast<uint16_t>(code), nullptr);
  }
  for (const auto& k : kTrailing) Enter(k.name, k.code, nullptr);
}

void QX_SymbolTable::Clear() {
  for (QX_VariableDef* v = variables; v != nullptr; v = v->next) delete v->value;
  functions = nullptr;
  variables = nullptr;
  fields = nullptr;
  functionCount = variableCount = fieldCount = symbolCount = 0;
  arena.FreeAll();
  buckets = static_cast<QX_Symbol**>(arena.Alloc(bucketCount * sizeof(QX_Symbol*)));
  if (buckets == nullptr) throw std::bad_alloc();
  if (globalTable == nullptr) EnterKeywords();
}

QX_SymbolTable& QX_GlobalSymbols() {
  static QX_SymbolTable table(QX_SymbolTable::kGlobalBuckets, nullptr);
  static const bool keywordsEntered = (table.EnterKeywords(), true);
  static_cast<void>(keywordsEntered);
  return table;
}

namespace {
// Creates the global table and its keywords when the library is loaded.
[[maybe_unused]] const QX_SymbolTable& kGlobalTableAtLoad = QX_GlobalSymbols();
}  // namespace

}  // namespace verdal::query
