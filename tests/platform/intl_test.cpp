#include "platform/intl.h"

#include <gtest/gtest.h>

#include "platform/environment_scope.h"

using namespace verdal::platform;

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
