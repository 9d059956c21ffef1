#pragma once
// CRijndael: the Rijndael block cipher with key and block sizes of 16, 24 or 32 bytes each.
// The database uses a 32-byte block with a 32-byte key, which is Rijndael and not AES (AES fixes
// the block at 16 bytes). Rounds are table-driven (four 256-word tables per direction).
//
// An object serves one thread and, in the engine, one container operation.

#include <cstdint>

#include "crypto/method.h"

namespace verdal::crypto {

class CRijndael : public IMethod {
 public:
  CRijndael() = default;
  ~CRijndael() override;  // wipes the key material
  CRijndael(const CRijndael&) = delete;
  CRijndael& operator=(const CRijndael&) = delete;

  // key: keyByteCount (>= 1) bytes, repeated or cut to keyLength bytes.
  // chain: the start chain block, blockSize bytes (may be null for all zero).
  // keyLength, blockSize: 16, 24 or 32. mode: IMethod::Mode. padding: IMethod::Padding.
  // Checks, in this order: key, keyByteCount, keyLength, blockSize, mode, padding.
  void SetKey(const uint8_t* key, int32_t keyByteCount, const uint8_t* chain, int32_t keyLength,
              int32_t blockSize, int32_t mode, int32_t padding);

  // One block of blockSize bytes; `in` and `out` may be the same.
  void EncryptBlock(const uint8_t* in, uint8_t* out);
  void DecryptBlock(const uint8_t* in, uint8_t* out);

  void GetSignature(uint8_t* output) override;
  void Encrypt(const uint8_t* source, uint8_t* target, int32_t count) override;
  void Decrypt(const uint8_t* source, uint8_t* target, int32_t count) override;
  // Fails with "Crypto: Error#1!" before SetKey, "Crypto: Error#8!<path>!" for one path given
  // twice, "Crypto: Error#7!<path>!" for a file that cannot be opened; a short transfer throws
  // TReadWriteException. The plain length is not stored: an empty source gives the signature only.
  void EncryptFile(const char* sourcePath, const char* targetPath) override;
  // Reading the file container back is not provided; does nothing.
  void DecryptFile(const char* sourcePath, const char* targetPath) override;
  void ResetChain() override;

  static constexpr int32_t kMaxBlock = 32;
  static constexpr int32_t kMaxRounds = 14;

 private:
  uint8_t key_[32] = {};
  uint32_t encryptKeys_[kMaxRounds + 1][8] = {};
  uint32_t decryptKeys_[kMaxRounds + 1][8] = {};
  int32_t rounds_ = 0;
  uint8_t startChain_[kMaxBlock] = {};
  uint8_t chain_[kMaxBlock] = {};
  uint8_t work_[3][kMaxBlock] = {};
};

}  // namespace verdal::crypto
