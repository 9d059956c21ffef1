#pragma once
// Memory files to and from byte vectors, for unit tests of stream formats.
#include <memory>
#include <vector>

#include "io/memfile.h"
#include "support/byte_builder.h"

namespace verdal::test_support {

// A memory file holding the bytes, positioned at 0.
inline std::unique_ptr<TMemFile> FileOf(const Bytes& bytes) {
  auto f = std::make_unique<TMemFile>(static_cast<int32_t>(bytes.b.size()) + 16);
  f->Write(bytes.b.data(), static_cast<int32_t>(bytes.b.size()));
  f->Seek(0);
  return f;
}

inline std::vector<uint8_t> Contents(TMemFile& f) {
  return std::vector<uint8_t>(f.Data(), f.Data() + f.GetLength());
}

// The bytes an object's Write gives.
template <class T>
std::vector<uint8_t> WrittenBy(T& object) {
  TMemFile f(64);
  object.Write(f);
  return Contents(f);
}

}  // namespace verdal::test_support
