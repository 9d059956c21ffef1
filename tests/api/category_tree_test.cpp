// The tree of a view as a host sees it: one walk with callbacks, node facts, child lists, and
// renaming, opening and moving nodes.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "recording_host.h"
#include "field_helpers.h"
#include "verdal.h"

namespace {

using Ints = std::vector<int32_t>;

// What the host's callback saw: the parent's line, the cursor, depth and number, as one line
// each, with the seed being the index of the line.
struct Walk {
  std::vector<std::string> lines;
  static intptr_t Visit(intptr_t parentSeed, int32_t cursor, int32_t depth, int32_t number, intptr_t user) {
    auto* w = reinterpret_cast<Walk*>(user);
    w->lines.push_back(std::to_string(parentSeed) + ">" + std::to_string(cursor) + " d" +
                       std::to_string(depth) + " n" + std::to_string(number));
    return static_cast<intptr_t>(w->lines.size());
  }
};

class CategoryTree : public ::testing::Test {
 protected:
  // A (open) [a1, A2 (closed) [a21]], r, B (open) [b1]
  void SetUp() override {
    db = OpenMemoryDatabase();
    A = VERDAL_AddCategory(db, -1, "A");
    a1 = VERDAL_AddRecord(db, A, "a1", 0, nullptr, -1, 0, nullptr);
    A2 = VERDAL_AddCategory(db, A, "A2");
    a21 = VERDAL_AddRecord(db, A2, "a21", 0, nullptr, -1, 0, nullptr);
    r = VERDAL_AddRecord(db, -1, "r", 0, nullptr, -1, 0, nullptr);
    B = VERDAL_AddCategory(db, -1, "B");
    b1 = VERDAL_AddRecord(db, B, "b1", 0, nullptr, -1, 0, nullptr);
    int32_t open = 1, closed = 0;
    for (int32_t c : {A, B}) VERDAL_SetCategoryInfo(db, c, nullptr, &open, nullptr, nullptr, 0, nullptr, 0, 0);
    VERDAL_SetCategoryInfo(db, A2, nullptr, &closed, nullptr, nullptr, 0, nullptr, 0, 0);
  }
  void TearDown() override { VERDAL_CloseAllDBs(); }
  std::vector<std::string> WalkView(int32_t view, int32_t start = -1) {
    Walk w;
    EXPECT_EQ(VERDAL_BuildCategoryTree(db, 0, Walk::Visit, reinterpret_cast<intptr_t>(&w), view, start), 1);
    return w.lines;
  }
  Ints Children(int32_t cursor, int32_t reverse, int32_t recurse, int32_t onlyExpanded, int32_t kinds,
                int32_t includeStart, int32_t view = 0) {
    int32_t count = -1;
    int32_t* array = nullptr;
    if (!VERDAL_GetCategoryChildList(db, cursor, view, reverse, recurse, onlyExpanded, &count, &array,
                                     kinds, nullptr, includeStart))
      return {-99};
    Ints out(array, array + count);
    VERDAL_GetCategoryDeleteChildList(array);
    return out;
  }
  std::string S(int32_t c) { return std::to_string(c); }

  VerdalHandle db = 0;
  int32_t A = 0, a1 = 0, A2 = 0, a21 = 0, r = 0, B = 0, b1 = 0;
};

}  // namespace

TEST_F(CategoryTree, OneWalkBuildsTheTreeInEachMode) {
  // Both: closed A2 is shown but not entered. Numbers are row numbers.
  EXPECT_EQ(WalkView(0), (std::vector<std::string>{"0>" + S(A) + " d0 n0", "1>" + S(a1) + " d1 n1",
                                                   "1>" + S(A2) + " d1 n2", "0>" + S(r) + " d0 n3",
                                                   "0>" + S(B) + " d0 n4", "5>" + S(b1) + " d1 n5"}));
  // Records: categories are not shown but entered, even closed ones; numbers count records.
  ASSERT_EQ(VERDAL_CreateView(db, "Liste", VERDAL_VIEW_RECORDS), 1);
  EXPECT_EQ(WalkView(1), (std::vector<std::string>{"0>" + S(a1) + " d1 n0", "0>" + S(a21) + " d2 n1",
                                                   "0>" + S(r) + " d0 n2", "0>" + S(b1) + " d1 n3"}));
  // Categories: records are never shown; numbers count categories.
  ASSERT_EQ(VERDAL_CreateView(db, "Baum", VERDAL_VIEW_CATEGORIES), 2);
  EXPECT_EQ(WalkView(2), (std::vector<std::string>{"0>" + S(A) + " d0 n0", "1>" + S(A2) + " d1 n1",
                                                   "0>" + S(B) + " d0 n2"}));
  EXPECT_EQ(WalkView(0, A), (std::vector<std::string>{"0>" + S(a1) + " d1 n1", "0>" + S(A2) + " d1 n2"}));

  EXPECT_EQ(VERDAL_BuildCategoryTree(db, 0, Walk::Visit, 0, 7, -1), -3);
  EXPECT_EQ(VERDAL_BuildCategoryTree(db, 0, Walk::Visit, 0, 0, 999), -2);
  EXPECT_EQ(VERDAL_BuildCategoryTree(0, 0, Walk::Visit, 0, 0, -1), -1);
  VerdalHandle empty = OpenMemoryDatabase();
  Walk none;
  EXPECT_EQ(VERDAL_BuildCategoryTree(empty, 0, Walk::Visit, reinterpret_cast<intptr_t>(&none), 0, -1), 1);
  EXPECT_TRUE(none.lines.empty());
}

TEST_F(CategoryTree, NodeFactsByView) {
  int32_t isCategory = -1, expanded = -1, parent = -9, depth = -1, row = -1, visible = -1;
  char name[4];
  TDBCategoryQuery q{0, 1, &isCategory, name, sizeof name, &expanded, &parent, &depth, &row, &visible};
  ASSERT_EQ(VERDAL_GetCategoryInfo(db, A2, &q), 1);
  EXPECT_EQ(isCategory, 1);
  EXPECT_STREQ(name, "A2");
  EXPECT_EQ(expanded, 0);
  EXPECT_EQ(parent, A);
  EXPECT_EQ(depth, 1);
  EXPECT_EQ(row, 2);
  EXPECT_EQ(visible, 0);  // closed, and only expanded nodes count
  q.onlyExpanded = 0;
  ASSERT_EQ(VERDAL_GetCategoryInfo(db, A2, &q), 1);
  EXPECT_EQ(visible, 1);
  ASSERT_EQ(VERDAL_GetCategoryInfo(db, a1, &q), 1);
  EXPECT_STREQ(name, "a1");
  EXPECT_EQ(parent, A);
  ASSERT_EQ(VERDAL_GetCategoryInfo(db, r, &q), 1);
  EXPECT_EQ(parent, -1);
  q.viewIndex = VERDAL_CreateView(db, "Baum", VERDAL_VIEW_CATEGORIES);
  ASSERT_EQ(VERDAL_GetCategoryInfo(db, A, &q), 1);
  EXPECT_EQ(visible, 1);  // a categories view shows A2 only
  EXPECT_EQ(row, 0);

  TDBCategoryQuery nameOnly{9, 0, nullptr, name, sizeof name, nullptr, nullptr, nullptr, nullptr, nullptr};
  EXPECT_EQ(VERDAL_GetCategoryInfo(db, B, &nameOnly), 1);  // no view fact asked: the view is not needed
  q.viewIndex = 9;
  EXPECT_EQ(VERDAL_GetCategoryInfo(db, B, &q), 0);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_VIEW);
  EXPECT_EQ(VERDAL_GetCategoryInfo(db, VERDAL_CURSOR_FIRST, &q), 0);  // no pseudo cursors
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_CURSOR);
}

TEST_F(CategoryTree, ChildListsByKindOrderAndStart) {
  EXPECT_EQ(Children(A, 0, 0, 0, 3, 0), (Ints{a1, A2}));
  EXPECT_EQ(Children(A, 0, 1, 0, 3, 0), (Ints{a1, A2, a21}));
  EXPECT_EQ(Children(A, 0, 1, 1, 3, 0), (Ints{a1, A2}));  // closed A2 is not entered
  EXPECT_EQ(Children(A, 1, 1, 0, 3, 1), (Ints{a21, A2, a1, A}));
  EXPECT_EQ(Children(-2, 0, 1, 0, 1, 0), (Ints{A, A2, B}));
  EXPECT_EQ(Children(-2, 0, 0, 0, -1, 0), (Ints{A, r, B}));  // the view's mode: both
  EXPECT_EQ(Children(-2, 0, 1, 1, 2, 0), (Ints{a1, a21, r, b1}));
  EXPECT_EQ(Children(-2, 0, 1, 0, 0, 0), (Ints{}));  // kinds 0 takes nothing

  EXPECT_EQ(VERDAL_GetCategoryChildList(db, A, 0, 0, 0, 0, nullptr, nullptr, 3, nullptr, 0), 1);
  EXPECT_EQ(VERDAL_GetCategoryChildList(db, 999, 0, 0, 0, 0, nullptr, nullptr, 3, nullptr, 0), 0);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_CURSOR);
  EXPECT_EQ(Children(A, 0, 0, 0, 3, 0, 5), (Ints{-99}));
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_VIEW);
  VERDAL_GetCategoryDeleteChildList(nullptr);  // nothing to give back
}

TEST_F(CategoryTree, RenamingOpeningAndMovingNodes) {
  RecordingHost host;
  int32_t closed = 0;
  ASSERT_EQ(VERDAL_SetCategoryInfo(db, A, "Alpha", &closed, nullptr, nullptr, 0, nullptr, 0, 0), 1);
  EXPECT_EQ(host.Take(), (std::vector<Heard>{{8, A, A, -8, 0}, {10, A, A, -10, 0}}));
  // Closing A renumbers what follows it.
  EXPECT_EQ(WalkView(0), (std::vector<std::string>{"0>" + S(A) + " d0 n0", "0>" + S(r) + " d0 n1",
                                                   "0>" + S(B) + " d0 n2", "3>" + S(b1) + " d1 n3"}));
  char name[32];
  TDBCategoryQuery q{0, 0, nullptr, name, 0, nullptr, nullptr, nullptr, nullptr, nullptr};
  VERDAL_GetCategoryInfo(db, A, &q);
  EXPECT_STREQ(name, "Alpha");

  // A category cannot go below its own child; nothing changes.
  int32_t into = A2, at = -1, pos = -5;
  EXPECT_EQ(VERDAL_SetCategoryInfo(db, A, nullptr, nullptr, &into, nullptr, 0, &pos, 0, 0), 0);
  EXPECT_EQ(VERDAL_GetLastError(), 19);
  EXPECT_EQ(VERDAL_IsChildOf(db, A, A2), 1);
  // Check only: allowed, but nothing moves.
  into = B;
  EXPECT_EQ(VERDAL_SetCategoryInfo(db, r, nullptr, nullptr, &into, &at, 1, &pos, 1, 0), 1);
  EXPECT_EQ(VERDAL_IsChildOf(db, B, r), 0);
  host.Take();
  // Into B at the front, then beside b1 (mode 2 takes b1's index).
  at = 0;
  EXPECT_EQ(VERDAL_SetCategoryInfo(db, r, nullptr, nullptr, &into, &at, 1, &pos, 0, 0), 1);
  EXPECT_EQ(pos, 0);
  EXPECT_EQ(Children(B, 0, 0, 0, 3, 0), (Ints{r, b1}));
  EXPECT_EQ(host.Take(), (std::vector<Heard>{{9, r, B, -10, 0}}));
  into = b1;
  EXPECT_EQ(VERDAL_SetCategoryInfo(db, a1, nullptr, nullptr, &into, nullptr, 2, &pos, 0, 0), 1);
  EXPECT_EQ(Children(B, 0, 0, 0, 3, 0), (Ints{r, a1, b1}));
  EXPECT_EQ(pos, 1);
  // Mode 1 refuses a record as target.
  EXPECT_EQ(VERDAL_SetCategoryInfo(db, A2, nullptr, nullptr, &into, nullptr, 1, nullptr, 0, 0), 0);
  EXPECT_EQ(VERDAL_GetLastError(), 19);
  // The tree of every view follows a move.
  int32_t v = VERDAL_CreateView(db, "Zweite", VERDAL_VIEW_BOTH);
  into = VERDAL_CURSOR_ROOT;
  ASSERT_EQ(VERDAL_SetCategoryInfo(db, A2, nullptr, nullptr, &into, nullptr, 0, nullptr, 0, 0), 1);
  EXPECT_EQ(Children(-2, 0, 0, 0, 1, 0, v), (Ints{A, B, A2}));
  // A move that cannot be made (into a record) leaves the node where it stood in every view.
  into = b1;
  EXPECT_EQ(VERDAL_SetCategoryInfo(db, r, nullptr, nullptr, &into, nullptr, 0, nullptr, 0, 0), 0);
  EXPECT_EQ(VERDAL_GetLastError(), 19);
  for (int32_t view : {0, v}) EXPECT_EQ(Children(B, 0, 0, 0, 3, 0, view), (Ints{r, a1, b1}));
  // The root has nowhere to go.
  into = B;
  EXPECT_EQ(VERDAL_SetCategoryInfo(db, -2, nullptr, nullptr, &into, nullptr, 0, nullptr, 0, 0), 0);
  EXPECT_EQ(VERDAL_GetLastError(), 19);
}

TEST_F(CategoryTree, NamesAreCutToTheLongestTheEngineStores) {
  const std::string longName(VERDAL_NAME_MAX + 45, 'x');
  int32_t c = VERDAL_AddCategory(db, -1, longName.c_str());
  int32_t t = VERDAL_AddRecord(db, c, longName.c_str(), 0, nullptr, -1, 0, nullptr);
  ASSERT_EQ(VERDAL_SetCategoryInfo(db, A, longName.c_str(), nullptr, nullptr, nullptr, 0, nullptr, 0, 0), 1);
  for (int32_t cursor : {c, t, A}) {
    std::vector<char> name(VERDAL_NAME_MAX + 1, '?');  // what name size 0 promises to be enough
    TDBCategoryQuery q{0, 0, nullptr, name.data(), 0, nullptr, nullptr, nullptr, nullptr, nullptr};
    ASSERT_EQ(VERDAL_GetCategoryInfo(db, cursor, &q), 1);
    EXPECT_EQ(std::string(name.data()), longName.substr(0, VERDAL_NAME_MAX));
  }
}

TEST_F(CategoryTree, HasCategoriesStaysTrueUntilTheStoreIsCleared) {
  VerdalHandle empty = OpenMemoryDatabase();
  EXPECT_EQ(VERDAL_HasCategories(empty), 0);
  int32_t c = VERDAL_AddCategory(empty, -1, "K");
  EXPECT_EQ(VERDAL_HasCategories(empty), 1);
  VERDAL_DeleteRecord(empty, c, 6, 0, nullptr, 1);
  EXPECT_EQ(VERDAL_HasCategories(empty), 1);
  VERDAL_EmptyData(empty, 1);
  EXPECT_EQ(VERDAL_HasCategories(empty), 0);
  EXPECT_EQ(VERDAL_HasCategories(0), 0);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_HANDLE);
}
