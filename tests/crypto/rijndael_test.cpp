#include "crypto/rijndael.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "crypto/hex.h"
#include "crypto/sha.h"

namespace verdal::crypto {
namespace {

using verdal::testing::ErrorText;
using verdal::testing::FromHex;
using verdal::testing::ToHex;

void Prepare(CRijndael& c, const std::vector<uint8_t>& key, int32_t blockSize,
             int32_t mode = IMethod::kECB, int32_t padding = IMethod::kPadZero,
             const uint8_t* chain = nullptr) {
  c.SetKey(key.data(), static_cast<int32_t>(key.size()), chain, static_cast<int32_t>(key.size()),
           blockSize, mode, padding);
}

// Single-block known answers, each run both ways.
TEST(CRijndaelTest, KnownAnswers) {
  const char* key128 = "2b7e151628aed2a6abf7158809cf4f3c";
  const char* key192 = "2b7e151628aed2a6abf7158809cf4f3c762e7160f38b4da5";
  const char* key256 = "2b7e151628aed2a6abf7158809cf4f3c762e7160f38b4da56a784d9045190cfe";
  const char* in128 = "3243f6a8885a308d313198a2e0370734";
  const char* in192 = "3243f6a8885a308d313198a2e03707344a4093822299f31d";
  const char* in256 = "3243f6a8885a308d313198a2e03707344a4093822299f31d0082efa98ec4e6c8";
  struct Vector {
    const char* key;
    const char* plain;
    const char* cipher;
  };
  const Vector vectors[] = {
      // FIPS-197 appendix C.1 and C.3 (AES-128 and AES-256).
      {"000102030405060708090a0b0c0d0e0f", "00112233445566778899aabbccddeeff",
       "69c4e0d86a7b0430d8cdb78070b4c55a"},
      {"000102030405060708090a0b0c0d0e0f101112131415161718191a1b1c1d1e1f",
       "00112233445566778899aabbccddeeff", "8ea2b7ca516745bfeafc49904b496089"},
      // Brian Gladman's Rijndael vectors for all block and key lengths (published with his
      // aestst.c and used by Bouncy Castle's RijndaelTest), built on the example of the Rijndael
      // proposal: key 2b7e1516..., input 3243f6a8... cut to the block length.
      {key128, in128, "3925841d02dc09fbdc118597196a0b32"},
      {key192, in128, "f9fb29aefc384a250340d833b87ebc00"},
      {key256, in128, "1a6e6c2c662e7da6501ffb62bc9e93f3"},
      {key128, in192, "b24d275489e82bb8f7375e0d5fcdb1f481757c538b65148a"},
      {key192, in192, "725ae43b5f3161de806a7c93e0bca93c967ec1ae1b71e1cf"},
      {key256, in192, "0ebacf199e3315c2e34b24fcc7c46ef4388aa475d66c194c"},
      {key128, in256, "7d15479076b69a46ffb3b3beae97ad8313f622f67fedb487de9f06b9ed9c8f19"},
      {key192, in256, "5d7101727bb25781bf6715b0e6955282b9610e23a43c2eb062699f0ebf5887b2"},
      {key256, in256, "a49406115dfb30a40418aafa4869b7c6a886ff31602a7dd19c889dc64f7e4e7a"},
  };
  for (const Vector& v : vectors) {
    SCOPED_TRACE(std::string("key ") + v.key + ", plain " + v.plain);
    const std::vector<uint8_t> plain = FromHex(v.plain);
    CRijndael c;
    Prepare(c, FromHex(v.key), static_cast<int32_t>(plain.size()));
    std::vector<uint8_t> out(plain.size());
    c.Encrypt(plain.data(), out.data(), static_cast<int32_t>(out.size()));
    EXPECT_EQ(ToHex(out.data(), out.size()), v.cipher);
    c.Decrypt(out.data(), out.data(), static_cast<int32_t>(out.size()));
    EXPECT_EQ(ToHex(out.data(), out.size()), v.plain);
  }
}

// NIST SP 800-38A, F.2.1 (CBC-AES128) and F.3.13 (CFB128-AES128), first two blocks. The message
// goes in two calls, so the chain must carry over; ResetChain must start it again.
TEST(CRijndaelTest, ChainingModes) {
  const std::vector<uint8_t> key = FromHex("2b7e151628aed2a6abf7158809cf4f3c");
  const std::vector<uint8_t> iv = FromHex("000102030405060708090a0b0c0d0e0f");
  const std::vector<uint8_t> plain =
      FromHex("6bc1bee22e409f96e93d7e117393172aae2d8a571e03ac9c9eb76fac45af8e51");
  const struct {
    int32_t mode;
    const char* cipher;
  } cases[] = {
      {IMethod::kCBC, "7649abac8119b246cee98e9b12e9197d5086cb9b507219ee95db113a917678b2"},
      {IMethod::kCFB, "3b3fd92eb72dad20333449f8e83cfb4ac8a64537a0b3a93fcde3cdad9f1ce58b"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.mode);
    CRijndael r;
    Prepare(r, key, 16, c.mode, IMethod::kPadZero, iv.data());
    std::vector<uint8_t> out(32);
    r.Encrypt(plain.data(), out.data(), 16);
    r.Encrypt(plain.data() + 16, out.data() + 16, 16);
    EXPECT_EQ(ToHex(out.data(), 32), c.cipher);
    r.ResetChain();
    r.Decrypt(out.data(), out.data(), 32);  // in place
    EXPECT_EQ(out, plain);
  }
}

TEST(CRijndaelTest, Failures) {
  const uint8_t key[32] = {1};
  uint8_t buffer[64] = {};
  CRijndael r;
  EXPECT_EQ(ErrorText([&] { r.Encrypt(buffer, buffer, 32); }), "Crypto: Error#1!");
  EXPECT_EQ(ErrorText([&] { r.SetMode(0); }), "Crypto: Error#1!");
  EXPECT_EQ(ErrorText([&] { r.ResetChain(); }), "Crypto: Error#1!");
  EXPECT_EQ(ErrorText([&] { r.EncryptFile("a", "b"); }), "Crypto: Error#1!");
  // The checks of SetKey come in a fixed order: each case breaks the first rule it names.
  EXPECT_EQ(ErrorText([&] { r.SetKey(nullptr, 0, nullptr, 7, 7, 9, 9); }), "Crypto: Error#4!");
  EXPECT_EQ(ErrorText([&] { r.SetKey(key, 0, nullptr, 7, 7, 9, 9); }), "Crypto: Error#5!");
  EXPECT_EQ(ErrorText([&] { r.SetKey(key, 1, nullptr, 20, 7, 9, 9); }), "Illegal Key Length!");
  EXPECT_EQ(ErrorText([&] { r.SetKey(key, 1, nullptr, 16, 20, 9, 9); }), "Crypto: Error#6!");
  EXPECT_EQ(ErrorText([&] { r.SetKey(key, 1, nullptr, 16, 16, 3, 9); }), "Crypto: Error#2!");
  EXPECT_EQ(ErrorText([&] { r.SetKey(key, 1, nullptr, 16, 16, 0, 3); }), "Crypto: Error#3!");
  r.SetKey(key, 32, nullptr, 32, 32, 0, 0);
  EXPECT_EQ(ErrorText([&] { r.SetMode(-1); }), "Crypto: Error#2!");
  EXPECT_EQ(ErrorText([&] { r.SetPadding(3); }), "Crypto: Error#3!");
  EXPECT_EQ(ErrorText([&] { r.Decrypt(buffer, buffer, 0); }), "Crypto: Error#6!");
  EXPECT_EQ(ErrorText([&] { r.Encrypt(buffer, buffer, 48); }), "Crypto: Error#6!");
}

TEST(CRijndaelTest, Pad) {
  const uint8_t key[16] = {};
  CRijndael r;
  r.SetKey(key, 16, nullptr, 16, 16, 0, 0);
  const struct {
    int32_t padding;
    uint8_t fill;
  } cases[] = {{0, 0x00}, {1, 0x20}, {2, 13}};
  for (const auto& c : cases) {
    uint8_t buffer[48];
    std::fill(std::begin(buffer), std::end(buffer), 0xaa);
    r.SetPadding(c.padding);
    EXPECT_EQ(r.Pad(buffer, 19), 32);
    for (int i = 19; i < 32; ++i) EXPECT_EQ(buffer[i], c.fill) << "padding " << c.padding;
    EXPECT_EQ(buffer[32], 0xaa);
    EXPECT_EQ(r.Pad(buffer, 32), 32);  // no whole block of padding, not even with counts
    EXPECT_EQ(buffer[32], 0xaa);
  }
}

TEST(CRijndaelTest, SignatureHashesDescriptionAndKey) {
  CRijndael r;
  r.SetKey(reinterpret_cast<const uint8_t*>("key"), 3, nullptr, 16, 24, 2, 1);
  uint8_t signature[32];
  std::fill(std::begin(signature), std::end(signature), 0);
  signature[31] = 0x5a;
  r.GetSignature(signature);
  // The text: RIJNDAEL, the 16 key bytes, then block size, key length, mode, padding.
  const std::string text = "RIJNDAELkeykeykeykeykeyk" "241621";
  uint8_t expected[20];
  CSHA::Hash(CSHA::kSHA1, text.data(), static_cast<int32_t>(text.size()), expected);
  EXPECT_EQ(ToHex(signature, 20), ToHex(expected, 20));
  EXPECT_EQ(ToHex(signature + 20, 12), "0000000000000000000000" "5a");

  // A zero key byte ends the text there.
  const uint8_t zeroKey[2] = {'k', 0};
  r.SetKey(zeroKey, 2, nullptr, 16, 16, 0, 0);
  r.GetSignature(signature);
  CSHA::Hash(CSHA::kSHA1, "RIJNDAELk", 9, expected);
  EXPECT_EQ(ToHex(signature, 20), ToHex(expected, 20));
}

TEST(CRijndaelTest, EncryptFileWritesSignatureAndPaddedCipherText) {
  const auto dir = std::filesystem::temp_directory_path() /
                   ("verdal_crypt_" + std::to_string(::getpid()));
  std::filesystem::create_directories(dir);
  const std::string source = (dir / "plain").string(), target = (dir / "cipher").string();
  const uint8_t key[32] = {9, 8, 7};
  CRijndael r;
  r.SetKey(key, 32, nullptr, 32, 32, IMethod::kCBC, IMethod::kPadZero);
  uint8_t signature[32] = {};
  r.GetSignature(signature);

  for (size_t length : {size_t{0}, size_t{385}}) {
    SCOPED_TRACE(length);
    std::string plain(length, '\0');
    for (size_t i = 0; i < length; ++i) plain[i] = static_cast<char>(i * 31);
    std::ofstream(source, std::ios::binary).write(plain.data(), static_cast<std::streamsize>(length));
    r.EncryptFile(source.c_str(), target.c_str());

    std::ifstream in(target, std::ios::binary);
    std::vector<uint8_t> file((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    const size_t padded = (length + 31) / 32 * 32;
    ASSERT_EQ(file.size(), 32 + padded);
    EXPECT_EQ(ToHex(file.data(), 32), ToHex(signature, 32));
    if (padded == 0) continue;
    // One CBC chain over the whole file, although it was written in pieces of 384 bytes.
    r.ResetChain();
    r.Decrypt(file.data() + 32, file.data() + 32, static_cast<int32_t>(padded));
    plain.resize(padded, '\0');
    EXPECT_EQ(std::string(file.begin() + 32, file.end()), plain);
  }

  EXPECT_EQ(ErrorText([&] { r.EncryptFile(source.c_str(), source.c_str()); }),
            "Crypto: Error#8!" + source + "!");
  const std::string missing = (dir / "missing").string();
  EXPECT_EQ(ErrorText([&] { r.EncryptFile(missing.c_str(), target.c_str()); }),
            "Crypto: Error#7!" + missing + "!");
  std::filesystem::remove_all(dir);
}

}  // namespace
}  // namespace verdal::crypto
