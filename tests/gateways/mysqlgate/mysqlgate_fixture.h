#pragma once
// A test's own table on the throw-away MariaDB, a client connection of the test's own to set it up
// and to look at what the gateway did, and .imp definitions naming the server.
#include <gtest/gtest.h>
#include <mysql.h>

#include <fstream>
#include <string>

#include "api/temp_folder.h"
#include "support/sql_servers.h"

class MySQLGateTest : public ::testing::Test {
 protected:
  void SetUp() override {
    SQL_SERVER_OR_SKIP("mariadb", server_);
    client_ = mysql_init(nullptr);
    mysql_optionsv(client_, MYSQL_SET_CHARSET_NAME, "utf8mb4");
    ASSERT_NE(mysql_real_connect(client_, nullptr, server_.user.c_str(), server_.password.c_str(),
                                 server_.database.c_str(), 0, server_.socket.c_str(), 0),
              nullptr)
        << mysql_error(client_);
    // Tests run side by side in separate processes: each has a table of its own name.
    table_ = std::string("t_") + ::testing::UnitTest::GetInstance()->current_test_info()->name();
    Sql("DROP TABLE IF EXISTS `" + table_ + "`");
  }
  void TearDown() override {
    if (client_ == nullptr) return;
    Sql("DROP TABLE IF EXISTS `" + table_ + "`");
    mysql_close(client_);
  }

  void Sql(const std::string& sql) {
    ASSERT_EQ(mysql_query(client_, sql.c_str()), 0) << sql << ": " << mysql_error(client_);
  }
  // The first column of the first row as the server prints it (UTF-8), "NULL" for NULL, "(none)"
  // without a row.
  std::string Scalar(const std::string& sql) {
    if (mysql_query(client_, sql.c_str()) != 0)
      return std::string("error: ") + mysql_error(client_);
    MYSQL_RES* result = mysql_store_result(client_);
    if (result == nullptr) return "(no result)";
    MYSQL_ROW row = mysql_fetch_row(result);
    std::string value = row == nullptr ? "(none)" : row[0] == nullptr ? "NULL" : row[0];
    mysql_free_result(result);
    return value;
  }

  // A definition file naming the server; `extra` holds more "KEY=value" lines, which win over the
  // defaults that follow them (the first of two equal keys counts).
  std::string Definition(const std::string& extra, const std::string& name = "link.imp") {
    const std::string path = folder_ / name;
    std::ofstream out(path, std::ios::trunc);
    out << "[ODBC_IMPORT]\n"
        << extra << "MYSQL_SOCKET=" << server_.socket << "\nMYSQL_USER=" << server_.user
        << "\nMYSQL_PASSWORD=" << server_.password << "\nMYSQL_DATABASE=" << server_.database
        << "\nODBC_TABLE=" << table_ << "\n";
    return path;
  }

  verdal::test_support::SqlServerInfo server_;
  MYSQL* client_ = nullptr;
  std::string table_;
  TempFolder folder_;
};
