#include "crypto/sha.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "crypto/hex.h"

namespace verdal::crypto {
namespace {

using verdal::testing::ErrorText;
using verdal::testing::ToHex;

// One object per method hashes every message in turn, so each digest also proves that FinalDigest
// left the object ready for the next message.
std::string Digest(CSHA& sha, const std::string& message, int32_t piece) {
  size_t done = 0;
  do {
    const size_t n = std::min(message.size() - done, static_cast<size_t>(piece));
    sha.AddData(message.data() + done, static_cast<int32_t>(n));
    done += n;
  } while (done < message.size());
  uint8_t out[65];
  out[sha.DigestLength()] = 0xee;
  sha.FinalDigest(out);
  EXPECT_EQ(out[sha.DigestLength()], 0xee) << "wrote past the digest";
  return ToHex(out, static_cast<size_t>(sha.DigestLength()));
}

// The worked examples of FIPS 180-2 (appendices A to D): "abc", the two-block message and one
// million times "a" for each hash.
TEST(CSHATest, Fips180_2Examples) {
  const std::string twoBlock256 = "abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq";
  const std::string twoBlock512 =
      "abcdefghbcdefghicdefghijdefghijkefghijklfghijklmghijklmnhijklmnoijklmnopjklmnopqklmnopqrlmnopq"
      "rsmnopqrstnopqrstu";
  const std::string million(1000000, 'a');
  struct Case {
    int32_t method;
    const std::string* message;
    const char* digest;
  };
  const std::string abc = "abc";
  const Case cases[] = {
      {0, &abc, "a9993e364706816aba3e25717850c26c9cd0d89d"},
      {0, &twoBlock256, "84983e441c3bd26ebaae4aa1f95129e5e54670f1"},
      {0, &million, "34aa973cd4c4daa4f61eeb2bdbad27316534016f"},
      {1, &abc, "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"},
      {1, &twoBlock256, "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1"},
      {1, &million, "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0"},
      {2, &abc,
       "cb00753f45a35e8bb5a03d699ac65007272c32ab0eded1631a8b605a43ff5bed8086072ba1e7cc2358baeca134c825a7"},
      {2, &twoBlock512,
       "09330c33f71147e83d192fc782cd1b4753111b173b3b05d22fa08086e3b0f712fcc7c71a557e2db966c3e9fa91746039"},
      {2, &million,
       "9d0e1809716474cb086e834e310a4a1ced149e9c00f248527972cec5704c2a5b07b8b3dc38ecc4ebae97ddd87f3d8985"},
      {3, &abc,
       "ddaf35a193617abacc417349ae20413112e6fa4e89a97ea20a9eeee64b55d39a2192992a274fc1a836ba3c23a3feebbd"
       "454d4423643ce80e2a9ac94fa54ca49f"},
      {3, &twoBlock512,
       "8e959b75dae313da8cf4f72814fc143f8f7779c6eb9f7fa17299aeadb6889018501d289e4900f7e4331b99dec4b5433a"
       "c7d329eeb6dd26545e96e55b874be909"},
      {3, &million,
       "e718483d0ce769644e2e42c7bc15b4638e1f98b13b2044285632a803afa973ebde0ff244877ea60a4cb0432ce577c31b"
       "eb009c5c2c49aa2e4eadb217ad8cc09b"},
  };
  // Both SHA-256 paths: the portable one, then the processor's extensions where present.
  for (bool hardware : {false, true}) {
    if (CSHA::UseHardware(hardware) != hardware) continue;
    CSHA sha[4] = {CSHA(0), CSHA(1), CSHA(2), CSHA(3)};
    for (const Case& c : cases) {
      SCOPED_TRACE(::testing::Message() << "method " << c.method << ", " << c.message->size()
                                        << " bytes, hardware " << hardware);
      // Whole, then in odd pieces that cross the block boundary at every offset.
      for (int32_t piece : {1 << 30, 7, 129}) EXPECT_EQ(Digest(sha[c.method], *c.message, piece), c.digest);
    }
  }
}

TEST(CSHATest, Failures) {
  EXPECT_EQ(ErrorText([] { CSHA sha(4); }),
            "FileDigest ERROR: in CSHA() Constructor, Illegal Method 4!");
  EXPECT_EQ(ErrorText([] { CSHA sha(-1); }),
            "FileDigest ERROR: in CSHA() Constructor, Illegal Method -1!");
  CSHA sha(CSHA::kSHA256);
  uint8_t out[32];
  EXPECT_EQ(ErrorText([&] { sha.AddData("x", -1); }),
            "FileDigest ERROR: in CSHA::AddData(), Data Length should be >= 0!");
  EXPECT_EQ(ErrorText([&] { sha.FinalDigest(out); }),
            "FileDigest ERROR: in CSHA::FinalDigest(), No data Added before call!");
  // A count of 0 counts as data: the digest of the empty message (NIST SHAVS short messages, Len = 0).
  sha.AddData("", 0);
  sha.FinalDigest(out);
  EXPECT_EQ(ToHex(out, 32), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
  EXPECT_EQ(ErrorText([&] { sha.FinalDigest(out); }),
            "FileDigest ERROR: in CSHA::FinalDigest(), No data Added before call!");
}

}  // namespace
}  // namespace verdal::crypto
