#include "memory/memstack.h"

#include <gtest/gtest.h>

#include <string>

using verdal::memory::memman;
using verdal::memory::memstack;

TEST(Memman, CountsEachBlockWithItsHeaderAndFreesAll) {
  memman m;
  auto* a = static_cast<unsigned char*>(m.Alloc(10));
  auto* b = static_cast<unsigned char*>(m.Alloc(100));
  ASSERT_NE(a, nullptr);
  ASSERT_NE(b, nullptr);
  for (int i = 0; i < 100; ++i) ASSERT_EQ(b[i], 0);
  EXPECT_EQ(m.UsedMem(), 18u + 108u);
  EXPECT_EQ(m.SegmentCount(), 2u);

  m.FreeAll();
  EXPECT_EQ(m.UsedMem(), 0u);
  EXPECT_EQ(m.SegmentCount(), 0u);
}

TEST(Memstack, RegularSegmentsOversizedBlocksAndTheCursor) {
  memstack s(1021);  // rounded to 1024
  EXPECT_EQ(s.SegmentSize(), 1016u);
  EXPECT_EQ(s.Remaining(), 0u);
  EXPECT_EQ(s.Cursor(), nullptr);

  auto* first = static_cast<unsigned char*>(s.Alloc(16));
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(s.UsedMem(), 1024u);
  EXPECT_EQ(s.Remaining(), 1000u);
  EXPECT_EQ(s.Cursor(), first + 16);

  // Larger than a segment: a block of its own, the current segment stays open.
  auto* big = static_cast<unsigned char*>(s.Alloc(2000));
  ASSERT_NE(big, nullptr);
  EXPECT_EQ(s.UsedMem(), 1024u + 2008u);
  EXPECT_EQ(s.Remaining(), 1000u);
  EXPECT_EQ(s.Alloc(8), first + 16);
  EXPECT_EQ(s.Remaining(), 992u);

  // Exactly a segment: a new regular one, filled up; the old tail is abandoned.
  auto* full = static_cast<unsigned char*>(s.Alloc(1016));
  ASSERT_NE(full, nullptr);
  EXPECT_EQ(s.Remaining(), 0u);
  EXPECT_EQ(s.UsedMem(), 1024u + 2008u + 1024u);
  EXPECT_EQ(s.SegmentCount(), 3u);
  for (int i = 0; i < 1016; ++i) ASSERT_EQ(full[i], 0);

  // The fast path serves from the new segment only after the next slow call.
  auto* next = static_cast<unsigned char*>(s.Alloc(4));
  EXPECT_EQ(s.Remaining(), 1012u);
  EXPECT_EQ(s.Cursor(), next + 4);

  s.FreeAll();
  EXPECT_EQ(s.UsedMem(), 0u);
  EXPECT_EQ(s.Remaining(), 0u);
  ASSERT_NE(s.Alloc(4), nullptr);
  EXPECT_EQ(s.UsedMem(), 1024u);
}

TEST(Memstack, KeepLimitSendsRequestsToOwnBlocksWhileTheTailIsLarge) {
  memstack s(1024, 99);  // limit rounded to 100
  EXPECT_EQ(s.KeepLimit(), 100u);
  s.Alloc(16);
  ASSERT_EQ(s.Remaining(), 1000u);
  s.Alloc(1010);  // does not fit, but 1000 free bytes are worth keeping
  EXPECT_EQ(s.Remaining(), 1000u);
  EXPECT_EQ(s.SegmentCount(), 2u);
  s.Alloc(920);
  ASSERT_EQ(s.Remaining(), 80u);
  s.Alloc(100);  // a tail below the limit is given up for a new segment
  EXPECT_EQ(s.Remaining(), 916u);
  EXPECT_EQ(s.SegmentCount(), 3u);
}

TEST(MemstackDeathTest, ProgrammingErrorsStopWithTheCondition) {
  EXPECT_DEATH(memstack s(8), "segmentSiz > MEM_ALLIGN\\(sizeof\\(Segment\\)\\), file .*memstack\\.cpp");
  EXPECT_DEATH(memstack s(5), "segmentSiz > MEM_ALLIGN");
  memstack ok(9);
  EXPECT_EQ(ok.SegmentSize(), 4u);
  EXPECT_DEATH(memman().Alloc(0), "size > 0, file .*memman\\.cpp");
}
