#include "model/number_text.h"

#include <locale.h>

#include <cfloat>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace verdal::model {
namespace {

locale_t CLocale() {
  static const locale_t c = newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(0));
  return c;
}

bool IsSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// Powers of ten that the 64-bit significand holds exactly.
constexpr int kMaxExactPower = 27;
struct Powers {
  long double p[kMaxExactPower + 1];
  constexpr Powers() : p{} {
    long double v = 1;
    for (int i = 0; i <= kMaxExactPower; ++i, v *= 10) p[i] = v;
  }
};
constexpr Powers kPow10;

constexpr int kMaxExactDigits = 19;  // 10^19 - 1 < 2^64

// Digits of a decimal gathered into a 64-bit integer and a count of places after the point;
// values that fit are rounded once by a division, which gives the same correctly rounded result
// as strtold without its cost.
struct ExactDigits {
  uint64_t mantissa = 0;
  int significant = 0, fractionDigits = 0;
  bool any = false, simple = true;

  void Add(char c, bool fraction) {
    any = true;
    if (mantissa == 0 && c == '0') {
      if (fraction) ++fractionDigits;
    } else if (significant < kMaxExactDigits) {
      mantissa = mantissa * 10 + static_cast<uint64_t>(c - '0');
      ++significant;
      if (fraction) ++fractionDigits;
    } else {
      simple = false;
    }
  }
  bool Exact() const { return simple && fractionDigits <= kMaxExactPower; }
};

// Gathers digits [. digits] of t from i on; returns the position after them.
size_t GatherDigits(std::string_view t, size_t i, ExactDigits& d) {
  const size_t n = t.size();
  while (i < n && IsDigit(t[i])) d.Add(t[i++], false);
  if (i < n && t[i] == '.') {
    ++i;
    while (i < n && IsDigit(t[i])) d.Add(t[i++], true);
  }
  return i;
}

}  // namespace

long double ReadNumber(std::string_view t) {
  const size_t n = t.size();
  size_t i = 0;
  while (i < n && IsSpace(t[i])) ++i;
  const size_t start = i;
  bool negative = false;
  if (i < n && (t[i] == '+' || t[i] == '-')) negative = t[i++] == '-';

  ExactDigits d;
  i = GatherDigits(t, i, d);
  if (!d.any) return 0;
  if (i < n && (t[i] == 'e' || t[i] == 'E')) {
    size_t j = i + 1;
    if (j < n && (t[j] == '+' || t[j] == '-')) ++j;
    if (j < n && IsDigit(t[j])) {
      while (j < n && IsDigit(t[j])) ++j;
      i = j;
      d.simple = false;
    }
  }
  if (d.Exact()) return PlainDecimal{d.mantissa, d.fractionDigits, negative}.Value();
  const std::string copy(t.substr(start, i - start));
  long double v = strtold_l(copy.c_str(), nullptr, CLocale());
  if (std::isinf(v)) v = std::signbit(v) ? -LDBL_MAX : LDBL_MAX;
  return v;
}

long double PlainDecimal::Value() const {
  const long double v = static_cast<long double>(mantissa) / kPow10.p[fractionDigits];
  return negative ? -v : v;
}

bool ReadPlainDecimal(const char* p, PlainDecimal* out) {
  while (IsSpace(*p)) ++p;
  bool negative = false;
  if (*p == '+' || *p == '-') negative = *p++ == '-';
  // Up to 19 digits in all fit 64 bits whatever their leading zeros: the common case needs no
  // count of significant digits. Longer texts are read again the careful way.
  const char* const start = p;
  uint64_t mantissa = 0;
  int digits = 0, fraction = 0;
  for (; IsDigit(*p); ++p, ++digits) mantissa = mantissa * 10 + static_cast<uint64_t>(*p - '0');
  if (*p == '.') {
    for (++p; IsDigit(*p); ++p, ++digits, ++fraction) mantissa = mantissa * 10 + static_cast<uint64_t>(*p - '0');
  }
  if (digits == 0) {
    *out = PlainDecimal{};
    return true;
  }
  if (*p == 'e' || *p == 'E') return false;
  if (digits <= kMaxExactDigits) {
    *out = PlainDecimal{mantissa, fraction, negative};
    return true;
  }
  ExactDigits d;
  GatherDigits(std::string_view(start, static_cast<size_t>(p - start)), 0, d);
  if (!d.Exact()) return false;
  *out = PlainDecimal{d.mantissa, d.fractionDigits, negative};
  return true;
}

void FormatNumber(long double value, int decimals, std::string& out) {
  if (!std::isfinite(value)) value = 0;
  if (decimals < 0) decimals = 0;
  char small[64];
  const locale_t previous = uselocale(CLocale());
  int length = std::snprintf(small, sizeof small, "%.*Lf", decimals, value);
  if (length >= 0 && static_cast<size_t>(length) < sizeof small) {
    out.assign(small, static_cast<size_t>(length));
  } else if (length >= 0) {
    out.resize(static_cast<size_t>(length));
    std::snprintf(out.data(), out.size() + 1, "%.*Lf", decimals, value);
  } else {
    out.clear();
  }
  uselocale(previous);
}

int32_t ReadInteger(std::string_view t) {
  size_t i = 0;
  while (i < t.size() && IsSpace(t[i])) ++i;
  bool negative = false;
  if (i < t.size() && (t[i] == '+' || t[i] == '-')) negative = t[i++] == '-';
  int64_t v = 0;
  for (; i < t.size() && IsDigit(t[i]); ++i) {
    v = v * 10 + (t[i] - '0');
    if (v > INT32_MAX) return negative ? INT32_MIN : INT32_MAX;
  }
  return static_cast<int32_t>(negative ? -v : v);
}

}  // namespace verdal::model
