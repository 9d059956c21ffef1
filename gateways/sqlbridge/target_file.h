#pragma once
// TargetFile: a file an export writes. It is written beside its name ("~name") and renamed onto
// the name only when whole, so that a failed export leaves the old file, or none, never a
// half-written one. Bytes gather in a large buffer and go to the file in blocks of a megabyte.
#include <string>
#include <string_view>

namespace verdal::sqlbridge {

class TargetFile {
 public:
  TargetFile() = default;
  ~TargetFile();  // removes the partial file unless Commit succeeded
  TargetFile(const TargetFile&) = delete;
  TargetFile& operator=(const TargetFile&) = delete;

  // Creates the partial file to write through Append. False, with the reason in `error`, when it
  // cannot be made.
  bool Open(const std::string& path, std::string& error);
  // Takes the partial name for a writer that makes the file itself (PartialPath()); a stale file
  // of that name is removed first.
  void Claim(const std::string& path);
  const std::string& PartialPath() const { return partial_; }

  void Append(std::string_view bytes) {
    buffer_.append(bytes);
    if (buffer_.size() >= kBlock) Flush();
  }
  void Append(char c) {
    buffer_.push_back(c);
    if (buffer_.size() >= kBlock) Flush();
  }
  // Code page 1252 text, as UTF-8 where `utf8` is set. Plain ASCII passes untouched.
  void AppendText(std::string_view text, bool utf8);

  // Writes what is left, forces the file to disk and renames it onto the name. False, with the
  // reason in `error`, when any write failed; the partial file is gone then.
  bool Commit(std::string& error);

 private:
  static constexpr size_t kBlock = 1 << 20;
  void Flush();

  int fd_ = -1;
  std::string path_, partial_;
  std::string buffer_, scratch_;
  bool failed_ = false;
  bool committed_ = false;
};

}  // namespace verdal::sqlbridge
