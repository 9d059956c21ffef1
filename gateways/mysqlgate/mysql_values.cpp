#include "mysql_values.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "model/date_text.h"
#include "model/number_text.h"
#include "platform/cp1252.h"

namespace verdal::mysqlgate {
namespace {

constexpr unsigned kBinaryCharset = 63;  // the "binary" collation: bytes, not text
constexpr unsigned kNotFixedDecimals = 31;

}  // namespace

std::string Utf8Of(const char* cp1252) {
  std::string out;
  if (cp1252 != nullptr) cp1252::ToUtf8(cp1252, out);
  return out;
}

std::string Cp1252Of(std::string_view utf8) {
  std::string out;
  cp1252::FromUtf8(utf8, out);
  return out;
}

std::string QuoteName(std::string_view utf8) {
  std::string out = "`";
  for (char c : utf8) {
    if (c == '`') out += '`';
    out += c;
  }
  out += '`';
  return out;
}

std::string QualifiedTable(const char* database, const char* table) {
  const std::string name = QuoteName(Utf8Of(table));
  if (database == nullptr || *database == 0) return name;
  return QuoteName(Utf8Of(database)) + "." + name;
}

void CopyOut(std::string_view text, char* buffer, int32_t size) {
  if (buffer == nullptr || size <= 0) return;
  const size_t n = std::min(text.size(), static_cast<size_t>(size) - 1);
  std::memcpy(buffer, text.data(), n);
  buffer[n] = 0;
}

bool SevenToServerText(std::string_view typeWord, std::string_view value, std::string& out) {
  std::string_view parts[7];
  if (model::SplitText(value, '.', parts, 7) != 7) return false;
  int v[7];
  for (int i = 0; i < 7; ++i) v[i] = model::ReadInteger(parts[i]);
  char date[48], time[48];
  std::snprintf(date, sizeof date, "%04d-%02d-%02d", v[2], v[1], v[0]);
  // Milliseconds only when there are some, so that a column without fractions takes the value
  // without a note about rounding.
  if (v[6] != 0) {
    std::snprintf(time, sizeof time, "%02d:%02d:%02d.%03d", v[3], v[4], v[5], v[6]);
  } else {
    std::snprintf(time, sizeof time, "%02d:%02d:%02d", v[3], v[4], v[5]);
  }
  if (typeWord == "date")
    out = date;
  else if (typeWord == "time")
    out = time;
  else
    out = std::string(date) + " " + time;
  return true;
}

std::string SevenOf(const MYSQL_TIME& t) {
  const bool isTime = t.time_type == MYSQL_TIMESTAMP_TIME;
  if (!isTime && t.year == 0 && t.month == 0 && t.day == 0) return {};
  // A time column may exceed a day; its whole hours are kept.
  const unsigned hour = isTime ? t.hour + t.day * 24 : t.hour;
  char buffer[96];
  const int n = std::snprintf(buffer, sizeof buffer, "%u.%u.%u.%s%u.%u.%u.%lu", isTime ? 0 : t.day,
                              isTime ? 0 : t.month, isTime ? 0 : t.year, t.neg ? "-" : "", hour,
                              t.minute, t.second, t.second_part / 1000);
  return std::string(buffer, static_cast<size_t>(n));
}

bool IsTemporal(enum_field_types type) {
  switch (type) {
    case MYSQL_TYPE_DATE:
    case MYSQL_TYPE_NEWDATE:
    case MYSQL_TYPE_TIME:
    case MYSQL_TYPE_DATETIME:
    case MYSQL_TYPE_TIMESTAMP:
      return true;
    default:
      return false;
  }
}

int16_t SqlTypeOf(const MYSQL_FIELD& field, int16_t& decimals) {
  const bool binary = field.charsetnr == kBinaryCharset;
  decimals = -1;
  switch (field.type) {
    case MYSQL_TYPE_DECIMAL:
    case MYSQL_TYPE_NEWDECIMAL:
      decimals = static_cast<int16_t>(field.decimals);
      return 3;
    case MYSQL_TYPE_FLOAT:
    case MYSQL_TYPE_DOUBLE:
      if (field.decimals < kNotFixedDecimals) decimals = static_cast<int16_t>(field.decimals);
      return field.type == MYSQL_TYPE_FLOAT ? 7 : 8;
    case MYSQL_TYPE_TINY:
    case MYSQL_TYPE_SHORT:
    case MYSQL_TYPE_LONG:
    case MYSQL_TYPE_INT24:
    case MYSQL_TYPE_YEAR:
      decimals = 0;
      return 4;
    case MYSQL_TYPE_LONGLONG:
      decimals = 0;
      return -5;
    case MYSQL_TYPE_BIT:
      return -7;
    case MYSQL_TYPE_DATE:
    case MYSQL_TYPE_NEWDATE:
      return 9;
    case MYSQL_TYPE_TIME:
      return 10;
    case MYSQL_TYPE_DATETIME:
    case MYSQL_TYPE_TIMESTAMP:
      return 11;
    case MYSQL_TYPE_TINY_BLOB:
    case MYSQL_TYPE_MEDIUM_BLOB:
    case MYSQL_TYPE_LONG_BLOB:
    case MYSQL_TYPE_BLOB:
      return binary ? -4 : -1;
    case MYSQL_TYPE_GEOMETRY:
      return -4;
    case MYSQL_TYPE_VARCHAR:
    case MYSQL_TYPE_VAR_STRING:
      return binary ? -3 : 12;
    case MYSQL_TYPE_STRING:
      return binary ? -2 : 1;
    default:
      return 12;
  }
}

}  // namespace verdal::mysqlgate
