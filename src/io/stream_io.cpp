#include "io/stream_io.h"

#include <bit>
#include <cfloat>
#include <cstring>

namespace verdal {

static_assert(LDBL_MANT_DIG == 64, "long double must be the x87 extended format");
static_assert(std::endian::native == std::endian::little,
              "the stream encoding copies values from a little-endian memory form");

// The x87 value occupies the first 10 of the 16 bytes a long double takes in memory; the other six
// are padding with no defined content.
void EncodeExtended(long double value, uint8_t out[kExtendedSize]) {
  std::memcpy(out, &value, kExtendedSize);
}

long double DecodeExtended(const uint8_t in[kExtendedSize]) {
  long double value = 0;
  std::memcpy(&value, in, kExtendedSize);
  return value;
}

}  // namespace verdal
