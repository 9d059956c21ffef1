#include "crypto/memory_container.h"

#include <gtest/gtest.h>

#include <cstring>
#include <stdexcept>

#include "crypto/hex.h"
#include "crypto/sha.h"

namespace verdal::crypto {
namespace {

using verdal::testing::ErrorText;
using verdal::testing::ToHex;

std::vector<uint8_t> Payload(size_t length) {
  std::vector<uint8_t> data(length);
  uint32_t x = 12345;
  for (auto& b : data) b = static_cast<uint8_t>((x = x * 1103515245 + 12345) >> 16);
  return data;
}

TEST(MemoryContainerTest, RoundTripsAndLayout) {
  for (size_t length : {0, 1, 31, 32, 33, 3 * 1024 * 1024 + 5}) {
    SCOPED_TRACE(length);
    const std::vector<uint8_t> plain = Payload(length);
    std::vector<uint8_t> container;
    int32_t containerLength = -1, headerLength = -1;
    EncryptMemory("geheim", plain.data(), static_cast<int32_t>(length), container, containerLength,
                  headerLength);
    const size_t padded = (length + 31) / 32 * 32;
    EXPECT_EQ(headerLength, 69);
    ASSERT_EQ(static_cast<size_t>(containerLength), 69 + padded);
    ASSERT_EQ(container.size(), 69 + padded);

    // The clear header: SHA-256 of the plain data, 33 zero bytes, the length little-endian.
    uint8_t digest[32];
    CSHA::Hash(CSHA::kSHA256, plain.data(), static_cast<int32_t>(length), digest);
    EXPECT_EQ(ToHex(container.data(), 32), ToHex(digest, 32));
    EXPECT_EQ(ToHex(container.data() + 32, 33), std::string(66, '0'));
    uint32_t stored;
    std::memcpy(&stored, container.data() + 65, 4);
    EXPECT_EQ(stored, length);
    if (length > 0) {
      EXPECT_NE(0, std::memcmp(container.data() + 69, plain.data(), std::min<size_t>(length, 32)));
    }

    std::vector<uint8_t> back;
    int32_t plainLength = -1;
    ASSERT_TRUE(DecryptMemory("geheim", container.data(), containerLength, back, plainLength));
    ASSERT_EQ(static_cast<size_t>(plainLength), length);
    EXPECT_EQ(back.size(), padded);
    EXPECT_TRUE(std::equal(plain.begin(), plain.end(), back.begin()));
    for (size_t i = length; i < padded; ++i) EXPECT_EQ(back[i], 0);

    if (length == 0) continue;
    EXPECT_FALSE(DecryptMemory("geheiM", container.data(), containerLength, back, plainLength));
    for (size_t at : {size_t{69}, container.size() - 1}) {
      std::vector<uint8_t> damaged = container;
      damaged[at] ^= 0x01;
      EXPECT_FALSE(DecryptMemory("geheim", damaged.data(), containerLength, back, plainLength));
    }
  }
}

TEST(MemoryContainerTest, PasswordKeyUsesFirst31Bytes) {
  const std::vector<uint8_t> plain = Payload(100);
  std::vector<uint8_t> container, back;
  int32_t length, header, plainLength;
  const char* password = "0123456789012345678901234567890123456789";  // 40 bytes
  EncryptMemory(password, plain.data(), 100, container, length, header);
  // Only the first 31 bytes count: a password that differs from byte 32 on still opens it.
  EXPECT_TRUE(DecryptMemory("0123456789012345678901234567890xyz", container.data(), length, back,
                            plainLength));
  EXPECT_FALSE(DecryptMemory("012345678901234567890123456789", container.data(), length, back,
                             plainLength));
  // The key is the password repeated: "abc" and "abcabc" are the same key.
  EncryptMemory("abc", plain.data(), 100, container, length, header);
  EXPECT_TRUE(DecryptMemory("abcabc", container.data(), length, back, plainLength));
}

TEST(MemoryContainerTest, DamagedContainers) {
  const std::vector<uint8_t> plain = Payload(64);
  std::vector<uint8_t> container, back;
  int32_t length, header, plainLength;
  EncryptMemory("pw", plain.data(), 64, container, length, header);

  // A stored length past the deciphered bytes, or negative, is refused before hashing.
  for (uint32_t bad : {65u, 0x7fffffffu, 0x80000000u, 0xffffffffu}) {
    std::vector<uint8_t> damaged = container;
    std::memcpy(damaged.data() + 65, &bad, 4);
    EXPECT_FALSE(DecryptMemory("pw", damaged.data(), length, back, plainLength)) << bad;
  }
  // Shorter than the header, or not whole blocks.
  for (int32_t cut : {0, 68, 70, length - 1}) {
    EXPECT_EQ(ErrorText([&] { DecryptMemory("pw", container.data(), cut, back, plainLength); }),
              "Crypto: Error#6!")
        << cut;
  }
  EXPECT_EQ(ErrorText([&] { EncryptMemory("", plain.data(), 64, container, length, header); }),
            "Crypto: Error#5!");
}

}  // namespace
}  // namespace verdal::crypto
