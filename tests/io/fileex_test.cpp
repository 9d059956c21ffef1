#include "io/fileex.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <string>

namespace verdal {
namespace {

class TFileExTest : public ::testing::Test {
 protected:
  void SetUp() override {
    dir_ = std::filesystem::temp_directory_path() /
           ("verdal_fileex_" + std::to_string(::getpid()) + "_" +
            ::testing::UnitTest::GetInstance()->current_test_info()->name());
    std::filesystem::create_directories(dir_);
    path_ = (dir_ / "file.bin").string();
  }
  void TearDown() override { std::filesystem::remove_all(dir_); }

  std::filesystem::path dir_;
  std::string path_;
};

TEST_F(TFileExTest, OpenCombinationsAndExactTransfers) {
  TFileEx f;
  EXPECT_FALSE(f.Open(path_.c_str(), TFileEx::kRead)) << "must exist";
  EXPECT_FALSE(f.Open(path_.c_str(), TFileEx::kReadWrite));
  EXPECT_EQ(f.Descriptor(), -1);

  ASSERT_TRUE(f.Open(path_.c_str(), TFileEx::kReadWrite | TFileEx::kCreate | TFileEx::kTruncate));
  EXPECT_FALSE(f.Open(path_.c_str(), TFileEx::kRead)) << "already open";
  EXPECT_EQ(f.Write("abcdefg", 7), 7);
  EXPECT_EQ(f.GetLength(), 7);
  EXPECT_EQ(f.Tell(), 7);
  EXPECT_EQ(f.SeekFrom(-3, TFileEx::kFromEnd), 4);
  EXPECT_EQ(f.SeekFrom(1, TFileEx::kFromCurrent), 5);
  EXPECT_EQ(f.SeekFrom(0, 3), -1);
  f.Seek(4);
  char buffer[8] = {};
  EXPECT_THROW(f.Read(buffer, 4), TReadWriteException) << "4 bytes asked, 3 left";
  f.Seek(4);
  EXPECT_EQ(f.Read(buffer, 3), 3);
  EXPECT_STREQ(buffer, "efg");
  EXPECT_EQ(f.Read(buffer, 0), 0);
  EXPECT_TRUE(f.SetLength(2));
  EXPECT_EQ(f.GetLength(), 2);
  EXPECT_TRUE(f.Close());
  EXPECT_FALSE(f.Close());
  EXPECT_THROW(f.Write("x", 1), TReadWriteException);

  // Read only cannot write; read-write of an existing file keeps its bytes; '\' counts as '/'.
  std::string backslashed = path_;
  backslashed[backslashed.rfind('/')] = '\\';
  TFileEx r(backslashed.c_str(), TFileEx::kRead);
  ASSERT_TRUE(r.IsOpen());
  EXPECT_THROW(r.Write("x", 1), TReadWriteException);
  TFileEx rw(path_.c_str(), TFileEx::kReadWrite);
  EXPECT_EQ(rw.GetLength(), 2);
}

TEST_F(TFileExTest, NoSharingExcludesOtherOpeners) {
  TFileEx out(path_.c_str(),
              TFileEx::kReadWrite | TFileEx::kCreate | TFileEx::kTruncate | TFileEx::kShareNone);
  ASSERT_TRUE(out.IsOpen());
  TFileEx other;
  EXPECT_FALSE(other.Open(path_.c_str(), TFileEx::kRead));
  EXPECT_FALSE(other.Open(path_.c_str(), TFileEx::kRead | TFileEx::kShareNone));
  out.Close();
  ASSERT_TRUE(other.Open(path_.c_str(), TFileEx::kRead));
  TFileEx exclusive;
  EXPECT_FALSE(exclusive.Open(path_.c_str(), TFileEx::kRead | TFileEx::kShareNone));
}

TEST_F(TFileExTest, RangeLocksExcludeOtherDescriptions) {
  TFileEx a(path_.c_str(), TFileEx::kReadWrite | TFileEx::kCreate | TFileEx::kTruncate);
  TFileEx b(path_.c_str(), TFileEx::kReadWrite);
  ASSERT_TRUE(a.IsOpen() && b.IsOpen());
  a.Write("0123456789", 10);
  EXPECT_TRUE(a.LockRange(0, 10));
  EXPECT_FALSE(b.LockRange(5, 1)) << "open-file-description locks conflict within one process";
  EXPECT_TRUE(b.LockRange(10, 5)) << "beyond the locked range";
  EXPECT_TRUE(a.UnlockRange(0, 10));
  EXPECT_TRUE(b.LockRange(5, 1));
  EXPECT_TRUE(a.LockRange(0, 0)) << "an empty range locks nothing";
  EXPECT_FALSE(a.LockRange(-1, 4));
}

}  // namespace
}  // namespace verdal
