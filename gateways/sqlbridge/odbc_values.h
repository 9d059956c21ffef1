#pragma once
// Values between a server's columns and the engine's internal forms: the SQL type a column has in
// the exchange file, a fetched text in internal form, and an internal value as a server literal.
#include <cstdint>
#include <string>
#include <string_view>

namespace verdal::sqlbridge {

// The exchange file's SQL type and decimals for a column that SQLDescribeCol describes.
void ExchangeType(int32_t odbcType, int32_t decimalDigits, int16_t& sqlType, int16_t& decimals);

// Whether an ODBC type is one of the integer types.
bool IsIntegerType(int32_t odbcType);

// A column's text as the driver gave it, for an exchange column of `sqlType`, in internal form:
// dates, times and timestamps (ISO text) to the seven-number form, bits to "1"/"0", numbers with a
// decimal point. Text the form does not fit stays as it is.
void ToInternalValue(int16_t sqlType, std::string& value);

// The seven-number form as ISO text for a column of ODBC type `odbcType`: a date "YYYY-MM-DD", a
// time "HH:MM:SS", a timestamp "YYYY-MM-DD HH:MM:SS"; with `milliseconds`, a time or timestamp
// whose milliseconds are not 0 ends in ".mmm". For a column of another type, the form follows the
// value: a time when its date is 0.0.0, a date when its time is all 0. False when the value is not
// of seven numbers (then it is sent as it is).
bool SevenToIso(std::string_view value, int32_t odbcType, std::string& out,
                bool milliseconds = false);

// The seven numbers of a value in the seven-number form: day, month, year, hour, minute, second,
// millisecond. False for any other value.
bool ReadSeven(std::string_view value, int32_t (&numbers)[7]);

// What an exchange column's SQL type makes of its internal values.
enum class ValueKind { kText, kInteger, kDecimal, kFloat, kYesNo, kDate, kTime, kTimestamp };
ValueKind KindOfSqlType(int16_t sqlType);

// The shape of a number's internal form, [-]digits[.digits]: how many digits stand before and
// after the point. False for any other text (an empty one included).
bool ReadDecimalShape(std::string_view value, int& integerDigits, int& fractionDigits);

}  // namespace verdal::sqlbridge
