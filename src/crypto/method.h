#pragma once
// IMethod: the abstract block cipher with its chaining mode and padding.
//
// A cipher object is prepared by its own SetKey (CRijndael::SetKey); until then every operation
// except SetKey and GetSignature throws "Crypto: Error#1!". Encrypt and Decrypt take a non-zero
// multiple of the block size and keep the chain block between calls, so a long message may be
// passed in pieces; ResetChain starts a new message. Source and target may be the same buffer.
// All failures are std::runtime_error.

#include <cstdint>

namespace verdal::crypto {

class IMethod {
 public:
  enum Mode : int32_t { kECB = 0, kCBC = 1, kCFB = 2 };
  enum Padding : int32_t { kPadZero = 0, kPadBlank = 1, kPadCount = 2 };

  // The text a reader of the file container raises for a file without the right signature,
  // followed by the file's name and "!".
  static constexpr const char* kNotEncryptedFile = "FileCrypt ERROR: Not an FileCrypt Encrypted File ";

  virtual ~IMethod() = default;

  // SHA-1 of the cipher's description and key into the first 20 bytes of a 32-byte buffer that
  // the caller filled with zero; the last 12 bytes are left alone.
  virtual void GetSignature(uint8_t* output) = 0;
  virtual void Encrypt(const uint8_t* source, uint8_t* target, int32_t count) = 0;
  virtual void Decrypt(const uint8_t* source, uint8_t* target, int32_t count) = 0;
  // Writes the 32-byte signature and then the padded cipher text of the whole source file.
  virtual void EncryptFile(const char* sourcePath, const char* targetPath) = 0;
  virtual void DecryptFile(const char* sourcePath, const char* targetPath) = 0;
  virtual void ResetChain() = 0;

  void SetMode(int32_t mode);
  void SetPadding(int32_t padding);
  int32_t GetKeyLength() const;
  int32_t GetBlockSize() const;
  int32_t GetMode() const;
  int32_t GetPadding() const;
  // XORs blockSize bytes of `other` into `target`.
  void XorBlock(uint8_t* target, const uint8_t* other) const;
  // Fills `buffer` up to the next multiple of the block size and returns the padded count; a
  // count that is already a multiple gets nothing. The buffer must have room.
  int32_t Pad(uint8_t* buffer, int32_t count) const;

 protected:
  IMethod() = default;
  void CheckReady() const;
  static void CheckMode(int32_t mode);
  static void CheckPadding(int32_t padding);

  bool ready = false;
  int32_t blockSize = 0;
  int32_t keyLength = 0;
  int32_t mode = kECB;
  int32_t padding = kPadZero;
};

}  // namespace verdal::crypto
