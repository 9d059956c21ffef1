#include "crypto/memory_container.h"

#include <climits>
#include <cstring>
#include <stdexcept>

#include "crypto/sha.h"

namespace verdal::crypto {

namespace {

constexpr int32_t kBlock = 32;

void DigestField(const uint8_t* data, int32_t count, uint8_t field[kContainerDigestField]) {
  std::memset(field, 0, kContainerDigestField);
  CSHA::Hash(CSHA::kSHA256, data, count, field);
}

}  // namespace

void SetPasswordKey(CRijndael& cipher, const char* password) {
  char key[32] = {};
  if (password != nullptr) std::strncpy(key, password, sizeof key - 1);
  const uint8_t chain[kBlock] = {};
  cipher.SetKey(reinterpret_cast<const uint8_t*>(key), static_cast<int32_t>(std::strlen(key)), chain,
                32, kBlock, IMethod::kECB, IMethod::kPadZero);
  std::memset(key, 0, sizeof key);
}

void EncryptMemory(const char* password, const uint8_t* source, int32_t sourceLength,
                   std::vector<uint8_t>& target, int32_t& targetLength, int32_t& headerLength) {
  CRijndael cipher;
  SetPasswordKey(cipher, password);
  if (sourceLength < 0 || sourceLength > INT32_MAX - kContainerHeaderLength - kBlock ||
      (source == nullptr && sourceLength > 0))
    throw std::runtime_error("Crypto: Error#6!");
  const int32_t padded = (sourceLength + kBlock - 1) / kBlock * kBlock;
  headerLength = kContainerHeaderLength;
  targetLength = kContainerHeaderLength + padded;
  target.assign(static_cast<size_t>(targetLength), 0);

  DigestField(source, sourceLength, target.data());
  const uint32_t length = static_cast<uint32_t>(sourceLength);
  for (int i = 0; i < 4; ++i)
    target[kContainerDigestField + i] = static_cast<uint8_t>(length >> (8 * i));

  if (padded == 0) return;  // nothing to encipher: the header is the container
  cipher.ResetChain();
  uint8_t* body = target.data() + kContainerHeaderLength;
  // The cipher works in place, so the target body serves as the padded work buffer.
  std::memcpy(body, source, static_cast<size_t>(sourceLength));
  cipher.Pad(body, sourceLength);
  cipher.Encrypt(body, body, padded);
}

bool DecryptMemory(const char* password, const uint8_t* source, int32_t sourceLength,
                   std::vector<uint8_t>& target, int32_t& plainLength) {
  CRijndael cipher;
  SetPasswordKey(cipher, password);
  if (source == nullptr || sourceLength < kContainerHeaderLength ||
      (sourceLength - kContainerHeaderLength) % kBlock != 0)
    throw std::runtime_error("Crypto: Error#6!");
  const int32_t padded = sourceLength - kContainerHeaderLength;
  target.assign(static_cast<size_t>(padded), 0);
  if (padded > 0) {
    cipher.ResetChain();
    cipher.Decrypt(source + kContainerHeaderLength, target.data(), padded);
  }

  uint32_t stored = 0;
  for (int i = 0; i < 4; ++i) stored |= uint32_t{source[kContainerDigestField + i]} << (8 * i);
  plainLength = static_cast<int32_t>(stored);
  if (plainLength < 0 || plainLength > padded) return false;

  uint8_t digest[kContainerDigestField];
  DigestField(target.data(), plainLength, digest);
  return std::memcmp(digest, source, kContainerDigestField) == 0;
}

void EncryptFile(const char* password, const char* sourcePath, const char* targetPath) {
  CRijndael cipher;
  SetPasswordKey(cipher, password);
  cipher.EncryptFile(sourcePath, targetPath);
}

}  // namespace verdal::crypto
