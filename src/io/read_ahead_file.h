#pragma once
// TReadAheadFile: reads a stretch of another stream, from its position on, through a window of
// memory. Readers of many small values (a database load) pay a copy per value instead of a call
// to the source, and the stretch never has to be in memory whole: loading a large file costs a
// window, not a second copy of the file.
//
// It reads forward only. Tell and GetLength count from the start of the stretch; Seek, Write and
// SetLength refuse. A short read of the source throws TReadWriteException, as the source would.

#include <cstring>
#include <memory>

#include "io/base_file.h"

namespace verdal {

class TReadAheadFile final : public TBaseFile {
 public:
  static constexpr int32_t kWindow = 1 << 19;  // well inside a core's second-level cache

  // The stretch is the next `length` bytes of the source; `window` is the size of the window (at
  // least 1), which grows only for a Take larger than itself.
  TReadAheadFile(TBaseFile& source, int32_t length, int32_t window = kWindow);
  TReadAheadFile(const TReadAheadFile&) = delete;
  TReadAheadFile& operator=(const TReadAheadFile&) = delete;

  int32_t Tell() override { return before_ + at_; }
  void SeekToBegin() override { Seek(0); }
  void SeekToEnd() override { Seek(length_); }
  bool Close() override { return false; }
  int32_t Seek(int32_t) override { return -1; }
  int32_t Read(void* buffer, int32_t count) override {
    if (count < 0 || count > filled_ - at_) return ReadSlow(buffer, count);
    if (count > 0) std::memcpy(buffer, window_.get() + at_, static_cast<size_t>(count));
    at_ += count;
    return count;
  }
  int32_t Write(const void*, int32_t) override { throw TReadWriteException(); }
  bool IsOpen() override { return true; }
  bool SetLength(int32_t) override { return false; }
  int32_t GetLength() override { return length_; }
  bool LockRange(int32_t, int32_t) override { return true; }
  bool UnlockRange(int32_t, int32_t) override { return true; }

  // Lends the next `count` bytes in the window and moves past them. The bytes stay valid until
  // the next Read or Take, unless they are kept.
  const char* Take(int32_t count) {
    if (count < 0 || count > filled_ - at_) return TakeSlow(count);
    const char* bytes = window_.get() + at_;
    at_ += count;
    return bytes;
  }

  // Keeps every byte from the position on in the window until Unkeep, so that a reader can lend
  // several texts at once: a refill moves the kept bytes to the window's front, growing it if need
  // be, instead of dropping them. A text lent meanwhile lies at the same offset from Kept() as
  // when it was lent.
  void Keep() {
    keep_ = at_;
    keeping_ = true;
  }
  const char* Kept() const { return window_.get() + keep_; }
  void Unkeep() { keeping_ = false; }

 private:
  int32_t ReadSlow(void* buffer, int32_t count);
  const char* TakeSlow(int32_t count);
  // Makes `count` bytes from the position on lie in the window, or throws if the stretch ends
  // before them.
  void Fill(int32_t count);

  TBaseFile& source_;
  int32_t length_;
  std::unique_ptr<char[]> window_;
  int32_t windowSize_;
  int32_t capacity_ = 0;
  int32_t before_ = 0;  // bytes of the stretch before the window's start
  int32_t filled_ = 0;  // bytes in the window
  int32_t at_ = 0;      // the position within the window
  int32_t keep_ = 0;    // while keeping, where the kept bytes start in the window
  bool keeping_ = false;
};

}  // namespace verdal
