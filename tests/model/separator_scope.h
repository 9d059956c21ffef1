#pragma once
// Sets the language id and the separator overrides for one test and puts both back afterwards, so
// that conversions do not depend on the locales installed on the machine.
#include <cstdlib>
#include <string>

#include "platform/intl.h"
#include "platform/language.h"

class SeparatorScope {
 public:
  SeparatorScope(uint16_t language, const char* decimal) {
    Save("VERDAL_SDECIMAL", saved_[0]);
    Save("VERDAL_SDATE", saved_[1]);
    Save("VERDAL_STIME", saved_[2]);
    Apply(language, decimal);
  }
  ~SeparatorScope() {
    Restore("VERDAL_SDECIMAL", saved_[0]);
    Restore("VERDAL_SDATE", saved_[1]);
    Restore("VERDAL_STIME", saved_[2]);
    verdal::platform::SetLanguageId(0);
    verdal::platform::ReloadIntl();
  }
  void Apply(uint16_t language, const char* decimal) {
    verdal::platform::SetLanguageId(language);
    setenv("VERDAL_SDECIMAL", decimal, 1);
    setenv("VERDAL_SDATE", ".", 1);
    setenv("VERDAL_STIME", ":", 1);
    verdal::platform::ReloadIntl();
  }

 private:
  struct Saved {
    bool set = false;
    std::string value;
  };
  static void Save(const char* name, Saved& s) {
    const char* v = std::getenv(name);
    s.set = v != nullptr;
    if (v != nullptr) s.value = v;
  }
  static void Restore(const char* name, const Saved& s) {
    if (s.set)
      setenv(name, s.value.c_str(), 1);
    else
      unsetenv(name);
  }
  Saved saved_[3];
};
