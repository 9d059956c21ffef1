// MySQLSelectInfo against the throw-away MariaDB: what the exchange file holds, and that a failed
// import leaves no file and no connection.
#include <filesystem>
#include <vector>

#include "exchange/import_exchange.h"
#include "gateways/mysqlgate/mysqlgate_fixture.h"
#include "io/fileex.h"
#include "mysqlgate.h"

namespace {

using verdal::exchange::ImportHeader;

struct Exchange {
  ImportHeader header;
  std::vector<std::vector<std::string>> rows;
  std::vector<int32_t> keys;
};

Exchange ReadExchange(const std::string& path) {
  Exchange e;
  verdal::TFileEx file;
  EXPECT_TRUE(file.Open(path.c_str(), verdal::TFileEx::kRead));
  verdal::exchange::ReadImportHeader(file, e.header);
  for (int32_t r = 0; r < e.header.rowCount; ++r) {
    std::vector<std::string> cells;
    int32_t key = 0;
    verdal::exchange::ReadImportRow(file, e.header, cells, key);
    e.rows.push_back(cells);
    e.keys.push_back(key);
  }
  return e;
}

class MySQLGateImportTest : public MySQLGateTest {
 protected:
  void MakeTable() {
    Sql("CREATE TABLE `" + table_ +
        "` (id INT AUTO_INCREMENT PRIMARY KEY, name VARCHAR(40) NOT NULL, price DECIMAL(8,2),"
        " ratio DOUBLE, big BIGINT, flag BIT(1), born DATE, seen DATETIME(3), at TIME,"
        " note TEXT, raw BLOB, grp VARCHAR(10))");
    Sql("INSERT INTO `" + table_ +
        "` VALUES (5, 'Müller', 12.5, 0.25, 9000000000, b'1', '2023-12-24',"
        " '2024-02-29 13:14:15.678', '08:09:10', 'a\nb', x'41ff', 'Obst'),"
        " (9, 'Ærø €', NULL, NULL, NULL, b'0', NULL, NULL, NULL, NULL, NULL, 'Obst')");
  }
};

TEST_F(MySQLGateImportTest, LinkedModeWritesTypesValuesKeysAndKeepsTheConnection) {
  MakeTable();
  const std::string exchange = folder_ / "x.tmp";
  ASSERT_EQ(MySQLSelectInfo(Definition("IDENTFIELD=id\nIMPORT_TYPE=3\nPATH_COLUMNS=grp\n"
                                       "FREE_COLUMN=note\n")
                                .c_str(),
                            exchange.c_str(), nullptr, 0, 0, nullptr, nullptr),
            1);
  const Exchange e = ReadExchange(exchange);
  EXPECT_EQ(e.header.backEnd, 1);
  EXPECT_EQ(e.header.mode, 3);
  EXPECT_EQ(e.header.databaseName, server_.database);
  EXPECT_EQ(e.header.tableName, table_);
  EXPECT_EQ(e.header.identityField, "id");
  EXPECT_EQ(e.header.freeColumn, "note");
  EXPECT_EQ(e.header.pathColumns, 1);
  EXPECT_NE(e.header.connection, 0);

  struct Column {
    const char* name;
    int16_t sqlType, decimals;
    std::string first, second;  // rows 5 and 9, in code page 1252
  };
  const Column expected[] = {
      {"grp", 12, -1, "Obst", "Obst"},  // the path column comes first
      {"id", 4, 0, "5", "9"},
      {"name", 12, -1, "M\xFCller", "\xC6r\xF8 \x80"},
      {"price", 3, 2, "12.50", ""},
      {"ratio", 8, -1, "0.25", ""},
      {"big", -5, 0, "9000000000", ""},
      {"flag", -7, -1, "1", "0"},
      {"born", 9, -1, "24.12.2023.0.0.0.0", ""},
      {"seen", 11, -1, "29.2.2024.13.14.15.678", ""},
      {"at", 10, -1, "0.0.0.8.9.10.0", ""},
      {"note", -1, -1, "a\nb", ""},
      {"raw", -4, -1, "A\xFF", ""},  // bytes stay bytes
  };
  ASSERT_EQ(e.header.columns.size(), std::size(expected));
  ASSERT_EQ(e.rows.size(), 2u);
  for (size_t c = 0; c < std::size(expected); ++c) {
    SCOPED_TRACE(expected[c].name);
    EXPECT_EQ(e.header.columns[c].name, expected[c].name);
    EXPECT_EQ(e.header.columns[c].sqlType, expected[c].sqlType);
    EXPECT_EQ(e.header.columns[c].decimals, expected[c].decimals);
    EXPECT_EQ(e.rows[0][c], expected[c].first);
    EXPECT_EQ(e.rows[1][c], expected[c].second);
  }
  EXPECT_EQ((std::vector<int32_t>{5, 9}), e.keys);

  // The link's connection is live until it is closed, and closes once.
  char first[64] = {};
  const char* statement = "SELECT COUNT(*) FROM information_schema.tables";
  EXPECT_EQ(MySQLExecuteSQL(e.header.connection, reinterpret_cast<intptr_t>(statement), 0, 0,
                            reinterpret_cast<intptr_t>(first), sizeof first, 0),
            1);
  EXPECT_EQ(MySQLDeleteCon(e.header.connection), 1);
  EXPECT_EQ(MySQLDeleteCon(e.header.connection), 0);
}

TEST_F(MySQLGateImportTest, ChosenColumnsAreRenamedAndOtherModesKeepNoConnection) {
  MakeTable();
  const std::string exchange = folder_ / "x.tmp";
  const char* names1[] = {"NAME", "Id", "nosuch"};
  const char* names2[] = {"Kunde", "", "x"};
  ASSERT_EQ(MySQLSelectInfo(Definition("IMPORT_TYPE=0\n").c_str(), exchange.c_str(), nullptr, 0, 3,
                            names1, names2),
            1);
  const Exchange e = ReadExchange(exchange);
  EXPECT_EQ(e.header.connection, 0);
  EXPECT_EQ(e.header.mode, 0);
  ASSERT_EQ(e.header.columns.size(), 2u);
  EXPECT_EQ(e.header.columns[0].name, "Kunde");
  EXPECT_EQ(e.header.columns[1].name, "id");
  EXPECT_EQ((std::vector<std::string>{"M\xFCller", "5"}), e.rows[0]);
  EXPECT_EQ((std::vector<int32_t>{-1, -1}), e.keys);
}

TEST_F(MySQLGateImportTest, FailedImportsLeaveNoFile) {
  MakeTable();
  const struct {
    const char* what;
    std::string definition;
  } cases[] = {
      {"wrong password", Definition("MYSQL_PASSWORD=not-it\nIDENTFIELD=id\nIMPORT_TYPE=3\n", "a")},
      {"missing table", Definition("ODBC_TABLE=nosuch\nIDENTFIELD=id\nIMPORT_TYPE=3\n", "b")},
      {"missing key column", Definition("IDENTFIELD=nosuch\nIMPORT_TYPE=3\n", "c")},
      {"linked without key column", Definition("IMPORT_TYPE=3\n", "d")},
      {"no such server", Definition("MYSQL_SOCKET=" + folder_ / "none.sock\n", "e")},
      {"missing definition", folder_ / "none.imp"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    const std::string exchange = folder_ / "x.tmp";
    EXPECT_EQ(
        MySQLSelectInfo(c.definition.c_str(), exchange.c_str(), nullptr, 0, 0, nullptr, nullptr),
        0);
    EXPECT_FALSE(std::filesystem::exists(exchange));
  }
}

}  // namespace
