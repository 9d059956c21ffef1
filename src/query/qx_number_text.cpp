#include "query/qx_number_text.h"

#include "model/number_text.h"

#include <locale.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace verdal::query {

namespace {

locale_t CLocale() {
  static const locale_t c = newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(nullptr));
  return c;
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

}  // namespace

int QX_FormatNumber(long double value, char (&buffer)[kQxNumberBuffer]) {
  const locale_t previous = uselocale(CLocale());
  int n = std::snprintf(buffer, sizeof buffer, "%.18Lg", value);
  uselocale(previous);
  if (n < 0) {
    buffer[0] = '\0';
    n = 0;
  }
  return n;
}

size_t QX_DecimalLength(const char* text, bool allowSign) {
  size_t i = 0;
  if (allowSign && (text[i] == '+' || text[i] == '-')) ++i;
  size_t digits = 0;
  while (IsDigit(text[i])) ++i, ++digits;
  if (text[i] == '.') {
    ++i;
    while (IsDigit(text[i])) ++i, ++digits;
  }
  if (digits == 0) return 0;
  if (text[i] == 'e' || text[i] == 'E') {
    size_t j = i + 1;
    if (text[j] == '+' || text[j] == '-') ++j;
    if (IsDigit(text[j])) {
      while (IsDigit(text[j])) ++j;
      i = j;
    }
  }
  return i;
}

long double QX_ConvertDecimal(const char* text, size_t length, bool* rangeError) {
  // Without an exponent no decimal leaves the range of the format; the engine's number reader
  // gives strtold's correctly rounded result for these without its cost, which matters for
  // filters that compare stored numbers node after node.
  const std::string_view digits(text, length);
  if (digits.find_first_of("eE") == std::string_view::npos) {
    *rangeError = false;
    return model::ReadNumber(digits);
  }
  // strtold would read on past the accepted prefix (hex after "0x"), so it gets a copy.
  char small[64];
  std::string large;
  const char* copy;
  if (length < sizeof small) {
    for (size_t i = 0; i < length; ++i) small[i] = text[i];
    small[length] = '\0';
    copy = small;
  } else {
    large.assign(text, length);
    copy = large.c_str();
  }
  errno = 0;
  const long double value = strtold_l(copy, nullptr, CLocale());
  *rangeError = errno == ERANGE;
  return value;
}

}  // namespace verdal::query
