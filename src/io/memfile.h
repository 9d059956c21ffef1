#pragma once
// TMemFile: a TBaseFile over one growing block of memory, used to serialise a whole database
// before it is compressed and enciphered, and to read it back after.
//
// Construct it with a size: the block starts zero-filled with that many bytes and grows, when a
// write runs past its end, by at least that many bytes again (`growStep`), so a large save does
// not reallocate per record. `length` is the high-water mark of what was written; reads stop at it.
//
// After Close the block is gone: Tell and Seek return -1, Read and Write throw, IsOpen is false,
// but GetLength still reports the old length. Failures throw TMemFileReadWriteException.

#include <cstring>

#include "io/base_file.h"

namespace verdal {

// Final, with its reads and writes inline: code that knows it holds one (loading or saving a
// database) pays no call per value.
class TMemFile final : public TBaseFile {
 public:
  // growStep 2,000,000 is what a save uses. A size that cannot be allocated leaves the file
  // unusable (IsOpen false, every transfer throws).
  explicit TMemFile(int32_t size);
  ~TMemFile() override;
  TMemFile(const TMemFile&) = delete;
  TMemFile& operator=(const TMemFile&) = delete;

  int32_t Tell() override { return Usable() ? position_ : -1; }
  void SeekToBegin() override { Seek(0); }
  void SeekToEnd() override { Seek(length_); }
  bool Close() override;
  // -1 and no move if the position is negative or past the length; the length itself is allowed.
  int32_t Seek(int32_t position) override;
  int32_t Read(void* buffer, int32_t count) override {
    if (!Usable() || count < 0 || count > length_ - position_) throw TMemFileReadWriteException();
    if (count > 0) std::memcpy(buffer, data_ + position_, static_cast<size_t>(count));
    position_ += count;
    return count;
  }
  // Lends the next `count` bytes in place and moves past them, for readers that keep only a view.
  const char* Take(int32_t count) {
    if (!Usable() || count < 0 || count > length_ - position_) throw TMemFileReadWriteException();
    const char* at = reinterpret_cast<const char*>(data_) + position_;
    position_ += count;
    return at;
  }
  // Overwrites in place inside the written range; past it raises the length, growing the block by
  // at least growStep when the capacity runs out. New bytes of a grown block are zero. Inline while
  // the block has room, as it has for nearly every value of a save.
  int32_t Write(const void* buffer, int32_t count) override {
    if (count < 0 || !mapped_ || count > capacity_ - position_) return WriteGrowing(buffer, count);
    if (count > 0) std::memcpy(data_ + position_, buffer, static_cast<size_t>(count));
    position_ += count;
    if (position_ > length_) length_ = position_;
    return count;
  }
  bool IsOpen() override { return mapped_; }
  // Sets the length; the position follows if it lies behind. Must not exceed Capacity().
  bool SetLength(int32_t length) override;
  int32_t GetLength() override { return length_; }
  // Memory is private to the process: nothing to lock.
  bool LockRange(int32_t, int32_t) override { return true; }
  bool UnlockRange(int32_t, int32_t) override { return true; }

  // The written bytes [0, GetLength()), for handing the whole stream to a compressor or cipher;
  // null after Close. Valid until the next Write or Close.
  const uint8_t* Data() const { return mapped_ ? data_ : nullptr; }
  int32_t Capacity() const { return capacity_; }

 private:
  bool Usable() const { return valid_ && mapped_; }
  int32_t WriteGrowing(const void* buffer, int32_t count);

  bool valid_ = false;   // the block was obtained and nothing failed since
  bool mapped_ = false;  // the block is reachable through data_
  void* block_ = nullptr;
  int32_t capacity_ = 0;
  int32_t length_ = 0;
  int32_t position_ = 0;
  int32_t growStep_ = 0;
  uint8_t* data_ = nullptr;
};

}  // namespace verdal
