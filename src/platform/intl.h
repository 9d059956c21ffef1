#pragma once
// The three separator characters that number and date conversion use, read once for the process
// from the environment (what the original read from the system's "intl" settings).
//
// Decimal: the radix character of the environment's LC_NUMERIC locale; where that locale is not
// installed, "," for a German language and "." otherwise. Date ".", time ":". The environment
// variables VERDAL_SDECIMAL, VERDAL_SDATE and VERDAL_STIME override each one (first character).

namespace verdal::platform {

struct IntlSeparators {
  char decimal;
  char date;
  char time;
};

// The table, read on first use.
const IntlSeparators& Intl();

// Reads the environment again. For library load and for tests that change the overrides; not for
// use while conversions run.
void ReloadIntl();

}  // namespace verdal::platform
