#pragma once
// The byte encoding of primitives and strings in every stream of the engine. Each value is copied
// from its in-memory form, little-endian, unaligned, without type tag or separator; what follows
// a value is up to the format that writes it.
//
//   flag, small number        1 byte (a flag is 0 or 1)
//   short integer             2 bytes
//   integer, enum, bit set    4 bytes
//   double                    8 bytes, IEEE 754
//   extended (long double)    10 bytes, the x87 80-bit format
//   fixed character array     its declared size, including what follows the terminator
//   string                    4-byte unsigned count, then the bytes, no terminator
//
// Every function throws what the stream throws on a short transfer.

#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "io/base_file.h"

namespace verdal {

// The 10-byte form of an extended value and back.
constexpr size_t kExtendedSize = 10;
void EncodeExtended(long double value, uint8_t out[kExtendedSize]);
long double DecodeExtended(const uint8_t in[kExtendedSize]);

// Bytes between the position and the end, or -1 where the stream cannot tell.
template <class File>
int64_t BytesLeft(File& file) {
  const int32_t position = file.Tell();
  const int32_t length = file.GetLength();
  if (position < 0 || length < 0) return -1;
  return int64_t{length} - position;
}

// Whether a stored count of objects of at least `minBytes` each can be what the bytes left hold:
// the test before anything is made for them.
template <class File>
bool CountFits(File& file, int64_t count, int64_t minBytes) {
  const int64_t left = BytesLeft(file);
  return count >= 0 && left >= 0 && count * minBytes <= left;
}

// Readers and writers take any stream type: a TBaseFile through its virtual functions, a TMemFile
// (which is final) with direct calls that inline, which a load or save of millions of values needs.
namespace stream_detail {

template <typename T, class File>
T ReadRaw(File& file) {
  T value;
  file.Read(&value, sizeof value);
  return value;
}

template <typename T, class File>
void WriteRaw(T value, File& file) {
  file.Write(&value, sizeof value);
}

}  // namespace stream_detail

template <class File> void WriteBool(bool value, File& file) { stream_detail::WriteRaw<uint8_t>(value ? 1 : 0, file); }
template <class File> void WriteUInt8(uint8_t value, File& file) { stream_detail::WriteRaw(value, file); }
template <class File> void WriteInt16(int16_t value, File& file) { stream_detail::WriteRaw(value, file); }
template <class File> void WriteUInt16(uint16_t value, File& file) { stream_detail::WriteRaw(value, file); }
template <class File> void WriteInt32(int32_t value, File& file) { stream_detail::WriteRaw(value, file); }
template <class File> void WriteUInt32(uint32_t value, File& file) { stream_detail::WriteRaw(value, file); }
template <class File> void WriteDouble(double value, File& file) { stream_detail::WriteRaw(value, file); }

template <class File>
void WriteExtended(long double value, File& file) {
  uint8_t bytes[kExtendedSize];
  EncodeExtended(value, bytes);
  file.Write(bytes, kExtendedSize);
}

// Writes all `size` bytes of a fixed-size character array.
template <class File>
void WriteChars(const char* chars, int32_t size, File& file) {
  file.Write(chars, size);
}

// A flag reads as true for any non-zero byte.
template <class File> bool ReadBool(File& file) { return stream_detail::ReadRaw<uint8_t>(file) != 0; }
template <class File> uint8_t ReadUInt8(File& file) { return stream_detail::ReadRaw<uint8_t>(file); }
template <class File> int16_t ReadInt16(File& file) { return stream_detail::ReadRaw<int16_t>(file); }
template <class File> uint16_t ReadUInt16(File& file) { return stream_detail::ReadRaw<uint16_t>(file); }
template <class File> int32_t ReadInt32(File& file) { return stream_detail::ReadRaw<int32_t>(file); }
template <class File> uint32_t ReadUInt32(File& file) { return stream_detail::ReadRaw<uint32_t>(file); }
template <class File> double ReadDouble(File& file) { return stream_detail::ReadRaw<double>(file); }

template <class File>
long double ReadExtended(File& file) {
  uint8_t bytes[kExtendedSize];
  file.Read(bytes, kExtendedSize);
  return DecodeExtended(bytes);
}

template <class File>
void ReadChars(char* chars, int32_t size, File& file) {
  file.Read(chars, size);
}

// The length of the text up to its first NUL, or all of it. Stored strings never hold one unless
// the file is damaged, and most are short: a word at a time beats a library call here.
inline size_t LengthBeforeNul(const char* text, size_t count) {
  constexpr uint64_t kLow = 0x0101010101010101ULL, kHigh = 0x8080808080808080ULL;
  size_t i = 0;
  for (; i + 8 <= count; i += 8) {
    uint64_t word;
    std::memcpy(&word, text + i, 8);
    if (((word - kLow) & ~word & kHigh) != 0) break;
  }
  for (; i < count; ++i)
    if (text[i] == '\0') return i;
  return count;
}

// Writes the text up to its first NUL, so a string never carries a NUL into a stream.
template <class File>
void WriteString(std::string_view text, File& file) {
  const size_t count = LengthBeforeNul(text.data(), text.size());
  if (count > INT32_MAX - sizeof(uint32_t)) throw TReadWriteException();
  WriteUInt32(static_cast<uint32_t>(count), file);
  if (count > 0) file.Write(text.data(), static_cast<int32_t>(count));
}

// A null text is written as an empty one.
template <class File>
void WriteString(const char* text, File& file) {
  WriteString(text != nullptr ? std::string_view(text) : std::string_view(), file);
}

// Reads a string as ReadString does, but lends its text from the stream's own memory instead of
// copying it: for streams with Take (TMemFile, TReadAheadFile). The view is valid until the
// stream's next read.
template <class File>
std::string_view ReadStringView(File& file) {
  const uint32_t count = ReadUInt32(file);
  const int64_t left = BytesLeft(file);
  if (count > INT32_MAX || left < 0 || count > left) throw TReadWriteException();
  const char* text = file.Take(static_cast<int32_t>(count));
  return {text, LengthBeforeNul(text, count)};
}

// Reads a count and that many bytes, and keeps the text up to its first NUL. A count larger than
// the bytes left in the stream throws TReadWriteException before anything is allocated.
template <class File>
void ReadString(std::string& text, File& file) {
  if constexpr (requires { file.Take(0); }) {
    text.assign(ReadStringView(file));  // straight from the stream's bytes
    return;
  }
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
    text.assign(buffer, LengthBeforeNul(buffer, count));
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

}  // namespace verdal
