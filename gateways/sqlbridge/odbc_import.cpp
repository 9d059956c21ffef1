#include "odbc_import.h"

#include <cerrno>
#include <cstdlib>
#include <memory>

#include "column_plan.h"
#include "connection_table.h"
#include "exchange/import_exchange.h"
#include "odbc_connection.h"
#include "odbc_statement.h"
#include "odbc_values.h"

namespace verdal::sqlbridge {
namespace {

struct SourceColumns {
  std::vector<exchange::ImportColumn> columns;
  std::vector<SQLSMALLINT> odbcTypes;
};

bool DescribeColumns(OdbcStatement& statement, SourceColumns& source, std::string& error) {
  SQLSMALLINT count = 0;
  if (!SQL_SUCCEEDED(SQLNumResultCols(statement.Handle(), &count)) || count <= 0) {
    error = count == 0 ? "The statement gives no columns." : statement.Error();
    return false;
  }
  for (SQLUSMALLINT i = 1; i <= static_cast<SQLUSMALLINT>(count); ++i) {
    SQLWCHAR name[512];
    SQLSMALLINT nameLength = 0, type = 0, digits = 0, nullable = 0;
    SQLULEN size = 0;
    if (!SQL_SUCCEEDED(SQLDescribeColW(statement.Handle(), i, name,
                                       static_cast<SQLSMALLINT>(sizeof name / sizeof name[0]),
                                       &nameLength, &type, &size, &digits, &nullable))) {
      error = statement.Error();
      return false;
    }
    exchange::ImportColumn column;
    column.name = Narrow(name, std::min<size_t>(static_cast<size_t>(std::max<SQLSMALLINT>(nameLength, 0)),
                                                sizeof name / sizeof name[0] - 1));
    ExchangeType(type, digits, column.sqlType, column.decimals);
    source.columns.push_back(std::move(column));
    source.odbcTypes.push_back(type);
  }
  return true;
}

bool ParseKey(const std::string& text, int32_t& key) {
  if (text.empty()) {
    key = -1;  // NULL: a row the engine cannot change or delete, which it knows how to refuse
    return true;
  }
  errno = 0;
  char* end = nullptr;
  const long long value = std::strtoll(text.c_str(), &end, 10);
  if (errno != 0 || *end != '\0' || value < INT32_MIN || value > INT32_MAX) return false;
  key = static_cast<int32_t>(value);
  return true;
}

}  // namespace

bool ImportOdbcSource(const ImportDefinition& definition, const ImportTarget& target,
                      std::string& error) {
  auto connection = std::make_shared<OdbcConnection>();
  if (!connection->Connect(definition.connect, definition.dsn, definition.user,
                           definition.password, error))
    return false;
  int32_t id = 0;
  bool ok = false;
  {
    OdbcStatement statement(connection->Handle());
    const std::string sql = definition.table.empty()
                                ? definition.query
                                : "SELECT * FROM " + connection->QuoteTable(definition.table);
    SourceColumns source;
    ColumnPlan plan;
    if (!statement.ExecuteDirect(sql)) {
      error = statement.Error();
      return false;
    }
    if (!DescribeColumns(statement, source, error) ||
        !plan.Make(source.columns, definition.pathColumns, target.fieldCount, target.names1,
                   target.names2, error))
      return false;
    int32_t identity = -1;
    const bool linked = definition.mode == exchange::kModeLinked;
    if (linked) {
      identity = ColumnPlan::Find(source.columns, definition.identityField);
      if (identity < 0 || !IsIntegerType(source.odbcTypes[static_cast<size_t>(identity)])) {
        error = "The identity field " + definition.identityField +
                " is no integer column of " + definition.table + ".";
        return false;
      }
      id = ConnectionTable::Instance().Add(connection);
      if (id == 0) {
        error = "No connection id is left in this process.";
        return false;
      }
    }

    exchange::ImportHeader header = plan.Header(definition);
    header.connection = id;
    header.tableName = definition.table;
    exchange::ImportExchangeWriter writer;
    if (!writer.Open(target.exchangePath.c_str(), header)) {
      error = "The exchange file " + target.exchangePath + " cannot be created.";
    } else {
      std::vector<std::string> cells(source.columns.size()), row;
      ok = true;
      for (;;) {
        const SQLRETURN rc = statement.Fetch();
        if (rc == SQL_NO_DATA) break;
        if (rc != SQL_SUCCESS || writer.Rows() == INT32_MAX) {
          error = rc != SQL_SUCCESS ? statement.Error() : "The source has more rows than an import takes.";
          ok = false;
          break;
        }
        for (size_t i = 0; i < cells.size() && ok; ++i) {
          bool isNull = false;
          if (!statement.GetText(static_cast<SQLUSMALLINT>(i + 1), cells[i], isNull)) {
            error = statement.Error();
            ok = false;
          }
          ToInternalValue(source.columns[i].sqlType, cells[i]);
        }
        int32_t key = -1;
        if (ok && identity >= 0 && !ParseKey(cells[static_cast<size_t>(identity)], key)) {
          error = "The identity value " + cells[static_cast<size_t>(identity)] +
                  " does not fit 32 bits.";
          ok = false;
        }
        if (!ok) break;
        plan.Arrange(cells, row);
        writer.WriteRow(row, key);
      }
      if (!writer.Finish() && ok) {
        error = "The exchange file " + target.exchangePath + " cannot be written.";
        ok = false;
      }
    }
  }
  if (!ok && id != 0) ConnectionTable::Instance().Remove(id);
  return ok;
}

}  // namespace verdal::sqlbridge
