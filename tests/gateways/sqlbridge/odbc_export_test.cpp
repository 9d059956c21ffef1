// The export into tables of SQLite (a file through the SQLite3 ODBC driver), PostgreSQL and MariaDB
// (the tests' throw-away servers), read back with each one's own command-line client.
#include <gtest/gtest.h>

#include <unistd.h>

#include <algorithm>

#include "bridge_export.h"
#include "bridge_test_support.h"
#include "exchange/export_exchange.h"
#include "export_test_support.h"
#include "support/sql_servers.h"

namespace verdal::sqlbridge {
namespace {

using testing::WriteText;

class OdbcExportTest : public ::testing::TestWithParam<std::string> {
 protected:
  void SetUp() override {
    kind_ = GetParam();
    if (kind_ == "sqlite") {
      connect_ = "Driver=SQLite3;Database=" + (folder_ / "db.sqlite");
      client_ = "sqlite3 -separator '|' '" + (folder_ / "db.sqlite") + "'";
      return;
    }
    test_support::SqlServerInfo server;
    SQL_SERVER_OR_SKIP(kind_.c_str(), server);
    connect_ = server.odbc;
    client_ = kind_ == "pg" ? "PGPASSWORD='" + server.password + "' psql -X -q -At -F '|' -h '" + server.socket +
                                  "' -p " + std::to_string(server.port) + " -U " + server.user + " " + server.database
                            : "mariadb --no-defaults --default-character-set=utf8mb4 -N -B --socket='" + server.socket +
                                  "' -u" + server.user + " -p'" + server.password + "' " + server.database;
  }
  // The lines a query prints, '|' between columns.
  std::vector<std::string> Query(const std::string& sql) {
    WriteText(folder_ / "q.sql", sql + ";\n");
    std::string out = testing::Capture(client_ + " < '" + (folder_ / "q.sql") + "' 2>&1");
    std::replace(out.begin(), out.end(), '\t', '|');
    for (size_t at; kind_ == "mariadb" && (at = out.find("NULL")) != std::string::npos;) out.erase(at, 4);
    std::vector<std::string> lines;
    for (size_t start = 0, end; start < out.size(); start = end + 1) {
      end = out.find('\n', start);
      if (end == std::string::npos) end = out.size();
      lines.push_back(out.substr(start, end - start));
    }
    return lines;
  }
  std::string Count(const std::string& table) { return Query("SELECT COUNT(*) FROM " + table).at(0); }
  std::vector<std::string> Columns(const std::string& table) {
    return Query(kind_ == "sqlite" ? "SELECT name || ' ' || type FROM pragma_table_info('" + table + "')"
                 : kind_ == "pg"   ? "SELECT column_name || ' ' || data_type FROM information_schema.columns "
                                     "WHERE table_name = '" + table + "' ORDER BY ordinal_position"
                                   : "SELECT CONCAT(column_name, ' ', column_type) FROM information_schema.columns "
                                     "WHERE table_name = '" + table + "' AND table_schema = DATABASE() ORDER BY ordinal_position");
  }
  int32_t Export(const std::string& table, const std::string& keys) {
    WriteText(folder_ / "t.exp", "[ODBC_EXPORT]\nODBC_CONNECT=" + connect_ + "\nODBC_TABLE=" + table + "\n" + keys);
    const std::string definition = folder_ / "t.exp";
    return RunExport(definition.c_str(), exchange_.c_str(), nullptr,
                     exchange::kExportDefinitionFile | exchange::kExportCategoryColumns);
  }
  std::string Name(const std::string& name) const { return kind_ == "mariadb" ? "`" + name + "`" : "\"" + name + "\""; }
  std::string Pick(const char* sqlite, const char* pg, const char* mariaDb) const {
    return kind_ == "sqlite" ? sqlite : kind_ == "pg" ? pg : mariaDb;
  }

  TempFolder folder_;
  std::string kind_, connect_, client_;
  std::string exchange_ = folder_ / "x.tmp";
  std::string table_ = "vx_" + std::to_string(getpid());
};

TEST_P(OdbcExportTest, CreateRefuseAppendReplace) {
  testing::StandardTable().Write(exchange_);
  ASSERT_EQ(Export(table_, "EXPORT_COLUMN_NAMES=INTERNAL\n"), 1);
  const std::vector<std::string> made = Columns(table_);
  EXPECT_EQ(made, (std::vector<std::string>{
                      Pick("CAT1 VARCHAR(20)", "CAT1 character varying", "CAT1 varchar(20)"),
                      Pick("CAT2 VARCHAR(20)", "CAT2 character varying", "CAT2 varchar(20)"),
                      Pick("name VARCHAR(30)", "name character varying", "name varchar(30)"),
                      Pick("price DOUBLE PRECISION", "price double precision", "price double"),
                      Pick("qty BIGINT", "qty bigint", "qty bigint(20)"), Pick("day DATE", "day date", "day date"),
                      Pick("at TIME", "at time without time zone", "at time"),
                      Pick("stamp TIMESTAMP", "stamp timestamp without time zone", "stamp datetime(3)"),
                      Pick("ok BOOLEAN", "ok boolean", "ok tinyint(1)")}));
  const std::string length = Pick("length", "char_length", "char_length");
  const std::string rows = "SELECT " + Name("CAT1") + ", " + Name("CAT2") + ", " + length + "(name), price, qty, day, at, stamp, ok FROM " + table_;
  std::vector<std::string> values = Query(rows);
  std::sort(values.begin(), values.end());
  EXPECT_EQ(values, (std::vector<std::string>{
                        Pick("Nord|Kiel|9|1.5|3|2024-02-29|13:05:09|2024-03-01 08:09:10.250|1",
                             "Nord|Kiel|9|1.5|3|2024-02-29|13:05:09|2024-03-01 08:09:10.25|t",
                             "Nord|Kiel|9|1.5|3|2024-02-29|13:05:09|2024-03-01 08:09:10.250|1"),
                        Pick("S\xC3\xBC" "d||15|-2.25|12345678901||||0", "S\xC3\xBC" "d||15|-2.25|12345678901||||f",
                             "S\xC3\xBC" "d||15|-2.25|12345678901||||0"),
                        "||14||||||"}));
  EXPECT_EQ(Query("SELECT COUNT(*) FROM " + table_ + " WHERE name = 'Anna; \"A\"' OR name = '\xE2\x82\xAC & <b>''x''</b>'"),
            (std::vector<std::string>{"2"}));

  // CREATE leaves an existing table as it is; REPLACE that fails (two columns of one name) too.
  EXPECT_EQ(Export(table_, "EXPORT_COLUMN_NAMES=INTERNAL\n"), 0);
  EXPECT_EQ(Export(table_, "ODBC_TABLE_MODE=REPLACE\nEXPORT_FIELDS=name,name\n"), 0);
  EXPECT_EQ(Count(table_), "3");
  EXPECT_EQ(Columns(table_), made);
  ASSERT_EQ(Export(table_, "ODBC_TABLE_MODE=APPEND\nEXPORT_COLUMN_NAMES=INTERNAL\n"), 1);
  EXPECT_EQ(Count(table_), "6");
  ASSERT_EQ(Export(table_, "ODBC_TABLE_MODE=REPLACE\nEXPORT_FIELDS=ok\n"), 1);
  EXPECT_EQ(Columns(table_), (std::vector<std::string>{Pick("Region VARCHAR(20)", "Region character varying", "Region varchar(20)"),
                                                       Pick("City VARCHAR(20)", "City character varying", "City varchar(20)"),
                                                       Pick("OK BOOLEAN", "OK boolean", "OK tinyint(1)")}));
  EXPECT_EQ(Count(table_), "3");
  // APPEND makes a missing table.
  ASSERT_EQ(Export(table_ + "_new", "ODBC_TABLE_MODE=APPEND\n"), 1);
  EXPECT_EQ(Count(table_ + "_new"), "3");
  Query("DROP TABLE " + table_ + "_new");
  Query("DROP TABLE " + table_);
}

// APPEND matches a table's columns in any letter case, and all rows go in one transaction.
TEST_P(OdbcExportTest, AppendIsOneTransaction) {
  const std::string table = table_ + "_app";
  Query("CREATE TABLE " + table + " (NAME VARCHAR(40), Price NUMERIC(10,2) CHECK (Price < 100), day DATE)");
  Query("INSERT INTO " + table + " (NAME) VALUES ('first')");
  testing::ExportTable t;
  t.columns = {{"name", "Name", 12, 10}, {"price", "PRICE", 3, 10}, {"day", "Day", 9, 10}};
  t.rows = {{"ok", "", "12.50", "", "31.12.2023.0.0.0.0", ""}, {"too dear", "", "500.00", "", "", ""}};
  t.Write(exchange_);
  EXPECT_EQ(Export(table, "ODBC_TABLE_MODE=APPEND\n"), 0);
  EXPECT_EQ(Count(table), "1");
  t.rows[1] = {"cheap", "", "0.99", "", "1.1.2024.0.0.0.0", ""};
  t.Write(exchange_);
  ASSERT_EQ(Export(table, "ODBC_TABLE_MODE=APPEND\n"), 1);
  std::vector<std::string> values = Query("SELECT NAME, Price, day FROM " + table);
  std::sort(values.begin(), values.end());
  EXPECT_EQ(values, (std::vector<std::string>{"cheap|0.99|2024-01-01", "first||", "ok|12.5" + Pick("", "0", "0") + "|2023-12-31"}));
  t.columns[2].displayName = "Note";
  t.Write(exchange_);
  EXPECT_EQ(Export(table, "ODBC_TABLE_MODE=APPEND\n"), 0);
  EXPECT_EQ(Count(table), "3");
  Query("DROP TABLE " + table);
}

INSTANTIATE_TEST_SUITE_P(Servers, OdbcExportTest, ::testing::Values("sqlite", "pg", "mariadb"));

}  // namespace
}  // namespace verdal::sqlbridge
