#include "io/stream_io.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "io/memfile.h"

namespace verdal {
namespace {

std::vector<uint8_t> Bytes(TMemFile& f) { return {f.Data(), f.Data() + f.GetLength()}; }

TEST(StreamIoTest, PrimitivesAreLittleEndianAndUnaligned) {
  TMemFile f(4);
  WriteBool(true, f);
  WriteUInt8(0xab, f);
  WriteInt16(-2, f);
  WriteUInt16(0x1234, f);
  WriteInt32(-123456789, f);
  WriteUInt32(0xdeadbeef, f);
  WriteDouble(1.5, f);
  WriteExtended(1.0L / 3.0L, f);  // needs all 64 mantissa bits
  const char chars[6] = {'a', 'b', 0, 'x', 'y', 'z'};
  WriteChars(chars, 6, f);
  const std::vector<uint8_t> expected = {
      0x01, 0xab, 0xfe, 0xff, 0x34, 0x12, 0xeb, 0x32, 0xa4, 0xf8, 0xef, 0xbe, 0xad, 0xde,
      0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0xf8, 0x3f,  // 1.5 as IEEE 754 double
      0xab, 0xaa, 0xaa, 0xaa, 0xaa, 0xaa, 0xaa, 0xaa, 0xfd, 0x3f,  // 1/3 as x87 extended
      'a', 'b', 0, 'x', 'y', 'z'};
  EXPECT_EQ(Bytes(f), expected);

  f.SeekToBegin();
  EXPECT_TRUE(ReadBool(f));
  EXPECT_EQ(ReadUInt8(f), 0xab);
  EXPECT_EQ(ReadInt16(f), -2);
  EXPECT_EQ(ReadUInt16(f), 0x1234);
  EXPECT_EQ(ReadInt32(f), -123456789);
  EXPECT_EQ(ReadUInt32(f), 0xdeadbeefu);
  EXPECT_EQ(ReadDouble(f), 1.5);
  EXPECT_EQ(ReadExtended(f), 1.0L / 3.0L);
  char back[6];
  ReadChars(back, 6, f);
  EXPECT_EQ(std::memcmp(back, chars, 6), 0);
}

TEST(StreamIoTest, StringsAreCountedAndCutAtNul) {
  TMemFile f(4);
  WriteString(std::string("Hallo"), f);
  EXPECT_EQ(f.GetLength(), 9);
  WriteString("", f);
  EXPECT_EQ(f.GetLength(), 13);
  WriteString(std::string("ab\0cd", 5), f);  // counts up to the NUL
  const std::vector<uint8_t> expected = {5, 0, 0, 0, 'H', 'a', 'l', 'l', 'o', 0, 0, 0, 0,
                                         2, 0, 0, 0, 'a', 'b'};
  EXPECT_EQ(Bytes(f), expected);

  // A stored string with a NUL inside reads back cut there; the stream moves past all of it.
  const uint8_t stored[] = {5, 0, 0, 0, 'x', 0, 'y', 'z', 'w', 1, 0, 0, 0, '!'};
  f.Write(stored, sizeof stored);
  f.SeekToBegin();
  std::string s = "old";
  ReadString(s, f);
  EXPECT_EQ(s, "Hallo");
  ReadString(s, f);
  EXPECT_EQ(s, "");
  ReadString(s, f);
  EXPECT_EQ(s, "ab");
  ReadString(s, f);
  EXPECT_EQ(s, "x");
  ReadString(s, f);
  EXPECT_EQ(s, "!");
}

// The word-at-a-time search for a NUL must find it at every offset, on both sides of a word's
// end, and the lending reader must cut and move exactly as the copying one does.
TEST(StreamIoTest, LentStringsCutAtTheFirstNulWherever) {
  for (size_t length : {1u, 7u, 8u, 9u, 16u, 23u, 40u}) {
    for (size_t nulAt = 0; nulAt <= length; ++nulAt) {
      std::string text(length, 'q');
      if (nulAt < length) text[nulAt] = '\0';
      if (nulAt + 2 < length) text[nulAt + 2] = '\0';  // a second one changes nothing
      EXPECT_EQ(LengthBeforeNul(text.data(), text.size()), nulAt) << length << " " << nulAt;
      TMemFile f(64);
      WriteUInt32(static_cast<uint32_t>(length), f);
      f.Write(text.data(), static_cast<int32_t>(length));
      WriteUInt32(1, f);
      f.Write("!", 1);
      f.SeekToBegin();
      EXPECT_EQ(ReadStringView(f), std::string_view(text.data(), nulAt));
      EXPECT_EQ(ReadStringView(f), "!");
    }
  }
  // A count beyond the bytes left throws without lending anything.
  TMemFile f(8);
  WriteUInt32(9, f);
  f.Write("abc", 3);
  f.SeekToBegin();
  EXPECT_THROW(ReadStringView(f), TReadWriteException);
}

TEST(StreamIoTest, DamagedStringCountsFailWithoutAllocating) {
  // Counts just past the stream's end, near 2 GiB, negative as signed, and the largest.
  for (uint32_t count : {4u, 0x7ffffff0u, 0x80000000u, 0xffffffffu}) {
    TMemFile f(16);
    WriteUInt32(count, f);
    f.Write("abc", 3);
    f.SeekToBegin();
    std::string s;
    EXPECT_THROW(ReadString(s, f), TReadWriteException) << count;
  }
  TMemFile empty(0);
  std::string s;
  EXPECT_THROW(ReadString(s, empty), TMemFileReadWriteException) << "no count at all";
}

}  // namespace
}  // namespace verdal
