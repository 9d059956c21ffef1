// Building, compacting and numbering the trees of views.
#include <gtest/gtest.h>

#include <random>
#include <tuple>
#include <vector>

#include "model/view_set.h"
#include "store_builder.h"

using namespace verdal::model;
using verdal::model::test_support::StoreBuilder;

using Ints = std::vector<int32_t>;

TEST(TreeBuilding, PlacesWaitForParentsAndOrphansGoToTheRoot) {
  StoreBuilder b;
  auto a = b.Category(-1, "A");
  // B's place is made (and listed) before A's is... B names A as parent.
  auto bb = b.Category(a.categoryId, "B");
  auto c = b.Category(77, "C");  // its parent category does not exist
  int32_t r1 = b.Record(bb.categoryId);
  int32_t r2 = b.Record(99);  // its category does not exist
  int32_t r3 = b.Record(-1);
  // List order B, r1, A, r2, r3, C: B and r1 must wait a pass.
  std::vector<TDBCategoryData*> list{b.place(bb.cursor), b.place(r1), b.place(a.cursor),
                                     b.place(r2), b.place(r3), b.place(c.cursor)};
  AttachPlaces(b.store, list, false);
  Renumber(b.store);

  TDBNode& root = b.store.MainView().root;
  EXPECT_EQ(b.Children(&root), (Ints{a.cursor, r2, r3, c.cursor}));
  EXPECT_EQ(b.Children(b.place(a.cursor)->node), (Ints{bb.cursor}));
  EXPECT_EQ(b.Children(b.place(bb.cursor)->node), (Ints{r1}));
  EXPECT_EQ(b.place(r1)->node->depth, 2);
  EXPECT_EQ(b.place(bb.cursor)->node->parent, b.place(a.cursor)->node);
  // Every category of the view is in its search tree.
  for (auto cat : {a, bb, c}) EXPECT_EQ(b.store.MainView().FindCategory(cat.categoryId), b.place(cat.cursor)->node);
}

TEST(TreeBuilding, CategoriesThatNameEachOtherAsParentsEndTheBuild) {
  StoreBuilder b;
  auto x = b.Category(1, "X");  // id 0, parent 1
  auto y = b.Category(0, "Y");  // id 1, parent 0
  auto self = b.Category(2, "Self");  // id 2, its own parent
  int32_t r = b.Record(x.categoryId);
  b.Attach(false);

  TDBNode& root = b.store.MainView().root;
  // Its own parent goes to the root at once; of the cycle, one goes to the root in the pass that
  // waits for nothing and the other finds it as its parent.
  EXPECT_EQ(b.Children(&root), (Ints{self.cursor, x.cursor}));
  EXPECT_EQ(b.Children(b.place(x.cursor)->node), (Ints{y.cursor, r}));
  EXPECT_EQ(b.store.MainView().nodes.size(), 4u);
}

TEST(TreeBuilding, CompactionRemovesNullSlotsAndRewritesPositions) {
  StoreBuilder b;
  auto p = b.Category(-1, "P");
  int32_t first = b.Record(p.categoryId, 0);
  int32_t second = b.Record(p.categoryId, 1);
  int32_t far = b.Record(p.categoryId, 5);
  int32_t before = b.Record(p.categoryId, 1);  // an occupied slot: shifts the later ones up
  std::vector<TDBCategoryData*> list{b.place(p.cursor), b.place(far), b.place(first),
                                     b.place(second), b.place(before)};
  AttachPlaces(b.store, list, false);

  TDBNode* parent = b.place(p.cursor)->node;
  EXPECT_EQ(b.Children(parent), (Ints{first, before, second, -100, -100, -100, far}));

  Renumber(b.store);
  EXPECT_EQ(b.Children(parent), (Ints{first, before, second, far}));
  EXPECT_EQ(b.place(far)->position, 3);
  EXPECT_EQ(b.place(before)->position, 1);
  EXPECT_EQ(b.place(first)->node->next, b.place(before)->node);
  EXPECT_EQ(b.place(far)->node->previous, b.place(second)->node);
  EXPECT_EQ(b.place(far)->node->next, nullptr);
}

TEST(TreeBuilding, APositionNoTreeCanReachAppendsInsteadOfAllocating) {
  StoreBuilder b;
  auto p = b.Category(-1, "P");
  int32_t a = b.Record(p.categoryId, 0);
  int32_t damaged = b.Record(p.categoryId, 2000000000);
  b.Attach(false);
  EXPECT_EQ(b.Children(b.place(p.cursor)->node), (Ints{a, damaged}));
}

namespace {

using Numbers = std::vector<std::tuple<int32_t, int32_t, int32_t, int32_t>>;

Numbers Snapshot(const TDBNodeManagerItem& view) {
  Numbers out;
  view.nodes.ForEach([&](const TDBNode& n) { out.emplace_back(n.cursor, n.recordNumber, n.categoryNumber, n.rowNumber); });
  return out;
}

}  // namespace

// Live inserts renumber from the branch before the changed one; the numbers must be those of a
// full walk, whatever the shape, expanded flags or mode. Numbering after every insert and after
// runs of inserts and removals both count.
TEST(Numbering, SingleInsertsGiveTheNumbersOfAFullWalk) {
  for (int32_t mode : {kModeCategories, kModeRecords, kModeBoth}) {
    StoreBuilder b;
    b.store.MainView().mode = mode;
    std::mt19937 rng(1234 + mode);
    std::vector<int32_t> categories{-1};
    for (int i = 0; i < 600; ++i) {
      int32_t parent = categories[rng() % categories.size()];
      int32_t position = (rng() % 3 == 0) ? -1 : static_cast<int32_t>(rng() % 6);
      if (rng() % 3 == 0) {
        categories.push_back(b.Category(parent, "c", position, rng() % 4 != 0).categoryId);
      } else {
        b.Record(parent, position);
      }
      b.Attach(true);
      if (i % 7 == 6) DetachPlace(b.store, static_cast<int32_t>(rng() % b.store.nextCursor));
      if (rng() % 4 == 0) continue;  // let changes pile up before the numbers are needed
      b.store.MainView().EnsureNumbered();
      Numbers live = Snapshot(b.store.MainView());
      b.store.MainView().Number();
      ASSERT_EQ(live, Snapshot(b.store.MainView())) << "mode " << mode << " insert " << i;
    }
  }
}

TEST(Numbering, ModesCountAndEnterAsTheViewSays) {
  StoreBuilder b;
  auto open = b.Category(-1, "open", -1, true);
  int32_t r1 = b.Record(open.categoryId);
  auto closed = b.Category(-1, "closed", -1, false);
  int32_t r2 = b.Record(closed.categoryId);
  int32_t r3 = b.Record(-1);
  b.Attach(false);

  auto numbers = [&](int32_t cursor) {
    const TDBNode* n = b.place(cursor)->node;
    return std::make_tuple(n->recordNumber, n->categoryNumber, n->rowNumber);
  };
  EXPECT_EQ(numbers(open.cursor), std::make_tuple(-1, 0, 0));
  EXPECT_EQ(numbers(r1), std::make_tuple(0, 0, 1));
  EXPECT_EQ(numbers(closed.cursor), std::make_tuple(0, 1, 2));
  EXPECT_EQ(numbers(r2), std::make_tuple(-1, -1, -1));  // inside a closed category: not visited
  EXPECT_EQ(numbers(r3), std::make_tuple(1, 1, 3));

  // The records view enters closed categories.
  EXPECT_EQ(CreateView(b.store, nullptr, kModeRecords), 0);
  EXPECT_EQ(numbers(r2), std::make_tuple(1, 1, 3));
  EXPECT_EQ(numbers(r3), std::make_tuple(2, 1, 4));

  // A categories view still holds every category in its search tree.
  int32_t v = CreateView(b.store, "Kategorien", kModeCategories);
  ASSERT_EQ(v, 1);
  TDBNodeManagerItem& view = *b.store.View(v);
  EXPECT_NE(view.FindCategory(open.categoryId), nullptr);
  EXPECT_NE(view.FindCategory(closed.categoryId), nullptr);
  EXPECT_EQ(NodeInView(b.store, v, b.place(r3))->cursor, r3);  // top-level record, other view
  EXPECT_EQ(NodeInView(b.store, v, b.place(r1))->parent, view.FindCategory(open.categoryId));
  // Looked up again by name in any letter case: the same view, its mode kept.
  EXPECT_EQ(CreateView(b.store, "KATEGORIEN", kModeBoth), 1);
  EXPECT_EQ(view.mode, kModeCategories);
  EXPECT_EQ(CreateView(b.store, "bad", 4), -1);
}

TEST(Numbering, NewViewsFollowTheMainTreeOrderAfterLiveInserts) {
  StoreBuilder b;
  auto p = b.Category(-1, "P");
  int32_t a = b.Record(p.categoryId);
  int32_t c = b.Record(p.categoryId);
  b.Attach(false);
  int32_t front = b.Record(p.categoryId, 0);  // live insert before both
  b.Attach(true);
  int32_t v = CreateView(b.store, "second", kModeBoth);
  TDBNode* inView = NodeInView(b.store, v, b.place(p.cursor));
  EXPECT_EQ(b.Children(inView), (Ints{front, a, c}));
}
