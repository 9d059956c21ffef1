#include "BASE_SOURCE/stream_io.h"

#include <bit>
#include <cfloat>
#include <cstring>

namespace verdal {

static_assert(LDBL_MANT_DIG == 64, "long double must be the x87 extended format");
static_assert(std::endian::native == std::endian::little,
              "the stream encoding copies values from a little-endian memory form");

namespace {

template <typename T>
void WriteRaw(T value, TBaseFile& file) {
  file.Write(&value, sizeof value);
}

}  // namespace

void WriteString(const char* text, TBaseFile& file) {
  const size_t count = text ? std::strlen(text) : 0;
  if (count > INT32_MAX - sizeof(uint32_t)) throw TReadWriteException();
  WriteUInt32(static_cast<uint32_t>(count), file);
  if (count > 0) file.Write(text, static_cast<int32_t>(count));
}

void WriteString(const std::string& text, TBaseFile& file) { WriteString(text.c_str(), file); }

void WriteBool(bool value, TBaseFile& file) { WriteRaw<uint8_t>(value ? 1 : 0, file); }
void WriteUInt8(uint8_t value, TBaseFile& file) { WriteRaw(value, file); }
void WriteInt16(int16_t value, TBaseFile& file) { WriteRaw(value, file); }
void WriteUInt16(uint16_t value, TBaseFile& file) { WriteRaw(value, file); }
void WriteInt32(int32_t value, TBaseFile& file) { WriteRaw(value, file); }
void WriteUInt32(uint32_t value, TBaseFile& file) { WriteRaw(value, file); }
void WriteDouble(double value, TBaseFile& file) { WriteRaw(value, file); }

void WriteExtended(long double value, TBaseFile& file) {
  uint8_t bytes[kExtendedSize];
  EncodeExtended(value, bytes);
  file.Write(bytes, kExtendedSize);
}

void WriteChars(const char* chars, int32_t size, TBaseFile& file) { file.Write(chars, size); }

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
