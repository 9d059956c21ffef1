// Categories through the C interface: adding, walking, moving and deleting, and what the host is
// told along the way.
#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "recording_host.h"
#include "field_helpers.h"
#include "verdal.h"

namespace {

using Ints = std::vector<int32_t>;

class TreeOps : public ::testing::Test {
 protected:
  void SetUp() override { db = OpenMemoryDatabase(); }
  void TearDown() override { VERDAL_CloseAllDBs(); }

  // Cursors in tree order, depth-first, by stepping with descend on from the first node.
  Ints Order() {
    Ints out;
    int32_t first = VERDAL_Seek(db, VERDAL_CURSOR_NONE, 1, 0, 1, 1, nullptr, VERDAL_KINDS_BOTH);
    for (int32_t c = first; c >= 0; c = VERDAL_Seek(db, c, 1, 0, 1, 1, nullptr, VERDAL_KINDS_BOTH))
      out.push_back(c);
    return out;
  }
  int32_t Category(int32_t parent, const char* name) { return VERDAL_AddCategory(db, parent, name); }

  VerdalHandle db = 0;
};

}  // namespace

TEST_F(TreeOps, AddingAndSeekingTellTheHostAndHonourVetoes) {
  RecordingHost host;
  int32_t a = Category(VERDAL_CURSOR_NONE, "A");
  int32_t b = Category(a, "B");
  EXPECT_EQ(host.Take(), (std::vector<Heard>{{6, a, a, -10, 0}, {2, a, a, -10, 0},
                                             {6, b, b, -10, 0}, {2, b, b, -10, 0}}));
  int32_t category = 0;
  EXPECT_EQ(VERDAL_Seek(db, a, 0, 0, 0, 0, &category, VERDAL_KINDS_BOTH), a);
  EXPECT_EQ(category, a);
  EXPECT_EQ(host.Take(), (std::vector<Heard>{{1, b, b, -10, 0}, {2, a, a, -10, 0}}));

  host.vetoReason = 1;
  EXPECT_EQ(VERDAL_Seek(db, b, 0, 0, 0, 0, nullptr, VERDAL_KINDS_BOTH), a);  // stays
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_CANCELLED);
  EXPECT_EQ(host.Take(), (std::vector<Heard>{{1, a, a, -10, 0}}));
  // Keeping the current cursor asks nobody.
  EXPECT_EQ(VERDAL_Seek(db, a, 1, 0, 1, 1, nullptr, VERDAL_KINDS_BOTH), b);
  EXPECT_TRUE(host.Take().empty());

  host.vetoReason = 0;
  VERDAL_SetNotify(0);
  EXPECT_GE(Category(VERDAL_CURSOR_ROOT, "C"), 0);
  EXPECT_TRUE(host.Take().empty());
  VERDAL_SetNotify(1);
}

TEST_F(TreeOps, ParentsMustBeCategoriesThatExist) {
  EXPECT_EQ(VERDAL_AddCategory(db, 4711, "x"), -1);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_CATEGORY_CURSOR);
  EXPECT_EQ(VERDAL_AddCategory(0, -1, "x"), 0);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_HANDLE);
  int32_t first = Category(VERDAL_CURSOR_ROOT, "A");
  EXPECT_EQ(first, 0);  // 0 is a good cursor; the last error tells success
  EXPECT_EQ(VERDAL_GetLastError(), 0);
  EXPECT_EQ(VERDAL_GetItemCount(db), 1);
  EXPECT_EQ(VERDAL_GetItemCount(0), -1);
}

TEST_F(TreeOps, SeekingFromNoNodeAndSkippingKinds) {
  int32_t a = Category(-1, "A");
  int32_t a1 = Category(a, "A1");
  int32_t b = Category(-1, "B");
  EXPECT_EQ(VERDAL_Seek(db, VERDAL_CURSOR_NONE, 1, 0, 1, 1, nullptr, VERDAL_KINDS_BOTH), a);
  EXPECT_EQ(VERDAL_Seek(db, VERDAL_CURSOR_NONE, -1, 0, 1, 1, nullptr, VERDAL_KINDS_BOTH), b);
  EXPECT_EQ(VERDAL_Seek(db, a, 2, 0, 1, 1, nullptr, VERDAL_KINDS_BOTH), b);
  // No records at all: with wrap the walk comes back to where it started, without it fails.
  EXPECT_EQ(VERDAL_Seek(db, a1, 1, 1, 1, 1, nullptr, VERDAL_KINDS_RECORDS), a1);
  EXPECT_EQ(VERDAL_Seek(db, a1, 1, 0, 1, 1, nullptr, VERDAL_KINDS_RECORDS), -1);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_CURSOR);
  EXPECT_EQ(VERDAL_Seek(db, 999, 0, 0, 1, 1, nullptr, VERDAL_KINDS_BOTH), -1);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_CURSOR);
}

TEST_F(TreeOps, SeekingRoundAClosedCategoryEnds) {
  // Stepping back from a record hidden in a closed category circles between the two categories
  // and never meets a record or the start: the walk ends at the start.
  int32_t a = Category(-1, "A");
  int32_t r = VERDAL_AddRecord(db, a, "r", 0, nullptr, -1, 0, nullptr);
  Category(-1, "B");
  int32_t closed = 0;
  ASSERT_EQ(VERDAL_SetCategoryInfo(db, a, nullptr, &closed, nullptr, nullptr, 0, nullptr, 0, 0), 1);
  EXPECT_EQ(VERDAL_Seek(db, r, -1, 1, 1, 1, nullptr, VERDAL_KINDS_RECORDS), r);
  EXPECT_EQ(VERDAL_MoveChild(db, r, VERDAL_CURSOR_PREVIOUS, VERDAL_KINDS_RECORDS), 0);
  // The only records lie below the category moved: there is no place to move it to.
  ASSERT_EQ(VERDAL_EmptyData(db, 1), 1);
  int32_t c = Category(-1, "C");
  VERDAL_AddRecord(db, c, "below", 0, nullptr, -1, 0, nullptr);
  EXPECT_EQ(VERDAL_MoveChild(db, c, VERDAL_CURSOR_NEXT, VERDAL_KINDS_RECORDS), 0);
}

TEST_F(TreeOps, SeekingFarWithWrapGoesRoundByTheNodesItVisits) {
  int32_t r0 = VERDAL_AddRecord(db, -1, "r0", 0, nullptr, -1, 0, nullptr);
  int32_t r1 = VERDAL_AddRecord(db, -1, "r1", 0, nullptr, -1, 0, nullptr);
  struct Case { int32_t count, descend, kinds, expected; };
  for (const Case& c : {Case{INT32_MAX, 1, 3, r1}, Case{INT32_MAX, 0, 2, r1}, Case{INT32_MIN, 1, 2, r0},
                        Case{INT32_MIN, 0, 3, r0}, Case{INT32_MAX - 1, 1, 3, r0}, Case{INT32_MIN + 1, 0, 3, r1}})
    EXPECT_EQ(VERDAL_Seek(db, r0, c.count, 1, c.descend, 1, nullptr, c.kinds), c.expected) << c.count;
}

TEST_F(TreeOps, MovingUpAndDownAtTheEndsAndOutOfCategories) {
  int32_t a = Category(-1, "A");
  int32_t a1 = Category(a, "A1");
  int32_t a2 = Category(a, "A2");
  int32_t b = Category(-1, "B");
  ASSERT_EQ(Order(), (Ints{a, a1, a2, b}));

  RecordingHost host;
  EXPECT_EQ(VERDAL_MoveChild(db, b, VERDAL_CURSOR_NEXT, VERDAL_KINDS_BOTH), 1);  // last goes to front
  EXPECT_EQ(Order(), (Ints{b, a, a1, a2}));
  EXPECT_EQ(host.Take(), (std::vector<Heard>{{9, -2, -2, -10, 0}, {2, b, b, -10, 0}}));
  EXPECT_EQ(VERDAL_MoveChild(db, b, VERDAL_CURSOR_PREVIOUS, VERDAL_KINDS_BOTH), 1);  // first goes to end
  EXPECT_EQ(Order(), (Ints{a, a1, a2, b}));
  // The first child moving up leaves its category and stands before it.
  EXPECT_EQ(VERDAL_MoveChild(db, a1, VERDAL_CURSOR_PREVIOUS, VERDAL_KINDS_BOTH), 1);
  EXPECT_EQ(Order(), (Ints{a1, a, a2, b}));
  EXPECT_EQ(VERDAL_IsChildOf(db, a, a1), 0);
  // The last child moving down leaves its category and stands after it.
  EXPECT_EQ(VERDAL_MoveChild(db, a2, VERDAL_CURSOR_NEXT, VERDAL_KINDS_BOTH), 1);
  EXPECT_EQ(Order(), (Ints{a1, a, a2, b}));
  EXPECT_EQ(VERDAL_IsChildOf(db, a, a2), 0);
  // Moving onto a category puts the node in it, first.
  EXPECT_EQ(VERDAL_MoveChild(db, b, a, VERDAL_KINDS_BOTH), 1);
  EXPECT_EQ(VERDAL_IsChildOf(db, a, b), 1);
  EXPECT_EQ(VERDAL_MoveChild(db, a, b, VERDAL_KINDS_BOTH), 0);  // not below itself
  EXPECT_EQ(VERDAL_MoveChild(db, a, a, VERDAL_KINDS_BOTH), 0);
  EXPECT_EQ(VERDAL_GetLastError(), 0);
  EXPECT_EQ(VERDAL_MoveChild(db, 999, a, VERDAL_KINDS_BOTH), 0);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_CURSOR);
  EXPECT_EQ(VERDAL_IsChildOf(db, a, a), 1);
  EXPECT_EQ(VERDAL_IsChildOf(db, 999, a), 0);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_CURSOR);
}

TEST_F(TreeOps, DeletingMovesWhatSurvivesToTheTopAndTheHostMayChangeTheFlags) {
  int32_t a = Category(-1, "A");
  int32_t a1 = Category(a, "A1");
  int32_t a11 = Category(a1, "A11");
  int32_t b = Category(-1, "B");
  RecordingHost host;
  // Flags 0: the direct child category survives and moves to the front of the top level.
  EXPECT_EQ(VERDAL_DeleteRecord(db, a, 0, 1, nullptr, 1), 1);
  EXPECT_EQ(Order(), (Ints{a1, a11, b}));
  EXPECT_EQ(VERDAL_HasMember(db, a), 0);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_CURSOR);
  std::vector<Heard> heard = host.Take();
  ASSERT_EQ(heard.size(), 3u);
  EXPECT_EQ(heard[0], (Heard{3, a, a, -10, 0}));
  EXPECT_EQ(heard[1].reason, 9);
  EXPECT_EQ(heard[2].reason, 2);

  // The host turns "delete the categories below" on: everything below goes.
  host.rewriteValue = VERDAL_DELETE_CATEGORIES;
  EXPECT_EQ(VERDAL_DeleteRecord(db, a1, 0, 1, nullptr, 1), 1);
  EXPECT_EQ(Order(), (Ints{b}));
  EXPECT_EQ(VERDAL_GetItemCount(db), 1);
  heard = host.Take();
  EXPECT_EQ(heard[0], (Heard{3, a1, a1, -10, 0}));
  EXPECT_EQ(heard[1], (Heard{4, a11, -1, -10, 0}));  // gone: no node to describe
  EXPECT_EQ(heard[2], (Heard{4, a1, -1, -10, 0}));

  // A veto deletes nothing.
  host.vetoReason = 3;
  EXPECT_EQ(VERDAL_DeleteRecord(db, b, 6, 1, nullptr, 1), 0);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_CANCELLED);
  EXPECT_EQ(VERDAL_HasMember(db, b), 1);
  EXPECT_EQ(VERDAL_DeleteRecord(db, 999, 6, 1, nullptr, 1), 0);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_CURSOR);

  // The quiet moves inside a delete leave the notify switch on, even where the host had it off.
  host.vetoReason = 0;
  int32_t c = Category(-1, "C");
  Category(c, "C1");
  VERDAL_SetNotify(0);
  ASSERT_EQ(VERDAL_DeleteRecord(db, c, 0, 1, nullptr, 1), 1);
  host.Take();
  Category(-1, "D");
  EXPECT_EQ(host.Take().size(), 2u);  // added, current changed
  VERDAL_SetNotify(1);
}

TEST_F(TreeOps, SpecialAndInternalDataOfANode) {
  int32_t a = Category(-1, "A");
  EXPECT_EQ(VERDAL_GetSpecialData(db, 1, a), -1);
  EXPECT_EQ(VERDAL_SetSpecialData(db, 1, 77, a), 1);
  EXPECT_EQ(VERDAL_GetSpecialData(db, 1, a), 77);
  EXPECT_EQ(VERDAL_GetSpecialData(db, 3, a), 0);
  EXPECT_EQ(VERDAL_GetLastError(), 22);
  EXPECT_EQ(VERDAL_SetSpecialData(db, -1, 5, a), -1);
  EXPECT_EQ(VERDAL_GetLastError(), 22);
  EXPECT_EQ(VERDAL_GetSpecialData(db, 0, 999), -1);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_CURSOR);
  EXPECT_EQ(VERDAL_SetSpecialData(db, 0, 5, VERDAL_CURSOR_ROOT), 0);

  VerdalLocalTime created{}, changed{};
  int32_t modified = -1;
  char id[37];
  ASSERT_EQ(VERDAL_GetInternalData(db, a, &created, &changed, &modified, id), 1);
  EXPECT_GE(created.year, 2024);
  EXPECT_EQ(modified, 0);
  EXPECT_EQ(std::string(id).size(), 36u);
  VerdalLocalTime then{1999, 12, 5, 31, 23, 59, 58, 1};
  uint8_t yes = 1;
  ASSERT_EQ(VERDAL_SetInternalData(db, a, &then, nullptr, &yes, "mine"), 1);
  ASSERT_EQ(VERDAL_GetInternalData(db, a, &created, nullptr, &modified, id), 1);
  EXPECT_EQ(created.year, 1999);
  EXPECT_EQ(created.millisecond, 1);
  EXPECT_EQ(modified, 1);
  EXPECT_STREQ(id, "mine");
  // An identifier longer than the host's 37 bytes comes back cut, never past the buffer.
  const std::string longer(60, 'x');
  ASSERT_EQ(VERDAL_SetInternalData(db, a, nullptr, nullptr, nullptr, longer.c_str()), 1);
  char guarded[40];
  std::memset(guarded, '#', sizeof guarded);
  ASSERT_EQ(VERDAL_GetInternalData(db, a, nullptr, nullptr, nullptr, guarded), 1);
  EXPECT_EQ(std::string(guarded), std::string(36, 'x'));
  EXPECT_EQ(guarded[37], '#');
  EXPECT_EQ(VERDAL_GetInternalData(db, 999, nullptr, nullptr, nullptr, nullptr), 0);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_CURSOR);
}
