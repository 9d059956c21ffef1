#include "model/date_text.h"

#include <cstdio>

#include "model/data_type_info.h"
#include "model/number_text.h"
#include "platform/clock.h"
#include "platform/intl.h"

namespace verdal::model {
namespace {

constexpr size_t kSevenParts = 7;

std::string_view TrimBlanks(std::string_view s) {
  const size_t first = s.find_first_not_of(" \t");
  if (first == std::string_view::npos) return {};
  return s.substr(first, s.find_last_not_of(" \t") - first + 1);
}

void WriteSeven(std::string& out, const int32_t (&v)[kSevenParts]) {
  char buffer[96];
  const int n = std::snprintf(buffer, sizeof buffer, "%d.%d.%d.%d.%d.%d.%d", v[0], v[1], v[2],
                              v[3], v[4], v[5], v[6]);
  out.assign(buffer, static_cast<size_t>(n));
}

// A two-digit year of a date gets its century put in front of its text: 01 reads 2001, 21 reads
// 1921.
int32_t CompletedYear(std::string_view yearText) {
  const int32_t year = ReadInteger(yearText);
  if (year >= 100) return year;
  std::string full(year < 21 ? "20" : "19");
  full.append(yearText);
  return ReadInteger(full);
}

bool DateToInternal(std::string_view text, bool validate, std::string& out) {
  std::string_view parts[3];
  if (SplitText(text, platform::Intl().date, parts, 3) < 3) {
    out.clear();
    return true;
  }
  const int32_t v[kSevenParts] = {ReadInteger(parts[0]), ReadInteger(parts[1]),
                                  CompletedYear(parts[2]), 0, 0, 0, 0};
  WriteSeven(out, v);
  if (!validate) return true;
  char check[48];
  const int n = std::snprintf(check, sizeof check, "%d.%d.%d", v[0], v[1], v[2]);
  int day, month, year;
  char separator;
  return ParseDateText(std::string_view(check, static_cast<size_t>(n)), day, month, year,
                       separator) >= 0;
}

void TimeToInternal(std::string_view text, std::string& out) {
  std::string_view parts[3];
  if (SplitText(text, platform::Intl().time, parts, 3) < 3) {
    out.clear();
    return;
  }
  const int32_t v[kSevenParts] = {0, 0, 0, ReadInteger(parts[0]), ReadInteger(parts[1]),
                                  ReadInteger(parts[2]), 0};
  WriteSeven(out, v);
}

void DateTimeToInternal(std::string_view text, std::string& out) {
  // Date and time are divided by the first blank. Without one the whole text is the date, at
  // midnight, so that a plain date typed into such a field is kept.
  const size_t blank = text.find(' ');
  const std::string_view datePart = text.substr(0, blank);
  const std::string_view timePart =
      blank == std::string_view::npos ? std::string_view() : text.substr(blank + 1);
  std::string_view date[3];
  if (SplitText(datePart, platform::Intl().date, date, 3) != 3) {
    out.clear();
    return;
  }
  std::string_view time[3];
  const size_t timeParts =
      timePart.empty() ? 0 : SplitText(timePart, platform::Intl().time, time, 3);
  int32_t v[kSevenParts] = {ReadInteger(date[0]), ReadInteger(date[1]), ReadInteger(date[2]),
                            0, 0, 0, 0};
  for (size_t i = 0; i < timeParts && i < 3; ++i) v[3 + i] = ReadInteger(time[i]);
  WriteSeven(out, v);
}

// "%02d" without a call of snprintf, which shown dates take millions of times in an export.
void AppendTwoDigits(std::string& out, int32_t v) {
  if (v >= 0 && v < 100) {
    out += static_cast<char>('0' + v / 10);
    out += static_cast<char>('0' + v % 10);
    return;
  }
  char buffer[16];
  const int n = std::snprintf(buffer, sizeof buffer, "%02d", v);
  out.append(buffer, static_cast<size_t>(n));
}

}  // namespace

int32_t ParseDateText(std::string_view text, int& day, int& month, int& year, char& separator) {
  static constexpr int kWidth[3] = {4, 2, 2};  // year, month, day
  int value[3] = {0, 0, 0};
  int digits[3] = {0, 0, 0};
  int place[3] = {1, 1, 1};
  int part = 0;
  bool any = false;
  separator = '.';
  for (size_t i = text.size(); i-- > 0 && part < 3;) {
    const char c = text[i];
    if (c >= '0' && c <= '9') {
      if (digits[part] == kWidth[part]) break;
      value[part] += (c - '0') * place[part];
      place[part] *= 10;
      ++digits[part];
      any = true;
    } else if (c == ',' || c == '.' || c == '/' || c == '-' || c == ';') {
      separator = c;
      ++part;
    }
  }
  year = value[0];
  month = value[1];
  day = value[2];
  if (!any || day < 1 || day > 31 || month < 1 || month > 12 || year < 0 || year > 9999)
    return -1;
  return year * 10000 + month * 100 + day;
}

size_t SplitText(std::string_view text, char separator, std::string_view* parts, size_t max) {
  size_t count = 0, start = 0;
  for (;;) {
    const size_t end = text.find(separator, start);
    if (count < max) parts[count] = text.substr(start, end - start);
    ++count;
    if (end == std::string_view::npos) return count;
    start = end + 1;
  }
}

bool IsSevenPartValue(std::string_view value) {
  size_t points = 0;
  for (char c : value) points += c == '.';
  return points == kSevenParts - 1;
}

void NowAsInternal(std::string& out) {
  const platform::LocalTime t = platform::NowLocal();
  const int32_t v[kSevenParts] = {t.day, t.month, t.year, t.hour, t.minute, t.second,
                                  t.millisecond};
  WriteSeven(out, v);
}

bool DateTextToInternal(int16_t type, std::string_view text, bool validate, std::string& out) {
  text = TrimBlanks(text);
  switch (type) {
    case kTypeDate: return DateToInternal(text, validate, out);
    case kTypeTime: TimeToInternal(text, out); return true;
    default: DateTimeToInternal(text, out); return true;
  }
}

long double DateOrderKey(int16_t type, std::string_view value) {
  // Weights by part: day, month, year, hour, minute, second, millisecond.
  static constexpr int64_t kWeight[kSevenParts] = {1000000000,   100000000000, 10000000000000,
                                                   10000000,     100000,       1000, 1};
  size_t first = 0, last = kSevenParts;  // the parts that count
  if (type == kTypeDate) last = 3;
  if (type == kTypeTime) first = 3;
  // One pass over the text, since this runs in every sort step over dates.
  int32_t part[kSevenParts] = {};
  const char* p = value.data();
  const char* const end = p + value.size();
  bool small = true;
  for (size_t i = 0; i < last; ++i) {
    // Stored parts are plain digits; anything else is read the general way.
    const char* stop = p;
    int32_t digits = 0;
    while (stop != end && *stop >= '0' && *stop <= '9' && stop - p < 5)
      digits = digits * 10 + (*stop++ - '0');
    const bool plain = stop != p && (stop == end || *stop == '.');
    while (stop != end && *stop != '.') ++stop;
    if (i >= first) {
      part[i] = plain ? digits : ReadInteger(std::string_view(p, static_cast<size_t>(stop - p)));
      small = small && part[i] > -100000 && part[i] < 100000;
    }
    if (stop == end) break;
    p = stop + 1;
  }
  // Parts of five digits at most keep the sum below 2^63, where integer and 80-bit arithmetic agree.
  if (small) {
    int64_t key = 0;
    for (size_t i = first; i < last; ++i) key += part[i] * kWeight[i];
    return static_cast<long double>(key);
  }
  long double key = 0;
  for (size_t i = first; i < last; ++i) key += static_cast<long double>(part[i]) * kWeight[i];
  return key;
}

void FormatDateValue(std::string_view format, std::string_view value, std::string& out) {
  std::string_view p[kSevenParts];
  if (SplitText(value, '.', p, kSevenParts) != kSevenParts) {
    out.clear();
    return;
  }
  std::string result;
  result.reserve(format.size() + 8);
  for (size_t i = 0; i < format.size(); ++i) {
    if (format[i] != '%') {
      result += format[i];
      continue;
    }
    if (++i == format.size()) break;
    switch (format[i]) {
      case 'd': AppendTwoDigits(result, ReadInteger(p[0])); break;
      case 'm': AppendTwoDigits(result, ReadInteger(p[1])); break;
      case 'y':
      case 'Y': result += std::to_string(ReadInteger(p[2])); break;
      case 'H': AppendTwoDigits(result, ReadInteger(p[3])); break;
      case 'M': AppendTwoDigits(result, ReadInteger(p[4])); break;
      case 'S': AppendTwoDigits(result, ReadInteger(p[5])); break;
      default: result += format[i]; break;  // "%%" and any other character
    }
  }
  out = std::move(result);
}

}  // namespace verdal::model
