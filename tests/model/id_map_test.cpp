#include <gtest/gtest.h>

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
