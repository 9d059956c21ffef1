#include "odbc_export.h"

#include <charconv>

#include "export_source.h"
#include "export_sql_types.h"
#include "odbc_connection.h"
#include "odbc_statement.h"

namespace verdal::sqlbridge {
namespace {

bool IsTextType(SQLSMALLINT type) {
  return type == SQL_CHAR || type == SQL_VARCHAR || type == SQL_LONGVARCHAR || type == SQL_WCHAR ||
         type == SQL_WVARCHAR || type == SQL_WLONGVARCHAR;
}

// Sends one value to a column of type `target`: numbers as numbers, dates as ISO text, an empty
// value as NULL unless both it and the column are text (a driver may describe a column of another
// type as text: psqlODBC does so with booleans); what does not have its kind's form goes as text.
bool BindValue(OdbcStatement& statement, SQLUSMALLINT number, ValueKind kind, const ColumnType& target,
               const std::string& value) {
  const bool textTarget = IsTextType(target.odbcType);
  if (value.empty() && (!textTarget || kind != ValueKind::kText)) return statement.BindNull(number, target.odbcType, target.size, target.decimals);
  if (!textTarget) {
    const char* end = value.data() + value.size();
    if (kind == ValueKind::kInteger) {
      int64_t n = 0;
      if (std::from_chars(value.data(), end, n).ptr == end) return statement.BindInt64(number, n, target.odbcType);
    } else if (kind == ValueKind::kFloat) {
      double d = 0;
      if (std::from_chars(value.data(), end, d).ptr == end) return statement.BindDouble(number, d, target.odbcType);
    } else if (kind == ValueKind::kDate || kind == ValueKind::kTime || kind == ValueKind::kTimestamp) {
      std::string iso;
      if (SevenToIso(value, target.odbcType, iso, true))
        return statement.BindText(number, iso, target.odbcType, target.size, target.decimals);
    }
  }
  return statement.BindText(number, value, target.odbcType, target.size, target.decimals);
}

bool Run(OdbcConnection& connection, const std::string& sql, std::string& error) {
  OdbcStatement statement(connection.Handle());
  if (statement.ExecuteDirect(sql)) return true;
  error = statement.Error();
  return false;
}

// Reads the rows once for what their columns need.
bool LearnColumns(const std::string& exchangePath, bool categories, const ExportDefinition& definition,
                  OdbcConnection::Dbms dbms, std::vector<SqlColumn>& columns, std::string& error) {
  ExportSource source;
  if (!source.Open(exchangePath, categories, definition, error)) return false;
  std::vector<ColumnStats> stats(source.Columns().size());
  const bool read = ForEachRow(
      source,
      [&] {
        for (size_t i = 0; i < stats.size(); ++i) stats[i].Add(source.Columns()[i].kind, source.Text(i));
        return true;
      },
      error);
  if (!read) return false;
  columns.clear();
  for (size_t i = 0; i < stats.size(); ++i) columns.push_back(SqlColumnFor(dbms, source.Columns()[i], stats[i]));
  return true;
}

// The columns of an existing table that the export's columns go to, by name in any letter case.
bool MatchColumns(OdbcConnection& connection, const std::string& table, const std::vector<OutputColumn>& output,
                  std::vector<SqlColumn>& columns, std::string& error) {
  columns.clear();
  for (const OutputColumn& c : output) {
    SqlColumn column{"", {}, c.kind};
    if (!connection.FindColumn(table, c.name, column.odbc)) {
      error = "The table " + table + " has no column " + c.name + ".";
      return false;
    }
    columns.push_back(column);
  }
  return true;
}

bool InsertRows(OdbcConnection& connection, const std::string& table, ExportSource& source,
                const std::vector<SqlColumn>& columns, std::string& error) {
  std::string names, marks;
  for (const SqlColumn& c : columns) {
    names += (names.empty() ? "" : ", ") + connection.QuoteName(c.odbc.name);
    marks += marks.empty() ? "?" : ", ?";
  }
  OdbcStatement insert(connection.Handle());
  if (!insert.Prepare("INSERT INTO " + connection.QuoteTable(table) + " (" + names + ") VALUES (" + marks + ")")) {
    error = insert.Error();
    return false;
  }
  return ForEachRow(
      source,
      [&] {
        insert.Reset();
        for (size_t i = 0; i < columns.size(); ++i) {
          if (!BindValue(insert, static_cast<SQLUSMALLINT>(i + 1), columns[i].kind, columns[i].odbc, source.Text(i))) {
            error = insert.Error();
            return false;
          }
        }
        if (insert.Execute()) return true;
        error = insert.Error();
        return false;
      },
      error);
}

}  // namespace

bool WriteOdbcExport(const std::string& exchangePath, bool categories, const ExportDefinition& definition,
                     std::string& error) {
  OdbcConnection connection;
  if (!connection.Connect(definition.connect, definition.dsn, definition.user, definition.password, error))
    return false;
  ExportSource source;
  if (!source.Open(exchangePath, categories, definition, error)) return false;

  using Dbms = OdbcConnection::Dbms;
  const Dbms dbms = connection.Kind();
  // SQLite and PostgreSQL make and drop tables inside a transaction; MariaDB and MySQL commit each
  // such statement at once, so a replacement is made under another name and swapped in at the end.
  const bool ddlInTransaction = dbms == Dbms::kSqlite || dbms == Dbms::kPostgres;
  const std::string& table = definition.table;
  const bool exists = definition.tableMode != TableMode::kCreate && connection.HasTable(table);
  const bool create = definition.tableMode != TableMode::kAppend || !exists;
  const bool swap = definition.tableMode == TableMode::kReplace && exists && dbms == Dbms::kMySql;
  const std::string into = swap ? table + "~new" : table;

  std::vector<SqlColumn> columns;
  if (!(create ? LearnColumns(exchangePath, categories, definition, dbms, columns, error)
               : MatchColumns(connection, table, source.Columns(), columns, error)))
    return false;
  std::string definitions;
  for (size_t i = 0; i < columns.size(); ++i)
    definitions += (i > 0 ? ", " : "") + connection.QuoteName(source.Columns()[i].name) + " " + columns[i].type;

  if (swap && !Run(connection, "DROP TABLE IF EXISTS " + connection.QuoteTable(into), error)) return false;
  if (!connection.BeginTransaction(error)) return false;
  bool made = false;
  bool ok = (definition.tableMode != TableMode::kReplace || !exists || swap ||
             Run(connection, "DROP TABLE " + connection.QuoteTable(table), error)) &&
            (!create || (made = Run(connection, "CREATE TABLE " + connection.QuoteTable(into) + " (" + definitions + ")", error))) &&
            InsertRows(connection, into, source, columns, error);
  std::string ended;
  if (!connection.EndTransaction(ok, ended) && ok) {
    error = ended;
    ok = false;
  }
  if (!ok) {
    // What a server committed at once is undone by hand: a table this export made goes again.
    std::string ignored;
    if (made && !ddlInTransaction) Run(connection, "DROP TABLE " + connection.QuoteTable(into), ignored);
    return false;
  }
  if (!swap) return true;
  const std::string old = table + "~old";
  std::string ignored;
  Run(connection, "DROP TABLE IF EXISTS " + connection.QuoteTable(old), ignored);
  if (!Run(connection, "RENAME TABLE " + connection.QuoteTable(table) + " TO " + connection.QuoteTable(old) + ", " +
                           connection.QuoteTable(into) + " TO " + connection.QuoteTable(table),
           error)) {
    Run(connection, "DROP TABLE " + connection.QuoteTable(into), ignored);
    return false;
  }
  Run(connection, "DROP TABLE " + connection.QuoteTable(old), ignored);
  return true;
}

}  // namespace verdal::sqlbridge
