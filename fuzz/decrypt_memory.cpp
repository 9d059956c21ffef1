// Arbitrary bytes as an enciphered container: DecryptMemory must answer true, false or a
// std::runtime_error, and never read or allocate beyond what the container holds.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <stdexcept>
#include <vector>

#include "crypto/memory_container.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size > (1u << 20)) return 0;
  std::vector<uint8_t> plain;
  int32_t plainLength = -1;
  try {
    const bool ok = verdal::crypto::DecryptMemory("fuzz", data, static_cast<int32_t>(size), plain,
                                                  plainLength);
    // A container that opens reports a length inside what it deciphered.
    if (ok && (plainLength < 0 || static_cast<size_t>(plainLength) > plain.size())) std::abort();
  } catch (const std::runtime_error&) {
  }
  return 0;
}
