#include "platform/profile_file.h"

#include <gtest/gtest.h>

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
