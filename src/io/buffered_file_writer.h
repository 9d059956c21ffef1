#pragma once
// A file written through a buffer of large blocks in the stream encoding: exchange files of a
// million rows cost a few hundred system calls instead of one per value. A failed write is kept
// and reported by Finish, so that callers need not test every value.
#include <cstdint>
#include <string>
#include <string_view>

#include "io/fileex.h"

namespace verdal {

class BufferedFileWriter {
 public:
  ~BufferedFileWriter();
  // Creates the file or empties it.
  bool Open(const char* path);
  // A counted string, taken up to its first NUL as the stream encoding stores strings.
  void PutString(std::string_view text);
  void PutInt16(int16_t value) { PutRaw(&value, sizeof value); }
  void PutInt32(int32_t value) { PutRaw(&value, sizeof value); }
  // Flushes, writes `value` over the first four bytes, and closes; false when any write failed.
  bool FinishWithLeadingCount(int32_t value);
  // Flushes and closes; false when any write failed.
  bool Finish();

 private:
  void PutRaw(const void* bytes, size_t count);
  void Flush();
  TFileEx file_;
  std::string buffer_;
  bool failed_ = false;
};

}  // namespace verdal
