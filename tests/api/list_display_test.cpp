// List display and sort definitions through the C interface: default columns, the first sort
// field, the two kinds kept apart, and what survives a save.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "field_helpers.h"
#include "verdal.h"

namespace {

struct Top {
  int32_t result, field, ascending;
  bool operator==(const Top&) const = default;
};
Top SortTop(VerdalHandle db, const char* name) {
  Top t{0, -9, -9};
  t.result = VERDAL_GetListSortTopInfo(db, name, &t.field, &t.ascending);
  return t;
}

}  // namespace

TEST(ListDisplay, DefaultColumnsComeFromTheFields) {
  VerdalHandle db = OpenMemoryDatabase();
  AddField(db, "Name", 0);
  TDBFieldParams hidden = FieldParams("Preis", 1);
  hidden.hiddenInLists = 1;
  hidden.readOnly = 1;
  hidden.displayName = "Preis in EUR";
  VERDAL_AddField(db, &hidden, -1, 1);
  AddField(db, "Datum", 5);
  VERDAL_GetFilter(db + 1000, "x");  // leaves last error 1, which none of these functions touches

  EXPECT_EQ(VERDAL_GetListDisplayFieldSize(db, nullptr), 3);  // hidden fields count
  ListDisplayFieldRecord r;
  const struct {
    int32_t index;
    uint8_t alignment, readOnly;
    const char* heading;
  } want[] = {{0, 0, 0, "Name"}, {1, 1, 1, "Preis in EUR"}, {2, 2, 0, "Datum"}};
  for (const auto& w : want) {
    std::memset(&r, 0x5A, sizeof r);
    ASSERT_EQ(VERDAL_GetListDisplayFieldInfo(db, nullptr, w.index, &r), 1);
    EXPECT_EQ(r.alignment, w.alignment) << w.index;
    EXPECT_EQ(r.readOnly, w.readOnly) << w.index;
    EXPECT_EQ(r.width, 24);
    EXPECT_STREQ(r.heading, w.heading);
    EXPECT_EQ(r.fieldIndex, w.index);
    EXPECT_EQ(r.unused[0], 0x5A);  // not written
  }
  EXPECT_EQ(VERDAL_GetListDisplayFieldInfo(db, nullptr, 3, &r), -5);
  EXPECT_EQ(VERDAL_GetListDisplayFieldInfo(db, "Liste", 0, &r), -2);
  EXPECT_EQ(VERDAL_GetListDisplayFieldSize(db, "Liste"), -2);
  EXPECT_EQ(VERDAL_SetListDisplayFieldInfoColWidth(db, nullptr, 0, 5), -2);
  EXPECT_EQ(VERDAL_GetListDisplayFieldSize(db + 1000, nullptr), -1);
  EXPECT_EQ(VERDAL_GetListSortTopInfo(db + 1000, "x", nullptr, nullptr), -1);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_HANDLE);
  VERDAL_CloseAllDBs();
}

TEST(ListDisplay, TheFirstSortFieldSwapsPlacesOrIsPutInFront) {
  VerdalHandle db = OpenMemoryDatabase();
  for (const char* name : {"A", "B", "C", "D"}) AddField(db, name, 0);

  EXPECT_EQ(VERDAL_SetListSortTopInfo(db, nullptr, 0, 1, 0), -2);
  EXPECT_EQ(VERDAL_SetListSortTopInfo(db, "Nach A", 7, 1, 0), -3);
  EXPECT_EQ(VERDAL_SetListSortTopInfo(db, "Nach A", 0, 1, 1), -2);  // must exist
  EXPECT_EQ(VERDAL_SetListSortTopInfo(db, "   ", 0, 1, 0), -2);     // empty once trimmed
  EXPECT_EQ(SortTop(db, "Nach A"), (Top{-2, -9, -9}));

  EXPECT_EQ(VERDAL_SetListSortTopInfo(db, "Nach A  ", 0, 0, 0), 1);  // new, trimmed
  EXPECT_EQ(SortTop(db, "nach a"), (Top{1, 0, 0}));
  EXPECT_EQ(VERDAL_SetListSortTopInfo(db, "Nach A", 1, 1, 1), -3);  // B put in front
  EXPECT_EQ(VERDAL_SetListSortTopInfo(db, "Nach A", 2, 1, 1), -3);  // C in front: C B A
  EXPECT_EQ(SortTop(db, "Nach A"), (Top{1, 2, 1}));
  // A to the top exchanges with C: A B C, not A C B.
  EXPECT_EQ(VERDAL_SetListSortTopInfo(db, "Nach A", 0, 0, 1), 1);
  EXPECT_EQ(SortTop(db, "Nach A"), (Top{1, 0, 0}));
  EXPECT_EQ(VERDAL_SetListSortTopInfo(db, "Nach A", 2, 1, 1), 1);
  EXPECT_EQ(SortTop(db, "Nach A"), (Top{1, 2, 1}));
  EXPECT_EQ(VERDAL_SetListSortTopInfo(db, "Nach A", 1, 1, 1), 1);  // B swaps with C
  EXPECT_EQ(SortTop(db, "Nach A"), (Top{1, 1, 1}));

  // A sort definition is no list display definition.
  EXPECT_EQ(VERDAL_GetListDisplayFieldSize(db, "Nach A"), -2);
  ListDisplayFieldRecord r;
  EXPECT_EQ(VERDAL_GetListDisplayFieldInfo(db, "Nach A", 0, &r), -2);
  EXPECT_EQ(VERDAL_SetListDisplayFieldInfoColWidth(db, "Nach A", 0, 50), -2);
  VERDAL_CloseAllDBs();
}

TEST(ListDisplay, SortDefinitionsAreOptionsWithADefaultAndMoveToAnotherDatabase) {
  VerdalHandle db = OpenMemoryDatabase();
  AddField(db, "Ort", 0);
  AddField(db, "PLZ", 1);
  VERDAL_SetListSortTopInfo(db, "Nach Ort", 0, 1, 0);
  VERDAL_SetListSortTopInfo(db, "Nach PLZ", 1, 0, 0);
  EXPECT_EQ(VERDAL_SetDefaultOption(db, VERDAL_OPTION_SORT, "nach plz", 0), 1);
  EXPECT_EQ(VERDAL_SetDefaultOption(db, 4, "x", 0), 0);  // no kind 4
  EXPECT_EQ(VERDAL_NumOptions(db, 9, 0), 0);
  VerdalHandle other = OpenMemoryDatabase();
  AddField(other, "PLZ", 1);
  ASSERT_EQ(VERDAL_MoveOptions(db, other), 1);
  int32_t isDefault[2] = {-1, -1};
  for (int32_t i : {0, 1})
    EXPECT_STREQ(VERDAL_GetOptionName(other, VERDAL_OPTION_SORT, i, 5, &isDefault[i], 0, 0, nullptr, nullptr),
                 i == 0 ? "Nach Ort" : "Nach PLZ");
  EXPECT_EQ(isDefault[0] * 10 + isDefault[1], 1);
  EXPECT_EQ(SortTop(other, "Nach PLZ"), (Top{1, 0, 0}));   // PLZ is field 0 there
  EXPECT_EQ(SortTop(other, "Nach Ort"), (Top{1, -1, 1}));  // a field it does not have
  EXPECT_EQ(VERDAL_GetOptionName(db, VERDAL_OPTION_SORT, 2, 0, nullptr, 0, 0, nullptr, nullptr), nullptr);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_INPUT);
  EXPECT_EQ(VERDAL_MoveOptions(db, other + 1000), 0);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_HANDLE);
  VERDAL_CloseAllDBs();
}
