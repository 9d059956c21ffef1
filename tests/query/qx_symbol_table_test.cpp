#include "query/qx_symbol_table.h"

#include <gtest/gtest.h>

#include "query/qx_token.h"
#include "query/qx_value_expr.h"

using namespace verdal::query;

namespace {
QX_Error Fn(const char**, void*, const char*, const char*, const char*, const char*) { return nullptr; }
}  // namespace

// The codes of the keywords are checked by the scanner test; here only what the table adds.
TEST(QxSymbolTable, HashOfSignedBytesAndKeywordsEnteredOnce) {
  EXPECT_EQ(QX_SymbolTable::Hash(""), 0u);
  EXPECT_EQ(QX_SymbolTable::Hash("ab"), 496040207u);
  EXPECT_EQ(QX_SymbolTable::Hash("\xE4"), 4294374732u);  // the byte counts as -28

  QX_SymbolTable& global = QX_GlobalSymbols();
  EXPECT_EQ(global.Lookup("Field")->hash, QX_SymbolTable::Hash("Field"));
  EXPECT_EQ(global.Lookup("field"), nullptr);  // case counts
  const uint32_t before = global.SymbolCount();
  global.EnterKeywords();
  EXPECT_EQ(global.SymbolCount(), before);
}

TEST(QxSymbolTable, DefinitionsLocalAndGlobal) {
  QX_SymbolTable local(QX_SymbolTable::kLocalBuckets, &QX_GlobalSymbols());
  EXPECT_EQ(local.BucketCount(), 512u);
  const auto err = [](QX_ErrDefs::Index i) { return QX_ErrDefs::Err(i); };

  EXPECT_EQ(local.DefineFunction("f", false, 2, Fn, nullptr), nullptr);
  EXPECT_EQ(local.DefineFunction("f", false, 2, Fn, nullptr), err(QX_ErrDefs::kAlreadyDefined));
  EXPECT_EQ(local.DefineFunction("sqrt", false, 1, Fn, nullptr), err(QX_ErrDefs::kAlreadyDefined));
  EXPECT_EQ(local.DefineField("F1", false, 0), nullptr);
  EXPECT_EQ(local.DefineField("F1", false, 1), err(QX_ErrDefs::kAlreadyDefined));
  EXPECT_EQ(local.DefineField("TITLE", false, 4096), nullptr);
  EXPECT_EQ(local.DefineField("F2", false, 4097), err(QX_ErrDefs::kBadFieldIndex));
  EXPECT_EQ(local.DefineField("F3", false, -1), err(QX_ErrDefs::kBadFieldIndex));
  EXPECT_EQ(local.FunctionCount(), 1u);
  EXPECT_EQ(local.FieldCount(), 2u);
  EXPECT_EQ(local.Lookup("F1")->code, kTokFieldName);
  EXPECT_EQ(static_cast<QX_FieldDef*>(local.Lookup("TITLE")->definition)->index, 4096);

  QX_VariableDef* def = nullptr;
  EXPECT_EQ(local.DefineVariable("v", false, std::make_unique<QX_NumExpr>(1), &def), nullptr);
  ASSERT_NE(def, nullptr);
  QX_VariableDef* again = nullptr;
  EXPECT_EQ(local.DefineVariable("v", false, QX_StrExpr::Borrow("x"), &again), nullptr);
  EXPECT_EQ(again, def);
  EXPECT_EQ(def->value->Kind(), kKindStr);
  EXPECT_EQ(local.VariableCount(), 1u);
  EXPECT_EQ(local.DefineVariable("f", false, std::make_unique<QX_NumExpr>(1), nullptr),
            err(QX_ErrDefs::kVariableNameExpected));
  EXPECT_EQ(local.DefineVariable("while", false, std::make_unique<QX_NumExpr>(1), nullptr),
            err(QX_ErrDefs::kVariableNameExpected));

  // Global definitions land in the shared table and are seen from every local one.
  EXPECT_EQ(local.DefineField("GLOBALFIELD_T", true, 3), nullptr);
  EXPECT_EQ(local.Find("GLOBALFIELD_T", QX_SymbolTable::Hash("GLOBALFIELD_T")), nullptr);
  QX_SymbolTable other(QX_SymbolTable::kLocalBuckets, &QX_GlobalSymbols());
  ASSERT_NE(other.Lookup("GLOBALFIELD_T"), nullptr);
  EXPECT_EQ(other.DefineField("GLOBALFIELD_T", false, 1), err(QX_ErrDefs::kAlreadyDefined));

  // The names live in the table's arena: the bucket array took a block of its own.
  EXPECT_GT(local.Arena().UsedMem(), 512u * sizeof(void*));
}

TEST(QxSymbolTable, ClearDropsDefinitionsAndKeepsKeywordsOfAGlobalTable) {
  QX_SymbolTable shared(QX_SymbolTable::kGlobalBuckets, nullptr);
  shared.EnterKeywords();
  const uint32_t keywords = shared.SymbolCount();
  EXPECT_EQ(keywords, 4u + 18u + 9u);
  QX_SymbolTable local(QX_SymbolTable::kLocalBuckets, &shared);
  ASSERT_EQ(local.DefineVariable("g", true, QX_StrExpr::Copy("wert", 4), nullptr), nullptr);
  ASSERT_EQ(local.DefineField("f", false, 1), nullptr);
  ASSERT_NE(local.Lookup("g"), nullptr);

  shared.Clear();
  local.Clear();
  EXPECT_EQ(local.Lookup("g"), nullptr);
  EXPECT_EQ(local.Lookup("f"), nullptr);
  EXPECT_EQ(shared.SymbolCount(), keywords);
  EXPECT_EQ(local.Lookup("while")->code, kTokWhile);
  EXPECT_EQ(local.DefineField("f", false, 2), nullptr);
  EXPECT_EQ(static_cast<QX_FieldDef*>(local.Lookup("f")->definition)->index, 2);
}
