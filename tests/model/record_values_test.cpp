#include "model/record_values.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>


using verdal::model::RecordValues;

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

// Texts up to 14 bytes lie in their slots, longer ones in the tail; both read back whole and
// NUL-ended, on either side of the border.
TEST(RecordValues, ShortAndLongTextsReadBackAlike) {
  const std::string texts[] = {"", std::string(13, 'a'), std::string(14, 'b'), std::string(15, 'c'),
                               std::string(1000, 'd'), "x"};
  std::string_view views[6];
  for (size_t i = 0; i < 6; ++i) views[i] = texts[i];
  RecordValues v;
  v.Assign(std::string(36, 'i'), std::string(15, 't'), views, 6);
  EXPECT_EQ(Texts(v), (Strings(std::begin(texts), std::end(texts))));
  EXPECT_EQ(v.Identifier(), std::string(36, 'i'));
  EXPECT_EQ(v.Title(), std::string(15, 't'));
  EXPECT_EQ(v[2].data(), static_cast<const char*>(v.SlotOfValue(2)) + 1);  // in its slot
  EXPECT_NE(v[3].data(), static_cast<const char*>(v.SlotOfValue(3)) + 1);  // in the tail
  EXPECT_EQ(v.SlotOfValue(1), static_cast<const char*>(v.SlotOfValue(0)) + RecordValues::kSlotBytes);
  v.Set(4, "kurz");
  v.Set(0, std::string(20, 'l'));
  EXPECT_EQ(v[4], "kurz");
  EXPECT_EQ(v[0], std::string(20, 'l'));
  EXPECT_EQ(v[3], std::string(15, 'c'));
}

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
  const void* slot = v.SlotOfValue(1);
  v.Set(1, v[2]);               // short over short, in place
  v.Set(2, v[2].substr(1));     // from its own slot
  v.Set(0, "");
  EXPECT_EQ(v.SlotOfValue(1), slot);
  EXPECT_EQ(Texts(v), (Strings{"", "zuletzt", "uletzt"}));
  v.Set(0, "Bonn");
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

// Copies own their blocks: changing one leaves the other as it was; a move leaves nothing behind.
TEST(RecordValues, CopiesAndMovesKeepTheirOwnTexts) {
  const std::string_view texts[] = {"eins", "", "drei"};
  RecordValues original;
  original.Assign("id-1", "Titel", texts, 3);
  RecordValues copy = original;
  original.Set(1, "zwei");
  EXPECT_EQ(Texts(original), (Strings{"eins", "zwei", "drei"}));
  EXPECT_EQ(Texts(copy), (Strings{"eins", "", "drei"}));
  EXPECT_EQ(copy.Title(), "Titel");
  EXPECT_EQ(copy.Identifier(), "id-1");

  RecordValues moved = std::move(original);
  EXPECT_EQ(original.size(), 0u);
  EXPECT_EQ(original.Title(), "");
  EXPECT_EQ(Texts(moved), (Strings{"eins", "zwei", "drei"}));
  moved = copy;
  moved.Set(0, "1");
  EXPECT_EQ(Texts(moved), (Strings{"1", "", "drei"}));
  EXPECT_EQ(Texts(copy), (Strings{"eins", "", "drei"}));
}

// A block cut from a load's arena travels with moves, is replaced by heap blocks on edits and is
// never freed itself; a sanitizer build reports any use of it after its record let go of it.
TEST(RecordValues, BlocksFromAnArenaMoveAndAreReplacedButNeverFreed) {
  verdal::memory::PageArena arena(1 << 16, 1 << 16, false);
  const std::string_view values[] = {"kurz", "ein Wert, der nicht in seinen Platz passt"};
  RecordValues loaded;
  loaded.Assign("id", "Titel", values, 2, &arena);
  RecordValues moved(std::move(loaded));
  RecordValues assigned;
  assigned = std::move(moved);
  EXPECT_EQ(Texts(assigned), (Strings{"kurz", "ein Wert, der nicht in seinen Platz passt"}));
  RecordValues copy(assigned);
  assigned.Set(0, "ein langer Wert statt des kurzen");  // a new block from the heap
  assigned.Set(1, "k");
  EXPECT_EQ(Texts(assigned), (Strings{"ein langer Wert statt des kurzen", "k"}));
  EXPECT_EQ(Texts(copy), (Strings{"kurz", "ein Wert, der nicht in seinen Platz passt"}));
  EXPECT_EQ(assigned.Title(), "Titel");
}
