#pragma once
// TFileEx: a TBaseFile over a POSIX file descriptor.
//
// Open takes a flag word of one access mode plus creation and sharing flags. The combinations the
// engine uses:
//   kRead                                     configuration, import and exchange files
//   kReadWrite                                the database file held open (must exist)
//   kReadWrite | kCreate | kTruncate          writing any file anew
//   kRead | kShareNone                        input of the file encipherer
//   kReadWrite | kCreate | kTruncate | kShareNone   output of the file encipherer
//   kReadWrite | kCreate | kExclusive         a new database file, the temporary file of a save
//
// Sharing is emulated with flock(): every open takes a shared lock and a kShareNone open an
// exclusive one, both without waiting, so a no-sharing open fails while anyone else has the file
// open through TFileEx and the other way round. Like the byte-range locks (fcntl F_OFD_SETLK) this
// is advisory: it keeps cooperating processes apart, not arbitrary programs.
//
// Read and Write transfer the exact count or throw TReadWriteException.

#include "io/base_file.h"

namespace verdal {

class TFileEx : public TBaseFile {
 public:
  enum OpenFlags : uint32_t {
    kRead = 0x1,
    kWrite = 0x2,
    kReadWrite = kRead | kWrite,
    kCreate = 0x4,     // create the file if it does not exist
    kTruncate = 0x8,   // cut an existing file to length 0
    kShareNone = 0x10, // no other TFileEx may have the file open meanwhile
    kExclusive = 0x20, // with kCreate: fail if anything, a symbolic link included, has the name
  };
  enum SeekOrigin : int32_t { kFromBegin = 0, kFromCurrent = 1, kFromEnd = 2 };

  // Permission for a created file: owner read and write, the rest as the umask allows.
  static constexpr int kDefaultPermission = 0666;

  TFileEx() = default;
  TFileEx(const char* path, uint32_t flags, int permission = kDefaultPermission);
  ~TFileEx() override;
  TFileEx(const TFileEx&) = delete;
  TFileEx& operator=(const TFileEx&) = delete;

  // Does nothing and returns false if a file is already open; otherwise opens `path` (a '\' in it
  // counts as '/') and returns IsOpen(). A failed open leaves the descriptor at -1.
  bool Open(const char* path, uint32_t flags, int permission = kDefaultPermission);

  int32_t Tell() override;
  void SeekToBegin() override;
  void SeekToEnd() override;
  bool Close() override;
  int32_t Seek(int32_t position) override;
  // origin: 0 start, 1 current position, 2 end. Returns the new position or -1.
  virtual int32_t SeekFrom(int32_t position, int32_t origin);
  int32_t Read(void* buffer, int32_t count) override;
  int32_t Write(const void* buffer, int32_t count) override;
  bool IsOpen() override { return fd_ >= 0; }
  // Forces what was written to the disk; false if that failed.
  bool Sync();
  bool SetLength(int32_t length) override;
  int32_t GetLength() override;
  // An exclusive lock on a writable descriptor, a shared one on a read-only descriptor. A count of
  // 0 locks nothing and succeeds.
  bool LockRange(int32_t offset, int32_t count) override;
  bool UnlockRange(int32_t offset, int32_t count) override;

  int Descriptor() const { return fd_; }
  // While set (the default), the destructor closes a file that is still open.
  void SetCloseOnDestroy(bool close) { closeOnDestroy_ = close ? 1 : 0; }

 private:
  bool RangeLock(int32_t offset, int32_t count, short type);

  int32_t fd_ = -1;
  int32_t closeOnDestroy_ = 1;
};

}  // namespace verdal
