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

TEST(LastErrorString, EachTextStaysUntilItsBufferComesRoundAgain) {
  const char* first = VERDAL_GetLastErrorString(8);
  for (int i = 1; i < VERDAL_TEXT_KEPT; ++i) VERDAL_GetLastErrorString(18);
  EXPECT_STREQ(first, "Abbruch durch Benutzer.");
}
