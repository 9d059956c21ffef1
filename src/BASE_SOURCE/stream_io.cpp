#include "BASE_SOURCE/stream_io.h"

#include <bit>
#include <cfloat>
#include <cstring>
#include <vector>

namespace verdal {

static_assert(LDBL_MANT_DIG == 64, "long double must be the x87 extended format");
static_assert(std::endian::native == std::endian::little,
              "the stream encoding copies values from a little-endian memory form");

namespace {

template <typename T>
void WriteRaw(T value, TBaseFile& file) {
  file.Write(&value, sizeof value);
}

template <typename T>
T ReadRaw(TBaseFile& file) {
  T value;
  file.Read(&value, sizeof value);
  return value;
}

// Bytes between the position and the end, or -1 where the stream cannot tell.
int64_t BytesLeft(TBaseFile& file) {
  const int32_t position = file.Tell();
  const int32_t length = file.GetLength();
  if (position < 0 || length < 0) return -1;
  return int64_t{length} - position;
}

}  // namespace

void WriteString(const char* text, TBaseFile& file) {
  const size_t count = text ? std::strlen(text) : 0;
  if (count > INT32_MAX - sizeof(uint32_t)) throw TReadWriteException();
  WriteUInt32(static_cast<uint32_t>(count), file);
  if (count > 0) file.Write(text, static_cast<int32_t>(count));
}

void WriteString(const std::string& text, TBaseFile& file) { WriteString(text.c_str(), file); }

void ReadString(std::string& text, TBaseFile& file) {
  const uint32_t count = ReadUInt32(file);
  const int64_t left = BytesLeft(file);
  if (count > INT32_MAX || (left >= 0 && count > left)) throw TReadWriteException();
  if (left >= 0) {
    if (count == 0) {
      text.clear();
      return;
    }
    // Most stored strings are short: they pass through the stack, not the heap.
    char small[256];
    std::vector<char> large;
    char* buffer = small;
    if (count > sizeof small) {
      large.resize(count);
      buffer = large.data();
    }
    file.Read(buffer, static_cast<int32_t>(count));
    text.assign(buffer, strnlen(buffer, count));
    return;
  }
  // A stream that cannot tell its length: read in bounded pieces, so a damaged count ends in a
  // short read long before the buffer gets large.
  constexpr uint32_t kPiece = 1 << 20;
  std::string buffer;
  for (uint32_t done = 0; done < count;) {
    const uint32_t piece = count - done < kPiece ? count - done : kPiece;
    buffer.resize(done + piece);
    file.Read(buffer.data() + done, static_cast<int32_t>(piece));
    done += piece;
  }
  text.assign(buffer.c_str());
}

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

bool ReadBool(TBaseFile& file) { return ReadRaw<uint8_t>(file) != 0; }
uint8_t ReadUInt8(TBaseFile& file) { return ReadRaw<uint8_t>(file); }
int16_t ReadInt16(TBaseFile& file) { return ReadRaw<int16_t>(file); }
uint16_t ReadUInt16(TBaseFile& file) { return ReadRaw<uint16_t>(file); }
int32_t ReadInt32(TBaseFile& file) { return ReadRaw<int32_t>(file); }
uint32_t ReadUInt32(TBaseFile& file) { return ReadRaw<uint32_t>(file); }
double ReadDouble(TBaseFile& file) { return ReadRaw<double>(file); }

long double ReadExtended(TBaseFile& file) {
  uint8_t bytes[kExtendedSize];
  file.Read(bytes, kExtendedSize);
  return DecodeExtended(bytes);
}

void ReadChars(char* chars, int32_t size, TBaseFile& file) { file.Read(chars, size); }

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
