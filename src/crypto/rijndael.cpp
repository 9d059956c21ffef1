#include "crypto/rijndael.h"

#include <cstdio>
#include <cstring>
#include <stdexcept>
#include <string>

#include "io/fileex.h"
#include "crypto/sha.h"

namespace verdal::crypto {

namespace {

constexpr uint8_t Rotl8(uint8_t x, int n) { return static_cast<uint8_t>(x << n | x >> (8 - n)); }
constexpr uint8_t XTime(uint8_t x) { return static_cast<uint8_t>(x << 1 ^ (x & 0x80 ? 0x1b : 0)); }
constexpr uint8_t GfMul(uint8_t a, uint8_t b) {
  uint8_t r = 0;
  for (; b != 0; b >>= 1, a = XTime(a))
    if (b & 1) r ^= a;
  return r;
}
constexpr uint32_t Rotr32(uint32_t x, int n) { return n == 0 ? x : x >> n | x << (32 - n); }

// The S-box and the round tables of the Rijndael proposal, computed at compile time: the S-box
// from multiplicative inverses in GF(2^8) and the affine map, each T-table entry a column of
// MixColumns (or InvMixColumns) applied to one S-box (or inverse S-box) byte.
struct Tables {
  uint8_t sbox[256] = {};
  uint8_t inverse[256] = {};
  uint32_t te[4][256] = {};
  uint32_t td[4][256] = {};
};

constexpr Tables MakeTables() {
  Tables t;
  // p walks all non-zero elements as powers of 3; q is its inverse (powers of 3^-1).
  uint8_t p = 1, q = 1;
  do {
    p = static_cast<uint8_t>(p ^ XTime(p));
    q ^= static_cast<uint8_t>(q << 1);
    q ^= static_cast<uint8_t>(q << 2);
    q ^= static_cast<uint8_t>(q << 4);
    if (q & 0x80) q ^= 0x09;
    t.sbox[p] = static_cast<uint8_t>(q ^ Rotl8(q, 1) ^ Rotl8(q, 2) ^ Rotl8(q, 3) ^ Rotl8(q, 4) ^ 0x63);
  } while (p != 1);
  t.sbox[0] = 0x63;
  for (int i = 0; i < 256; ++i) t.inverse[t.sbox[i]] = static_cast<uint8_t>(i);
  for (int i = 0; i < 256; ++i) {
    const uint8_t s = t.sbox[i];
    const uint8_t v = t.inverse[i];
    const uint32_t e = uint32_t{GfMul(s, 2)} << 24 | uint32_t{s} << 16 | uint32_t{s} << 8 | GfMul(s, 3);
    const uint32_t d = uint32_t{GfMul(v, 14)} << 24 | uint32_t{GfMul(v, 9)} << 16 |
                       uint32_t{GfMul(v, 13)} << 8 | GfMul(v, 11);
    for (int k = 0; k < 4; ++k) {
      t.te[k][i] = Rotr32(e, 8 * k);
      t.td[k][i] = Rotr32(d, 8 * k);
    }
  }
  return t;
}

constexpr Tables kT = MakeTables();

inline uint32_t LoadBE32(const uint8_t* p) {
  return uint32_t{p[0]} << 24 | uint32_t{p[1]} << 16 | uint32_t{p[2]} << 8 | p[3];
}
inline void StoreBE32(uint8_t* p, uint32_t v) {
  p[0] = static_cast<uint8_t>(v >> 24);
  p[1] = static_cast<uint8_t>(v >> 16);
  p[2] = static_cast<uint8_t>(v >> 8);
  p[3] = static_cast<uint8_t>(v);
}

inline uint32_t SubWord(uint32_t w) {
  return uint32_t{kT.sbox[w >> 24]} << 24 | uint32_t{kT.sbox[w >> 16 & 0xff]} << 16 |
         uint32_t{kT.sbox[w >> 8 & 0xff]} << 8 | kT.sbox[w & 0xff];
}

// Row shifts: 1, 2, 3 for blocks of 4 and 6 columns, 1, 3, 4 for 8 columns.
template <int NB>
struct Shift {
  static constexpr int c1 = 1, c2 = NB == 8 ? 3 : 2, c3 = NB == 8 ? 4 : 3;
};

// The rounds of either direction for a block of NB columns. Row i of output column j comes from
// column j + Ci: the forward shifts for encryption, NB minus them for decryption, which runs the
// equivalent inverse cipher with the inverse tables and the inverse S-box.
template <int NB, int C1, int C2, int C3>
void Rounds(const uint32_t (&tab)[4][256], const uint8_t (&sub)[256], const uint32_t (*rk)[8],
            int rounds, const uint8_t* in, uint8_t* out) {
  uint32_t a[NB], t[NB];
#pragma GCC unroll 8
  for (int j = 0; j < NB; ++j) a[j] = LoadBE32(in + 4 * j) ^ rk[0][j];
  for (int r = 1; r < rounds; ++r) {
#pragma GCC unroll 8
    for (int j = 0; j < NB; ++j)
      t[j] = tab[0][a[j] >> 24] ^ tab[1][a[(j + C1) % NB] >> 16 & 0xff] ^
             tab[2][a[(j + C2) % NB] >> 8 & 0xff] ^ tab[3][a[(j + C3) % NB] & 0xff] ^ rk[r][j];
#pragma GCC unroll 8
    for (int j = 0; j < NB; ++j) a[j] = t[j];
  }
#pragma GCC unroll 8
  for (int j = 0; j < NB; ++j) {
    const uint32_t w = uint32_t{sub[a[j] >> 24]} << 24 | uint32_t{sub[a[(j + C1) % NB] >> 16 & 0xff]} << 16 |
                       uint32_t{sub[a[(j + C2) % NB] >> 8 & 0xff]} << 8 | sub[a[(j + C3) % NB] & 0xff];
    StoreBE32(out + 4 * j, w ^ rk[rounds][j]);
  }
}

// Row shifts: 1, 2, 3 for blocks of 4 and 6 columns, 1, 3, 4 for 8 columns.
template <int NB>
void EncryptColumns(const uint32_t (*rk)[8], int rounds, const uint8_t* in, uint8_t* out) {
  constexpr int c2 = NB == 8 ? 3 : 2, c3 = NB == 8 ? 4 : 3;
  Rounds<NB, 1, c2, c3>(kT.te, kT.sbox, rk, rounds, in, out);
}

template <int NB>
void DecryptColumns(const uint32_t (*rk)[8], int rounds, const uint8_t* in, uint8_t* out) {
  constexpr int c2 = NB == 8 ? 3 : 2, c3 = NB == 8 ? 4 : 3;
  Rounds<NB, NB - 1, NB - c2, NB - c3>(kT.td, kT.inverse, rk, rounds, in, out);
}

bool ValidSize(int32_t size) { return size == 16 || size == 24 || size == 32; }

}  // namespace

CRijndael::~CRijndael() {
  // Through a volatile pointer, so the wipe is not dropped as a dead store.
  volatile uint8_t* p = reinterpret_cast<volatile uint8_t*>(this->key_);
  for (size_t i = 0; i < sizeof key_; ++i) p[i] = 0;
  p = reinterpret_cast<volatile uint8_t*>(encryptKeys_);
  for (size_t i = 0; i < sizeof encryptKeys_; ++i) p[i] = 0;
  p = reinterpret_cast<volatile uint8_t*>(decryptKeys_);
  for (size_t i = 0; i < sizeof decryptKeys_; ++i) p[i] = 0;
}

void CRijndael::SetKey(const uint8_t* key, int32_t keyByteCount, const uint8_t* chain,
                       int32_t newKeyLength, int32_t newBlockSize, int32_t newMode,
                       int32_t newPadding) {
  if (key == nullptr) throw std::runtime_error("Crypto: Error#4!");
  if (keyByteCount < 1) throw std::runtime_error("Crypto: Error#5!");
  if (!ValidSize(newKeyLength)) throw std::runtime_error("Illegal Key Length!");
  if (!ValidSize(newBlockSize)) throw std::runtime_error("Crypto: Error#6!");
  CheckMode(newMode);
  CheckPadding(newPadding);
  ready = false;
  mode = newMode;
  padding = newPadding;

  for (int32_t i = 0; i < newKeyLength; ++i) key_[i] = key[i % keyByteCount];
  blockSize = newBlockSize;
  if (chain != nullptr)
    std::memcpy(startChain_, chain, static_cast<size_t>(blockSize));
  else
    std::memset(startChain_, 0, sizeof startChain_);
  std::memcpy(chain_, startChain_, sizeof chain_);
  keyLength = newKeyLength;

  const int nk = keyLength / 4;
  const int nb = blockSize / 4;
  rounds_ = (nk > nb ? nk : nb) + 6;

  // Key expansion into Nb * (rounds + 1) words, written round by round.
  const int total = nb * (rounds_ + 1);
  uint32_t w[(kMaxRounds + 1) * 8];
  for (int i = 0; i < nk; ++i) w[i] = LoadBE32(key_ + 4 * i);
  uint8_t rcon = 1;
  for (int i = nk; i < total; ++i) {
    uint32_t temp = w[i - 1];
    if (i % nk == 0) {
      temp = SubWord(temp << 8 | temp >> 24) ^ uint32_t{rcon} << 24;
      rcon = XTime(rcon);
    } else if (nk > 6 && i % nk == 4) {
      temp = SubWord(temp);
    }
    w[i] = w[i - nk] ^ temp;
  }
  for (int r = 0; r <= rounds_; ++r)
    for (int j = 0; j < nb; ++j) encryptKeys_[r][j] = w[r * nb + j];

  // The equivalent inverse cipher: round keys in reverse order, the inner ones passed through
  // InvMixColumns (td of sbox undoes the inverse S-box inside td).
  for (int r = 0; r <= rounds_; ++r) {
    for (int j = 0; j < nb; ++j) {
      const uint32_t k = encryptKeys_[rounds_ - r][j];
      decryptKeys_[r][j] =
          (r == 0 || r == rounds_)
              ? k
              : kT.td[0][kT.sbox[k >> 24]] ^ kT.td[1][kT.sbox[k >> 16 & 0xff]] ^
                    kT.td[2][kT.sbox[k >> 8 & 0xff]] ^ kT.td[3][kT.sbox[k & 0xff]];
    }
  }
  std::memset(w, 0, sizeof w);
  ready = true;
}

void CRijndael::EncryptBlock(const uint8_t* in, uint8_t* out) {
  CheckReady();
  switch (blockSize) {
    case 16: EncryptColumns<4>(encryptKeys_, rounds_, in, out); break;
    case 24: EncryptColumns<6>(encryptKeys_, rounds_, in, out); break;
    default: EncryptColumns<8>(encryptKeys_, rounds_, in, out); break;
  }
}

void CRijndael::DecryptBlock(const uint8_t* in, uint8_t* out) {
  CheckReady();
  switch (blockSize) {
    case 16: DecryptColumns<4>(decryptKeys_, rounds_, in, out); break;
    case 24: DecryptColumns<6>(decryptKeys_, rounds_, in, out); break;
    default: DecryptColumns<8>(decryptKeys_, rounds_, in, out); break;
  }
}

void CRijndael::ResetChain() {
  CheckReady();
  std::memcpy(chain_, startChain_, sizeof chain_);
}

void CRijndael::Encrypt(const uint8_t* source, uint8_t* target, int32_t count) {
  CheckReady();
  if (count == 0 || count % blockSize != 0) throw std::runtime_error("Crypto: Error#6!");
  const size_t bs = static_cast<size_t>(blockSize);
  for (int32_t done = 0; done < count; done += blockSize, source += bs, target += bs) {
    switch (mode) {
      case kECB: EncryptBlock(source, target); break;
      case kCBC:
        XorBlock(chain_, source);
        EncryptBlock(chain_, target);
        std::memcpy(chain_, target, bs);
        break;
      default:  // CFB
        EncryptBlock(chain_, work_[0]);
        XorBlock(work_[0], source);
        std::memcpy(target, work_[0], bs);
        std::memcpy(chain_, work_[0], bs);
        break;
    }
  }
}

void CRijndael::Decrypt(const uint8_t* source, uint8_t* target, int32_t count) {
  CheckReady();
  if (count == 0 || count % blockSize != 0) throw std::runtime_error("Crypto: Error#6!");
  const size_t bs = static_cast<size_t>(blockSize);
  for (int32_t done = 0; done < count; done += blockSize, source += bs, target += bs) {
    switch (mode) {
      case kECB: DecryptBlock(source, target); break;
      case kCBC:
        std::memcpy(work_[1], source, bs);  // the source may be the target
        DecryptBlock(source, target);
        XorBlock(target, chain_);
        std::memcpy(chain_, work_[1], bs);
        break;
      default:  // CFB
        std::memcpy(work_[1], source, bs);
        EncryptBlock(chain_, work_[0]);
        XorBlock(work_[0], source);
        std::memcpy(target, work_[0], bs);
        std::memcpy(chain_, work_[1], bs);
        break;
    }
  }
}

void CRijndael::GetSignature(uint8_t* output) {
  // "RIJNDAEL", the key bytes, then block size, key length, mode and padding in decimal. The
  // text ends at its first NUL, which a key byte of 0 brings forward.
  char text[8 + 32 + 4 * 12 + 1] = "RIJNDAEL";
  std::memcpy(text + 8, key_, static_cast<size_t>(keyLength));
  std::snprintf(text + 8 + keyLength, sizeof text - 8 - static_cast<size_t>(keyLength), "%d%d%d%d",
                blockSize, keyLength, mode, padding);
  CSHA::Hash(CSHA::kSHA1, text, static_cast<int32_t>(std::strlen(text)), output);
}

void CRijndael::EncryptFile(const char* sourcePath, const char* targetPath) {
  CheckReady();
  const std::string source = sourcePath ? sourcePath : "";
  const std::string target = targetPath ? targetPath : "";
  if (source == target) throw std::runtime_error("Crypto: Error#8!" + source + "!");

  TFileEx in;
  if (!in.Open(source.c_str(), TFileEx::kRead | TFileEx::kShareNone))
    throw std::runtime_error("Crypto: Error#7!" + source + "!");
  TFileEx out;
  if (!out.Open(target.c_str(),
                TFileEx::kReadWrite | TFileEx::kCreate | TFileEx::kTruncate | TFileEx::kShareNone))
    throw std::runtime_error("Crypto: Error#7!" + target + "!");

  uint8_t signature[32] = {};
  GetSignature(signature);
  out.Write(signature, sizeof signature);
  ResetChain();

  // 384 bytes is a multiple of every block size, so only the last piece needs padding.
  constexpr int32_t kPiece = 384;
  uint8_t plain[kPiece];
  uint8_t cipher[kPiece];
  int32_t left = in.GetLength();
  if (left < 0) throw TReadWriteException();
  while (left > 0) {
    const int32_t piece = left < kPiece ? left : kPiece;
    in.Read(plain, piece);
    left -= piece;
    const int32_t padded = Pad(plain, piece);
    Encrypt(plain, cipher, padded);
    out.Write(cipher, padded);
  }
}

void CRijndael::DecryptFile(const char*, const char*) {}

}  // namespace verdal::crypto
