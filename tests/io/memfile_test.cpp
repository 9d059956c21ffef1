#include "io/memfile.h"

#include <gtest/gtest.h>

#include <cstring>

namespace verdal {
namespace {

TEST(TMemFileTest, SeekReadAndLength) {
  TMemFile f(16);
  ASSERT_TRUE(f.IsOpen());
  EXPECT_EQ(f.Write("0123456789", 10), 10);
  EXPECT_EQ(f.GetLength(), 10);
  EXPECT_EQ(f.Seek(10), 10);
  EXPECT_EQ(f.Seek(11), -1);
  EXPECT_EQ(f.Tell(), 10);
  EXPECT_EQ(f.Seek(-1), -1);
  char c = 0;
  EXPECT_EQ(f.Read(&c, 0), 0);  // nothing left, nothing asked
  EXPECT_THROW(f.Read(&c, 1), TMemFileReadWriteException);
  EXPECT_THROW(f.Read(&c, -1), TMemFileReadWriteException);

  f.Seek(7);
  EXPECT_TRUE(f.SetLength(3));
  EXPECT_EQ(f.Tell(), 3);
  EXPECT_EQ(f.GetLength(), 3);
  EXPECT_FALSE(f.SetLength(17)) << "beyond the capacity";
}

TEST(TMemFileTest, WritesOverwriteExtendAndGrow) {
  TMemFile f(8);
  f.Write("abcdef", 6);
  f.Seek(2);
  f.Write("XY", 2);  // in place: the length stays
  EXPECT_EQ(f.GetLength(), 6);
  f.SeekToEnd();
  f.Write("g", 1);  // within the capacity: longer, same block
  EXPECT_EQ(f.GetLength(), 7);
  EXPECT_EQ(f.Capacity(), 8);
  EXPECT_EQ(std::memcmp(f.Data(), "abXYefg", 7), 0);

  f.Write("hi", 2);  // one byte past: grows by growStep, not by one
  EXPECT_EQ(f.Capacity(), 16);
  f.Write(std::string(40, 'z').data(), 40);  // more than a step: grows to what is needed
  EXPECT_EQ(f.Capacity(), 49);
  EXPECT_EQ(f.GetLength(), 49);

  // Bytes of a grown block that nobody wrote read as zero.
  TMemFile g(4);
  g.Write("123456", 6);
  ASSERT_EQ(g.Capacity(), 8);
  ASSERT_TRUE(g.SetLength(8));
  EXPECT_EQ(g.Data()[6], 0);
  EXPECT_EQ(g.Data()[7], 0);
  EXPECT_EQ(f.Write("", 0), 0);
  EXPECT_THROW(f.Write("x", -1), TMemFileReadWriteException);
}

TEST(TMemFileTest, CloseKeepsOnlyTheLength) {
  TMemFile f(4);
  f.Write("abc", 3);
  EXPECT_TRUE(f.Close());
  EXPECT_FALSE(f.Close());
  EXPECT_FALSE(f.IsOpen());
  EXPECT_EQ(f.Tell(), -1);
  EXPECT_EQ(f.Seek(0), -1);
  EXPECT_EQ(f.Data(), nullptr);
  char c;
  EXPECT_THROW(f.Read(&c, 0), TMemFileReadWriteException);
  EXPECT_THROW(f.Write("x", 1), TMemFileReadWriteException);
  EXPECT_EQ(f.GetLength(), 3);
}

}  // namespace
}  // namespace verdal
