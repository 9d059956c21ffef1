#include "io/read_ahead_file.h"

#include <algorithm>

namespace verdal {

TReadAheadFile::TReadAheadFile(TBaseFile& source, int32_t length, int32_t window)
    : source_(source), length_(length < 0 ? 0 : length), windowSize_(window < 1 ? 1 : window) {}

void TReadAheadFile::Fill(int32_t count) {
  const int32_t position = before_ + at_;
  if (count < 0 || count > length_ - position) throw TReadWriteException();
  // What is left in the window (from the kept bytes on, while keeping) moves to its front, and the
  // window grows only for what is larger than itself, which the stretch has just been shown to hold.
  const int32_t from = keeping_ ? keep_ : at_;
  const int32_t kept = filled_ - from;
  const int32_t needed = (at_ - from) + count;
  if (needed > capacity_ || window_ == nullptr) {
    // Kept bytes may outgrow the window step by step: it doubles then, up to what the stretch holds.
    const int32_t rest = length_ - (before_ + from);
    const int32_t doubled = keeping_ && capacity_ <= rest / 2 ? 2 * capacity_ : rest;
    const int32_t capacity = std::max({needed, std::min(windowSize_, rest), keeping_ ? doubled : 0});
    std::unique_ptr<char[]> larger(new char[static_cast<size_t>(capacity)]);
    if (kept > 0) std::memcpy(larger.get(), window_.get() + from, static_cast<size_t>(kept));
    window_ = std::move(larger);
    capacity_ = capacity;
  } else if (kept > 0 && from > 0) {
    std::memmove(window_.get(), window_.get() + from, static_cast<size_t>(kept));
  }
  before_ += from;
  at_ -= from;
  keep_ = 0;
  filled_ = kept;
  const int32_t more = std::min(capacity_ - filled_, length_ - (before_ + filled_));
  source_.Read(window_.get() + filled_, more);
  filled_ += more;
}

int32_t TReadAheadFile::ReadSlow(void* buffer, int32_t count) {
  if (count < 0 || count > length_ - Tell()) throw TReadWriteException();
  // A read larger than the window takes what the window holds and the rest straight from the
  // source.
  const int32_t held = filled_ - at_;
  const int32_t rest = count - held;
  if (rest <= windowSize_ || keeping_) {
    Fill(count);
    return Read(buffer, count);
  }
  if (held > 0) std::memcpy(buffer, window_.get() + at_, static_cast<size_t>(held));
  source_.Read(static_cast<char*>(buffer) + held, rest);
  before_ += filled_ + rest;
  at_ = filled_ = 0;
  return count;
}

const char* TReadAheadFile::TakeSlow(int32_t count) {
  Fill(count);
  return Take(count);
}

}  // namespace verdal
