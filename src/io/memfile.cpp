#include "io/memfile.h"

#include <climits>
#include <cstdlib>
#include <cstring>

namespace verdal {

TMemFile::TMemFile(int32_t size) : growStep_(size) {
  if (size < 0) return;
  // calloc(0) may give null; a one-byte block keeps an empty file usable.
  block_ = std::calloc(size > 0 ? static_cast<size_t>(size) : 1, 1);
  if (block_ == nullptr) return;
  capacity_ = size;
  data_ = static_cast<uint8_t*>(block_);
  valid_ = true;
  mapped_ = true;
}

TMemFile::~TMemFile() { std::free(block_); }

bool TMemFile::Close() {
  if (!Usable()) return false;
  std::free(block_);
  block_ = nullptr;
  data_ = nullptr;
  mapped_ = false;
  return true;
}

int32_t TMemFile::Seek(int32_t position) {
  if (!Usable() || position < 0 || position > length_) return -1;
  position_ = position;
  return position;
}

int32_t TMemFile::WriteGrowing(const void* buffer, int32_t count) {
  if (count < 0 || !mapped_) throw TMemFileReadWriteException();
  if (count == 0) return 0;
  const int64_t end = int64_t{position_} + count;
  if (end > INT32_MAX) throw TMemFileReadWriteException();
  if (end > length_ && end > capacity_) {
    int64_t grown = int64_t{capacity_} + growStep_;
    if (grown > INT32_MAX) grown = INT32_MAX;
    const int64_t size = end > grown ? end : grown;
    void* bigger = std::realloc(block_, static_cast<size_t>(size));
    if (bigger == nullptr) {
      valid_ = false;
      throw TMemFileReadWriteException();
    }
    std::memset(static_cast<uint8_t*>(bigger) + capacity_, 0, static_cast<size_t>(size - capacity_));
    block_ = bigger;
    data_ = static_cast<uint8_t*>(bigger);
    capacity_ = static_cast<int32_t>(size);
  }
  if (end > length_) length_ = static_cast<int32_t>(end);
  std::memcpy(data_ + position_, buffer, static_cast<size_t>(count));
  position_ = static_cast<int32_t>(end);
  return count;
}

bool TMemFile::SetLength(int32_t length) {
  if (length < 0 || length > capacity_) return false;
  length_ = length;
  if (position_ > length) position_ = length;
  return true;
}

}  // namespace verdal
