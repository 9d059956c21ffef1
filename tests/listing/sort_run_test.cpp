// Sort runs on a store built by hand: a given list of cursors by record titles, a tree sort from a
// start below the root with and without the levels below, and collation keys against the
// comparisons they stand for.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "listing/sort_run.h"
#include "model/store_builder.h"
#include "platform/collation.h"
#include "platform/environment_scope.h"

namespace verdal::listing {

using model::test_support::StoreBuilder;

namespace {

int32_t Titled(StoreBuilder& b, int32_t categoryId, const char* title) {
  const int32_t cursor = b.Record(categoryId);
  b.store.data.Find(b.place(cursor)->dataId)->SetTitle(title);
  return cursor;
}

int KeyOrder(const std::string& a, const std::string& b, bool stringSort) {
  std::string ka, kb;
  platform::AppendPrimaryKey(a, stringSort, ka);
  platform::AppendPrimaryKey(b, stringSort, kb);
  return (ka > kb) - (ka < kb);
}

}  // namespace

TEST(SortRun, AListOfCursorsSortsByTitlesWithTiesReversedAndAStartBelowTheRoot) {
  StoreBuilder b;
  const auto outer = b.Category(-1, "K");
  const auto inner = b.Category(outer.categoryId, "I");
  const int32_t x = Titled(b, outer.categoryId, "x"), a1 = Titled(b, outer.categoryId, "a"), a2 = Titled(b, outer.categoryId, "a");
  const int32_t deepB = Titled(b, inner.categoryId, "b"), deepA = Titled(b, inner.categoryId, "a");
  b.Attach(false);

  TListSortAndDisplayFieldInfo byTitle = CategorySortDefinition(true, false, false, outer.cursor);
  std::vector<int32_t> list = {x, a1, a2, 9999};  // a cursor without a place sorts as an empty title
  SortList(b.store, byTitle, list.data(), static_cast<int32_t>(list.size()), nullptr);
  EXPECT_EQ(list, (std::vector<int32_t>{9999, a2, a1, x}));

  // Records by their titles below the start, categories first; the level below is left alone.
  byTitle.sortCategories = false;
  byTitle.items[0].fieldName = "no such field";  // every record equal: the order turns round
  ASSERT_EQ(RunTreeSort(b.store, byTitle, nullptr), SortResult::kSorted);
  model::TDBNode* outerNode = b.store.places.Find(outer.cursor)->node;
  EXPECT_EQ(b.Children(outerNode), (std::vector<int32_t>{inner.cursor, a2, a1, x}));
  EXPECT_EQ(b.Children(b.store.places.Find(inner.cursor)->node), (std::vector<int32_t>{deepB, deepA}));
  byTitle.recursive = true;
  ASSERT_EQ(RunTreeSort(b.store, byTitle, nullptr), SortResult::kSorted);
  EXPECT_EQ(b.Children(b.store.places.Find(inner.cursor)->node), (std::vector<int32_t>{deepA, deepB}));
  byTitle.startCursor = 4711;
  EXPECT_EQ(RunTreeSort(b.store, byTitle, nullptr), SortResult::kNoStart);
  byTitle.items.clear();
  EXPECT_EQ(RunTreeSort(b.store, byTitle, nullptr), SortResult::kNoFields);
}

TEST(SortRun, FirstLevelKeysNeverContradictTheComparisonsInGermanAndEnglish) {
  EnvironmentScope scope({"LC_ALL"});
  for (const char* locale : {"de_DE.UTF-8", "en_US.UTF-8"}) {
    SCOPED_TRACE(locale);
    setenv("LC_ALL", locale, 1);
    platform::ResetCollation();
    const std::vector<std::string> texts = {"", "co-op", "coop", "cop", "Co-op", "a'b", "ab", "\xC4rger", "Arg",
                                            "stra\xDF" "e", "Strasse", "10", "9", "-", "zz", "Zz", "\xE9t\xE9", "ete"};
    // Keys that differ order as the comparison does; most pairs are told apart by them.
    size_t decided = 0;
    for (const auto& a : texts)
      for (const auto& b : texts)
        for (bool stringSort : {false, true}) {
          const int byKey = KeyOrder(a, b, stringSort);
          if (byKey == 0) continue;
          ++decided;
          EXPECT_EQ(byKey, stringSort ? platform::CompareStringSort(a, b) : platform::CompareWordSort(a, b))
              << a << " / " << b << " " << stringSort;
        }
    EXPECT_GT(decided, texts.size() * texts.size());
  }
  platform::ResetCollation();
}

}  // namespace verdal::listing
