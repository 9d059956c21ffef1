#include "crypto/sha.h"

#if defined(__x86_64__) || defined(__i386__)
#include <cpuid.h>
#include <immintrin.h>
#define VERDAL_SHA_EXTENSIONS 1
#endif

#include <cstring>
#include <stdexcept>
#include <string>

namespace verdal::crypto {

namespace {

constexpr uint32_t kSha1Start[5] = {0x67452301, 0xefcdab89, 0x98badcfe, 0x10325476, 0xc3d2e1f0};
constexpr uint32_t kSha256Start[8] = {0x6a09e667, 0xbb67ae85, 0x3c6ef372, 0xa54ff53a,
                                      0x510e527f, 0x9b05688c, 0x1f83d9ab, 0x5be0cd19};
constexpr uint64_t kSha384Start[8] = {0xcbbb9d5dc1059ed8, 0x629a292a367cd507, 0x9159015a3070dd17,
                                      0x152fecd8f70e5939, 0x67332667ffc00b31, 0x8eb44a8768581511,
                                      0xdb0c2e0d64f98fa7, 0x47b5481dbefa4fa4};
constexpr uint64_t kSha512Start[8] = {0x6a09e667f3bcc908, 0xbb67ae8584caa73b, 0x3c6ef372fe94f82b,
                                      0xa54ff53a5f1d36f1, 0x510e527fade682d1, 0x9b05688c2b3e6c1f,
                                      0x1f83d9abfb41bd6b, 0x5be0cd19137e2179};

constexpr uint32_t K256[64] = {
    0x428a2f98, 0x71374491, 0xb5c0fbcf, 0xe9b5dba5, 0x3956c25b, 0x59f111f1, 0x923f82a4, 0xab1c5ed5,
    0xd807aa98, 0x12835b01, 0x243185be, 0x550c7dc3, 0x72be5d74, 0x80deb1fe, 0x9bdc06a7, 0xc19bf174,
    0xe49b69c1, 0xefbe4786, 0x0fc19dc6, 0x240ca1cc, 0x2de92c6f, 0x4a7484aa, 0x5cb0a9dc, 0x76f988da,
    0x983e5152, 0xa831c66d, 0xb00327c8, 0xbf597fc7, 0xc6e00bf3, 0xd5a79147, 0x06ca6351, 0x14292967,
    0x27b70a85, 0x2e1b2138, 0x4d2c6dfc, 0x53380d13, 0x650a7354, 0x766a0abb, 0x81c2c92e, 0x92722c85,
    0xa2bfe8a1, 0xa81a664b, 0xc24b8b70, 0xc76c51a3, 0xd192e819, 0xd6990624, 0xf40e3585, 0x106aa070,
    0x19a4c116, 0x1e376c08, 0x2748774c, 0x34b0bcb5, 0x391c0cb3, 0x4ed8aa4a, 0x5b9cca4f, 0x682e6ff3,
    0x748f82ee, 0x78a5636f, 0x84c87814, 0x8cc70208, 0x90befffa, 0xa4506ceb, 0xbef9a3f7, 0xc67178f2};

constexpr uint64_t K512[80] = {
    0x428a2f98d728ae22, 0x7137449123ef65cd, 0xb5c0fbcfec4d3b2f, 0xe9b5dba58189dbbc,
    0x3956c25bf348b538, 0x59f111f1b605d019, 0x923f82a4af194f9b, 0xab1c5ed5da6d8118,
    0xd807aa98a3030242, 0x12835b0145706fbe, 0x243185be4ee4b28c, 0x550c7dc3d5ffb4e2,
    0x72be5d74f27b896f, 0x80deb1fe3b1696b1, 0x9bdc06a725c71235, 0xc19bf174cf692694,
    0xe49b69c19ef14ad2, 0xefbe4786384f25e3, 0x0fc19dc68b8cd5b5, 0x240ca1cc77ac9c65,
    0x2de92c6f592b0275, 0x4a7484aa6ea6e483, 0x5cb0a9dcbd41fbd4, 0x76f988da831153b5,
    0x983e5152ee66dfab, 0xa831c66d2db43210, 0xb00327c898fb213f, 0xbf597fc7beef0ee4,
    0xc6e00bf33da88fc2, 0xd5a79147930aa725, 0x06ca6351e003826f, 0x142929670a0e6e70,
    0x27b70a8546d22ffc, 0x2e1b21385c26c926, 0x4d2c6dfc5ac42aed, 0x53380d139d95b3df,
    0x650a73548baf63de, 0x766a0abb3c77b2a8, 0x81c2c92e47edaee6, 0x92722c851482353b,
    0xa2bfe8a14cf10364, 0xa81a664bbc423001, 0xc24b8b70d0f89791, 0xc76c51a30654be30,
    0xd192e819d6ef5218, 0xd69906245565a910, 0xf40e35855771202a, 0x106aa07032bbd1b8,
    0x19a4c116b8d2d0c8, 0x1e376c085141ab53, 0x2748774cdf8eeb99, 0x34b0bcb5e19b48a8,
    0x391c0cb3c5c95a63, 0x4ed8aa4ae3418acb, 0x5b9cca4f7763e373, 0x682e6ff3d6b2b8a3,
    0x748f82ee5defb2fc, 0x78a5636f43172f60, 0x84c87814a1f0ab72, 0x8cc702081a6439ec,
    0x90befffa23631e28, 0xa4506cebde82bde9, 0xbef9a3f7b2c67915, 0xc67178f2e372532b,
    0xca273eceea26619c, 0xd186b8c721c0c207, 0xeada7dd6cde0eb1e, 0xf57d4f7fee6ed178,
    0x06f067aa72176fba, 0x0a637dc5a2c898a6, 0x113f9804bef90dae, 0x1b710b35131c471b,
    0x28db77f523047d84, 0x32caab7b40c72493, 0x3c9ebe0a15c9bebc, 0x431d67c49c100d4c,
    0x4cc5d4becb3e42b6, 0x597f299cfc657e2a, 0x5fcb6fab3ad6faec, 0x6c44198c4a475817};

inline uint32_t Rotl32(uint32_t x, int n) { return (x << n) | (x >> (32 - n)); }

inline uint32_t LoadBE32(const uint8_t* p) {
  return uint32_t{p[0]} << 24 | uint32_t{p[1]} << 16 | uint32_t{p[2]} << 8 | p[3];
}
inline uint64_t LoadBE64(const uint8_t* p) { return uint64_t{LoadBE32(p)} << 32 | LoadBE32(p + 4); }
inline void StoreBE32(uint8_t* p, uint32_t v) {
  p[0] = static_cast<uint8_t>(v >> 24);
  p[1] = static_cast<uint8_t>(v >> 16);
  p[2] = static_cast<uint8_t>(v >> 8);
  p[3] = static_cast<uint8_t>(v);
}
inline void StoreBE64(uint8_t* p, uint64_t v) {
  StoreBE32(p, static_cast<uint32_t>(v >> 32));
  StoreBE32(p + 4, static_cast<uint32_t>(v));
}

void Sha1Blocks(uint32_t* h, const uint8_t* data, uint64_t blocks) {
  for (; blocks > 0; --blocks, data += 64) {
    uint32_t w[80];
    for (int t = 0; t < 16; ++t) w[t] = LoadBE32(data + 4 * t);
    for (int t = 16; t < 80; ++t) w[t] = Rotl32(w[t - 3] ^ w[t - 8] ^ w[t - 14] ^ w[t - 16], 1);
    uint32_t a = h[0], b = h[1], c = h[2], d = h[3], e = h[4];
    // Four stretches of 20 rounds, each with its own function and constant.
    auto step = [&](uint32_t f, uint32_t k, uint32_t word) {
      const uint32_t temp = Rotl32(a, 5) + f + e + k + word;
      e = d;
      d = c;
      c = Rotl32(b, 30);
      b = a;
      a = temp;
    };
    for (int t = 0; t < 20; ++t) step((b & c) | (~b & d), 0x5a827999, w[t]);
    for (int t = 20; t < 40; ++t) step(b ^ c ^ d, 0x6ed9eba1, w[t]);
    for (int t = 40; t < 60; ++t) step((b & c) | (b & d) | (c & d), 0x8f1bbcdc, w[t]);
    for (int t = 60; t < 80; ++t) step(b ^ c ^ d, 0xca62c1d6, w[t]);
    h[0] += a;
    h[1] += b;
    h[2] += c;
    h[3] += d;
    h[4] += e;
  }
}

// SHA-256 and SHA-512 share one compression: only the word width, the round count, the round
// constants and the rotation amounts differ.
template <typename Word>
struct Sha2Params;
template <>
struct Sha2Params<uint32_t> {
  static constexpr int kRounds = 64;
  static constexpr int kBig0[3] = {2, 13, 22}, kBig1[3] = {6, 11, 25};
  static constexpr int kSmall0[3] = {7, 18, 3}, kSmall1[3] = {17, 19, 10};
  static constexpr const uint32_t* kConstants = K256;
};
template <>
struct Sha2Params<uint64_t> {
  static constexpr int kRounds = 80;
  static constexpr int kBig0[3] = {28, 34, 39}, kBig1[3] = {14, 18, 41};
  static constexpr int kSmall0[3] = {1, 8, 7}, kSmall1[3] = {19, 61, 6};
  static constexpr const uint64_t* kConstants = K512;
};

template <typename Word>
inline Word Rotr(Word x, int n) {
  return (x >> n) | (x << (8 * sizeof(Word) - n));
}

template <typename Word>
void Sha2Blocks(Word* h, const uint8_t* data, uint64_t blocks) {
  using P = Sha2Params<Word>;
  auto big = [](Word x, const int (&r)[3]) { return Rotr(x, r[0]) ^ Rotr(x, r[1]) ^ Rotr(x, r[2]); };
  auto small = [](Word x, const int (&r)[3]) { return Rotr(x, r[0]) ^ Rotr(x, r[1]) ^ (x >> r[2]); };
  for (; blocks > 0; --blocks, data += 16 * sizeof(Word)) {
    // The schedule lives in a ring of 16 words, extended as the rounds consume it.
    Word w[16];
    for (int t = 0; t < 16; ++t) {
      if constexpr (sizeof(Word) == 4)
        w[t] = LoadBE32(data + 4 * t);
      else
        w[t] = LoadBE64(data + 8 * t);
    }
    Word a = h[0], b = h[1], c = h[2], d = h[3], e = h[4], f = h[5], g = h[6], k = h[7];
    for (int base = 0; base < P::kRounds; base += 16) {
      // Unrolled by sixteen: ring indices become constants and the rotation of the working
      // variables becomes register renaming.
#pragma GCC unroll 16
      for (int i = 0; i < 16; ++i) {
        if (base > 0)
          w[i] += small(w[(i + 1) & 15], P::kSmall0) + w[(i + 9) & 15] + small(w[(i + 14) & 15], P::kSmall1);
        const Word t1 = k + big(e, P::kBig1) + ((e & f) ^ (~e & g)) + P::kConstants[base + i] + w[i];
        const Word t2 = big(a, P::kBig0) + ((a & b) ^ (a & c) ^ (b & c));
        k = g;
        g = f;
        f = e;
        e = d + t1;
        d = c;
        c = b;
        b = a;
        a = t1 + t2;
      }
    }
    const Word out[8] = {a, b, c, d, e, f, g, k};
    for (int i = 0; i < 8; ++i) h[i] += out[i];
  }
}

void Sha256BlocksPortable(uint32_t* h, const uint8_t* data, uint64_t blocks) {
  Sha2Blocks<uint32_t>(h, data, blocks);
}

#ifdef VERDAL_SHA_EXTENSIONS
// SHA-256 on the processor's SHA extensions. The state lives in two registers as ABEF and CDGH;
// each sha256rnds2 runs two rounds, and msg1/msg2 extend the message four words at a time.
__attribute__((target("sha,sse4.1,ssse3"))) void Sha256BlocksHardware(uint32_t* h,
                                                                       const uint8_t* data,
                                                                       uint64_t blocks) {
  const __m128i byteSwap = _mm_set_epi64x(0x0c0d0e0f08090a0bLL, 0x0405060700010203LL);
  const __m128i dcba = _mm_shuffle_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i*>(h)), 0xb1);
  const __m128i efgh = _mm_shuffle_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i*>(h + 4)), 0x1b);
  __m128i abef = _mm_alignr_epi8(dcba, efgh, 8);
  __m128i cdgh = _mm_blend_epi16(efgh, dcba, 0xf0);

  for (; blocks > 0; --blocks, data += 64) {
    const __m128i abefStart = abef, cdghStart = cdgh;
    __m128i w[4];  // words 4i .. 4i+3 of the schedule, in a ring of four groups
    for (int i = 0; i < 4; ++i)
      w[i] = _mm_shuffle_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(data + 16 * i)), byteSwap);
#pragma GCC unroll 16
    for (int i = 0; i < 16; ++i) {
      __m128i m = _mm_add_epi32(w[i & 3], _mm_loadu_si128(reinterpret_cast<const __m128i*>(K256 + 4 * i)));
      cdgh = _mm_sha256rnds2_epu32(cdgh, abef, m);
      abef = _mm_sha256rnds2_epu32(abef, cdgh, _mm_shuffle_epi32(m, 0x0e));
      if (i < 12) {
        // Group i + 4 from groups i .. i + 3: W[t-16] + s0(W[t-15]) + W[t-7] + s1(W[t-2]).
        __m128i next = _mm_sha256msg1_epu32(w[i & 3], w[(i + 1) & 3]);
        next = _mm_add_epi32(next, _mm_alignr_epi8(w[(i + 3) & 3], w[(i + 2) & 3], 4));
        w[i & 3] = _mm_sha256msg2_epu32(next, w[(i + 3) & 3]);
      }
    }
    abef = _mm_add_epi32(abef, abefStart);
    cdgh = _mm_add_epi32(cdgh, cdghStart);
  }

  const __m128i feba = _mm_shuffle_epi32(abef, 0x1b);
  const __m128i dchg = _mm_shuffle_epi32(cdgh, 0xb1);
  _mm_storeu_si128(reinterpret_cast<__m128i*>(h), _mm_blend_epi16(feba, dchg, 0xf0));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(h + 4), _mm_alignr_epi8(dchg, feba, 8));
}

bool ShaExtensionsPresent() {
  unsigned a, b, c, d;
  if (!__get_cpuid(1, &a, &b, &c, &d)) return false;
  const bool ssse3 = c & (1u << 9), sse41 = c & (1u << 19);
  if (!__get_cpuid_count(7, 0, &a, &b, &c, &d)) return false;
  return ssse3 && sse41 && (b & (1u << 29));
}

#else
bool ShaExtensionsPresent() { return false; }
void Sha256BlocksHardware(uint32_t* h, const uint8_t* data, uint64_t blocks) {
  Sha256BlocksPortable(h, data, blocks);
}
#endif

bool useHardware = ShaExtensionsPresent();

void Sha256Blocks(uint32_t* h, const uint8_t* data, uint64_t blocks) {
  if (useHardware)
    Sha256BlocksHardware(h, data, blocks);
  else
    Sha256BlocksPortable(h, data, blocks);
}

}  // namespace

CSHA::CSHA(int32_t method) : method_(method) {
  if (method < kSHA1 || method > kSHA512)
    throw std::runtime_error("FileDigest ERROR: in CSHA() Constructor, Illegal Method " +
                             std::to_string(method) + "!");
  Reset();
}

int32_t CSHA::DigestLength() const {
  constexpr int32_t kLengths[4] = {20, 32, 48, 64};
  return kLengths[method_];
}

void CSHA::Reset() {
  std::memset(state32_, 0, sizeof state32_);
  std::memset(state64_, 0, sizeof state64_);
  std::memset(block_, 0, sizeof block_);
  switch (method_) {
    case kSHA1: std::memcpy(state32_, kSha1Start, sizeof kSha1Start); break;
    case kSHA256: std::memcpy(state32_, kSha256Start, sizeof kSha256Start); break;
    case kSHA384: std::memcpy(state64_, kSha384Start, sizeof kSha384Start); break;
    default: std::memcpy(state64_, kSha512Start, sizeof kSha512Start); break;
  }
  byteCount_ = 0;
  byteCountHigh_ = 0;
  blockFill_ = 0;
  addedData = false;
}

void CSHA::Compress(const uint8_t* data, uint64_t blocks) {
  switch (method_) {
    case kSHA1: Sha1Blocks(state32_, data, blocks); break;
    case kSHA256: Sha256Blocks(state32_, data, blocks); break;
    default: Sha2Blocks<uint64_t>(state64_, data, blocks); break;
  }
}

void CSHA::Transform() { Compress(block_, 1); }

void CSHA::AddData(const void* data, int32_t count) {
  if (count < 0)
    throw std::runtime_error("FileDigest ERROR: in CSHA::AddData(), Data Length should be >= 0!");
  addedData = true;
  const auto* p = static_cast<const uint8_t*>(data);
  const uint32_t blockSize = static_cast<uint32_t>(BlockSize());
  uint32_t left = static_cast<uint32_t>(count);
  const uint64_t before = byteCount_;
  byteCount_ += left;
  if (byteCount_ < before) ++byteCountHigh_;

  if (blockFill_ > 0) {
    const uint32_t take = left < blockSize - blockFill_ ? left : blockSize - blockFill_;
    std::memcpy(block_ + blockFill_, p, take);
    blockFill_ += take;
    p += take;
    left -= take;
    if (blockFill_ < blockSize) return;
    Transform();
    blockFill_ = 0;
  }
  // Whole blocks straight from the caller's data, without copying them.
  if (left >= blockSize) {
    const uint32_t blocks = left / blockSize;
    Compress(p, blocks);
    p += blocks * blockSize;
    left -= blocks * blockSize;
  }
  if (left > 0) std::memcpy(block_, p, left);
  blockFill_ = left;
}

void CSHA::FinalDigest(uint8_t* output) {
  if (!addedData)
    throw std::runtime_error(
        "FileDigest ERROR: in CSHA::FinalDigest(), No data Added before call!");
  const uint32_t blockSize = static_cast<uint32_t>(BlockSize());
  const uint32_t lengthSize = blockSize / 4;  // 8 bytes of bit count for 64-byte blocks, else 16
  block_[blockFill_++] = 0x80;
  if (blockFill_ > blockSize - lengthSize) {
    std::memset(block_ + blockFill_, 0, blockSize - blockFill_);
    Transform();
    blockFill_ = 0;
  }
  std::memset(block_ + blockFill_, 0, blockSize - blockFill_);
  const uint64_t bitsLow = byteCount_ << 3;
  const uint64_t bitsHigh = byteCountHigh_ << 3 | byteCount_ >> 61;
  StoreBE64(block_ + blockSize - 8, bitsLow);
  if (lengthSize == 16) StoreBE64(block_ + blockSize - 16, bitsHigh);
  Transform();

  const int32_t length = DigestLength();
  if (method_ <= kSHA256) {
    for (int32_t i = 0; i < length / 4; ++i) StoreBE32(output + 4 * i, state32_[i]);
  } else {
    for (int32_t i = 0; i < length / 8; ++i) StoreBE64(output + 8 * i, state64_[i]);
  }
  Reset();
}

bool CSHA::UseHardware(bool use) {
  useHardware = use && ShaExtensionsPresent();
  return useHardware;
}

void CSHA::Hash(int32_t method, const void* data, int32_t count, uint8_t* output) {
  CSHA sha(method);
  sha.AddData(data, count);
  sha.FinalDigest(output);
}

}  // namespace verdal::crypto
