#include <gtest/gtest.h>

#include <cstring>

#include "platform/guid.h"
#include "platform/language.h"

using namespace verdal::platform;

TEST(Guid, TextFormMixesCaseAsStoredFilesDo) {
  Guid g{0x0123ABCDu, 0xBEEF, 0xCAFE, {0x01, 0x23, 0x45, 0x67, 0x89, 0xAB, 0xCD, 0xEF}};
  // The third group is written in lower case, the others in upper case.
  EXPECT_EQ(GuidText(g), "0123ABCD-BEEF-cafe-0123-456789ABCDEF");
  EXPECT_EQ(GuidText(Guid{}), "");
}

TEST(Guid, FreshGuidsAreVersion4AndDistinct) {
  Guid a = NewGuid(), b = NewGuid();
  EXPECT_EQ(a.data3 >> 12, 4);
  EXPECT_NE(std::memcmp(&a, &b, sizeof a), 0);
  EXPECT_EQ(NewGuidText().size(), 36u);
}

TEST(Language, LocaleNamesMapToIds) {
  EXPECT_EQ(LanguageIdFromLocaleName("de_DE.UTF-8"), 0x407);
  EXPECT_EQ(LanguageIdFromLocaleName("de_CH"), 0x807);
  EXPECT_EQ(LanguageIdFromLocaleName("de_BE"), 0x407);
  EXPECT_EQ(LanguageIdFromLocaleName("en_US.UTF-8"), 0x409);
  EXPECT_EQ(LanguageIdFromLocaleName("C"), 0x409);
  EXPECT_EQ(LanguageIdFromLocaleName(nullptr), 0x409);
  SetLanguageId(0x807);
  EXPECT_TRUE(IsGerman());
  SetLanguageId(0x409);
  EXPECT_FALSE(IsGerman());
  SetLanguageId(0);
}
