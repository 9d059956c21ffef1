#include "platform/intl.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "platform/language.h"

using namespace verdal::platform;

namespace {

// Puts back the environment variables a test changes.
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
    SetLanguageId(0);
    ReloadIntl();
  }

 private:
  struct Saved {
    const char* name;
    bool set;
    std::string value;
  };
  std::vector<Saved> saved_;
};

}  // namespace

TEST(Intl, SeparatorsFromLocaleLanguageAndOverrides) {
  EnvironmentScope scope({"VERDAL_SDECIMAL", "VERDAL_SDATE", "VERDAL_STIME", "LC_ALL"});
  unsetenv("VERDAL_SDECIMAL");
  unsetenv("VERDAL_SDATE");
  unsetenv("VERDAL_STIME");

  // A locale that is not installed: the decimal separator follows the language.
  setenv("LC_ALL", "xx_NOWHERE.UTF-8", 1);
  SetLanguageId(0x407);
  ReloadIntl();
  EXPECT_EQ(Intl().decimal, ',');
  EXPECT_EQ(Intl().date, '.');
  EXPECT_EQ(Intl().time, ':');
  SetLanguageId(0x409);
  ReloadIntl();
  EXPECT_EQ(Intl().decimal, '.');

  // The "C" locale is always there and has a point, whatever the language.
  setenv("LC_ALL", "C", 1);
  SetLanguageId(0x807);
  ReloadIntl();
  EXPECT_EQ(Intl().decimal, '.');

  // Overrides win, first character only.
  setenv("VERDAL_SDECIMAL", ",x", 1);
  setenv("VERDAL_SDATE", "/", 1);
  setenv("VERDAL_STIME", "-", 1);
  ReloadIntl();
  EXPECT_EQ(Intl().decimal, ',');
  EXPECT_EQ(Intl().date, '/');
  EXPECT_EQ(Intl().time, '-');
}
