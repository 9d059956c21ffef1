#include "io/fileex.h"

#include "platform/fault.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <string>

#include "platform/fault.h"

namespace verdal {

TFileEx::TFileEx(const char* path, uint32_t flags, int permission) { Open(path, flags, permission); }

TFileEx::~TFileEx() {
  if (closeOnDestroy_ && IsOpen()) Close();
}

bool TFileEx::Open(const char* path, uint32_t flags, int permission) {
  if (IsOpen() || path == nullptr) return false;
  std::string native(path);
  for (char& c : native)
    if (c == '\\') c = '/';

  int oflags = O_CLOEXEC;
  switch (flags & kReadWrite) {
    case kRead: oflags |= O_RDONLY; break;
    case kWrite: oflags |= O_WRONLY; break;
    case kReadWrite: oflags |= O_RDWR; break;
    default: return false;
  }
  if (flags & kCreate) oflags |= O_CREAT;
  if (flags & kTruncate) oflags |= O_TRUNC;
  if (flags & kExclusive) oflags |= O_EXCL;

  int fd;
  do {
    fd = ::open(native.c_str(), oflags, static_cast<mode_t>(permission));
  } while (fd < 0 && errno == EINTR);
  if (fd < 0) return false;

  // The sharing mode. A file system without flock support gives no sharing protection rather than
  // no file at all.
  int how = ((flags & kShareNone) ? LOCK_EX : LOCK_SH) | LOCK_NB;
  if (::flock(fd, how) != 0 && (errno == EWOULDBLOCK || errno == EINTR)) {
    ::close(fd);
    return false;
  }
  fd_ = fd;
  return IsOpen();
}

bool TFileEx::Close() {
  if (!IsOpen()) return false;
  int fd = fd_;
  fd_ = -1;
  return ::close(fd) == 0;
}

int32_t TFileEx::SeekFrom(int32_t position, int32_t origin) {
  if (!IsOpen()) return -1;
  int whence;
  switch (origin) {
    case kFromBegin: whence = SEEK_SET; break;
    case kFromCurrent: whence = SEEK_CUR; break;
    case kFromEnd: whence = SEEK_END; break;
    default: return -1;
  }
  off_t result = ::lseek(fd_, position, whence);
  if (result < 0 || result > INT32_MAX) return -1;
  return static_cast<int32_t>(result);
}

int32_t TFileEx::Tell() { return SeekFrom(0, kFromCurrent); }
void TFileEx::SeekToBegin() { SeekFrom(0, kFromBegin); }
void TFileEx::SeekToEnd() { SeekFrom(0, kFromEnd); }
int32_t TFileEx::Seek(int32_t position) { return SeekFrom(position, kFromBegin); }

namespace {

// Repeats the platform's transfer until the whole count has moved; anything less is a failure.
template <typename Buffer, typename Transfer>
int32_t TransferExactly(int fd, Buffer* buffer, int32_t count, Transfer transfer) {
  if (count < 0 || fd < 0) throw TReadWriteException();
  int32_t done = 0;
  while (done < count) {
    const ssize_t n = transfer(fd, buffer + done, static_cast<size_t>(count - done));
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) throw TReadWriteException();
    done += static_cast<int32_t>(n);
  }
  return count;
}

}  // namespace

int32_t TFileEx::Read(void* buffer, int32_t count) {
  return TransferExactly(fd_, static_cast<char*>(buffer), count, ::read);
}

int32_t TFileEx::Write(const void* buffer, int32_t count) {
  if (platform::InjectFault(platform::FaultSite::kWrite)) throw TReadWriteException();
  return TransferExactly(fd_, static_cast<const char*>(buffer), count, ::write);
}

bool TFileEx::Sync() {
  if (!IsOpen() || platform::InjectFault(platform::FaultSite::kSync)) return false;
  return ::fsync(fd_) == 0;
}

bool TFileEx::SetLength(int32_t length) {
  if (!IsOpen() || length < 0) return false;
  return ::ftruncate(fd_, length) == 0;
}

int32_t TFileEx::GetLength() {
  struct stat st;
  if (!IsOpen() || ::fstat(fd_, &st) != 0 || st.st_size > INT32_MAX) return -1;
  return static_cast<int32_t>(st.st_size);
}

bool TFileEx::RangeLock(int32_t offset, int32_t count, short type) {
  if (!IsOpen() || offset < 0 || count < 0) return false;
  if (count == 0) return true;  // l_len 0 would mean "to the end of the file"
  struct flock lock = {};
  lock.l_type = type;
  lock.l_whence = SEEK_SET;
  lock.l_start = offset;
  lock.l_len = count;
  lock.l_pid = 0;  // required for open-file-description locks
  int rc;
  do {
    rc = ::fcntl(fd_, F_OFD_SETLK, &lock);
  } while (rc != 0 && errno == EINTR);
  return rc == 0;
}

bool TFileEx::LockRange(int32_t offset, int32_t count) {
  int mode = ::fcntl(fd_, F_GETFL);
  if (mode < 0) return false;
  return RangeLock(offset, count, (mode & O_ACCMODE) == O_RDONLY ? F_RDLCK : F_WRLCK);
}

bool TFileEx::UnlockRange(int32_t offset, int32_t count) { return RangeLock(offset, count, F_UNLCK); }

}  // namespace verdal
