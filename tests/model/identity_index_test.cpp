// The hash of identity texts, against values worked out apart from the code.
#include <gtest/gtest.h>

#include "model/identity_index.h"

using verdal::model::IdentityHash;

TEST(IdentityHash, BytesCountSignedAndByPosition) {
  EXPECT_EQ(IdentityHash(""), 0u);
  EXPECT_EQ(IdentityHash("A"), 409097975u);    // 65 * 6293815
  EXPECT_EQ(IdentityHash("\xFF"), 4288673481u);  // -6293815 modulo 2^32
  EXPECT_EQ(IdentityHash("AB"), 2301290171u);
  EXPECT_EQ(IdentityHash("ab"), 4201021915u);
  EXPECT_EQ(IdentityHash("\xE4x"), 4045025772u);
}
