#include <gtest/gtest.h>

#include "bridge_import.h"
#include "bridge_test_support.h"
#include "platform/file_system.h"

namespace verdal::sqlbridge {
namespace {

using testing::ColumnNames;
using testing::Exchange;
using testing::ReadExchange;
using testing::WriteText;

class BridgeTextImportTest : public ::testing::Test {
 protected:
  int32_t Import(const std::string& input, intptr_t option = 0, int32_t flags = 0,
                 std::vector<const char*> names1 = {}, std::vector<const char*> names2 = {}) {
    return RunImport(input.c_str(), exchangePath_.c_str(), nullptr, option, flags,
                     static_cast<int32_t>(names1.size()), names1.empty() ? nullptr : names1.data(),
                     names2.empty() ? nullptr : names2.data());
  }
  TempFolder folder_;
  std::string exchangePath_ = folder_ / "exchange.tmp";
};

// A UTF-8 file with a column line, read through a definition: path columns move to the front,
// mode 3 keys come from the identity column, text is turned into code page 1252.
TEST_F(BridgeTextImportTest, DefinitionWithPathColumnsAndIdentity) {
  WriteText(folder_ / "people.csv",
            "\xEF\xBB\xBFid;name;city;country\r\n"
            "7;\"M\xC3\xBCller; Anna\";Graz;AT\r\n"
            "12;Bob\r\n");
  WriteText(folder_ / "people.imp",
            "[ODBC_IMPORT]\nTXT_IMPORT_USE=1\nDATASOURCE=people.csv\nIMPORT_TYPE=3\n"
            "TXT_IMPORT_SEPTYPE=1\nTXT_IMPORT_STRING_DELIM=\"\nIDENTFIELD=id\n"
            "PATH_COLUMNS=country, CITY\nFREE_COLUMN=note\n");
  ASSERT_EQ(Import(folder_ / "people.imp"), 1);
  Exchange x;
  ASSERT_TRUE(ReadExchange(exchangePath_, x));
  EXPECT_EQ(x.header.mode, 3);
  EXPECT_EQ(x.header.connection, 0);
  EXPECT_EQ(x.header.backEnd, 0);
  EXPECT_EQ(x.header.identityField, "id");
  EXPECT_EQ(x.header.tableName, "");
  EXPECT_EQ(x.header.freeColumn, "note");
  EXPECT_EQ(x.header.pathColumns, 2);
  EXPECT_EQ(ColumnNames(x.header), (std::vector<std::string>{"country", "city", "id", "name"}));
  for (const auto& c : x.header.columns) {
    EXPECT_EQ(c.sqlType, 12);
    EXPECT_EQ(c.decimals, -1);
  }
  const std::vector<std::vector<std::string>> rows = {{"AT", "Graz", "7", "M\xFCller; Anna"},
                                                      {"", "", "12", "Bob"}};
  EXPECT_EQ(x.rows, rows);
  EXPECT_EQ(x.keys, (std::vector<int32_t>{7, 12}));
}

// Without a column line the names come from SRC_FIELD%d; bytes that are no UTF-8 are code page
// 1252 already; a chosen subset is renamed.
TEST_F(BridgeTextImportTest, SourceFieldsCharsetAndSelection) {
  WriteText(folder_ / "plain.txt", "a\t\xE4pfel\t1,5\nb\tBirne\t2\n");
  WriteText(folder_ / "plain.imp",
            "[ODBC_IMPORT]\nTXT_IMPORT_USE=1\nDATASOURCE=" + (folder_ / "plain.txt") +
                "\nIMPORT_TYPE=0\nTXT_IMPORT_USECOLUMNS=0\nTXT_IMPORT_SEPTYPE=0\n"
                "NUM_SRC_FIELDS=3\nSRC_FIELD0=Code\nSRC_FIELD1=Name\nSRC_FIELD2=Preis\n");
  ASSERT_EQ(Import(folder_ / "plain.imp", 0, 0, {"preis", "CODE"}, {"Price", nullptr}), 1);
  Exchange x;
  ASSERT_TRUE(ReadExchange(exchangePath_, x));
  EXPECT_EQ(ColumnNames(x.header), (std::vector<std::string>{"Price", "Code"}));
  EXPECT_EQ(x.rows, (std::vector<std::vector<std::string>>{{"1,5", "a"}, {"2", "b"}}));
  EXPECT_EQ(x.keys, (std::vector<int32_t>{-1, -1}));

  // The whole file read as 1252 keeps the byte; a forced UTF-8 reading turns it into '?'.
  ASSERT_EQ(Import(folder_ / "plain.imp", 0, 0, {"Name"}), 1);
  Exchange all;
  ASSERT_TRUE(ReadExchange(exchangePath_, all));
  EXPECT_EQ(all.rows[0][0], "\xE4pfel");
  WriteText(folder_ / "forced.imp",
            "[ODBC_IMPORT]\nTXT_IMPORT_USE=1\nDATASOURCE=plain.txt\nTXT_IMPORT_USECOLUMNS=0\n"
            "TXT_IMPORT_SEPTYPE=0\nNUM_SRC_FIELDS=2\nSRC_FIELD0=Code\nSRC_FIELD1=Name\n"
            "TXT_IMPORT_CHARSET=utf-8\n");
  ASSERT_EQ(Import(folder_ / "forced.imp"), 1);
  Exchange forced;
  ASSERT_TRUE(ReadExchange(exchangePath_, forced));
  EXPECT_EQ(forced.rows[1], (std::vector<std::string>{"b", "Birne"}));  // the extra cell dropped
  EXPECT_EQ(forced.rows[0][1], "?pfel");
}

TEST_F(BridgeTextImportTest, DataFileNamedDirectlyGuessesItsSeparator) {
  WriteText(folder_ / "list.CSV", "x,y;z,w\n1,2;3,4\n");
  ASSERT_EQ(Import(folder_ / "list.CSV", 2), 1);
  Exchange x;
  ASSERT_TRUE(ReadExchange(exchangePath_, x));
  EXPECT_EQ(x.header.mode, 2);
  EXPECT_EQ(ColumnNames(x.header), (std::vector<std::string>{"x", "y;z", "w"}));
  EXPECT_EQ(x.rows, (std::vector<std::vector<std::string>>{{"1", "2;3", "4"}}));
}

// Each failure leaves no exchange file behind, and configure-only writes nothing but succeeds.
TEST_F(BridgeTextImportTest, FailuresLeaveNoExchangeFile) {
  WriteText(folder_ / "ok.csv", "id;name\n1;a\nx2;b\n");
  WriteText(folder_ / "open.csv", "id;name\n1;\"never closed\n");
  struct Case {
    const char* definition;
    std::vector<const char*> names1;
  };
  const Case cases[] = {
      {"IMPORT_TYPE=3\nIDENTFIELD=id\nDATASOURCE=ok.csv", {}},    // "x2" is no key
      {"IMPORT_TYPE=3\nDATASOURCE=ok.csv", {}},                   // mode 3 without IDENTFIELD
      {"IMPORT_TYPE=3\nIDENTFIELD=nr\nDATASOURCE=ok.csv", {}},    // no such column
      {"IMPORT_TYPE=0\nDATASOURCE=ok.csv", {"name", "price"}},    // chosen column missing
      {"IMPORT_TYPE=0\nDATASOURCE=ok.csv\nPATH_COLUMNS=group", {}},
      {"IMPORT_TYPE=0\nDATASOURCE=open.csv", {}},                 // unterminated quote
      {"IMPORT_TYPE=0\nDATASOURCE=missing.csv", {}},
      {"IMPORT_TYPE=4\nDATASOURCE=ok.csv", {}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.definition);
    WriteText(folder_ / "bad.imp", std::string("[ODBC_IMPORT]\nTXT_IMPORT_USE=1\n"
                                               "TXT_IMPORT_STRING_DELIM=\"\n") + c.definition + "\n");
    WriteText(exchangePath_, "stale");
    EXPECT_EQ(Import(folder_ / "bad.imp", 0, 0, c.names1), 0);
    EXPECT_FALSE(platform::FileExists(exchangePath_.c_str()));
  }
  EXPECT_EQ(RunImport(nullptr, exchangePath_.c_str(), nullptr, 0, 0, 0, nullptr, nullptr), 0);
  EXPECT_EQ(Import(folder_ / "ok.csv", 4), 0);
  EXPECT_EQ(Import(folder_ / "ok.xls", 0), 0);
  EXPECT_EQ(Import(folder_ / "ok.csv", 0, 0x400), 1);
  EXPECT_FALSE(platform::FileExists(exchangePath_.c_str()));
}

// The mapper sees a copy in a buffer of 260 bytes; a longer input is refused before it.
TEST_F(BridgeTextImportTest, MapperRewritesTheInput) {
  static std::string target;
  target = folder_ / "mapped.csv";
  WriteText(target, "a\n1\n");
  auto mapper = [](char path[260]) {
    if (std::string(path) == "C:\\data\\mapped.csv") std::snprintf(path, 260, "%s", target.c_str());
  };
  EXPECT_EQ(RunImport("C:\\data\\mapped.csv", exchangePath_.c_str(), mapper, 0, 0, 0, nullptr,
                      nullptr),
            1);
  const std::string tooLong(300, 'x');
  EXPECT_EQ(RunImport((tooLong + ".csv").c_str(), exchangePath_.c_str(), mapper, 0, 0, 0, nullptr,
                      nullptr),
            0);
}

}  // namespace
}  // namespace verdal::sqlbridge
