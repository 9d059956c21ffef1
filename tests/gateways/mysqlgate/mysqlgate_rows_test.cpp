// Writing through a linked table: a run of MySQLNewRec calls, MySQLUpdateRec, MySQLDelRec, the
// read-back, the host's statements, and the server's refusals in its own words.
#include <cstdio>
#include <cstring>
#include <vector>

#include "exchange/import_exchange.h"
#include "gateways/mysqlgate/mysqlgate_fixture.h"
#include "io/fileex.h"
#include "mysqlgate.h"

namespace {

constexpr int32_t kErrorSize = 1024;

class MySQLGateRowsTest : public MySQLGateTest {
 protected:
  void SetUp() override {
    MySQLGateTest::SetUp();
    if (IsSkipped() || HasFatalFailure()) return;
    Sql("CREATE TABLE `" + table_ +
        "` (id INT AUTO_INCREMENT PRIMARY KEY, name VARCHAR(8) NOT NULL UNIQUE,"
        " qty INT DEFAULT 7, born DATE, seen DATETIME, at TIME, price DECIMAL(8,2))"
        " AUTO_INCREMENT=100");
    const std::string exchange = folder_ / "x.tmp";
    ASSERT_EQ(MySQLSelectInfo(Definition("IDENTFIELD=id\nIMPORT_TYPE=3\n").c_str(),
                              exchange.c_str(), nullptr, 0, 0, nullptr, nullptr),
              1);
    verdal::TFileEx file;
    ASSERT_TRUE(file.Open(exchange.c_str(), verdal::TFileEx::kRead));
    verdal::exchange::ImportHeader header;
    verdal::exchange::ReadImportHeader(file, header);
    link_ = header.connection;
    ASSERT_NE(link_, 0);
  }
  void TearDown() override {
    if (link_ != 0) MySQLDeleteCon(link_);
    MySQLGateTest::TearDown();
  }

  // One row by a run of calls, as the engine makes it: (field, type word, value) in order.
  struct Value {
    const char* field;
    const char* type;
    const char* value;
  };
  int32_t Insert(const std::vector<Value>& values, int32_t& key) {
    key = -1;
    for (size_t i = 0; i < values.size(); ++i) {
      error_[0] = 0;
      if (!MySQLNewRec(link_, db(), table(), "id", values[i].type, values[i].value, values[i].field,
                       i == 0, i + 1 == values.size(), error_, kErrorSize, &key)) {
        return 0;
      }
    }
    return 1;
  }
  int32_t Update(int32_t key, const Value& v) {
    error_[0] = 0;
    return MySQLUpdateRec(link_, db(), table(), "id", key, v.type, v.value, v.field, 1, 1, error_,
                          kErrorSize);
  }
  // The column's value as the gateway reads it back, "(null)" for NULL, "(failed)" on failure.
  std::string ReadBack(const char* field, int32_t key) {
    const char* value = "unset";
    if (!MySQLGetFieldValue(link_, db(), table(), field, "id", key, &value)) return "(failed)";
    return value == nullptr ? "(null)" : value;
  }
  const char* db() const { return server_.database.c_str(); }
  const char* table() const { return table_.c_str(); }
  std::string Column(const char* column, int32_t key) {
    return Scalar(std::string("SELECT `") + column + "` FROM `" + table_ +
                  "` WHERE id = " + std::to_string(key));
  }

  int32_t link_ = 0;
  char error_[kErrorSize] = {};
};

TEST_F(MySQLGateRowsTest, NewRowTakesTheCounterAndServerDefaults) {
  int32_t key;
  ASSERT_EQ(Insert({{"name", "text", "K\xE4se"},
                    {"qty", "", ""},
                    {"born", "date", "24.12.2023.0.0.0.0"},
                    {"seen", "datetime", "1.2.2024.3.4.5.0"},
                    {"at", "time", "0.0.0.23.59.58.0"},
                    {"price", "", "12.50"}},
                   key),
            1)
      << error_;
  EXPECT_EQ(key, 100);
  EXPECT_STREQ(error_, "");
  const struct {
    const char* column;
    const char* server;    // what the C client sees, UTF-8
    const char* readBack;  // what the gateway gives the engine, code page 1252
  } expected[] = {
      {"name", "Käse", "K\xE4se"},
      {"qty", "7", "7"},
      {"born", "2023-12-24", "24.12.2023.0.0.0.0"},
      {"seen", "2024-02-01 03:04:05", "1.2.2024.3.4.5.0"},
      {"at", "23:59:58", "0.0.0.23.59.58.0"},
      {"price", "12.50", "12.50"},
  };
  for (const auto& e : expected) {
    SCOPED_TRACE(e.column);
    EXPECT_EQ(Column(e.column, key), e.server);
    EXPECT_EQ(ReadBack(e.column, key), e.readBack);
  }
  ASSERT_EQ(Insert({{"name", "text", "zwei"}}, key), 1) << error_;
  EXPECT_EQ(key, 101);
  EXPECT_EQ(ReadBack("born", key), "(null)");
  EXPECT_EQ(ReadBack("name", 999), "(failed)");
}

TEST_F(MySQLGateRowsTest, UpdateAndDeleteReachTheServer) {
  Sql("INSERT INTO `" + table_ + "` (id, name, qty, born) VALUES (5, 'a', 1, '2000-01-01')");
  const struct {
    Value value;
    const char* server;
  } cases[] = {
      {{"name", "text", "\xC4pfel"}, "Äpfel"},
      {{"name", "text", "\xC4pfel"}, "Äpfel"},  // unchanged still finds its row
      {{"qty", "", "42"}, "42"},
      {{"qty", "", ""}, "NULL"},
      {{"born", "date", "29.2.2024.0.0.0.0"}, "2024-02-29"},
      {{"born", "date", ""}, "NULL"},
      {{"price", "", "3.25"}, "3.25"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.value.field) + "=" + c.value.value);
    EXPECT_EQ(Update(5, c.value), 1) << error_;
    EXPECT_EQ(Column(c.value.field, 5), c.server);
  }
  // A lenient server cuts a long text and says so; the call succeeds with its note.
  const char* lenient = "SET SESSION sql_mode = ''";
  ASSERT_EQ(MySQLExecuteSQL(link_, reinterpret_cast<intptr_t>(lenient), 0, 0, 0, 0, 0), 1);
  EXPECT_EQ(Update(5, {"name", "text", "much too long"}), 1);
  EXPECT_NE(std::strstr(error_, "truncated"), nullptr) << error_;
  EXPECT_EQ(ReadBack("name", 5), "much too");

  EXPECT_EQ(Update(6, {"qty", "", "1"}), 0);
  EXPECT_NE(std::strstr(error_, "no row"), nullptr) << error_;

  error_[0] = 0;
  EXPECT_EQ(MySQLDelRec(link_, db(), table(), "id", 5, error_, kErrorSize), 1) << error_;
  EXPECT_EQ(Column("id", 5), "(none)");
}

TEST_F(MySQLGateRowsTest, RefusalsGiveTheServersWords) {
  Sql("INSERT INTO `" + table_ + "` (id, name) VALUES (5, 'taken')");
  int32_t key;
  const struct {
    const char* what;
    std::vector<Value> row;
    const char* words;
  } cases[] = {
      {"duplicate key", {{"name", "text", "taken"}, {"qty", "", "1"}}, "Duplicate entry"},
      {"value too long", {{"name", "text", "far too long"}}, "too long"},
      {"no such column", {{"name", "text", "x"}, {"nosuch", "", "1"}}, "Unknown column"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(Insert(c.row, key), 0);
    EXPECT_NE(std::strstr(error_, c.words), nullptr) << error_;
  }
  EXPECT_EQ(Update(5, {"name", "", ""}), 0);  // NOT NULL
  EXPECT_NE(std::strstr(error_, "cannot be null"), nullptr) << error_;
  EXPECT_EQ(Scalar("SELECT COUNT(*) FROM `" + table_ + "`"), "1");

  // The words are cut to the buffer.
  char small[12];
  EXPECT_EQ(
      MySQLUpdateRec(link_, db(), table(), "id", 5, "", "", "name", 1, 1, small, sizeof small), 0);
  EXPECT_EQ(std::strlen(small), sizeof small - 1);

  // A connection the server has dropped fails with words, and so does one never opened.
  char id[32] = {};
  const char* ask = "SELECT CONNECTION_ID()";
  ASSERT_EQ(MySQLExecuteSQL(link_, reinterpret_cast<intptr_t>(ask), 0, 0,
                            reinterpret_cast<intptr_t>(id), sizeof id, 0),
            1);
  Sql(std::string("KILL ") + id);
  EXPECT_EQ(Update(5, {"qty", "", "2"}), 0);
  EXPECT_STRNE(error_, "");
  EXPECT_EQ(MySQLDelRec(link_ + 1000, db(), table(), "id", 5, error_, kErrorSize), 0);
  EXPECT_STRNE(error_, "");
}

TEST_F(MySQLGateRowsTest, ExecuteSqlBindsParameters) {
  const struct {
    const char* sql;
    std::vector<const char*> params;
    int32_t result;
    const char* first;  // the first value, or the server's words on failure
    int32_t affected;
  } cases[] = {
      {"INSERT INTO `%s` (name, qty) VALUES (?, ?), (?, ?)",
       {"a'b", "3", "\xFC", nullptr},
       1,
       "",
       2},
      {"SELECT qty FROM `%s` WHERE name = ?", {"a'b"}, 1, "3", 1},
      {"SELECT name FROM `%s` WHERE qty IS NULL", {}, 1, "\xFC", 1},
      {"UPDATE `%s` SET qty = ? WHERE qty = ?", {"4", "3"}, 1, "", 1},
      {"SELECT SUM(qty) FROM `%s`", {}, 1, "4", 1},
      {"SELECT ? FROM `%s`",
       {"x", "y"},
       0,
       "the statement has 1 parameters, but 2 values were given",
       0},
      {"SELEKT 1 FROM `%s`", {}, 0, "You have an error in your SQL syntax", 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.sql);
    char sql[256];
    std::snprintf(sql, sizeof sql, c.sql, table_.c_str());
    char first[128] = "unset";
    int32_t affected = -1;
    EXPECT_EQ(
        MySQLExecuteSQL(link_, reinterpret_cast<intptr_t>(sql),
                        reinterpret_cast<intptr_t>(c.params.data()),
                        static_cast<intptr_t>(c.params.size()), reinterpret_cast<intptr_t>(first),
                        sizeof first, reinterpret_cast<intptr_t>(&affected)),
        c.result);
    EXPECT_EQ(std::string(first).substr(0, std::strlen(c.first)), c.first);
    EXPECT_EQ(affected, c.affected);
  }
}

}  // namespace
