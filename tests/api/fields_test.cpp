// Field definitions through the C interface.
#include <gtest/gtest.h>

#include <string>

#include "field_helpers.h"
#include "verdal.h"

namespace {

class Fields : public ::testing::Test {
 protected:
  void SetUp() override { db = OpenMemoryDatabase(); }
  void TearDown() override { VERDAL_CloseAllDBs(); }
  VerdalHandle db = 0;
};

}  // namespace

TEST_F(Fields, AddFindAndRefuse) {
  EXPECT_EQ(AddField(db, "Name", 0), 0);
  EXPECT_EQ(AddField(db, "Preis", 1), 1);
  EXPECT_EQ(AddField(db, "Aktiv", 2), 2);
  EXPECT_EQ(VERDAL_GetFieldSize(db), 3);
  EXPECT_STREQ(VERDAL_GetFieldName(db, 1), "Preis");
  EXPECT_EQ(VERDAL_GetFieldName(db, 3), nullptr);
  EXPECT_EQ(VERDAL_GetFieldIndex(db, "PREIS"), 1);
  EXPECT_EQ(VERDAL_GetFieldIndex(db, "Menge"), -1);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_FIELD);

  EXPECT_EQ(AddField(db, "NAME", 0), -2);  // exists, in another letter case
  for (const char* bad : {"a|b", "a\\b", "{x", "y}"}) EXPECT_EQ(AddField(db, bad, 0), -3) << bad;
  EXPECT_EQ(VERDAL_GetFieldSize(db), 3);
  EXPECT_EQ(VERDAL_AddField(db, nullptr, -1, 1), -1);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_INPUT);

  VERDAL_GetFieldIndex(db, "nirgends");  // code 2 stands
  TDBFieldParams p = FieldParams("x", 0);
  EXPECT_EQ(VERDAL_AddField(0, &p, -1, 1), -1);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_FIELD);  // a bad handle leaves the last error alone
  EXPECT_EQ(VERDAL_GetFieldSize(0), 0);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_HANDLE);

  // Letter case beyond ASCII (code page 1252); accents still count.
  EXPECT_EQ(AddField(db, "Gr\xF6\xDF" "e", 1), 3);
  EXPECT_EQ(VERDAL_GetFieldIndex(db, "GR\xD6\xDF" "E"), 3);
  EXPECT_EQ(VERDAL_GetFieldIndex(db, "Grosse"), -1);
  EXPECT_EQ(AddField(db, "\xC4rger", 0), 4);
  EXPECT_EQ(AddField(db, "\xE4rger", 0), -2);
}

TEST_F(Fields, MovingChangesTheIndexButNotTheValues) {
  AddField(db, "Name", 0);
  AddField(db, "Ort", 0);
  int32_t r = VERDAL_AddRecord(db, -1, "r", 0, "Anna", 0, 0, nullptr);
  ASSERT_EQ(VERDAL_SetData(db, 1, "Bonn", r, 0, nullptr, nullptr), 1);
  TDBFieldParams moved = FieldParams("ORT", 0);
  EXPECT_EQ(VERDAL_AddField(db, &moved, 0, 0), 0);
  EXPECT_STREQ(VERDAL_GetFieldName(db, 0), "Ort");
  EXPECT_STREQ(VERDAL_GetData(db, 0, r, 1, 0), "Bonn");
  EXPECT_STREQ(VERDAL_GetData(db, 1, r, 1, 0), "Anna");
  // Moving takes the data type of the record and nothing else.
  TDBFieldParams retyped = FieldParams("Name", 1);
  retyped.decimals = 5;
  EXPECT_EQ(VERDAL_AddField(db, &retyped, -1, 0), 1);
  TDBFieldParams info;
  ASSERT_EQ(VERDAL_GetFieldInfo(db, 1, &info, nullptr), 1);
  EXPECT_EQ(info.dataType, 1);
  EXPECT_EQ(info.decimals, 2);
}

TEST_F(Fields, InfoCarriesEveryMemberBothWays) {
  TDBFieldParams in = FieldParams("Betrag", 1);
  in.displayName = "Betrag in Euro";
  in.sqlType = 8;
  in.extendedType = 4;
  in.maxChars = 12;
  in.decimals = 3;
  in.minValue = -1.5;
  in.maxValue = 1e6;
  in.hasMin = in.hasMax = 1;
  in.hostFlag1 = in.hostFlag2 = 1;
  in.allowEmpty = 0;
  in.allowDuplicates = 0;
  in.hiddenInLists = in.hiddenInSort = in.hiddenField = 1;
  in.lookInOwnFolder = 1;
  in.format = "%d";
  in.initValue = "7";
  in.hostText1 = "h1";
  in.errorText = "falsch";
  in.linkDatabase = "andere.dbd";
  in.linkField = "Feld";
  in.hostText2 = "h2";
  ASSERT_EQ(VERDAL_AddField(db, &in, -1, 1), 0);

  TDBFieldParams out, copy;
  ASSERT_EQ(VERDAL_GetFieldInfo(db, 0, &out, &copy), 1);
  EXPECT_EQ(std::memcmp(&out, &copy, sizeof out), 0);  // not a link: the second is a copy
  EXPECT_EQ(out.dataType, 1);
  EXPECT_EQ(out.sqlType, 8);
  EXPECT_EQ(out.extendedType, 4u);
  EXPECT_EQ(out.maxChars, 12);
  EXPECT_EQ(out.decimals, 3);
  EXPECT_EQ(double{out.minValue}, -1.5);  // packed members are copied, not bound
  EXPECT_EQ(double{out.maxValue}, 1e6);
  EXPECT_EQ(out.hasMin + out.hasMax + out.hostFlag1 + out.hostFlag2, 4);
  EXPECT_EQ(out.allowEmpty + out.allowDuplicates, 0);
  EXPECT_EQ(out.hiddenInLists + out.hiddenInSort + out.hiddenField + out.lookInOwnFolder, 4);
  using Text = const char*;  // copies of the packed pointers
  for (auto [got, want] : {std::pair{Text{out.format}, "%d"}, {Text{out.initValue}, "7"},
                           {Text{out.hostText1}, "h1"}, {Text{out.errorText}, "falsch"},
                           {Text{out.linkDatabase}, "andere.dbd"}, {Text{out.linkField}, "Feld"},
                           {Text{out.name}, "Betrag"}, {Text{out.displayName}, "Betrag in Euro"},
                           {Text{out.hostText2}, "h2"}})
    EXPECT_STREQ(got, want);
  EXPECT_EQ(VERDAL_GetFieldInfo(db, 1, &out, nullptr), 0);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_FIELD);
}

TEST_F(Fields, SameFieldsCompareNamesAndTypesOnly) {
  VerdalHandle other = OpenMemoryDatabase();
  AddField(db, "Name", 0);
  AddField(db, "Preis", 1);
  TDBFieldParams preis = FieldParams("preis", 1);
  preis.decimals = 4;  // decimals do not count
  VERDAL_AddField(other, &preis, -1, 1);
  AddField(other, "NAME", 0);
  EXPECT_EQ(VERDAL_HasSameDataFields(db, other, 0), 1);
  EXPECT_EQ(VERDAL_HasSameDataFields(db, other, 1), 0);
  AddField(db, "Datum", 5);
  AddField(other, "Datum", 4);
  EXPECT_EQ(VERDAL_HasSameDataFields(db, other, 0), 0);
  EXPECT_EQ(VERDAL_HasSameDataFields(db, 0, 0), 0);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_HANDLE);
}
