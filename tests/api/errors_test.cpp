#include <gtest/gtest.h>

#include <string>

#include "verdal.h"

TEST(LastErrorString, KnownUnknownAndActionCodes) {
  EXPECT_STREQ(VERDAL_GetLastErrorString(0), "Es ist kein Fehler aufgetreten.");
  EXPECT_STREQ(VERDAL_GetLastErrorString(1), "Ung\xFCltiges Datenbank-Handle.");
  EXPECT_STREQ(VERDAL_GetLastErrorString(25), "Fehler beim Lesen der Datei!\nDie Datei ist defekt");
  EXPECT_STREQ(VERDAL_GetLastErrorString(26), "Fehler beim Schreiben der Datei!");
  for (int32_t code : {19, 20, 21, 22, 28, -1, 1000})
    EXPECT_STREQ(VERDAL_GetLastErrorString(code), "Unbekannter Fehler.") << code;
  EXPECT_STREQ(VERDAL_GetLastErrorString(27), "");  // no action message set
}

TEST(LastErrorString, BufferGrowsAndKeepsItsAddressForShorterTexts) {
  const char* longest = VERDAL_GetLastErrorString(18);
  std::string copy = longest;
  const char* shorter = VERDAL_GetLastErrorString(8);
  EXPECT_EQ(longest, shorter);
  EXPECT_STREQ(shorter, "Abbruch durch Benutzer.");
  EXPECT_NE(copy, shorter);
}
