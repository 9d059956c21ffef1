// The first sort field: exchanged with the old first, not rotated to the front.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "listing/list_display.h"

namespace verdal::listing {

TEST(SortTop, AFieldAlreadyThereExchangesWithTheFirstAndANewOneGoesInFront) {
  TListSortAndDisplayFieldInfo d;
  for (const char* name : {"A", "B", "C"}) {
    d.items.emplace_back();
    d.items.back().fieldName = name;
  }
  auto resolve = [](const std::string& name) { return name[0] - 'A'; };
  auto order = [&] {
    std::string s;
    for (const auto& item : d.items) s += item.fieldName + (item.ascending ? "+" : "-");
    return s;
  };
  EXPECT_EQ(PutSortFieldFirst(d, 2, "C", false, resolve), 1);
  EXPECT_EQ(order(), "C-B+A+");
  EXPECT_EQ(PutSortFieldFirst(d, 1, "B", true, resolve), 1);
  EXPECT_EQ(order(), "B+C-A+");
  EXPECT_EQ(PutSortFieldFirst(d, 3, "D", false, resolve), -3);
  EXPECT_EQ(order(), "D-B+C-A+");
  EXPECT_TRUE(d.items[0].displayName.empty());
}

}  // namespace verdal::listing
