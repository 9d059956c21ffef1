#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "model/id_map.h"

using verdal::model::BucketCountForSizeClass;
using verdal::model::TDBIdMap;

TEST(IdMap, BucketCountsOfTheSizeClasses) {
  EXPECT_EQ(BucketCountForSizeClass(0), 63u);
  EXPECT_EQ(BucketCountForSizeClass(1), 3331u);
  EXPECT_EQ(BucketCountForSizeClass(3), 250799u);
  EXPECT_EQ(BucketCountForSizeClass(4), 3331u);  // out of range: the default class
  EXPECT_EQ(BucketCountForSizeClass(-1), 3331u);
}

TEST(IdMap, InsertFindEraseAndTableOrder) {
  TDBIdMap<std::string> map(0);  // 63 buckets
  for (int id : {1, 64, 127, 2, 0}) ASSERT_NE(map.Insert(id, std::to_string(id * 10)), nullptr);
  std::string duplicate = "stays";
  EXPECT_EQ(map.Insert(64, std::move(duplicate)), nullptr);
  EXPECT_EQ(duplicate, "stays");  // not taken
  EXPECT_EQ(*map.Find(64), "640");
  EXPECT_EQ(map.Find(-1), nullptr);
  EXPECT_EQ(map.Find(3), nullptr);

  // Buckets ascending, each bucket newest first: 0 | 127, 64, 1 | 2.
  std::vector<int> order;
  map.ForEach([&](int32_t id, std::string*) { order.push_back(id); });
  EXPECT_EQ(order, (std::vector<int>{0, 127, 64, 1, 2}));

  EXPECT_TRUE(map.Erase(64));
  EXPECT_FALSE(map.Erase(64));
  EXPECT_EQ(map.Find(64), nullptr);
  EXPECT_EQ(*map.Find(127), "1270");
  EXPECT_EQ(map.Count(), 4u);
  map.Clear();
  EXPECT_EQ(map.Count(), 0u);
  EXPECT_EQ(map.Find(0), nullptr);
}

TEST(IdMap, FarBeyondItsSizeClassLookupsUseAnIndexAndTheOrderStays) {
  // A model of the table order: per bucket, newest first.
  std::vector<std::vector<int>> buckets(63);
  TDBIdMap<int> map(0);
  auto insert = [&](int id) {
    ASSERT_NE(map.Insert(id, id * 2), nullptr);
    auto& b = buckets[static_cast<size_t>(id) % 63];
    b.insert(b.begin(), id);
  };
  auto erase = [&](int id) {
    ASSERT_TRUE(map.Erase(id));
    auto& b = buckets[static_cast<size_t>(id) % 63];
    b.erase(std::find(b.begin(), b.end(), id));
  };
  for (int i = 0; i < 20000; ++i) insert(i * 7919 % 20011);  // scattered, through the growth steps
  for (int i = 0; i < 20011; i += 3)
    if (map.Find(i) != nullptr) erase(i);
  for (int i = 0; i < 20011; i += 6) insert(i);  // back, as the newest of their buckets
  EXPECT_EQ(map.Insert(6, 0), nullptr);
  EXPECT_FALSE(map.Erase(3));

  std::vector<int> expected, order;
  for (const auto& b : buckets) expected.insert(expected.end(), b.begin(), b.end());
  map.ForEach([&](int32_t id, int* value) {
    order.push_back(id);
    EXPECT_EQ(*value, id * 2);
  });
  EXPECT_EQ(order, expected);
  EXPECT_EQ(map.Count(), expected.size());
  std::vector<bool> present(20011);
  for (int id : order) present[static_cast<size_t>(id)] = true;
  for (int id = 0; id < 20011; ++id) ASSERT_EQ(map.Find(id) != nullptr, present[static_cast<size_t>(id)]) << id;
  map.Clear();
  EXPECT_EQ(map.Find(6), nullptr);
  insert(6);  // a cleared map starts over without its index
  EXPECT_EQ(*map.Find(6), 12);
}
