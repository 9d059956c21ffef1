#pragma once
// The conversions at the gateway's edge: code page 1252 (the engine) to and from UTF-8 (the
// connection), the seven-number date form to and from the server's dates, MariaDB column types to
// the ODBC SQL type codes of the exchange file, and identifier quoting.
#include <mysql.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace verdal::mysqlgate {

// Code page 1252 to UTF-8; null gives "".
std::string Utf8Of(const char* cp1252);
std::string Cp1252Of(std::string_view utf8);

// An identifier in backticks, backticks inside doubled. Takes UTF-8.
std::string QuoteName(std::string_view utf8);
// `database`.`table` from code page 1252 names; just `table` when the database name is empty.
std::string QualifiedTable(const char* database, const char* table);

// Copies text into a caller's buffer of `size` bytes, cut to size - 1 and null-terminated.
void CopyOut(std::string_view text, char* buffer, int32_t size);

// The seven-number form day.month.year.hour.minute.second.millisecond as the server's literal for
// the type word "datetime", "date" or "time". False when the value is not of seven parts.
bool SevenToServerText(std::string_view typeWord, std::string_view value, std::string& out);

// A server date or time in the seven-number form; a zero date gives "".
std::string SevenOf(const MYSQL_TIME& time);

// The ODBC SQL type of a result column and its decimals (negative for unknown).
int16_t SqlTypeOf(const MYSQL_FIELD& field, int16_t& decimals);

// Whether the column is fetched as a date or time rather than as text.
bool IsTemporal(enum_field_types type);

}  // namespace verdal::mysqlgate
