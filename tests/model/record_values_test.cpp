#include "model/record_values.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "model/text_arena.h"

using verdal::model::RecordValues;
using verdal::model::TextArena;

namespace {

std::vector<std::string> Texts(const RecordValues& v) {
  std::vector<std::string> out;
  for (size_t i = 0; i < v.size(); ++i) {
    EXPECT_EQ(v[i].data()[v[i].size()], '\0') << i;  // every text ends in a NUL
    out.emplace_back(v[i]);
  }
  return out;
}

using Strings = std::vector<std::string>;

}  // namespace

TEST(RecordValues, EditsKeepTheOtherTexts) {
  RecordValues v;
  EXPECT_TRUE(v.empty());
  v.Resize(3);
  EXPECT_EQ(Texts(v), (Strings{"", "", ""}));
  v.Set(1, "Bonn");
  v.SetTitle("Titel");
  v.Set(0, std::string(300, 'a'));
  v.PushBack("zuletzt");
  EXPECT_EQ(Texts(v), (Strings{std::string(300, 'a'), "Bonn", "", "zuletzt"}));
  v.Set(0, v[1]);  // a text from the block itself
  v.Erase(2);
  v.Erase(7);  // past the end: nothing
  EXPECT_EQ(Texts(v), (Strings{"Bonn", "Bonn", "zuletzt"}));
  v.Resize(1);
  v.SetIdentifier(v.Title());  // a text from the block itself
  EXPECT_EQ(Texts(v), (Strings{"Bonn"}));
  v.Clear();  // the values only
  EXPECT_EQ(v.size(), 0u);
  EXPECT_EQ(v.Title(), "Titel");
  EXPECT_EQ(v.Identifier(), "Titel");
  EXPECT_EQ(v.Title().data()[5], '\0');
  EXPECT_EQ(RecordValues().Title(), "");
}

// A block lent from an arena is never written: the first change, and any copy, gets a block of its
// own, and the arena's bytes stay as they were for as long as the arena lives.
TEST(RecordValues, ArenaBlocksAreLeftAloneByChanges) {
  TextArena arena;
  const std::string_view texts[] = {"eins", "", "drei"};
  RecordValues loaded;
  loaded.Assign("id-1", "Titel", texts, 3, &arena);
  const void* lent = loaded.Block();
  RecordValues copy = loaded;
  EXPECT_NE(copy.Block(), lent);
  loaded.Set(1, "zwei");
  EXPECT_NE(loaded.Block(), lent);
  EXPECT_EQ(Texts(loaded), (Strings{"eins", "zwei", "drei"}));
  EXPECT_EQ(Texts(copy), (Strings{"eins", "", "drei"}));
  EXPECT_EQ(loaded.Title(), "Titel");
  EXPECT_EQ(copy.Identifier(), "id-1");

  RecordValues other;
  other.Assign("id-2", "", texts, 3, &arena);
  RecordValues moved = std::move(other);
  EXPECT_EQ(other.size(), 0u);
  EXPECT_EQ(Texts(moved), (Strings{"eins", "", "drei"}));
  moved = copy;  // an owned copy replaces a lent block
  moved.Set(0, "1");
  EXPECT_EQ(Texts(moved), (Strings{"1", "", "drei"}));
  EXPECT_EQ(Texts(copy), (Strings{"eins", "", "drei"}));
}
