#pragma once
// The enciphered container of a database payload, and the password key behind it.
//
// Layout (69 + P bytes, P = plain length rounded up to a multiple of 32):
//   offset  0, 65 bytes  SHA-256 of the plain data (32 bytes), then 33 zero bytes; in clear
//   offset 65,  4 bytes  plain length, little-endian; in clear
//   offset 69,  P bytes  the plain data padded with zero bytes, Rijndael 256/256 ECB
//
// The key is the password (at most its first 31 bytes) repeated to 32 bytes: no salt, no
// iteration. Nothing of the password is stored; a wrong password shows only as a digest
// mismatch after the whole payload is deciphered. An empty password cannot make a key
// ("Crypto: Error#5!"). Failures are std::runtime_error.

#include <cstdint>
#include <vector>

#include "crypto/rijndael.h"

namespace verdal::crypto {

constexpr int32_t kContainerDigestField = 65;
constexpr int32_t kContainerHeaderLength = 69;

// Prepares `cipher` for a password: 32-byte key and block, zero chain, ECB, zero padding.
void SetPasswordKey(CRijndael& cipher, const char* password);

// Builds the container of `sourceLength` bytes into `target` (replacing its contents);
// targetLength becomes target.size() and headerLength 69. An empty source gives the header only.
void EncryptMemory(const char* password, const uint8_t* source, int32_t sourceLength,
                   std::vector<uint8_t>& target, int32_t& targetLength, int32_t& headerLength);

// Deciphers a container into `target` (sourceLength - 69 bytes, the padded plain data) and sets
// plainLength to the stored plain length. True only if the digest of the first plainLength bytes
// matches the stored one, i.e. the password was right and the data whole. On false the caller
// still owns whatever `target` holds. A stored length that is negative or larger than the
// deciphered bytes gives false; a container shorter than its header or not a whole number of
// blocks throws "Crypto: Error#6!".
bool DecryptMemory(const char* password, const uint8_t* source, int32_t sourceLength,
                   std::vector<uint8_t>& target, int32_t& plainLength);

// The password form of the file encipherer: prepares a cipher as above and calls
// CRijndael::EncryptFile.
void EncryptFile(const char* password, const char* sourcePath, const char* targetPath);

}  // namespace verdal::crypto
