#pragma once
// The column a table gets for an export's column on each kind of server: its type as CREATE TABLE
// spells it there, chosen from the exchange file's SQL type and what the values need, learnt by
// reading them all once before the table is made.
#include <string>

#include "export_source.h"
#include "odbc_connection.h"

namespace verdal::sqlbridge {

// What one column's values need of a table column.
struct ColumnStats {
  size_t longest = 0;         // the longest text, in characters of code page 1252
  bool allFit = true;         // every value that is not empty has its kind's internal form
  bool integral = true;       // numbers: none has a fraction
  bool fits32 = true;         // numbers: every one fits 32 bits
  int integerDigits = 0;      // numbers: the most digits before the point
  int fractionDigits = 0;     // numbers: the most digits after it
  bool milliseconds = false;  // times and timestamps: one has milliseconds

  void Add(ValueKind kind, const std::string& value);
};

struct SqlColumn {
  std::string type;  // as CREATE TABLE spells it
  ColumnType odbc;   // the ODBC type, size and decimals its values are sent as
  ValueKind kind;    // how its values are sent: text where the column's values do not all fit
};

// Text of up to 255 characters is VARCHAR(n), longer text TEXT (MariaDB: LONGTEXT beyond what
// TEXT holds); whole numbers INTEGER, or BIGINT where one needs it; decimals NUMERIC(p,s) as the
// values need it; floating numbers DOUBLE PRECISION; yes/no BOOLEAN; dates, times and timestamps
// DATE, TIME and TIMESTAMP (MariaDB: DATETIME, both with milliseconds where a value has them).
SqlColumn SqlColumnFor(OdbcConnection::Dbms dbms, const OutputColumn& column, const ColumnStats& stats);

}  // namespace verdal::sqlbridge
