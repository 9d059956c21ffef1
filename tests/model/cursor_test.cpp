// Pseudo cursors, stepping through the tree, collecting places and finding values.
#include <gtest/gtest.h>

#include <vector>

#include "model/cursor.h"
#include "model/place_walk.h"
#include "store_builder.h"

using namespace verdal::model;
using verdal::model::test_support::StoreBuilder;

using Ints = std::vector<int32_t>;

TEST(Cursor, PseudoCursorsOfAnEmptyDatabase) {
  StoreBuilder b;
  EXPECT_EQ(ResolveCursor(b.store, VERDAL_CURSOR_FIRST), -1);
  EXPECT_EQ(ResolveCursor(b.store, VERDAL_CURSOR_LAST), -1);
  EXPECT_EQ(ResolveCursor(b.store, VERDAL_CURSOR_CURRENT), -2);
  EXPECT_EQ(ResolveCursor(b.store, VERDAL_CURSOR_FIRST_SIBLING), -1);
  EXPECT_EQ(ResolveCursor(b.store, VERDAL_CURSOR_NEXT), -1);
  EXPECT_EQ(ResolveCursor(b.store, VERDAL_CURSOR_ROOT), -2);
  EXPECT_EQ(ResolveCursor(b.store, VERDAL_CURSOR_NONE), -1);
  EXPECT_EQ(ResolveCursor(b.store, -9), -1);
  EXPECT_EQ(ResolveCursor(b.store, 17), 17);
  EXPECT_EQ(LookupPlace(b.store, -3), nullptr);
  ASSERT_NE(LookupPlace(b.store, -2), nullptr);
  EXPECT_EQ(NodeOf(b.store, LookupPlace(b.store, -2)), &b.store.MainView().root);
}

class Walks : public ::testing::Test {
 protected:
  // A (open) [a1, a2], B (closed) [b1, B2 (open) [b21]], r, and a temporary record t last.
  void SetUp() override {
    A = b.Category(-1, "A", -1, true);
    a1 = b.Record(A.categoryId);
    a2 = b.Record(A.categoryId);
    B = b.Category(-1, "B", -1, false);
    b1 = b.Record(B.categoryId);
    B2 = b.Category(B.categoryId, "B2", -1, true);
    b21 = b.Record(B2.categoryId);
    r = b.Record(-1);
    b.Attach(false);
  }
  int32_t Step(int32_t from, int32_t count, bool wrap, bool descend) {
    return StepCursor(b.store, from, count, wrap, descend);
  }
  Ints Collect(int32_t start, int32_t kinds, bool recurse, bool onlyExpanded, bool includeStart,
               PlaceFilter* filter = nullptr) {
    Ints out;
    CollectPlaces(b.store, NodeOf(b.store, LookupPlace(b.store, start)), out, kinds, recurse,
                  onlyExpanded, filter, includeStart);
    return out;
  }

  StoreBuilder b;
  test_support::Built A{}, B{}, B2{};
  int32_t a1 = 0, a2 = 0, b1 = 0, b21 = 0, r = 0;
};

TEST_F(Walks, StepsForwardAndBackward) {
  // Descending ignores expanded flags; wrapping goes round to the first top-level node.
  Ints forward{A.cursor};
  for (int i = 0; i < 7; ++i) forward.push_back(Step(forward.back(), 1, true, true));
  EXPECT_EQ(forward, (Ints{A.cursor, a1, a2, B.cursor, b1, B2.cursor, b21, r}));
  EXPECT_EQ(Step(r, 1, true, true), A.cursor);
  EXPECT_EQ(Step(r, 1, false, true), -1);
  EXPECT_EQ(Step(A.cursor, 4, true, true), b1);
  EXPECT_EQ(Step(A.cursor, 0, false, false), A.cursor);
  // Without descending: siblings only, wrapping within the parent.
  EXPECT_EQ(Step(A.cursor, 1, false, false), B.cursor);
  EXPECT_EQ(Step(a2, 1, true, false), a1);
  EXPECT_EQ(Step(a2, 1, false, false), -1);

  // Backward with descent goes to the deepest last node, but not into a closed category.
  EXPECT_EQ(Step(B.cursor, -1, false, true), a2);
  EXPECT_EQ(Step(r, -1, false, true), B.cursor);
  EXPECT_EQ(Step(b1, -1, false, true), B.cursor);  // no previous sibling: the parent
  EXPECT_EQ(Step(A.cursor, -1, false, true), -1);
  EXPECT_EQ(Step(A.cursor, -1, true, true), r);   // wrap: deepest last of the root
  EXPECT_EQ(Step(A.cursor, -1, true, false), r);  // wrap alone: last child of the parent
  EXPECT_EQ(Step(r, -1, false, false), B.cursor);
  EXPECT_EQ(Step(12345, 1, true, true), -1);

  TDBNode* bNode = b.place(B.cursor)->node;
  EXPECT_EQ(DeepestLast(bNode), bNode);  // closed
  bNode->expanded = true;
  EXPECT_EQ(DeepestLast(bNode)->cursor, b21);
}

TEST_F(Walks, PseudoCursorsFollowTheCurrentCursor) {
  EXPECT_EQ(ResolveCursor(b.store, VERDAL_CURSOR_FIRST), A.cursor);
  EXPECT_EQ(ResolveCursor(b.store, VERDAL_CURSOR_LAST), r);
  b.store.currentCursor = a2;
  EXPECT_EQ(ResolveCursor(b.store, VERDAL_CURSOR_CURRENT), a2);
  EXPECT_EQ(ResolveCursor(b.store, VERDAL_CURSOR_FIRST_SIBLING), a1);
  EXPECT_EQ(ResolveCursor(b.store, VERDAL_CURSOR_NEXT), B.cursor);
  EXPECT_EQ(ResolveCursor(b.store, VERDAL_CURSOR_PREVIOUS), a1);
  b.store.currentCursor = B.cursor;
  EXPECT_EQ(ResolveCursor(b.store, VERDAL_CURSOR_FIRST_SIBLING), A.cursor);

  // The last node is the deepest last place below the last top-level node, temporary ones aside.
  auto z = b.Category(-1, "Z");
  int32_t z1 = b.Record(z.categoryId);
  int32_t zt = b.Record(z.categoryId);
  b.Attach(true);
  b.place(zt)->temporary = true;
  EXPECT_EQ(ResolveCursor(b.store, VERDAL_CURSOR_LAST), z1);
}

// Kinds, order and expansion are tested through VERDAL_GetCategoryChildList (api).
TEST_F(Walks, CollectSkipsTemporaryRecordsAndAsksTheFilter) {
  EXPECT_EQ(Collect(B.cursor, kKindBoth, true, true, true), (Ints{B.cursor}));  // closed start
  b.place(a2)->temporary = true;
  EXPECT_EQ(Collect(A.cursor, kKindBoth, false, false, false), (Ints{a1}));
  struct Odd : PlaceFilter {
    bool Accepts(const TDBCategoryData& place) override { return place.cursor % 2 == 1; }
  } odd;
  Ints expected;
  for (int32_t c : {A.cursor, a1, B.cursor, b1, B2.cursor, b21, r})
    if (c % 2 == 1) expected.push_back(c);
  EXPECT_EQ(Collect(-2, kKindBoth, true, false, false, &odd), expected);
}

TEST_F(Walks, FindsTheFirstNodeHoldingAValue) {
  auto field = std::make_unique<TDBFieldInfo>();
  field->name = "Name";
  field->position = 0;
  b.store.fields.push_back(std::move(field));
  b.store.data.ForEach([](int32_t, TDBDataRecord* d) { d->values.Resize(1); });
  auto set = [&](int32_t cursor, const char* value) { DataOf(b.store, b.place(cursor))->values.Set(0, value); };
  set(b1, "x");
  set(r, "x");
  set(B.cursor, "x");

  EXPECT_EQ(FindByValue(b.store, 0, "x", true, false, -1, nullptr), b1);  // closed B is searched
  EXPECT_EQ(FindByValue(b.store, 0, "x", true, true, -1, nullptr), B.cursor);
  EXPECT_EQ(FindByValue(b.store, 0, "x", true, false, b1, nullptr), r);
  EXPECT_EQ(FindByValue(b.store, 0, "X", true, false, -1, nullptr), -1);  // case-sensitive
  EXPECT_EQ(FindByValue(b.store, 1, "x", true, false, -1, nullptr), -2);
  EXPECT_EQ(FindByValue(b.store, 0, nullptr, true, false, -1, nullptr), -3);
  b.place(b1)->temporary = true;
  EXPECT_EQ(FindByValue(b.store, 0, "x", true, false, -1, nullptr), r);

  // The field's type brings both sides to stored form.
  StoredForm lower = [](int32_t, std::string_view v) {
    std::string s(v);
    for (char& c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return s;
  };
  EXPECT_EQ(FindByValue(b.store, 0, "X", false, false, -1, lower), r);
  set(a1, "X");
  EXPECT_EQ(FindByValue(b.store, 0, "x", true, false, -1, lower), a1);
}

TEST_F(Walks, DetachingLeavesSharedDataAndTheCategoryOfACursor) {
  int32_t categoryCursor = 0;
  bool isCategory = false;
  CategoryOfCursor(b.store, a1, categoryCursor, isCategory);
  EXPECT_EQ(categoryCursor, A.cursor);
  EXPECT_FALSE(isCategory);
  CategoryOfCursor(b.store, r, categoryCursor, isCategory);
  EXPECT_EQ(categoryCursor, -2);
  CategoryOfCursor(b.store, B.cursor, categoryCursor, isCategory);
  EXPECT_EQ(categoryCursor, B.cursor);
  EXPECT_TRUE(isCategory);
  CategoryOfCursor(b.store, 999, categoryCursor, isCategory);
  EXPECT_EQ(categoryCursor, -1);
  EXPECT_TRUE(isCategory);

  // Two places share one data record; deleting one place leaves the data for the other.
  TDBCategoryData* first = b.place(a1);
  b.place(r)->dataId = first->dataId;
  ++b.store.data.Find(first->dataId)->references;
  int32_t shared = first->dataId;
  EXPECT_TRUE(DetachPlace(b.store, a1));
  EXPECT_EQ(b.Children(b.place(A.cursor)->node), (Ints{a2}));
  EXPECT_EQ(b.place(a2)->node->previous, nullptr);
  ReleaseData(b.store, shared);
  DropData(b.store, shared, true);
  EXPECT_NE(b.store.data.Find(shared), nullptr);
  ReleaseData(b.store, shared);
  DropData(b.store, shared, true);
  EXPECT_EQ(b.store.data.Find(shared), nullptr);
  EXPECT_FALSE(DetachPlace(b.store, a1));  // not attached any more
}
