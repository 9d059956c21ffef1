#pragma once
// Dates and times as text: reading what a user typed, the seven-number internal form
// day.month.year.hour.minute.second.millisecond, its display, and its order.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace verdal::model {

// Reads a date from its end: up to four digits of year, two of month, two of day, parts divided by
// one of , . / - ; (the last one met goes to `separator`, "." when there is none); other characters
// are passed over. Gives year * 10000 + month * 100 + day, or -1 when there are no digits or the day,
// month or year is out of range. The length of the month is not checked.
int32_t ParseDateText(std::string_view text, int& day, int& month, int& year, char& separator);

// Splits at `separator` into at most `max` views (empty parts kept) and gives the number of parts
// the text has, which may be more than `max`.
size_t SplitText(std::string_view text, char separator, std::string_view* parts, size_t max);

// A value of exactly seven point-separated parts, the internal form of all date types.
bool IsSevenPartValue(std::string_view value);

// The current local time with all seven numbers.
void NowAsInternal(std::string& out);

// Brings a date, time, or date and time typed by a user to the internal form, for the type codes
// 4, 5 and 6, using the date and time separators of the system. `text` must not view `out`. False
// when `validate` is set and a date (type 5) is impossible.
bool DateTextToInternal(int16_t type, std::string_view text, bool validate, std::string& out);

// The internal value as one number that orders like the moment it stands for: year * 10^13 + month
// * 10^11 + day * 10^9 + hour * 10^7 + minute * 10^5 + second * 10^3 + millisecond. Missing parts
// count as 0; a date (type 5) ignores the time and a time (type 6) the date.
long double DateOrderKey(int16_t type, std::string_view value);

// Formats a seven-part value: %d %m day and month, %H %M %S hour, minute and second, all two digits;
// %y and %Y the full year; %% a percent sign, % before another character that character. A value of
// another number of parts gives "".
void FormatDateValue(std::string_view format, std::string_view value, std::string& out);

}  // namespace verdal::model
