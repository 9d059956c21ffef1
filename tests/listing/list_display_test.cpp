// List display and sort definitions: the stored collection against bytes built from the format
// tables, older forms and versions, damage, and the manager's names by kind.
#include <gtest/gtest.h>

#include <tuple>

#include "listing/list_display.h"
#include "support/mem_bytes.h"

using namespace verdal;
using listing::TListAndSortDisplayFieldInfoMananger;
using options::kCollectionMark;
using options::kEntryMark;
using test_support::Bytes;
using test_support::WrittenBy;

namespace {

Bytes Item(uint8_t alignment, bool ascending, int32_t width, const std::string& field, const std::string& heading) {
  return Bytes().Le(kEntryMark, 4).I32(2).I32(5).U8(alignment).U8(ascending).U8(1).U8(0).I32(width).Str(field)
      .Str(heading).I32(0);
}
// A definition of `version` up to its item count; the fields of later versions only where present.
Bytes Definition(int32_t version, uint8_t kind, const std::string& name, bool ignore = true,
                 const std::string& description = "Kommentar", bool notify = true) {
  Bytes d;
  d.Le(kEntryMark, 4).I32(version).I32(3).U8(kind).I32(42).U8(1).U8(0);
  if (version > 1) d.U8(ignore);
  d.Str(name);
  if (version > 2) d.Str(description);
  if (version > 3) d.U8(notify);
  return d;
}

}  // namespace

TEST(ListDisplay, CollectionReadsAndWritesBackByteForByte) {
  Bytes bytes = Bytes().Le(kCollectionMark, 4).I32(1).Str("Spalten").I32(1).Append(Definition(4, 1, "Spalten"));
  bytes.I32(2).Append(Item(1, false, 120, "Preis", "")).Append(Item(0xFF, true, 80, "Ort", "Wohnort")).I32(0);
  TListAndSortDisplayFieldInfoMananger m;
  ASSERT_TRUE(m.Read(*test_support::FileOf(bytes)));
  EXPECT_EQ(WrittenBy(m), bytes.b);
  const auto& d = *m.definitions.at(0);
  EXPECT_EQ(std::tie(d.reserved, d.kind, d.startCursor, d.sortCategories, d.recursive, d.ignoreCategories,
                     d.description, d.notifyControls),
            std::make_tuple(3, uint8_t{1}, 42, true, false, true, std::string("Kommentar"), true));
  ASSERT_EQ(d.items.size(), 2u);
  const auto& i = d.items[1];
  EXPECT_EQ(std::tie(i.itemReserved, i.alignment, i.ascending, i.stringSort, i.readOnly, i.width, i.fieldName,
                     i.displayName),
            std::make_tuple(5, uint8_t{0xFF}, true, true, false, 80, std::string("Ort"), std::string("Wohnort")));
  EXPECT_FALSE(d.items[0].ascending);
}

// The older collection: the entry mark and at once the count, no version or default name. Fields
// that older definitions lack keep their initial values, and everything is written in the new form.
TEST(ListDisplay, OlderFormsReadWithInitialValuesAndWriteTheCurrentForm) {
  TListAndSortDisplayFieldInfoMananger m;
  m.defaultName = "weg";
  for (int32_t version : {1, 2, 3, 4}) {
    SCOPED_TRACE(version);
    Bytes old = Bytes().Le(kEntryMark, 4).I32(1).Append(Definition(version, 0, "V")).I32(0).I32(0);
    ASSERT_TRUE(m.Read(*test_support::FileOf(old)));
    Bytes now = Bytes().Le(kCollectionMark, 4).I32(1).Str("").I32(1);
    now.Append(Definition(4, 0, "V", version > 1, version > 2 ? "Kommentar" : "", version > 3)).I32(0).I32(0);
    EXPECT_EQ(WrittenBy(m), now.b);
  }
}

TEST(ListDisplay, AWrongMarkEndsTheReadKeepingEarlierDefinitions) {
  TListAndSortDisplayFieldInfoMananger m;
  EXPECT_FALSE(m.Read(*test_support::FileOf(Bytes().I32(7).I32(0))));
  Bytes first = Definition(4, 0, "A").I32(0).I32(0);
  Bytes badDefinition = Definition(4, 0, "B").I32(0).I32(0);
  badDefinition.b[0] ^= 1;
  Bytes badItem = Definition(4, 0, "C").I32(1).Append(Item(0, true, 1, "x", "")).I32(0);
  badItem.b[badItem.b.size() - 4 - 33] ^= 1;  // the item's mark, before its 33 bytes and the end
  for (const Bytes& bad : {badDefinition, badItem}) {
    Bytes b = Bytes().Le(kEntryMark, 4).I32(2).Append(first).Append(bad);
    EXPECT_FALSE(m.Read(*test_support::FileOf(b)));
    ASSERT_EQ(m.definitions.size(), 1u);
    EXPECT_EQ(m.definitions[0]->name, "A");
  }
}

TEST(ListDisplay, NamesAreUniquePerKindAndAddGivesTheExistingIndex) {
  TListAndSortDisplayFieldInfoMananger m;
  m.owner = 0;
  EXPECT_EQ(m.Add("Liste"), 0);
  EXPECT_EQ(m.Add("Zweite  "), 1);
  EXPECT_EQ(m.Add("LISTE"), 0);  // in use: its index, not -1
  EXPECT_EQ(m.Add("   "), -1);
  m.owner = 1;
  EXPECT_EQ(m.Add("Liste"), 0);  // the sort kind has its own names
  EXPECT_EQ(m.Copy(0, nullptr), 0);
  EXPECT_EQ(m.Copy(0, "Kopie "), 1);
  EXPECT_EQ(m.Copy(2, "x"), -1);
  ASSERT_EQ(m.definitions.size(), 4u);
  EXPECT_EQ(m.definitions[1]->name, "Zweite");
  EXPECT_EQ(m.definitions[3]->name, "Kopie");
  EXPECT_EQ(m.definitions[3]->kind, 1);
  m.owner = 0;
  EXPECT_EQ(m.GetCount(), 2);
}
