#include "target_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "platform/cp1252.h"
#include "platform/file_system.h"

namespace verdal::sqlbridge {

TargetFile::~TargetFile() {
  if (fd_ >= 0) ::close(fd_);
  if (!committed_ && !partial_.empty()) ::unlink(partial_.c_str());
}

void TargetFile::Claim(const std::string& path) {
  path_ = platform::NativePath(path.c_str());
  partial_ = platform::PartialNameOf(path_);
  ::unlink(partial_.c_str());
}

bool TargetFile::Open(const std::string& path, std::string& error) {
  Claim(path);
  // A new file only: never written through a link that someone left under the partial name.
  fd_ = ::open(partial_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666);
  if (fd_ < 0) {
    error = "The file " + path_ + " cannot be created.";
    partial_.clear();  // not ours to remove
    return false;
  }
  buffer_.reserve(kBlock + (kBlock >> 2));
  return true;
}

void TargetFile::AppendText(std::string_view text, bool utf8) {
  if (!utf8 || std::none_of(text.begin(), text.end(), [](char c) { return (c & 0x80) != 0; })) {
    Append(text);
    return;
  }
  cp1252::ToUtf8(text, scratch_);
  Append(scratch_);
}

void TargetFile::Flush() {
  const char* data = buffer_.data();
  size_t left = buffer_.size();
  while (left > 0 && !failed_) {
    const ssize_t n = ::write(fd_, data, left);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) failed_ = true;
    else {
      data += n;
      left -= static_cast<size_t>(n);
    }
  }
  buffer_.clear();
}

bool TargetFile::Commit(std::string& error) {
  if (fd_ >= 0) {
    Flush();
    if (::fsync(fd_) != 0) failed_ = true;
    if (::close(fd_) != 0) failed_ = true;
    fd_ = -1;
  } else {
    // Written by another writer: forced to disk here before it takes the name.
    const int fd = ::open(partial_.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0 || ::fsync(fd) != 0) failed_ = true;
    if (fd >= 0) ::close(fd);
  }
  committed_ = !failed_ && platform::RenameFile(partial_.c_str(), path_.c_str());
  if (!committed_) error = "The file " + path_ + " cannot be written.";
  return committed_;
}

}  // namespace verdal::sqlbridge
