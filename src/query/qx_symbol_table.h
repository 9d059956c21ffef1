#pragma once
// Names of the language: keywords, math functions, user functions, variables and bound fields,
// in a chained hash table whose entries and definitions live in an arena.
#include <cstdint>

#include "query/qx_expression.h"
#include "memory/memstack.h"

namespace verdal::query {

// A function registered by the engine. It receives a pointer to its result text (null counts as
// empty; the text is copied at once), its context and four arguments, null beyond its parameter
// count, and returns an error or null.
using QX_UserFunction = QX_Error (*)(const char** resultOut, void* context, const char* arg1,
                                     const char* arg2, const char* arg3, const char* arg4);

struct QX_FunctionDef {
  QX_FunctionDef* next;
  const char* name;
  int32_t parameterCount;
  QX_UserFunction function;
  void* context;
};

struct QX_VariableDef {
  QX_VariableDef* next;
  const char* name;
  QX_Expression* value;  // owned: a QX_NumExpr or QX_StrExpr
};

struct QX_FieldDef {
  QX_FieldDef* next;
  const char* name;
  int32_t index;
};

struct QX_Symbol {
  QX_Symbol* next;
  uint32_t hash;
  uint16_t code;       // token code
  const char* name;
  void* definition;    // null for keywords and math functions
};

class QX_SymbolTable {
 public:
  static constexpr uint32_t kLocalBuckets = 512;
  static constexpr uint32_t kGlobalBuckets = 256;
  static constexpr uint32_t kArenaSegment = 1024;
  // A user function node has room for six arguments; the function sees the first four.
  static constexpr int32_t kMaxParameters = 6;

  // global: the table consulted after this one, null for the global table itself.
  QX_SymbolTable(uint32_t bucketCount, QX_SymbolTable* global);
  ~QX_SymbolTable();
  QX_SymbolTable(const QX_SymbolTable&) = delete;
  QX_SymbolTable& operator=(const QX_SymbolTable&) = delete;

  static uint32_t Hash(const char* name);

  // This table, then the global one.
  QX_Symbol* Lookup(const char* name) const;
  // This table alone.
  QX_Symbol* Find(const char* name, uint32_t hash) const;

  // The define operations; global sends the definition to the global table.
  QX_Error DefineFunction(const char* name, bool global, int32_t parameterCount,
                          QX_UserFunction function, void* context);
  // Takes ownership of value. definitionOut may be null.
  QX_Error DefineVariable(const char* name, bool global, QX_Value value,
                          QX_VariableDef** definitionOut);
  QX_Error DefineField(const char* name, bool global, int32_t index);

  // Enters the keywords and math function names; entering them again changes nothing.
  void EnterKeywords();
  // Drops every definition and gives the arena back; the global table keeps its keywords. No
  // tree that refers to the dropped definitions may still be alive.
  void Clear();

  uint32_t FunctionCount() const { return functionCount; }
  uint32_t VariableCount() const { return variableCount; }
  uint32_t FieldCount() const { return fieldCount; }
  uint32_t SymbolCount() const { return symbolCount; }
  uint32_t BucketCount() const { return bucketCount; }
  const memory::memstack& Arena() const { return arena; }

 private:
  // An entry for name with code; an entry that is already there is returned unchanged. Null
  // when the arena is exhausted.
  QX_Symbol* Enter(const char* name, uint16_t code, void* definition);
  // Arena memory for a record holding pointers, aligned for them.
  void* AllocRecord(uint32_t size);
  const char* CopyName(const char* name);
  QX_SymbolTable* Target(bool global) { return global && globalTable != nullptr ? globalTable : this; }

  QX_FunctionDef* functions = nullptr;
  QX_VariableDef* variables = nullptr;
  QX_FieldDef* fields = nullptr;
  QX_Symbol** buckets = nullptr;
  uint32_t functionCount = 0;
  uint32_t variableCount = 0;
  uint32_t fieldCount = 0;
  uint32_t symbolCount = 0;
  uint32_t bucketCount;
  memory::memstack arena{kArenaSegment};
  QX_SymbolTable* globalTable;
};

// The table shared by all queries, created when the library is loaded and kept to its end.
QX_SymbolTable& QX_GlobalSymbols();

}  // namespace verdal::query
