#include "platform/intl.h"

#include <langinfo.h>
#include <locale.h>

#include <cstdlib>

#include "platform/language.h"

namespace verdal::platform {
namespace {

IntlSeparators g_intl{};
bool g_loaded = false;

char Override(const char* variable, char fallback) {
  const char* value = std::getenv(variable);
  return (value != nullptr && *value != '\0') ? *value : fallback;
}

char DecimalFromEnvironment() {
  // newlocale with "" follows LC_ALL, LC_NUMERIC and LANG like setlocale, but leaves the process
  // locale alone.
  if (locale_t loc = newlocale(LC_NUMERIC_MASK, "", static_cast<locale_t>(0))) {
    const char* radix = nl_langinfo_l(RADIXCHAR, loc);
    // A radix outside ASCII (multi-byte in UTF-8) has no 1252 single-byte form.
    const char c = (radix != nullptr) ? radix[0] : '\0';
    freelocale(loc);
    if (c > 0 && static_cast<unsigned char>(c) < 0x80) return c;
  }
  return IsGerman() ? ',' : '.';
}

}  // namespace

void ReloadIntl() {
  g_intl.decimal = Override("VERDAL_SDECIMAL", 0);
  if (g_intl.decimal == 0) g_intl.decimal = DecimalFromEnvironment();
  g_intl.date = Override("VERDAL_SDATE", '.');
  g_intl.time = Override("VERDAL_STIME", ':');
  g_loaded = true;
}

const IntlSeparators& Intl() {
  if (!g_loaded) ReloadIntl();
  return g_intl;
}

}  // namespace verdal::platform
