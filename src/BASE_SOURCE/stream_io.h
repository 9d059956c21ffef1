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

#include <cstddef>
#include <cstdint>
#include <string>

#include "BASE_SOURCE/base_file.h"

namespace verdal {

// Writes the text up to its first NUL, so a string never carries a NUL into a stream.
void WriteString(const std::string& text, TBaseFile& file);
void WriteString(const char* text, TBaseFile& file);
// Reads a count and that many bytes, and keeps the text up to its first NUL. A count larger than
// the bytes left in the stream throws TReadWriteException before anything is allocated.
void ReadString(std::string& text, TBaseFile& file);

void WriteBool(bool value, TBaseFile& file);
void WriteUInt8(uint8_t value, TBaseFile& file);
void WriteInt16(int16_t value, TBaseFile& file);
void WriteUInt16(uint16_t value, TBaseFile& file);
void WriteInt32(int32_t value, TBaseFile& file);
void WriteUInt32(uint32_t value, TBaseFile& file);
void WriteDouble(double value, TBaseFile& file);
void WriteExtended(long double value, TBaseFile& file);
// Writes all `size` bytes of a fixed-size character array.
void WriteChars(const char* chars, int32_t size, TBaseFile& file);

// A flag reads as true for any non-zero byte.
bool ReadBool(TBaseFile& file);
uint8_t ReadUInt8(TBaseFile& file);
int16_t ReadInt16(TBaseFile& file);
uint16_t ReadUInt16(TBaseFile& file);
int32_t ReadInt32(TBaseFile& file);
uint32_t ReadUInt32(TBaseFile& file);
double ReadDouble(TBaseFile& file);
long double ReadExtended(TBaseFile& file);
void ReadChars(char* chars, int32_t size, TBaseFile& file);

// The 10-byte form of an extended value and back.
constexpr size_t kExtendedSize = 10;
void EncodeExtended(long double value, uint8_t out[kExtendedSize]);
long double DecodeExtended(const uint8_t in[kExtendedSize]);

}  // namespace verdal
