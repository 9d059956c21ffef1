// A query bound to a database: macro expansion against the field types, the bound names, field
// reads by type, the engine's string functions, and the way errors end a walk.
#include "query/query_cache.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "engine/db_manager.h"
#include "engine/record_ops.h"
#include "engine/values.h"
#include "model/fields.h"
#include "model/place_walk.h"

using namespace verdal;
using query::QX_QueryCache;

namespace {

model::TDBFieldInfo Field(const char* name, int16_t type) {
  model::TDBFieldInfo f;
  f.name = name;
  f.type.dataType = type;
  return f;
}

class QueryCache : public ::testing::Test {
 protected:
  void SetUp() override {
    for (const auto& [name, type] : std::vector<std::pair<const char*, int16_t>>{
             {"Name", model::kTypeText}, {"Ort Name", model::kTypeText}, {"1a", model::kTypeText},
             {"Preis", model::kTypeNumber}, {"Datum", model::kTypeDate}, {"Ja", model::kTypeYesNo},
             {"Bin", model::kTypeBinary}, {"Link", model::kTypeLink}}) {
      model::AddFieldInfo(db.store, Field(name, type), -1);
    }
    category = engine::AddCategory(db, -2, "Kat");
    graben = Add("T1", "Graben", "1,5", "31.12.2001");
    abend = Add("T2", "Abend", "0", "1.1.1999");
    other = Add("T3", "xyz", "20", "");
  }

  int32_t Add(const char* title, const char* name, const char* price, const char* date) {
    int32_t c = engine::AddRecord(db, category, title, false, name, 0, nullptr);
    engine::SetData(db, 3, price, c, false, nullptr, nullptr);
    engine::SetData(db, 4, date, c, false, nullptr, nullptr);
    return c;
  }

  std::vector<int32_t> Passing(QX_QueryCache& q) {
    std::vector<int32_t> list;
    model::CollectPlaces(db.store, &db.store.MainView().root, list, model::kKindBoth, true, false,
                         &q, false);
    return list;
  }

  engine::TDBManager db{0};
  int32_t category = -1, graben = -1, abend = -1, other = -1;
};

TEST_F(QueryCache, ExpandsMacrosByFieldType) {
  const std::string marker = QX_QueryCache::kTitleMarker;
  struct Case {
    const char* text;
    std::string expanded;
    const char* error;  // null: compiles
  } cases[] = {
      {"   ( \\eval{Name|*=|\"Ab\"|4} )  ", "( ^NAME*=^\"Ab\" );", nullptr},
      {"\\eval{ Ort Name | = | \"x\" }", "ORT_NAME=\"x\";", nullptr},
      {"\\eval{1A|=|\"x\"|0};;;", "_1A=\"x\";", nullptr},
      {"\\eval{|=|\"x\"|0}", marker + "=\"x\";", nullptr},
      {"\\eval{preis|<|1,5|0} and \\eval{Ja|=|Ja|0}", "PREIS<1.50 and JA=1;", nullptr},
      {"\\eval{Datum|=|'31.12.2001'|0}", "DATUM=20011231000000000;", nullptr},
      {"\\eval{Datum|>|\"1.1.2000\"|4}", "^DATUM>^20000101000000000;", nullptr},
      {"\\eval{Link|=|\"7\"|1}", "LINK=7;", nullptr},
      {"\\eval{Link|=|\"7\"|0}", "LINK=\"7\";", nullptr},
      {"\\eval{Name|=|\"a\"|8}", "StrStartsWith(NAME,\"a\")=1;", nullptr},
      {"\\eval{Name|=|\"a*b\"|20}", "StrFindWildCard(^NAME,^\"a*b\")=1;", nullptr},
      {"\\eval{Name|=|\"a\"|24}", "StrStartsWith(StrFindWildCard(NAME,\"a\")=1;", "',' bzw. Parameter erwartet"},
      {"\\eval{Name|=|x|0} or \\eval{Name|=|y|0}", "NAME=x or NAME=y;", "unbekannter Identifier"},
      {"\\eval{Nope|=|1|0} or \\eval{Name|=|\"x\"|0}", "\\eval{Nope|=|1|0} or \\eval{Name|=|\"x\"|0};", "illegales Zeichen"},
      {"\\eval{Name|=|\"a|b\"|0}", "NAME=\"a;", "fehlendes Anf\xFChrungszeichen am Stringende"},
      {"\\eval{Name|=|}", "\\eval{Name|=|};", "illegales Zeichen"},
      {"\\eval{Bin|=|x|0}", "BIN=;", "Syntax Fehler"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    QX_QueryCache q(db.store, c.text);
    EXPECT_EQ(q.QueryText(), c.expanded);
    EXPECT_STREQ(q.lastError, c.error);
  }
  QX_QueryCache linked(db.store, "\\eval{Link|=|'3'|5}");
  EXPECT_EQ(linked.FieldFlags()[7], 5);
  EXPECT_EQ(linked.FieldFlags()[0], 0);
}

TEST_F(QueryCache, SafeNamesAndWildcards) {
  EXPECT_EQ(QX_QueryCache::SafeName(" @?:+-*/&<>=^#$(){}[],;.\""), "_abcdefghijklmnopqrstuvwx");
  EXPECT_EQ(QX_QueryCache::SafeName("9\xC4.ST"), "_9\xC4wST");
  struct Case {
    const char* pattern;
    const char* text;
    bool match;
    size_t position, length;
  } cases[] = {
      {"ab", "xaby", true, 1, 2},     {"a*c", "xabcx", true, 1, 3},  {"*b*", "abc", true, 1, 1},
      {"a**c", "ac", true, 0, 2},     {"c*a", "abc", false, 0, 0},   {"ab*ba", "aba", false, 0, 0},
      {"*", "abc", false, 0, 0},      {"", "abc", false, 0, 0},
      {"a", "", false, 0, 0},         {"A", "a", false, 0, 0},       {"b*b", "bb", true, 0, 2},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.pattern) + " / " + c.text);
    size_t position = 99, length = 99;
    EXPECT_EQ(QX_QueryCache::FindWildcard(c.pattern, c.text, &position, &length), c.match);
    if (c.match) {
      EXPECT_EQ(position, c.position);
      EXPECT_EQ(length, c.length);
    }
  }
}

TEST_F(QueryCache, TestsNodesThroughTheirFields) {
  struct Case {
    const char* text;
    std::vector<int32_t> passing;
  } cases[] = {
      {"   ( \\eval{Name|*=|\"Ab\"|4} )", {graben, abend}},
      {"\\eval{Name|*=|\"Ab\"|0}", {abend}},
      {"\\eval{Name|=|\"abend\"|4}", {abend}},
      {"\\eval{Name|=|\"gr\"|12}", {graben}},
      {"\\eval{Name|=|\"g*b*n\"|20}", {graben}},
      {"\\eval{Name|=|\"*\"|16}", {}},
      {"\\eval{Preis|>=|1,5|0} and \\eval{Preis|<|20|0}", {graben}},
      {"\\eval{Datum|<|1.1.2000|0} and \\eval{Datum|<>||0}", {abend}},
      {"@5 > 20000000000000000", {graben}},
      {"\\eval{|=|\"T3\"|0} or \\eval{|=|\"Kat\"|0}", {category, other}},
      {"@4096 = \"T2\"", {abend}},
      {"StrStartsWith(TAB & @1, TAB) and StrStartsWith(CR, \"\r\")", {category, graben, abend, other}},
      {"@1 := \"neu\"; @1 = \"Graben\"", {graben}},
      {"\"a\" < \"B\"", {category, graben, abend, other}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    QX_QueryCache q(db.store, c.text);
    EXPECT_EQ(q.lastError, nullptr);
    EXPECT_EQ(Passing(q), c.passing);
    EXPECT_EQ(q.lastError, nullptr);
  }
  // Outside an engine query the language compares bytes again.
  EXPECT_GT(query::QX_Utilities::CompareText("a", "B"), 0);
}

TEST_F(QueryCache, AnErrorPassesItsNodeAndStopsTheRest) {
  QX_QueryCache divide(db.store, "@4096 = \"Kat\" or 1 / #@4 > 0");
  EXPECT_EQ(Passing(divide), (std::vector<int32_t>{category, graben, abend}));
  EXPECT_STREQ(divide.lastError, "Division durch 0");

  QX_QueryCache badIndex(db.store, "Field[9] = \"\"");
  EXPECT_TRUE(badIndex.Test(graben));
  EXPECT_STREQ(badIndex.lastError, "illegaler Feldindex");
  EXPECT_FALSE(badIndex.Test(abend));

  QX_QueryCache broken(db.store, "(\\eval{Name|=|\"x\"|0}");
  EXPECT_STREQ(broken.lastError, "')' erwartet");
  EXPECT_TRUE(Passing(broken).empty());

  engine::TDBManager empty(0);
  int32_t r = engine::AddRecord(empty, -2, "t", false, nullptr, -1, nullptr);
  QX_QueryCache none(empty.store, "\\eval{|=|\"t\"|0}");
  EXPECT_TRUE(none.QueryText().empty());
  EXPECT_TRUE(none.Test(r));
  EXPECT_STREQ(none.lastError, "keine g\xFCltige Abfrage definiert");
  EXPECT_FALSE(none.Test(r));
}

// Stored texts are lent from the store, computed ones last until the next node: nothing to free.
TEST_F(QueryCache, FieldTextsAreLentNotHandedOver) {
  QX_QueryCache q(db.store, "1");
  query::QX_FieldText date, name;
  ASSERT_TRUE(q.Test(graben));
  ASSERT_EQ(q.GetField(&date, 4), nullptr);
  ASSERT_EQ(q.GetField(&name, 0), nullptr);
  EXPECT_FALSE(date.owned || name.owned);
  EXPECT_STREQ(date.text, "20011231000000000");
  EXPECT_EQ(name.text, model::FieldValue(db.store, graben, 0)->data());
  ASSERT_TRUE(q.Test(other));
  ASSERT_EQ(q.GetField(&date, 4), nullptr);
  EXPECT_STREQ(date.text, "0");
  ASSERT_EQ(q.GetField(&date, 7), nullptr);  // a link without its database shows nothing
  EXPECT_STREQ(date.text, "");
}

}  // namespace
