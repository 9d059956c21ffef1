#include "platform/collation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

using namespace verdal::platform;

namespace {

std::vector<std::string> Sorted(std::vector<std::string> v, int (*compare)(std::string_view,
                                                                            std::string_view)) {
  std::stable_sort(v.begin(), v.end(),
                   [&](const std::string& a, const std::string& b) { return compare(a, b) < 0; });
  return v;
}

}  // namespace

TEST(Collation, WordSortAndStringSortOrders) {
  ResetCollation();
  // Code page 1252: \xE4 a-umlaut, \xC4 A-umlaut, \xDF sharp s, \x80 euro sign.
  const std::vector<std::string> words = {"cop",  "co-op", "Zebra", "\xC4pfel", "apfel",
                                          "coop", "10",    "9",     "Apfel",   "cooa"};
  EXPECT_EQ(Sorted(words, CompareWordSort),
            (std::vector<std::string>{"10", "9", "apfel", "Apfel", "\xC4pfel", "cooa", "co-op",
                                      "coop", "cop", "Zebra"}));
  // String sort puts the hyphen among the symbols, before every letter.
  EXPECT_EQ(Sorted(words, CompareStringSort),
            (std::vector<std::string>{"10", "9", "apfel", "Apfel", "\xC4pfel", "co-op", "cooa",
                                      "coop", "cop", "Zebra"}));
  struct Case {
    const char* a;
    const char* b;
    int word, string, noCase;
  };
  const Case cases[] = {
      {"coop", "co-op", 1, 1, 1},        // equal but for the hyphen: it decides last
      {"it's", "its", -1, -1, -1},       //
      {"a", "A", -1, -1, 0},             // lower case first; no case in the case-free sort
      {"\xE4pfel", "\xC4PFEL", -1, -1, 0},
      {"Apfel", "\xE4pfel", -1, -1, -1},  // accents count in all three
      {"Stra\xDF" "e", "Strasse", 1, 1, 1},
      {"a b", "ab", -1, -1, -1},          // a blank is no hyphen
      {"\x80", "E", -1, -1, -1},          // currency before letters
      {"", "a", -1, -1, -1},
      {"same", "same", 0, 0, 0},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(CompareWordSort(c.a, c.b), c.word) << c.a << " / " << c.b;
    EXPECT_EQ(CompareStringSort(c.a, c.b), c.string) << c.a << " / " << c.b;
    EXPECT_EQ(CompareWordSortNoCase(c.a, c.b), c.noCase) << c.a << " / " << c.b;
    EXPECT_EQ(CompareWordSort(c.b, c.a), -c.word);
    // Names: the same test, and keys that agree exactly where it does.
    EXPECT_EQ(SameNameNoCase(c.a, c.b), c.noCase == 0) << c.a << " / " << c.b;
    EXPECT_EQ(NameKeyNoCase(c.a) == NameKeyNoCase(c.b), c.noCase == 0) << c.a << " / " << c.b;
  }
  // Long texts leave the stack buffer.
  const std::string longA(1000, 'a'), longB = std::string(999, 'a') + "b";
  EXPECT_EQ(CompareWordSort(longA, longB), -1);
}
