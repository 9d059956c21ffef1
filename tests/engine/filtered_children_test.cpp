// Stored filters of several rows, turned into text with VERDAL_GetFilter and applied with
// VERDAL_GetCategoryChildList. The C interface cannot make filters (that is the options dialog),
// so the test puts them into the database behind the handle.
#include <gtest/gtest.h>

#include <vector>

#include "api/field_helpers.h"
#include "engine/db_manager.h"
#include "engine/handle_table.h"
#include "listing/filter_parts.h"
#include "verdal.h"

using namespace verdal;
using listing::TDBFilterParts;

namespace {

using Ints = std::vector<int32_t>;

struct Row {
  int16_t link;
  const char* open;
  const char* field;
  int16_t condition;
  const char* value;
  const char* close;
  uint8_t wholeWord, caseSensitive, beginsWith, wildcard;
};

class FilteredChildren : public ::testing::Test {
 protected:
  void SetUp() override {
    VERDAL_SetLanguage(0x407);
    db = OpenMemoryDatabase();
    AddField(db, "Name", 0);
    AddField(db, "Preis", 1);
    AddField(db, "Datum", 5);
    AddField(db, "Ort", 0);
    int32_t c = VERDAL_AddCategory(db, -1, "K");
    const struct { const char* name; const char* price; const char* date; } people[] = {
        {"Abel", "10", "1.1.1999"},    {"Schaber", "600", "5.5.2005"}, {"Otto", "20", "3.3.2003"},
        {"Gabi", "499,99", "1.1.2000"}, {"Schmidt", "5", "2.2.1990"},  {"otto", "30", "4.4.2004"},
        {"Krabbe", "100", "6.6.2006"}};
    for (const auto& p : people) {
      int32_t r = VERDAL_AddRecord(db, c, p.name, 0, p.name, 0, 0, nullptr);
      VERDAL_SetData(db, 1, p.price, r, 0, nullptr, nullptr);
      VERDAL_SetData(db, 2, p.date, r, 0, nullptr, nullptr);
      cursors.push_back(r);
    }
  }
  void TearDown() override {
    VERDAL_CloseAllDBs();
    VERDAL_SetLanguage(0);
  }
  void Store(const char* name, const std::vector<Row>& rows) {
    auto item = std::make_unique<listing::TDBFilterPartsItem>();
    item->name = name;
    for (const Row& r : rows) {
      TDBFilterParts p;
      p.link = r.link;
      p.openBracket = r.open;
      p.fieldName = r.field;
      p.condition = r.condition;
      p.value = r.value;
      p.closeBracket = r.close;
      p.wholeWord = r.wholeWord;
      p.caseSensitive = r.caseSensitive;
      p.beginsWith = r.beginsWith;
      p.wildcard = r.wildcard;
      item->rows.push_back(p);
    }
    engine::Handles().Lookup(db)->filters.filters.push_back(std::move(item));
  }
  // The records that pass a stored filter, by their index in `cursors`; -1 alone on failure.
  Ints Passing(const char* filterName) {
    const char* text = VERDAL_GetFilter(db, filterName);
    if (text == nullptr) return {-2};
    int32_t count = 0;
    int32_t* array = nullptr;
    if (!VERDAL_GetCategoryChildList(db, VERDAL_CURSOR_ROOT, 0, 0, 1, 0, &count, &array, 2, text, 0))
      return {-1};
    Ints out;
    for (int32_t i = 0; i < count; ++i)
      out.push_back(static_cast<int32_t>(std::find(cursors.begin(), cursors.end(), array[i]) - cursors.begin()));
    VERDAL_GetCategoryDeleteChildList(array);
    return out;
  }

  VerdalHandle db = 0;
  Ints cursors;  // Abel, Schaber, Otto, Gabi, Schmidt, otto, Krabbe
};

}  // namespace

TEST_F(FilteredChildren, RowsOfEveryKindSelectTheExpectedRecords) {
  // Contains "AB" in any case, or begins with "Sch", in brackets; and a price below 500; and a
  // date from 2000 on.
  Store("Mix", {{0, "(", "Name", 2, "AB", "", 0, 0, 0, 0},
                {2, "", "Name", 2, "Sch", ")", 0, 0, 1, 0},
                {1, "", "Preis", 0, "500", "", 0, 0, 0, 0},
                {1, "", "Datum", 5, "1.1.2000", "", 0, 0, 0, 0}});
  EXPECT_EQ(Passing("mix"), (Ints{3, 6}));  // Gabi, Krabbe (Schaber costs 600, Abel is too old)

  Store("Genau", {{0, "", "Name", 2, "Otto", "", 1, 1, 0, 0}});  // whole word, case-sensitive
  EXPECT_EQ(Passing("Genau"), (Ints{2}));
  Store("Ohne Fall", {{0, "", "Name", 2, "otto", "", 1, 0, 0, 0}});  // whole word, any case
  EXPECT_EQ(Passing("Ohne Fall"), (Ints{2, 5}));
  Store("Platzhalter", {{0, "", "Name", 2, "k*e", "", 0, 0, 0, 1}});
  EXPECT_EQ(Passing("Platzhalter"), (Ints{6}));
  Store("Teuer oder alt", {{0, "", "Preis", 5, "600", "", 0, 0, 0, 0},
                            {2, "", "Datum", 0, "1.1.1995", "", 0, 0, 0, 0}});
  EXPECT_EQ(Passing("Teuer oder alt"), (Ints{1, 4}));
  Store("Nicht Otto", {{0, "", "Name", 3, "Otto", "", 1, 0, 0, 0}});
  EXPECT_EQ(Passing("Nicht Otto"), (Ints{0, 1, 3, 4, 6}));
}

TEST_F(FilteredChildren, DeletedFieldsAndUnbalancedFiltersFail) {
  Store("Verwaist", {{0, "", "Telefon", 2, "1", "", 0, 0, 0, 0}});
  EXPECT_EQ(VERDAL_GetFilter(db, "Verwaist"), nullptr);  // the field is not there
  EXPECT_EQ(VERDAL_GetFilter(db, "Unbekannt"), nullptr);
  Store("Leer", {});
  EXPECT_STREQ(VERDAL_GetFilter(db, "Leer"), "");  // no rows: an empty text, not a failure
  EXPECT_EQ(VERDAL_GetLastError(), 0);

  Store("Offen", {{0, "(", "Name", 2, "a", "", 0, 0, 0, 0}});
  EXPECT_EQ(Passing("Offen"), (Ints{-1}));
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_QUERY);
  int32_t count = 0;
  int32_t* array = nullptr;
  EXPECT_EQ(VERDAL_GetCategoryChildList(db, -2, 0, 0, 1, 0, &count, &array, 2, "Name ==;", 0), 0);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_QUERY);
  EXPECT_EQ(array, nullptr);
}

TEST_F(FilteredChildren, NamesIgnoreLetterCaseBeyondAscii) {
  ASSERT_EQ(AddField(db, "Gr\xF6\xDF" "e", 1), 4);  // Größe
  VERDAL_SetData(db, 4, "7", cursors[1], 0, nullptr, nullptr);
  VERDAL_SetData(db, 4, "9", cursors[4], 0, nullptr, nullptr);
  // The row names the field as GRÖßE; the filter is asked for as "größe über 5".
  Store("Gr\xF6\xDF" "e \xFC" "ber 5", {{0, "", "GR\xD6\xDF" "E", 4, "5", "", 0, 0, 0, 0}});
  EXPECT_EQ(Passing("gr\xF6\xDF" "e \xDC" "BER 5"), (Ints{1, 4}));
}
