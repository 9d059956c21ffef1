// Records and their values through the C interface: add, set, read, find, convert, compare,
// duplicate, and what the host hears.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "field_helpers.h"
#include "recording_host.h"
#include "verdal.h"

namespace {

enum { kName, kPreis, kAktiv, kDatum, kNummer, kCode };

class Records : public ::testing::Test {
 protected:
  void SetUp() override {
    VERDAL_SetLanguage(0x407);
    db = OpenMemoryDatabase();
    AddField(db, "Name", 0);
    AddField(db, "Preis", 1);
    AddField(db, "Aktiv", 2);
    AddField(db, "Datum", 5);
    TDBFieldParams counter = FieldParams("Nummer", 1);
    counter.isCounter = 1;
    counter.decimals = 0;
    VERDAL_AddField(db, &counter, -1, 1);
    TDBFieldParams code = FieldParams("Code", 0);
    code.readOnly = 1;
    code.initValue = "K-1";
    VERDAL_AddField(db, &code, -1, 1);
  }
  void TearDown() override {
    VERDAL_CloseAllDBs();
    VERDAL_SetLanguage(0);
  }
  std::string Raw(int32_t field, int32_t cursor) {
    const char* v = VERDAL_GetData(db, field, cursor, 1, 0);
    return v != nullptr ? v : "<null>";
  }
  std::string Shown(int32_t field, int32_t cursor, bool words = true) {
    const char* v = VERDAL_GetData(db, field, cursor, 0, words ? 1 : 0);
    return v != nullptr ? v : "<null>";
  }

  VerdalHandle db = 0;
};

}  // namespace

TEST_F(Records, ValuesAreStoredInternallyAndShownAsUsersWriteThem) {
  int32_t c = VERDAL_AddCategory(db, -1, "Kunden");
  int32_t r = VERDAL_AddRecord(db, c, nullptr, 0, "1.234,5", kPreis, 0, nullptr);
  ASSERT_GE(r, 0);
  EXPECT_EQ(Raw(kPreis, r), "1234.50");
  EXPECT_EQ(Shown(kPreis, r), "1234,50");
  ASSERT_EQ(VERDAL_SetData(db, kDatum, "31.12.01", r, 1, nullptr, nullptr), 1);
  EXPECT_EQ(Raw(kDatum, r), "31.12.2001.0.0.0.0");
  EXPECT_EQ(Shown(kDatum, r), "31.12.2001");
  ASSERT_EQ(VERDAL_SetData(db, kAktiv, "ja", r, 0, nullptr, nullptr), 1);
  EXPECT_EQ(Raw(kAktiv, r), "1");
  EXPECT_EQ(Shown(kAktiv, r), "Ja");
  EXPECT_EQ(Shown(kAktiv, r, false), "1");
  EXPECT_EQ(Raw(kName, r), "");
  EXPECT_EQ(Raw(kCode, r), "K-1");  // a new record takes the initial value

  EXPECT_EQ(VERDAL_GetData(db, 9, r, 1, 0), nullptr);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_FIELD);
  EXPECT_EQ(VERDAL_GetData(db, kName, 999, 1, 0), nullptr);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_CURSOR);
  EXPECT_EQ(VERDAL_GetData(db, kName, VERDAL_CURSOR_NONE, 1, 0), nullptr);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_CURSOR);
  // The current cursor is the record just added.
  EXPECT_EQ(Raw(kPreis, VERDAL_CURSOR_CURRENT), "1234.50");
}

TEST_F(Records, SetDataRefusesWhatItMustBeforeChangingAnything) {
  int32_t r = VERDAL_AddRecord(db, -1, "r", 0, nullptr, -1, 0, nullptr);
  EXPECT_EQ(VERDAL_SetData(db, kNummer, "5", r, 0, nullptr, nullptr), 0);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_READ_ONLY_FIELD);
  EXPECT_EQ(VERDAL_SetData(db, kCode, "x", r, 0, nullptr, nullptr), 0);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_READ_ONLY_FIELD);
  EXPECT_EQ(VERDAL_SetData(db, 42, "x", r, 0, nullptr, nullptr), 0);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_FIELD);
  EXPECT_EQ(VERDAL_SetData(db, kName, "x", 999, 0, nullptr, nullptr), 0);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_CURSOR);
  // The root is a place without a data record.
  EXPECT_EQ(VERDAL_SetData(db, kName, "x", VERDAL_CURSOR_ROOT, 0, nullptr, nullptr), 0);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_TARGET);
  EXPECT_EQ(VERDAL_GetInternalData(db, VERDAL_CURSOR_ROOT, nullptr, nullptr, nullptr, nullptr), 0);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_TARGET);

  // A field that refuses empty values and duplicates, with its own error text.
  TDBFieldParams strict = FieldParams("Kennung", 0);
  strict.allowEmpty = 0;
  strict.allowDuplicates = 0;
  strict.errorText = "Kennung fehlt";
  int32_t k = VERDAL_AddField(db, &strict, -1, 1);
  char error[1024] = "unchanged";
  EXPECT_EQ(VERDAL_SetData(db, k, "", r, 1, error, nullptr), 0);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_INPUT);
  EXPECT_STREQ(error, "Kennung fehlt");
  ASSERT_EQ(VERDAL_SetData(db, k, "A7", r, 1, nullptr, nullptr), 1);
  int32_t other = VERDAL_AddRecord(db, -1, "o", 0, nullptr, -1, 0, nullptr);
  EXPECT_EQ(VERDAL_SetData(db, k, "A7", other, 1, nullptr, nullptr), 0);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_INPUT);
  EXPECT_EQ(VERDAL_SetData(db, k, "A7", r, 1, nullptr, nullptr), 1);  // its own value is no duplicate
  EXPECT_EQ(VERDAL_SetData(db, k, "A7", other, 0, nullptr, nullptr), 1);  // without validation it passes
}

TEST_F(Records, CountersNumberRecordsAndDuplicatesCountOn) {
  int32_t a = VERDAL_AddRecord(db, -1, "a", 0, "Anna", kName, 0, nullptr);
  int32_t b = VERDAL_AddRecord(db, -1, "b", 0, "Bert", kName, 0, nullptr);
  EXPECT_EQ(Raw(kNummer, a), "1");
  EXPECT_EQ(Raw(kNummer, b), "2");
  ASSERT_EQ(VERDAL_SetData(db, kPreis, "9,99", a, 0, nullptr, nullptr), 1);
  int32_t copy = VERDAL_DuplicateRecord(db, a, -1, "Kopie");
  ASSERT_GE(copy, 0);
  EXPECT_EQ(Raw(kName, copy), "Anna");
  EXPECT_EQ(Raw(kPreis, copy), "9.99");
  EXPECT_EQ(Raw(kNummer, copy), "3");
  EXPECT_EQ(Raw(kCode, copy), "K-1");
  EXPECT_EQ(VERDAL_DuplicateRecord(db, 999, -1, "x"), -1);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_CURSOR);

  // A field added later gives every record a value: counters number them one after another.
  TDBFieldParams later = FieldParams("Lfd", 1);
  later.isCounter = 1;
  later.decimals = 0;
  int32_t lfd = VERDAL_AddField(db, &later, -1, 1);
  std::vector<std::string> numbers{Raw(lfd, a), Raw(lfd, b), Raw(lfd, copy)};
  std::sort(numbers.begin(), numbers.end());
  EXPECT_EQ(numbers, (std::vector<std::string>{"1", "2", "3"}));
}

TEST_F(Records, ParentsAndFirstFieldsAreChecked) {
  int32_t r = VERDAL_AddRecord(db, -1, "r", 0, nullptr, -1, 0, nullptr);
  EXPECT_EQ(VERDAL_AddRecord(db, r, "x", 0, nullptr, -1, 0, nullptr), -1);
  EXPECT_EQ(VERDAL_GetLastError(), 20);
  EXPECT_EQ(VERDAL_AddRecord(db, 999, "x", 0, nullptr, -1, 0, nullptr), -1);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_CATEGORY_CURSOR);
  EXPECT_EQ(VERDAL_AddRecord(db, -1, "x", 0, "v", 17, 0, nullptr), -1);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_FIELD);
  // The refused record was made before its field was checked: it took a counter number.
  int32_t next = VERDAL_AddRecord(db, -1, "n", 0, nullptr, -1, 0, nullptr);
  EXPECT_EQ(Raw(kNummer, next), "3");
}

TEST_F(Records, TextsHandedOutLastUntilTheirOwnFunctionComesRoundAgain) {
  int32_t r = VERDAL_AddRecord(db, -1, "r", 0, "Eva", kName, 0, nullptr);
  VERDAL_SetData(db, kPreis, "3", r, 0, nullptr, nullptr);
  const char* name = VERDAL_GetData(db, kName, r, 1, 0);
  const char* price = VERDAL_GetData(db, kPreis, r, 0, 0);
  // A longer value of another field rebuilds the record's texts; what was handed out stays.
  ASSERT_EQ(VERDAL_SetData(db, kPreis, "123456789012345678", r, 0, nullptr, nullptr), 1);
  EXPECT_STREQ(name, "Eva");
  EXPECT_STREQ(price, "3,00");
  for (int i = 2; i < VERDAL_TEXT_KEPT; ++i) VERDAL_GetData(db, kPreis, r, 1, 0);
  EXPECT_STREQ(name, "Eva");  // still there after VERDAL_TEXT_KEPT - 1 later calls

  // Side by side, as in one printf, for each function that hands out text.
  EXPECT_STRNE(VERDAL_GetData(db, kName, r, 1, 0), VERDAL_GetData(db, kPreis, r, 1, 0));
  EXPECT_STRNE(VERDAL_ConvertData(db, kPreis, "1", 1, 0, 0), VERDAL_ConvertData(db, kPreis, "2", 1, 0, 0));
  EXPECT_STRNE(VERDAL_GetFieldName(db, kName), VERDAL_GetFieldName(db, kPreis));
  EXPECT_STRNE(VERDAL_GetInternalParseString(db, kName, "a", 0),
               VERDAL_GetInternalParseString(db, kName, "b", 0));
}

TEST_F(Records, FindingValuesAndTemporaryRecords) {
  int32_t a = VERDAL_AddRecord(db, -1, "a", 0, "1,5", kPreis, 0, nullptr);
  int32_t found = -7;
  EXPECT_EQ(VERDAL_HasDataMember(db, kPreis, "1,5", 0, 0, &found, -1), 1);  // brought to stored form
  EXPECT_EQ(found, a);
  EXPECT_EQ(VERDAL_HasDataMember(db, kPreis, "1,5", 1, 0, &found, -1), 0);  // as stored: no match
  EXPECT_EQ(found, -1);
  EXPECT_EQ(VERDAL_HasDataMember(db, kPreis, "1.50", 1, 0, &found, a), 0);  // skipped
  EXPECT_EQ(VERDAL_HasDataMember(db, 77, "x", 0, 0, &found, -1), 0);
  EXPECT_EQ(VERDAL_GetLastError(), 0);

  int32_t t = VERDAL_AddRecord(db, -1, "t", 1, "Tim", kName, 0, nullptr);
  EXPECT_EQ(VERDAL_HasDataMember(db, kName, "Tim", 1, 0, &found, -1), 0);
  ASSERT_EQ(VERDAL_SetData(db, kAktiv, "j", t, 0, nullptr, nullptr), 1);
  EXPECT_EQ(VERDAL_HasDataMember(db, kName, "Tim", 1, 0, &found, -1), 1);
  EXPECT_EQ(found, t);
}

TEST_F(Records, ConvertAndCompareFollowTheFieldTypeAndLanguage) {
  EXPECT_STREQ(VERDAL_ConvertData(db, kPreis, "1.234,56", 1, 0, 0), "1234.56");
  EXPECT_STREQ(VERDAL_ConvertData(db, kPreis, "1234.56", 0, 0, 0), "1234,56");
  EXPECT_STREQ(VERDAL_ConvertData(db, kAktiv, "1", 0, 1, 0), "Ja");
  EXPECT_STREQ(VERDAL_ConvertData(db, kDatum, "1.2.20", 1, 0, 0), "1.2.2020.0.0.0.0");
  EXPECT_STREQ(VERDAL_ConvertData(db, kDatum, "1.2.2020.0.0.0.0", 0, 0, 0), "01.02.2020");
  VERDAL_SetLanguage(0x409);
  EXPECT_STREQ(VERDAL_ConvertData(db, kPreis, "1.234,56", 1, 0, 0), "1.23");
  EXPECT_EQ(VERDAL_ConvertData(db, 99, "x", 1, 0, 0), nullptr);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_FIELD);

  int32_t cheap = VERDAL_AddRecord(db, -1, "c", 0, "9,5", kPreis, 0, nullptr);
  int32_t dear = VERDAL_AddRecord(db, -1, "d", 0, "10", kPreis, 0, nullptr);
  int32_t order = 0;
  ASSERT_EQ(VERDAL_Compare(db, cheap, dear, kPreis, 0, 0, &order), 1);
  EXPECT_EQ(order, -1);  // numerically, not as text
  ASSERT_EQ(VERDAL_Compare(db, cheap, dear, kPreis, 0, 1, &order), 1);
  EXPECT_EQ(order, 1);
  EXPECT_EQ(VERDAL_Compare(db, cheap, 999, kPreis, 0, 0, &order), 0);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_TARGET);
}

TEST_F(Records, TheHostHearsEveryStepAndCanVetoAddingARecord) {
  RecordingHost host;
  int32_t c = VERDAL_AddCategory(db, -1, "K");
  int32_t r = VERDAL_AddRecord(db, c, "r", 0, nullptr, -1, 0, nullptr);
  VERDAL_SetData(db, kName, "Eva", r, 0, nullptr, nullptr);
  VERDAL_DeleteRecord(db, r, 0, 1, nullptr, 1);
  host.vetoReason = 1;
  EXPECT_EQ(VERDAL_AddRecord(db, c, "v", 0, nullptr, -1, 0, nullptr), -1);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_CANCELLED);
  EXPECT_EQ(host.Take(), (std::vector<Heard>{
                             {6, c, c, -10, 0}, {2, c, c, -10, 0},   // category added, current
                             {1, c, c, -10, 0},                      // record: current changing
                             {6, r, c, -10, 0}, {2, r, c, -10, 0},   // added, current
                             {8, r, c, kName, 0},                    // value changed
                             {3, r, c, -10, 0}, {4, r, -1, -10, 0},  // deleted
                             {2, c, c, -10, 0},                      // current: one step back
                             {1, c, c, -10, 0}}));                   // vetoed
}
