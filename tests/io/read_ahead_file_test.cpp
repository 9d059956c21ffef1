#include "io/read_ahead_file.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "io/memfile.h"
#include "io/stream_io.h"

using verdal::TMemFile;
using verdal::TReadAheadFile;
using verdal::TReadWriteException;

namespace {

// A stream of mixed values behind a prefix the stretch leaves out, and a suffix past its end.
struct Source {
  TMemFile file{16};
  int32_t stretch = 0;
  Source() {
    verdal::WriteUInt32(0xabcdef, file);  // before the stretch
    const int32_t start = file.Tell();
    for (int i = 0; i < 40; ++i) {
      verdal::WriteInt32(i * 1000 + 7, file);
      verdal::WriteString(std::string(static_cast<size_t>(i * 3 % 17), static_cast<char>('a' + i % 26)), file);
      verdal::WriteUInt8(static_cast<uint8_t>(i), file);
    }
    verdal::WriteString(std::string(300, 'L'), file);  // larger than every small window
    stretch = file.Tell() - start;
    verdal::WriteUInt32(99, file);  // past the stretch
    file.Seek(start);
  }
};

}  // namespace

// Reads and lent texts come out the same through windows of every size, whether a value lies
// inside one filling, across two, or is larger than the window itself.
TEST(ReadAheadFile, WindowsOfAnySizeReadWhatTheSourceHolds) {
  for (int32_t window : {1, 3, 7, 64, TReadAheadFile::kWindow}) {
    Source s;
    TReadAheadFile f(s.file, s.stretch, window);
    EXPECT_EQ(f.GetLength(), s.stretch);
    for (int i = 0; i < 40; ++i) {
      ASSERT_EQ(verdal::ReadInt32(f), i * 1000 + 7) << window;
      const std::string expected(static_cast<size_t>(i * 3 % 17), static_cast<char>('a' + i % 26));
      if (i % 2 == 0) {
        ASSERT_EQ(verdal::ReadStringView(f), expected) << window;
      } else {
        std::string text;
        verdal::ReadString(text, f);
        ASSERT_EQ(text, expected) << window;
      }
      ASSERT_EQ(verdal::ReadUInt8(f), i) << window;
    }
    EXPECT_EQ(verdal::ReadStringView(f), std::string(300, 'L'));
    EXPECT_EQ(f.Tell(), s.stretch);
    // The source has more bytes, but the stretch has ended.
    EXPECT_THROW(verdal::ReadUInt8(f), TReadWriteException);
    EXPECT_EQ(f.Seek(0), -1);
    EXPECT_THROW(f.Write("x", 1), TReadWriteException);
  }
}

// A read larger than the window goes past it to the source; a count beyond the stretch throws
// before anything is allocated for it.
TEST(ReadAheadFile, LargeReadsAndCountsPastTheEnd) {
  Source s;
  TReadAheadFile f(s.file, s.stretch, 8);
  EXPECT_EQ(verdal::ReadInt32(f), 7);
  std::string rest(static_cast<size_t>(s.stretch - 4), '\0');
  f.Read(rest.data(), static_cast<int32_t>(rest.size()));
  EXPECT_EQ(rest.substr(rest.size() - 300), std::string(300, 'L'));
  EXPECT_EQ(f.Tell(), s.stretch);

  Source t;
  TReadAheadFile g(t.file, t.stretch, 8);
  char byte;
  EXPECT_THROW(g.Read(&byte, -1), TReadWriteException);
  EXPECT_THROW(g.Take(t.stretch + 1), TReadWriteException);
  EXPECT_EQ(g.Tell(), 0);
}

// Kept bytes survive every refill: texts lent in groups of five (the last group ends in the text
// larger than every small window) all read back at their offsets from the kept start, through
// windows of every size.
TEST(ReadAheadFile, KeptTextsSurviveRefills) {
  for (int32_t window : {1, 2, 3, 7, 16, 64, 4096}) {
    Source s;
    TReadAheadFile f(s.file, s.stretch, window);
    for (int group = 0; group < 8; ++group) {
      f.Keep();
      std::vector<std::pair<size_t, std::string>> lent;
      for (int i = group * 5; i < group * 5 + 5; ++i) {
        ASSERT_EQ(verdal::ReadInt32(f), i * 1000 + 7) << window;
        std::string_view text = verdal::ReadStringView(f);
        lent.emplace_back(static_cast<size_t>(text.data() - f.Kept()), std::string(text));
        ASSERT_EQ(verdal::ReadUInt8(f), i);
      }
      if (group == 7) {
        std::string_view text = verdal::ReadStringView(f);
        lent.emplace_back(static_cast<size_t>(text.data() - f.Kept()), std::string(300, 'L'));
      }
      for (size_t k = 0; k < lent.size(); ++k) {
        const int i = group * 5 + static_cast<int>(k);
        const std::string expected = k < 5 ? std::string(static_cast<size_t>(i * 3 % 17), static_cast<char>('a' + i % 26))
                                           : lent[k].second;
        ASSERT_EQ(std::string_view(f.Kept() + lent[k].first, expected.size()), expected) << window << " " << i;
      }
      f.Unkeep();
    }
    EXPECT_EQ(f.Tell(), s.stretch);
  }
}
