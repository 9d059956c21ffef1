// Sorting through the C interface. Expected orders are worked out here, independently of the
// engine's comparator: a stable sort of the records taken in reverse (so that ties come out
// reversed), by the keys written out below.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "field_helpers.h"
#include "support/sheet_controls.h"
#include "temp_folder.h"
#include "verdal.h"

namespace {

// Texts with their collation rank: accents decide before letter case, and lower case comes first.
constexpr std::pair<const char*, int> kTexts[] = {
    {"", 0}, {"apfel", 1}, {"Apfel", 2}, {"\xC4pfel", 3}, {"banane", 4}, {"Zebra", 5}};

struct Row {
  int text;       // index into kTexts
  const char* number;  // "" is no value, which counts as 0
  int day;        // of January 2024
  int yes;
};
constexpr Row kRows[] = {
    {1, "5", 3, 1},  {4, "-2", 1, 0}, {1, "5", 2, 0},  {0, "", 3, 1},   {3, "5", 3, 1}, {1, "0,5", 1, 1},
    {5, "5", 2, 0},  {2, "-2", 3, 1}, {1, "5", 3, 1},  {4, "", 2, 0},   {2, "5", 1, 1}, {0, "5", 3, 0},
};
enum Field { kText, kNumber, kDate, kYes };

double NumberOf(const Row& r) {
  std::string n = r.number;
  std::replace(n.begin(), n.end(), ',', '.');
  return n.empty() ? 0 : std::stod(n);
}

double Key(const Row& r, Field f) {
  switch (f) {
    case kText: return kTexts[r.text].second;
    case kNumber: return NumberOf(r);
    case kDate: return r.day;
    case kYes: return r.yes;
  }
  return 0;
}

struct SortKey {
  Field field;
  bool ascending;
};

std::vector<int32_t> Expected(const std::vector<int32_t>& cursors, const std::vector<SortKey>& keys) {
  std::vector<size_t> order(cursors.size());
  for (size_t i = 0; i < order.size(); ++i) order[i] = order.size() - 1 - i;
  std::stable_sort(order.begin(), order.end(), [&](size_t a, size_t b) {
    for (const SortKey& k : keys) {
      const double x = Key(kRows[a], k.field), y = Key(kRows[b], k.field);
      if (x != y) return k.ascending ? x < y : y < x;
    }
    return false;
  });
  std::vector<int32_t> out;
  for (size_t i : order) out.push_back(cursors[i]);
  return out;
}

const char* const kFieldNames[] = {"Text", "Zahl", "Datum", "Ja"};

// A sort definition with the keys, the first most significant.
void Define(VerdalHandle db, const char* name, const std::vector<SortKey>& keys) {
  for (auto k = keys.rbegin(); k != keys.rend(); ++k)
    VERDAL_SetListSortTopInfo(db, name, k->field, k->ascending, 0);
}

std::vector<int32_t> Children(VerdalHandle db, int32_t cursor, int32_t recurse = 0) {
  int32_t count = 0, *list = nullptr;
  EXPECT_EQ(VERDAL_GetCategoryChildList(db, cursor, 0, 0, recurse, 0, &count, &list, 3, nullptr, 0), 1);
  std::vector<int32_t> out(list, list + count);
  VERDAL_GetCategoryDeleteChildList(list);
  return out;
}

VerdalHandle BuildDatabase(std::vector<int32_t>& cursors) {
  VerdalHandle db = OpenMemoryDatabase();
  const int16_t types[] = {0, 1, 5, 2};
  for (int i = 0; i < 4; ++i) AddField(db, kFieldNames[i], types[i]);
  for (const Row& r : kRows) {
    const int32_t c = VERDAL_AddRecord(db, -2, "r", 0, nullptr, -1, 0, nullptr);
    VERDAL_SetData(db, kText, kTexts[r.text].first, c, 0, nullptr, nullptr);
    VERDAL_SetData(db, kNumber, r.number, c, 0, nullptr, nullptr);
    VERDAL_SetData(db, kDate, ("0" + std::to_string(r.day) + ".01.2024").c_str(), c, 0, nullptr, nullptr);
    VERDAL_SetData(db, kYes, r.yes ? "1" : "0", c, 0, nullptr, nullptr);
    cursors.push_back(c);
  }
  return db;
}

}  // namespace

TEST(Sort, FlatAndTreeSortsFollowEveryKeyKindAndDirectionWithTiesReversed) {
  std::vector<int32_t> cursors;
  VerdalHandle db = BuildDatabase(cursors);
  const std::vector<std::vector<SortKey>> definitions = {
      {{kText, true}},
      {{kText, false}, {kNumber, true}},
      {{kNumber, true}, {kDate, false}, {kText, true}},
      {{kDate, true}, {kYes, false}},
      {{kYes, true}, {kText, false}, {kNumber, false}},
  };
  for (size_t d = 0; d < definitions.size(); ++d) {
    SCOPED_TRACE(d);
    const std::string name = "S" + std::to_string(d);
    Define(db, name.c_str(), definitions[d]);
    const std::vector<int32_t> want = Expected(cursors, definitions[d]);
    int32_t count = -1, *array = nullptr;
    ASSERT_EQ(VERDAL_SortFlat(db, name.c_str(), &count, &array), 1);
    EXPECT_EQ(std::vector<int32_t>(array, array + count), want);
    VERDAL_GetCategoryDeleteChildList(array);
    EXPECT_EQ(Children(db, -2), cursors);  // a flat sort leaves the tree alone
  }
  // In place: the same order, and sorting again turns each run of ties round again.
  const std::vector<SortKey> byText = definitions[0];
  ASSERT_EQ(VERDAL_Sort(db, "S0"), 1);
  const std::vector<int32_t> once = Expected(cursors, byText);
  EXPECT_EQ(Children(db, -2), once);
  ASSERT_EQ(VERDAL_Sort(db, "S0"), 1);
  std::vector<int32_t> twice = Children(db, -2);
  EXPECT_NE(twice, once);
  for (size_t i = 0; i < twice.size(); ++i) EXPECT_EQ(kRows[twice[i] - cursors[0]].text, kRows[once[i] - cursors[0]].text);
  EXPECT_EQ(VERDAL_Sort(db, "nix"), 0);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_INPUT);
  EXPECT_EQ(VERDAL_SortFlat(db, "nix", nullptr, nullptr), -2);
  EXPECT_EQ(VERDAL_SortFlat(db + 1000, "S0", nullptr, nullptr), -1);
  VERDAL_CloseAllDBs();
}

TEST(Sort, TheStoredOrderSurvivesASaveAndCategoriesStandBeforeSortedRecords) {
  TempFolder dir;
  std::vector<int32_t> cursors;
  VerdalHandle db = BuildDatabase(cursors);
  const int32_t k1 = VERDAL_AddCategory(db, -2, "Kiste");
  const int32_t inner = VERDAL_AddRecord(db, k1, "innen", 0, nullptr, -1, 0, nullptr);
  const int32_t k2 = VERDAL_AddCategory(db, -2, "Anfang");
  Define(db, "Nach Zahl", {{kNumber, false}});
  // A view of records only follows the new order too.
  ASSERT_EQ(VERDAL_CreateView(db, "Nur Datensätze", VERDAL_VIEW_RECORDS), 1);
  ASSERT_EQ(VERDAL_Sort(db, "Nach Zahl"), 1);
  std::vector<int32_t> want = {k1, k2};
  const std::vector<int32_t> records = Expected(cursors, {{kNumber, false}});
  want.insert(want.end(), records.begin(), records.end());
  EXPECT_EQ(Children(db, -2), want);
  int32_t count = 0, *list = nullptr;
  VERDAL_GetCategoryChildList(db, -2, 1, 0, 1, 0, &count, &list, 2, nullptr, 0);
  std::vector<int32_t> recordsView(list, list + count);
  VERDAL_GetCategoryDeleteChildList(list);
  EXPECT_EQ(recordsView.back(), records.back());

  // By category names: the records, which do not take part, now stand first.
  ASSERT_EQ(VERDAL_SortCategories(db, 1, 1, 0, -2, 0, nullptr), 1);
  want.erase(want.begin(), want.begin() + 2);
  want.push_back(k2);
  want.push_back(k1);
  const std::string file = dir / "sortiert.dbd";
  ASSERT_EQ(VERDAL_Save(db, file.c_str()), 1);
  VERDAL_CloseDB(db);
  db = VERDAL_OpenDB(file.c_str(), nullptr, 1, 0, nullptr, 1, 0, 0);
  EXPECT_EQ(Children(db, -2), want);
  EXPECT_EQ(Children(db, k1), std::vector<int32_t>{inner});
  EXPECT_EQ(VERDAL_SortCategories(db, 1, 1, 0, 12345, 0, nullptr), 0);  // no such start
  EXPECT_EQ(VERDAL_SortCategories(db, 1, 1, 0, -2, 1, nullptr), 0);     // a dialog without a user interface
  VERDAL_CloseAllDBs();
}

TEST(Sort, CategoriesByNameBelowAStartWithOrWithoutTheLevelsBelow) {
  VerdalHandle db = OpenMemoryDatabase();
  const int32_t top = VERDAL_AddCategory(db, -2, "Oben");
  std::vector<int32_t> names;
  for (const char* name : {"stra\xDF" "e", "Stra\xDF" "e", "Strasse", "\xC4rger", "Zebra", "Arg", "10 Eier", "9 Eier"})
    names.push_back(VERDAL_AddCategory(db, top, name));
  const int32_t deep = names[0];
  const int32_t d1 = VERDAL_AddCategory(db, deep, "b");
  const int32_t d2 = VERDAL_AddCategory(db, deep, "a");
  ASSERT_EQ(VERDAL_SortCategories(db, 1, 0, 0, top, 0, nullptr), 1);
  // Digits before letters, digit by digit; Ärger after Arg; ß as ss, lower case first.
  const std::vector<int32_t> want = {names[6], names[7], names[5], names[3], names[2], names[0], names[1], names[4]};
  EXPECT_EQ(Children(db, top), want);
  EXPECT_EQ(Children(db, deep), (std::vector<int32_t>{d1, d2}));  // not recursive
  ASSERT_EQ(VERDAL_SortCategories(db, 0, 1, 0, top, 0, nullptr), 1);
  std::vector<int32_t> reversed(want.rbegin(), want.rend());
  EXPECT_EQ(Children(db, top), reversed);
  EXPECT_EQ(Children(db, deep), (std::vector<int32_t>{d1, d2}));  // descending: b before a
  VERDAL_CloseAllDBs();
}

TEST(Sort, ATreeWalkWhoseCallbackAsksForASortKeepsItsNodes) {
  VerdalHandle db = OpenMemoryDatabase();
  for (const char* name : {"b", "a", "c"}) VERDAL_AddCategory(db, -2, name);
  ASSERT_EQ(VERDAL_CreateView(db, "Kategorien", VERDAL_VIEW_CATEGORIES), 1);
  struct Walk {
    VerdalHandle db;
    std::vector<int32_t> results;
  } walk{db, {}};
  auto visit = [](intptr_t seed, int32_t, int32_t, int32_t, intptr_t user) -> intptr_t {
    auto* w = reinterpret_cast<Walk*>(user);
    w->results.push_back(VERDAL_SortCategories(w->db, 1, 1, 0, -2, 0, nullptr));
    w->results.push_back(VERDAL_GetLastError());
    return seed;
  };
  EXPECT_EQ(VERDAL_BuildCategoryTree(db, 0, visit, reinterpret_cast<intptr_t>(&walk), 1, -1), 1);
  EXPECT_EQ(walk.results, (std::vector<int32_t>{0, VERDAL_ERR_TARGET, 0, VERDAL_ERR_TARGET, 0, VERDAL_ERR_TARGET}));
  EXPECT_EQ(VERDAL_SortCategories(db, 1, 1, 0, -2, 0, nullptr), 1);  // outside the walk it sorts
  VERDAL_CloseAllDBs();
}

TEST(Sort, TheCategorySortDialogDecidesAndRemembersWhatWasChosen) {
  VerdalHandle db = OpenMemoryDatabase();
  std::vector<int32_t> c;
  for (const char* name : {"b", "c", "a"}) c.push_back(VERDAL_AddCategory(db, -2, name));
  const int32_t inner1 = VERDAL_AddCategory(db, c[0], "y"), inner2 = VERDAL_AddCategory(db, c[0], "x");
  struct Script {
    bool confirm;
    std::vector<std::string> seen;  // "Aufsteigend" as the dialog opens
  } script{true, {}};
  VerdalUserInterface ui{};
  ui.user = reinterpret_cast<intptr_t>(&script);
  ui.runSheet = [](intptr_t user, VerdalWindow, const VerdalSheet* s) {
    auto* sc = reinterpret_cast<Script*>(user);
    const int32_t up = ControlId(s, 0, "Aufsteigend"), down = ControlId(s, 0, "Absteigend");
    sc->seen.push_back(s->getText(s, up));
    s->setText(s, down, "1");  // one of a group clears the other
    EXPECT_STREQ(s->getText(s, up), "0");
    s->setText(s, ControlId(s, 0, "Die Kinder ausgew\xE4hlten Eintrags"), "1");  // not the whole database
    if (sc->confirm) s->pressOk(s); else s->pressCancel(s);
  };
  VERDAL_SetUserInterface(&ui);
  // The arguments say ascending and recursive; the dialog says descending, one level below c[0].
  script.confirm = false;
  EXPECT_EQ(VERDAL_SortCategories(db, 1, 1, 0, c[0], 1, nullptr), 0);
  script.confirm = true;
  EXPECT_EQ(VERDAL_SortCategories(db, 1, 1, 0, c[0], 1, nullptr), 1);
  EXPECT_EQ(Children(db, c[0]), (std::vector<int32_t>{inner1, inner2}));  // y before x
  EXPECT_EQ(Children(db, -2), (std::vector<int32_t>{c[0], c[1], c[2]}));   // the top level left alone
  EXPECT_EQ(VERDAL_SortCategories(db, 1, 1, 0, c[0], 1, nullptr), 1);
  // A cancel kept nothing; the confirmed choice is what the next dialog opens with.
  EXPECT_EQ(script.seen, (std::vector<std::string>{"1", "1", "0"}));
  VERDAL_SetUserInterface(nullptr);
  VERDAL_CloseAllDBs();
}
