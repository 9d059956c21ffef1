#include "odbc_values.h"

#include <sql.h>
#include <sqlext.h>

#include <algorithm>
#include <cstdio>

#include "model/date_text.h"
#include "model/number_text.h"

namespace verdal::sqlbridge {
namespace {

// Reads up to `count` unsigned numbers divided by any non-digits; gives how many were found. The
// fraction of a second is turned into milliseconds from its first three digits.
int ReadNumbers(std::string_view text, int32_t* numbers, int count, int fractionIndex) {
  int found = 0;
  size_t i = 0;
  while (found < count) {
    while (i < text.size() && (text[i] < '0' || text[i] > '9')) ++i;
    if (i == text.size()) break;
    // Only a point introduces the fraction; "+01" after a time is its zone, not milliseconds.
    if (found == fractionIndex && (i == 0 || text[i - 1] != '.')) break;
    const size_t start = i;
    while (i < text.size() && text[i] >= '0' && text[i] <= '9') ++i;
    std::string_view digits = text.substr(start, i - start);
    if (found == fractionIndex) {
      char ms[4] = {'0', '0', '0', '\0'};
      for (size_t k = 0; k < 3 && k < digits.size(); ++k) ms[k] = digits[k];
      numbers[found++] = model::ReadInteger(ms);
    } else {
      numbers[found++] = model::ReadInteger(digits.substr(0, 9));
    }
  }
  return found;
}

void WriteSeven(const int32_t (&v)[7], std::string& out) {
  char buffer[96];
  const int n = std::snprintf(buffer, sizeof buffer, "%d.%d.%d.%d.%d.%d.%d", v[0], v[1], v[2], v[3],
                              v[4], v[5], v[6]);
  out.assign(buffer, static_cast<size_t>(n));
}

}  // namespace

bool IsIntegerType(int32_t odbcType) {
  return odbcType == SQL_INTEGER || odbcType == SQL_SMALLINT || odbcType == SQL_BIGINT ||
         odbcType == SQL_TINYINT;
}

void ExchangeType(int32_t odbcType, int32_t decimalDigits, int16_t& sqlType, int16_t& decimals) {
  decimals = -1;
  switch (odbcType) {
    case SQL_CHAR: case SQL_VARCHAR: case SQL_LONGVARCHAR:
      sqlType = static_cast<int16_t>(odbcType);
      return;
    case SQL_WCHAR: case SQL_WVARCHAR:
      sqlType = SQL_VARCHAR;
      return;
    case SQL_WLONGVARCHAR:
      sqlType = SQL_LONGVARCHAR;
      return;
    case SQL_NUMERIC: case SQL_DECIMAL: case SQL_FLOAT: case SQL_REAL: case SQL_DOUBLE:
      sqlType = static_cast<int16_t>(odbcType);
      // A float's digits are not decimals: drivers give 0 or its precision there.
      if (odbcType == SQL_NUMERIC || odbcType == SQL_DECIMAL)
        decimals = static_cast<int16_t>(std::max(0, std::min(decimalDigits, 32767)));
      return;
    case SQL_INTEGER: case SQL_SMALLINT: case SQL_BIGINT: case SQL_TINYINT:
      sqlType = static_cast<int16_t>(odbcType);
      decimals = 0;
      return;
    case SQL_BIT:
      sqlType = SQL_BIT;
      return;
    case SQL_TYPE_DATE: case SQL_DATE:
      sqlType = SQL_DATE;
      return;
    case SQL_TYPE_TIME: case SQL_TIME:
      sqlType = SQL_TIME;
      return;
    case SQL_TYPE_TIMESTAMP: case SQL_TIMESTAMP:
      sqlType = SQL_TIMESTAMP;
      return;
    case SQL_BINARY: case SQL_VARBINARY: case SQL_LONGVARBINARY:
      sqlType = static_cast<int16_t>(odbcType);
      return;
    default:
      sqlType = SQL_VARCHAR;  // anything else (GUIDs, intervals, driver types) as text
      return;
  }
}

void ToInternalValue(int16_t sqlType, std::string& value) {
  if (value.empty()) return;
  int32_t n[7] = {0, 0, 0, 0, 0, 0, 0};
  switch (sqlType) {
    case SQL_DATE: {
      int32_t d[3];
      if (ReadNumbers(value, d, 3, -1) != 3) return;
      const int32_t v[7] = {d[2], d[1], d[0], 0, 0, 0, 0};
      WriteSeven(v, value);
      return;
    }
    case SQL_TIME: {
      int32_t t[4] = {0, 0, 0, 0};
      if (ReadNumbers(value, t, 4, 3) < 3) return;
      const int32_t v[7] = {0, 0, 0, t[0], t[1], t[2], t[3]};
      WriteSeven(v, value);
      return;
    }
    case SQL_TIMESTAMP: {
      const int found = ReadNumbers(value, n, 7, 6);
      if (found < 3) return;
      const int32_t v[7] = {n[2], n[1], n[0], n[3], n[4], n[5], n[6]};
      WriteSeven(v, value);
      return;
    }
    case SQL_BIT: {
      const char c = value[0];
      if (c == 't' || c == 'T' || c == 'y' || c == 'Y') value = "1";
      else if (c == 'f' || c == 'F' || c == 'n' || c == 'N') value = "0";
      else value = model::ReadNumber(value) != 0 ? "1" : "0";
      return;
    }
    case SQL_NUMERIC: case SQL_DECIMAL: case SQL_FLOAT: case SQL_REAL: case SQL_DOUBLE:
      for (char& c : value)
        if (c == ',') c = '.';
      return;
    default:
      return;
  }
}

bool ReadSeven(std::string_view value, int32_t (&numbers)[7]) {
  if (!model::IsSevenPartValue(value)) return false;
  std::string_view parts[7];
  model::SplitText(value, '.', parts, 7);
  for (int i = 0; i < 7; ++i) numbers[i] = model::ReadInteger(parts[i]);
  return true;
}

bool SevenToIso(std::string_view value, int32_t odbcType, std::string& out, bool milliseconds) {
  int32_t v[7];
  if (!ReadSeven(value, v)) return false;
  bool date = odbcType == SQL_TYPE_DATE || odbcType == SQL_DATE;
  bool time = odbcType == SQL_TYPE_TIME || odbcType == SQL_TIME;
  if (!date && !time && odbcType != SQL_TYPE_TIMESTAMP && odbcType != SQL_TIMESTAMP) {
    time = v[0] == 0 && v[1] == 0 && v[2] == 0;
    date = !time && v[3] == 0 && v[4] == 0 && v[5] == 0 && v[6] == 0;
  }
  char buffer[112];
  int n;
  if (date) n = std::snprintf(buffer, sizeof buffer, "%04d-%02d-%02d", v[2], v[1], v[0]);
  else if (time) n = std::snprintf(buffer, sizeof buffer, "%02d:%02d:%02d", v[3], v[4], v[5]);
  else
    n = std::snprintf(buffer, sizeof buffer, "%04d-%02d-%02d %02d:%02d:%02d", v[2], v[1], v[0],
                      v[3], v[4], v[5]);
  if (milliseconds && !date && v[6] != 0)
    n += std::snprintf(buffer + n, sizeof buffer - static_cast<size_t>(n), ".%03d", v[6]);
  out.assign(buffer, static_cast<size_t>(n));
  return true;
}

ValueKind KindOfSqlType(int16_t sqlType) {
  switch (sqlType) {
    case SQL_INTEGER: case SQL_SMALLINT: case SQL_BIGINT: case SQL_TINYINT:
      return ValueKind::kInteger;
    case SQL_NUMERIC: case SQL_DECIMAL:
      return ValueKind::kDecimal;
    case SQL_FLOAT: case SQL_REAL: case SQL_DOUBLE:
      return ValueKind::kFloat;
    case SQL_BIT:
      return ValueKind::kYesNo;
    case SQL_DATE: case SQL_TYPE_DATE:
      return ValueKind::kDate;
    case SQL_TIME: case SQL_TYPE_TIME:
      return ValueKind::kTime;
    case SQL_TIMESTAMP: case SQL_TYPE_TIMESTAMP:
      return ValueKind::kTimestamp;
    default:
      return ValueKind::kText;  // text, and binary columns, whose values are always empty
  }
}

bool ReadDecimalShape(std::string_view value, int& integerDigits, int& fractionDigits) {
  size_t i = !value.empty() && value[0] == '-' ? 1 : 0;
  const size_t start = i;
  while (i < value.size() && value[i] >= '0' && value[i] <= '9') ++i;
  integerDigits = static_cast<int>(i - start);
  fractionDigits = 0;
  if (integerDigits == 0) return false;
  if (i == value.size()) return true;
  if (value[i] != '.') return false;
  const size_t point = ++i;
  while (i < value.size() && value[i] >= '0' && value[i] <= '9') ++i;
  fractionDigits = static_cast<int>(i - point);
  return i == value.size() && fractionDigits > 0;
}

}  // namespace verdal::sqlbridge
