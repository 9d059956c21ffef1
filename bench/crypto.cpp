// Throughput of the digest and the cipher over 64 MB, as a database save and load use them.
#include <benchmark/benchmark.h>

#include <vector>

#include "crypto/memory_container.h"
#include "crypto/rijndael.h"
#include "crypto/sha.h"

namespace {

using verdal::crypto::CRijndael;
using verdal::crypto::CSHA;

constexpr int32_t kBytes = 64 << 20;

std::vector<uint8_t> Data() {
  std::vector<uint8_t> data(kBytes);
  uint32_t x = 1;
  for (auto& b : data) b = static_cast<uint8_t>((x = x * 1664525 + 1013904223) >> 24);
  return data;
}

// Arg 0: the portable code; arg 1: the processor's SHA extensions (skipped where absent).
void BM_Sha256(benchmark::State& state) {
  const std::vector<uint8_t> data = Data();
  uint8_t digest[32];
  if (CSHA::UseHardware(state.range(0) == 1) != (state.range(0) == 1)) {
    state.SkipWithError("no SHA extensions on this processor");
  }
  for (auto _ : state) {
    CSHA::Hash(CSHA::kSHA256, data.data(), kBytes, digest);
    benchmark::DoNotOptimize(digest);
  }
  CSHA::UseHardware(true);
  state.SetBytesProcessed(state.iterations() * int64_t{kBytes});
}
BENCHMARK(BM_Sha256)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

void BM_Sha1(benchmark::State& state) {
  const std::vector<uint8_t> data = Data();
  uint8_t digest[20];
  for (auto _ : state) {
    CSHA::Hash(CSHA::kSHA1, data.data(), kBytes, digest);
    benchmark::DoNotOptimize(digest);
  }
  state.SetBytesProcessed(state.iterations() * int64_t{kBytes});
}
BENCHMARK(BM_Sha1)->Unit(benchmark::kMillisecond);

// Rijndael with a 32-byte key and block in ECB, encrypting (arg 0) or decrypting (arg 1).
void BM_Rijndael256Ecb(benchmark::State& state) {
  std::vector<uint8_t> data = Data();
  const uint8_t key[32] = {1, 2, 3, 4, 5, 6, 7, 8};
  CRijndael cipher;
  cipher.SetKey(key, 32, nullptr, 32, 32, CRijndael::kECB, CRijndael::kPadZero);
  for (auto _ : state) {
    if (state.range(0) == 0)
      cipher.Encrypt(data.data(), data.data(), kBytes);
    else
      cipher.Decrypt(data.data(), data.data(), kBytes);
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(state.iterations() * int64_t{kBytes});
}
BENCHMARK(BM_Rijndael256Ecb)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

// The 16-byte block (AES-128) for comparison with the 32-byte block the engine uses.
void BM_Rijndael128Ecb(benchmark::State& state) {
  std::vector<uint8_t> data = Data();
  const uint8_t key[16] = {1, 2, 3, 4, 5, 6, 7, 8};
  CRijndael cipher;
  cipher.SetKey(key, 16, nullptr, 16, 16, CRijndael::kECB, CRijndael::kPadZero);
  for (auto _ : state) {
    cipher.Encrypt(data.data(), data.data(), kBytes);
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(state.iterations() * int64_t{kBytes});
}
BENCHMARK(BM_Rijndael128Ecb)->Unit(benchmark::kMillisecond);

// The whole container: hash, pad and encipher (arg 0), or decipher and verify (arg 1).
void BM_MemoryContainer(benchmark::State& state) {
  const std::vector<uint8_t> data = Data();
  std::vector<uint8_t> container, plain;
  int32_t length = 0, header = 0, plainLength = 0;
  verdal::crypto::EncryptMemory("benchmark", data.data(), kBytes, container, length, header);
  for (auto _ : state) {
    if (state.range(0) == 0) {
      verdal::crypto::EncryptMemory("benchmark", data.data(), kBytes, container, length, header);
    } else if (!verdal::crypto::DecryptMemory("benchmark", container.data(), length, plain,
                                              plainLength)) {
      state.SkipWithError("container did not open");
    }
  }
  state.SetBytesProcessed(state.iterations() * int64_t{kBytes});
}
BENCHMARK(BM_MemoryContainer)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
