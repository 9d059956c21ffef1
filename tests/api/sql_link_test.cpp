// A database linked to a table of a real SQL server: SQLite over ODBC (no server), PostgreSQL over
// ODBC, MariaDB over ODBC and MariaDB through the MySQL gateway. Every change goes to the table
// first and is read back with the server's own client; a refusal leaves memory as it was, with
// the server's words shown through the user interface.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <unistd.h>
#include <string>
#include <vector>

#include "field_helpers.h"
#include "import_host.h"
#include "scripted_ui.h"
#include "support/sql_servers.h"
#include "temp_folder.h"
#include "verdal.h"

namespace {

using verdal::test_support::SqlServerInfo;

enum Backend { kSqlite, kPostgres, kMariaOdbc, kMariaGate };
const char* const kNames[] = {"SqliteOdbc", "PostgresOdbc", "MariaDbOdbc", "MariaDbGate"};

// What the user interface was shown, title and text.
std::vector<std::string> shown;
int32_t RecordMessage(intptr_t, VerdalWindow, const char* title, const char* text, int32_t, int32_t,
                      int32_t answer) {
  shown.push_back(std::string(title) + " " + text);
  return answer;
}

std::string Shell(const std::string& command) {
  std::string out;
  if (FILE* p = popen(command.c_str(), "r")) {
    char buffer[512];
    while (fgets(buffer, sizeof buffer, p) != nullptr) out += buffer;
    pclose(p);
  }
  return out;
}

class SqlLink : public ::testing::TestWithParam<Backend> {
 protected:
  void SetUp() override {
    backend = GetParam();
    if (backend != kSqlite) SQL_SERVER_OR_SKIP(backend == kPostgres ? "pg" : "mariadb", server);
    const char* serial = backend == kSqlite     ? "INTEGER PRIMARY KEY AUTOINCREMENT"
                         : backend == kPostgres ? "SERIAL PRIMARY KEY"
                                                : "INTEGER AUTO_INCREMENT PRIMARY KEY";
    // Tests run side by side against one server: each process has a table of its own.
    table = "items" + std::to_string(getpid());
    Sql("DROP TABLE IF EXISTS " + table);
    Sql("CREATE TABLE " + table + " (id " + serial +
        ", name VARCHAR(10) NOT NULL UNIQUE, price NUMERIC(8,2), qty INTEGER DEFAULT 42, code INTEGER)");
    Sql("INSERT INTO " + table + " (name, price, qty, code) VALUES ('Anna', 1.5, 1, 10), ('Bert', 2.25, 2, 20)");
    std::string definition = "[ODBC_IMPORT]\nODBC_TABLE=" + table + "\nIDENTFIELD=id\nIMPORT_TYPE=3\n";
    if (backend == kSqlite) definition += "ODBC_CONNECT=Driver=SQLite3;Database=" + (dir / "shop.db") + "\n";
    else if (backend == kMariaGate)
      definition += "MYSQL_SOCKET=" + server.socket + "\nMYSQL_USER=" + server.user + "\nMYSQL_PASSWORD=" +
                    server.password + "\nMYSQL_DATABASE=" + server.database + "\n";
    else definition += "ODBC_CONNECT=" + server.odbc + "\n";
    WriteText(dir / "items.imp", definition);
    appName = "verdal-test-" + std::to_string(getpid());
    VERDAL_SetApplicationName(appName.c_str());
    ui.messageBox = RecordMessage;
    VERDAL_SetUserInterface(&ui);
    shown.clear();
    db = OpenMemoryDatabase();
    ASSERT_EQ(VERDAL_Import(db, (dir / "items.imp").c_str(), 0, nullptr, nullptr, 0, 0, nullptr, nullptr,
                            0, nullptr, nullptr, 0), 1) << VERDAL_GetLastError();
  }
  void TearDown() override {
    if (db != 0) VERDAL_CloseDB(db);
    if (!table.empty()) Sql("DROP TABLE IF EXISTS " + table);
    VERDAL_SetUserInterface(nullptr);
  }

  // A statement through the server's own command-line client; its rows tab-separated.
  std::string Sql(const std::string& statement) {
    std::string quoted = "'";
    for (char c : statement) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    quoted += "'";
    if (backend == kSqlite) return Shell("sqlite3 -separator '\t' " + (dir / "shop.db") + " " + quoted);
    if (backend == kPostgres)
      return Shell("PGPASSWORD=" + server.password + " psql -X -q -At -F '\t' -h " + server.socket + " -p " +
                 std::to_string(server.port) + " -U " + server.user + " -d " + server.database + " -c " + quoted);
    return Shell("mariadb -N -B --socket=" + server.socket + " -u " + server.user + " -p" + server.password + " " +
               server.database + " -e " + quoted);
  }
  std::string Table() { return Sql("SELECT id, name, price, qty FROM " + table + " ORDER BY id"); }
  int32_t Cursor(int32_t index) {
    int32_t count = 0, *cursors = nullptr;
    VERDAL_GetCategoryChildList(db, VERDAL_CURSOR_ROOT, 0, 0, 1, 0, &count, &cursors, 3, nullptr, 0);
    const int32_t cursor = index < count ? cursors[index] : -1;
    VERDAL_GetCategoryDeleteChildList(cursors);
    return cursor;
  }
  int32_t Set(int32_t field, const char* value, int32_t cursor) {
    char error[1024] = {};
    return VERDAL_SetData(db, field, value, cursor, 0, error, kWindow);
  }

  static inline const VerdalWindow kWindow = reinterpret_cast<VerdalWindow>(1);
  Backend backend = kSqlite;
  std::string table;
  std::string appName;
  SqlServerInfo server;
  TempFolder dir;
  VerdalUserInterface ui{};
  VerdalHandle db = 0;
};

// Fields id, name, price, qty, code in the order of the table.
enum { kId, kName, kPrice, kQty, kCode };

}  // namespace

TEST_P(SqlLink, ChangesGoToTheTableFirst) {
  EXPECT_EQ(Outline(db), "1|Anna|1.50|1|10\n2|Bert|2.25|2|20\n");
  // A new record takes the server's key and the number the server filled in.
  const int32_t carl = VERDAL_AddRecord(db, VERDAL_CURSOR_ROOT, "", 0, "Carl", kName, 0, kWindow);
  ASSERT_GE(carl, 0) << VERDAL_GetLastError() << " " << (shown.empty() ? "" : shown.back());
  EXPECT_STREQ(VERDAL_GetData(db, kId, carl, 1, 0), "3");
  EXPECT_STREQ(VERDAL_GetData(db, kQty, carl, 1, 0), "42");
  EXPECT_EQ(Set(kPrice, "3,5", carl), 1);
  EXPECT_EQ(Set(kName, "Bertram", Cursor(1)), 1);
  EXPECT_EQ(VERDAL_DeleteRecord(db, Cursor(0), 0, 1, kWindow, 1), 1);
  EXPECT_EQ(Table(), backend == kSqlite ? "2\tBertram\t2.25\t2\n3\tCarl\t3.5\t42\n"
                                      : "2\tBertram\t2.25\t2\n3\tCarl\t3.50\t42\n");
  EXPECT_TRUE(shown.empty()) << shown.front();
}

TEST_P(SqlLink, RefusalsLeaveMemoryAsItWas) {
  const std::string before = Outline(db), rows = Table();
  // A unique violation at a change, and a value too long where the server checks lengths.
  EXPECT_EQ(Set(kName, "Anna", Cursor(1)), 0);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_SQL_UPDATE);
  ASSERT_EQ(shown.size(), 1u);
  EXPECT_EQ(shown[0].rfind("Fehler beim \xC4ndern des Datenfeldes: ", 0), 0u) << shown[0];
  EXPECT_GT(shown[0].size(), 40u);  // the server's words follow the title
  if (backend != kSqlite) {
    EXPECT_EQ(Set(kName, "far too long a name", Cursor(1)), 0);
    EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_SQL_UPDATE);
  }
  // A unique violation at an insertion: the record is gone from memory.
  EXPECT_EQ(VERDAL_AddRecord(db, VERDAL_CURSOR_ROOT, "", 0, "Anna", kName, 0, kWindow), -1);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_SQL_INSERT);
  EXPECT_EQ(shown.back().rfind("Fehler beim Einf\xFCgen des Datensatzes: ", 0), 0u) << shown.back();
  EXPECT_EQ(Outline(db), before);
  EXPECT_EQ(Table(), rows);

  // A row the server deleted behind our back, then the connection itself.
  Sql("DELETE FROM " + table + " WHERE name = 'Bert'");
  EXPECT_EQ(Set(kPrice, "9", Cursor(1)), 0);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_SQL_UPDATE);
  // Then the link's connection itself goes: found by the application name the bridge gives it on
  // PostgreSQL, by its own id through the gateway on MariaDB.
  if (backend == kPostgres)
    Sql("SELECT pg_terminate_backend(pid) FROM pg_stat_activity WHERE application_name = '" + appName + "'");
  if (backend == kMariaGate) {
    char id[32] = {};
    VERDAL_ExecSQL(db, reinterpret_cast<intptr_t>("SELECT CONNECTION_ID()"), 0, 0, reinterpret_cast<intptr_t>(id),
                   sizeof id, 0);
    Sql(std::string("KILL ") + id);
  }
  if (backend == kPostgres || backend == kMariaGate) {
    EXPECT_EQ(VERDAL_DeleteRecord(db, Cursor(0), 0, 1, kWindow, 1), 0);
    EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_SQL_DELETE);
    EXPECT_EQ(shown.back().rfind("Fehler beim L\xF6schen des Datensatzes: ", 0), 0u) << shown.back();
    EXPECT_EQ(Outline(db), before);
  }
}

TEST_P(SqlLink, AReplacementGoesThroughTheTableAndPassesRowsItRefuses) {
  {
    ScriptedUi scripted;
    MakeOption(scripted, db, VERDAL_OPTION_REPLACE, "Gleich", {"name"}, [](const VerdalSheet* s) {
      ::Set(s, PageWith(s, "Geben Sie hier den Ersetzungstext ein:"), "Geben Sie hier den Ersetzungstext ein:",
                 "Zed");
    });
  }
  VERDAL_SetUserInterface(&ui);
  // The names are unique in the table: the first row takes the text, the second is refused.
  const int32_t rows[] = {Cursor(0), Cursor(1)};
  EXPECT_EQ(VERDAL_ExecAction(db, VERDAL_OPTION_REPLACE, "Gleich", 2, rows), 1);
  EXPECT_EQ(Sql("SELECT name FROM " + table + " ORDER BY id"), "Zed\nBert\n");
  EXPECT_STREQ(VERDAL_GetData(db, kName, rows[0], 1, 0), "Zed");
  EXPECT_STREQ(VERDAL_GetData(db, kName, rows[1], 1, 0), "Bert");
}

TEST_P(SqlLink, ExecSqlOnlyOnMySqlLinksAndTruncationIsTold) {
  char first[64] = {};
  int32_t rows = -1;
  const char* params[] = {"Bert"};
  const int32_t result = VERDAL_ExecSQL(db, reinterpret_cast<intptr_t>(("SELECT price FROM " + table + " WHERE name = ?").c_str()),
                                        reinterpret_cast<intptr_t>(params), 1, reinterpret_cast<intptr_t>(first),
                                        sizeof first, reinterpret_cast<intptr_t>(&rows));
  EXPECT_EQ(VERDAL_GetLastError(), 0);
  if (backend != kMariaGate) {
    EXPECT_EQ(result, 0);
    return;
  }
  EXPECT_EQ(result, 1);
  EXPECT_STREQ(first, "2.25");
  // A server that cuts texts instead of refusing them: the value stays whole in memory, and the
  // user is told both lengths.
  ASSERT_EQ(VERDAL_ExecSQL(db, reinterpret_cast<intptr_t>("SET SESSION sql_mode = ''"), 0, 0, 0, 0, 0), 1);
  EXPECT_EQ(Set(kName, "Bert the long", Cursor(1)), 1);
  EXPECT_STREQ(VERDAL_GetData(db, kName, Cursor(1), 1, 0), "Bert the long");
  ASSERT_FALSE(shown.empty());
  EXPECT_NE(shown.back().find("Es konnten nur 10 von 13 Zeichen geschrieben werden"), std::string::npos) << shown.back();
}

INSTANTIATE_TEST_SUITE_P(Backends, SqlLink, ::testing::Values(kSqlite, kPostgres, kMariaOdbc, kMariaGate),
                         [](const ::testing::TestParamInfo<Backend>& p) { return kNames[p.param]; });

TEST(SqlLinkRefusals, BadDefinitionsFailCleanly) {
  TempFolder dir;
  VerdalHandle db = OpenMemoryDatabase();
  AddField(db, "Name", 0);
  VERDAL_AddRecord(db, VERDAL_CURSOR_ROOT, "", 0, "kept", 0, 0, nullptr);
  std::vector<std::string> definitions = {
      "ODBC_CONNECT=Driver=SQLite3;Database=" + (dir / "none/x.db") + "\nODBC_TABLE=items\n",
      "ODBC_CONNECT=Driver=NoSuchDriver;Database=x\nODBC_TABLE=items\n",
      "ODBC_CONNECT=Driver=SQLite3;Database=" + (dir / "empty.db") + "\nODBC_TABLE=missing_table\n"};
  SqlServerInfo pg, maria;
  if (verdal::test_support::SqlServer("pg", pg)) {
    std::string wrong = pg.odbc.substr(0, pg.odbc.find("Pwd=")) + "Pwd=wrong";
    definitions.push_back("ODBC_CONNECT=" + wrong + "\nODBC_TABLE=items\n");
  }
  if (verdal::test_support::SqlServer("mariadb", maria))
    definitions.push_back("MYSQL_SOCKET=" + maria.socket + "\nMYSQL_USER=" + maria.user +
                          "\nMYSQL_PASSWORD=wrong\nMYSQL_DATABASE=" + maria.database + "\nODBC_TABLE=items\n");
  for (const std::string& d : definitions) {
    WriteText(dir / "bad.imp", "[ODBC_IMPORT]\nIDENTFIELD=id\nIMPORT_TYPE=3\n" + d);
    EXPECT_EQ(VERDAL_Import(db, (dir / "bad.imp").c_str(), 0, nullptr, nullptr, 0, 0, nullptr, nullptr, 0,
                            nullptr, nullptr, 0), 0) << d;
    EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_IMPORT) << d;
    EXPECT_EQ(Outline(db), "kept\n");
  }
  VERDAL_CloseDB(db);
}
