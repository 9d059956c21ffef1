#pragma once
// Message digests: the abstract IMessageDigest and CSHA, the Secure Hash Standard (FIPS 180-2).
//
//   method 0  SHA-1    64-byte blocks, 20-byte digest
//   method 1  SHA-256  64-byte blocks, 32-byte digest (the memory container)
//   method 2  SHA-384 128-byte blocks, 48-byte digest
//   method 3  SHA-512 128-byte blocks, 64-byte digest
//
// AddData may be called any number of times; FinalDigest writes the digest (state words most
// significant byte first) and resets the object, so it can hash again. FinalDigest without an
// AddData since the last Reset throws; AddData with a count of 0 counts as data.
// All failures are std::runtime_error.

#include <cstdint>

namespace verdal::crypto {

class IMessageDigest {
 public:
  virtual ~IMessageDigest() = default;
  virtual void AddData(const void* data, int32_t count) = 0;
  // `output` must hold the digest length of the method.
  virtual void FinalDigest(uint8_t* output) = 0;
  virtual void Reset() = 0;

 protected:
  IMessageDigest() = default;
  // Folds the filled data block into the state.
  virtual void Transform() = 0;

  bool addedData = false;
};

class CSHA : public IMessageDigest {
 public:
  enum Method : int32_t { kSHA1 = 0, kSHA256 = 1, kSHA384 = 2, kSHA512 = 3 };

  // Throws for a method other than 0 to 3.
  explicit CSHA(int32_t method);

  void AddData(const void* data, int32_t count) override;
  void FinalDigest(uint8_t* output) override;
  void Reset() override;

  int32_t Method() const { return method_; }
  int32_t DigestLength() const;
  int32_t BlockSize() const { return method_ <= kSHA256 ? 64 : 128; }

  // SHA-256 runs on the processor's SHA extensions where present. This switches between that and
  // the portable code (for tests and measurements); returns whether the extensions are now used.
  static bool UseHardware(bool use);

  // One-call form: the digest of `count` bytes.
  static void Hash(int32_t method, const void* data, int32_t count, uint8_t* output);

 protected:
  void Transform() override;

 private:
  // Folds `blocks` whole blocks of the method's size into the state.
  void Compress(const uint8_t* data, uint64_t blocks);

  int32_t method_;
  uint32_t state32_[8];  // methods 0 and 1; SHA-1 uses five words
  uint64_t byteCount_;   // bytes added so far; methods 2 and 3 keep the high bits below
  uint64_t byteCountHigh_;
  uint8_t block_[128];
  uint32_t blockFill_;   // bytes waiting in block_
  uint64_t state64_[8];  // methods 2 and 3
};

}  // namespace verdal::crypto
