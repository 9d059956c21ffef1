#pragma once
// Saves the environment variables a test changes and puts them back afterwards, together with the
// language and the separator table that are read from the environment.
#include <cstdlib>
#include <initializer_list>
#include <string>
#include <vector>

#include "platform/intl.h"
#include "platform/language.h"

class EnvironmentScope {
 public:
  explicit EnvironmentScope(std::initializer_list<const char*> names) {
    for (const char* n : names) {
      const char* v = std::getenv(n);
      saved_.push_back({n, v != nullptr, v != nullptr ? v : ""});
    }
  }
  ~EnvironmentScope() {
    for (const Saved& s : saved_) {
      if (s.set)
        setenv(s.name, s.value.c_str(), 1);
      else
        unsetenv(s.name);
    }
    verdal::platform::SetLanguageId(0);
    verdal::platform::ReloadIntl();
  }
  EnvironmentScope(const EnvironmentScope&) = delete;
  EnvironmentScope& operator=(const EnvironmentScope&) = delete;

 private:
  struct Saved {
    const char* name;
    bool set;
    std::string value;
  };
  std::vector<Saved> saved_;
};

// Sets language and separators for a test through the overrides, so that conversions do not
// depend on the locales installed on the machine.
class SeparatorScope : public EnvironmentScope {
 public:
  SeparatorScope(uint16_t language, const char* decimal)
      : EnvironmentScope({"VERDAL_SDECIMAL", "VERDAL_SDATE", "VERDAL_STIME"}) {
    Apply(language, decimal);
  }
  void Apply(uint16_t language, const char* decimal) {
    verdal::platform::SetLanguageId(language);
    setenv("VERDAL_SDECIMAL", decimal, 1);
    setenv("VERDAL_SDATE", ".", 1);
    setenv("VERDAL_STIME", ":", 1);
    verdal::platform::ReloadIntl();
  }
};
