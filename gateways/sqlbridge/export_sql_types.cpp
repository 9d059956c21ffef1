#include "export_sql_types.h"

#include <algorithm>

namespace verdal::sqlbridge {
namespace {

constexpr size_t kLongestVarchar = 255;
constexpr size_t kLongestMariaDbText = 16383;  // TEXT's 65535 bytes of four-byte characters
constexpr int kMostNumericDigits = 38;         // what every server's NUMERIC takes
constexpr int kInt64Digits = 18;               // whole numbers of up to 18 digits fit 64 bits

bool FitsInt32(const std::string& value) {
  int integerDigits = 0, fractionDigits = 0;
  if (!ReadDecimalShape(value, integerDigits, fractionDigits) || integerDigits > 10) return false;
  const long long n = std::stoll(value);
  return n >= INT32_MIN && n <= INT32_MAX;
}

}  // namespace

void ColumnStats::Add(ValueKind kind, const std::string& value) {
  longest = std::max(longest, value.size());
  if (value.empty() || kind == ValueKind::kText) return;
  switch (kind) {
    case ValueKind::kInteger: case ValueKind::kDecimal: case ValueKind::kFloat: {
      int before = 0, after = 0;
      if (!ReadDecimalShape(value, before, after)) {
        allFit = false;
        return;
      }
      integerDigits = std::max(integerDigits, before);
      fractionDigits = std::max(fractionDigits, after);
      integral = integral && after == 0;
      fits32 = fits32 && after == 0 && FitsInt32(value);
      return;
    }
    case ValueKind::kYesNo:
      allFit = allFit && (value == "1" || value == "0");
      return;
    default: {
      int32_t v[7];
      if (!ReadSeven(value, v)) allFit = false;
      else milliseconds = milliseconds || v[6] != 0;
      return;
    }
  }
}

SqlColumn SqlColumnFor(OdbcConnection::Dbms dbms, const OutputColumn& column, const ColumnStats& stats) {
  using Dbms = OdbcConnection::Dbms;
  const bool mariaDb = dbms == Dbms::kMySql;
  const bool known = dbms != Dbms::kOther;
  ValueKind kind = stats.allFit ? column.kind : ValueKind::kText;
  // Whole numbers too long for 64 bits, and numbers with a fraction in an integer column, are
  // decimals; decimals too long for NUMERIC are floating.
  if (kind == ValueKind::kInteger && (!stats.integral || stats.integerDigits > kInt64Digits))
    kind = ValueKind::kDecimal;
  const int precision = std::max(1, stats.integerDigits + stats.fractionDigits);
  if (kind == ValueKind::kDecimal && precision > kMostNumericDigits) kind = ValueKind::kFloat;
  const std::string fraction = stats.milliseconds && mariaDb ? "(3)" : "";
  const SQLSMALLINT subSecond = stats.milliseconds ? 3 : 0;

  switch (kind) {
    case ValueKind::kInteger:
      return stats.fits32 ? SqlColumn{"INTEGER", {SQL_INTEGER, 10, 0, column.name}, kind}
                          : SqlColumn{"BIGINT", {SQL_BIGINT, 19, 0, column.name}, kind};
    case ValueKind::kDecimal: {
      const std::string type = "NUMERIC(" + std::to_string(precision) + "," + std::to_string(stats.fractionDigits) + ")";
      return {type, {SQL_NUMERIC, static_cast<SQLULEN>(precision), static_cast<SQLSMALLINT>(stats.fractionDigits), column.name}, kind};
    }
    case ValueKind::kFloat:
      return {"DOUBLE PRECISION", {SQL_DOUBLE, 15, 0, column.name}, kind};
    case ValueKind::kYesNo:
      return known ? SqlColumn{"BOOLEAN", {SQL_BIT, 1, 0, column.name}, kind} : SqlColumn{"SMALLINT", {SQL_SMALLINT, 5, 0, column.name}, kind};
    case ValueKind::kDate:
      return {"DATE", {SQL_TYPE_DATE, 10, 0, column.name}, kind};
    case ValueKind::kTime:
      return {"TIME" + fraction, {SQL_TYPE_TIME, 12, subSecond, column.name}, kind};
    case ValueKind::kTimestamp:
      return {(mariaDb ? "DATETIME" : "TIMESTAMP") + fraction, {SQL_TYPE_TIMESTAMP, 23, subSecond, column.name}, kind};
    case ValueKind::kText:
      break;
  }
  const size_t width = std::max<size_t>({static_cast<size_t>(std::max(column.width, 1)), stats.longest});
  std::string type = "VARCHAR(" + std::to_string(width) + ")";
  if (width > kLongestVarchar && known)
    type = !mariaDb ? "TEXT" : width > kLongestMariaDbText ? "LONGTEXT" : "TEXT";
  return {type, {SQL_WVARCHAR, width, 0, column.name}, ValueKind::kText};
}

}  // namespace verdal::sqlbridge
