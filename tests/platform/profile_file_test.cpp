#include "platform/profile_file.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <iterator>
#include <string>

using verdal::platform::ProfileFile;

TEST(ProfileFile, ReadsAsTheFormatAlwaysHas) {
  ProfileFile p;
  p.Parse("; a comment\r\n[odbc_import]\r\n  DataSource = \"C:\\a b.csv\" \r\nIMPORT_TYPE=3\r\n"
          "import_type=1\r\nSEP='x'\r\nNEG=-12abc\r\nJUNK=abc\r\nnot a key\r\n[Other]\r\nK=v\r\n");
  EXPECT_TRUE(p.HasSection("ODBC_IMPORT"));
  EXPECT_EQ(p.GetString("ODBC_IMPORT", "DATASOURCE"), "C:\\a b.csv");  // quotes and blanks go
  EXPECT_EQ(p.GetInt("odbc_import", "IMPORT_TYPE", 0), 3);             // the first of two wins
  EXPECT_EQ(p.GetString("ODBC_IMPORT", "sep"), "x");
  EXPECT_EQ(p.GetInt("ODBC_IMPORT", "NEG", 0), -12);
  EXPECT_EQ(p.GetInt("ODBC_IMPORT", "JUNK", 7), 0);
  EXPECT_EQ(p.GetInt("ODBC_IMPORT", "MISSING", 7), 7);
  EXPECT_EQ(p.GetString("ODBC_IMPORT", "K", "none"), "none");  // another section's key
  p.SetString("Other", "k", "w");
  p.SetString("New", "A", "1");
  EXPECT_EQ(p.GetString("OTHER", "K"), "w");
  EXPECT_EQ(p.GetString("new", "a"), "1");
}

TEST(ProfileFile, SavedValuesReadBackAsTheyWere) {
  const std::string path = ::testing::TempDir() + "profile_save_test.ini";
  const char* values[] = {" ", "\"q\"", "'x'", "\"", "a b", " lead", ""};
  ProfileFile p;
  for (size_t i = 0; i < std::size(values); ++i) p.SetString("S", "K" + std::to_string(i), values[i]);
  ASSERT_TRUE(p.Save(path.c_str()));
  ProfileFile q;
  ASSERT_TRUE(q.Load(path.c_str()));
  for (size_t i = 0; i < std::size(values); ++i)
    EXPECT_EQ(q.GetString("S", "K" + std::to_string(i), "missing"), values[i]) << i;
  std::remove(path.c_str());
}
