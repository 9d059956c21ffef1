// The two text forms of a filter row. Whole filters, joined and compiled, are tested through the
// interface in engine/filtered_children_test.cpp.
#include "listing/filter_text.h"

#include <gtest/gtest.h>

#include "engine/db_manager.h"
#include "model/fields.h"

using namespace verdal;
using listing::TDBFilterParts;

namespace {

model::TDBFieldInfo Field(const char* name, int16_t type, const char* shown = "") {
  model::TDBFieldInfo f;
  f.name = name;
  f.displayName = shown;
  f.type.dataType = type;
  return f;
}

TDBFilterParts Row(int16_t link, const char* field, int16_t condition, const char* value,
                   uint8_t whole = 0, uint8_t cs = 0, uint8_t begins = 0, uint8_t wild = 0) {
  TDBFilterParts r;
  r.link = link;
  r.fieldName = field;
  r.condition = condition;
  r.value = value;
  r.wholeWord = whole;
  r.caseSensitive = cs;
  r.beginsWith = begins;
  r.wildcard = wild;
  return r;
}

class FilterText : public ::testing::Test {
 protected:
  void SetUp() override {
    model::AddFieldInfo(db.store, Field("Ort", model::kTypeText, "Wohnort"), -1);
    model::AddFieldInfo(db.store, Field("Preis", model::kTypeNumber), -1);
    model::AddFieldInfo(db.store, Field("Datum", model::kTypeDate), -1);
  }
  engine::TDBManager db{0};
};

}  // namespace

TEST_F(FilterText, RowsInBothForms) {
  struct Case {
    TDBFilterParts row;
    const char* readable;
    const char* readableShown;
    const char* internal;  // null: no internal form
  } cases[] = {
      {Row(0, "Ort", 2, "Kiel"), "  Ort gleich Kiel ", "  Wohnort gleich Kiel ", "   \\eval{Ort|*=|\"Kiel\"|4} "},
      {Row(1, "Preis", 0, "10"), "und  Preis kleiner 10 ", "und  Preis kleiner 10 ", " and  \\eval{Preis|<|10|0} "},
      {Row(2, "ort", 2, "Kiel", 1, 1), "oder  ort gleich Kiel ", "oder  Wohnort gleich Kiel ", " or  \\eval{ort|=|\"Kiel\"|0} "},
      {Row(0, "Ort", 5, "K", 0, 0, 1, 1), "  Ort gr\xF6\xDF" "er gleich K ", "  Wohnort gr\xF6\xDF" "er gleich K ", "   \\eval{Ort|>=|\"K\"|28} "},
      {Row(0, "Ort", 3, "K", 0, 1, 1), "  Ort ungleich K ", "  Wohnort ungleich K ", "   \\eval{Ort|<>|\"K\"|8} "},
      {Row(0, "Preis", 2, "1,5", 0, 0, 1, 1), "  Preis gleich 1,5 ", "  Preis gleich 1,5 ", "   \\eval{Preis|=|1,5|0} "},
      {Row(7, "Datum", -3, "1.1.2000"), "oder  Datum kleiner 1.1.2000 ", "oder  Datum kleiner 1.1.2000 ", " or  \\eval{Datum|<|1.1.2000|0} "},
      {Row(0, "Weg", 1, "x"), "  ??? kleiner gleich x ", "  ??? kleiner gleich x ", nullptr},
  };
  for (Case& c : cases) {
    SCOPED_TRACE(c.readable);
    std::string text;
    EXPECT_TRUE(listing::RowText(c.row, db.store, text, false, false));
    EXPECT_EQ(text, c.readable);
    EXPECT_TRUE(listing::RowText(c.row, db.store, text, false, true));
    EXPECT_EQ(text, c.readableShown);
    EXPECT_EQ(listing::RowText(c.row, db.store, text, true, false), c.internal != nullptr);
    if (c.internal != nullptr) {
      EXPECT_EQ(text, c.internal);
    }
  }
  // The clamp stays in the row.
  EXPECT_EQ(cases[6].row.link, 2);
  EXPECT_EQ(cases[6].row.condition, 0);
}
