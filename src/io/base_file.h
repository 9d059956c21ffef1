#pragma once
// The stream interface that every persistent structure of the engine is written through, so the
// same serialising code writes to a disk file (TFileEx) or to a growing memory block (TMemFile).
//
// Positions and lengths are 32-bit signed: no stream exceeds 2 GiB - 1 bytes.
//
// Transfers are all-or-nothing. Read and Write move exactly the requested count or throw; callers
// never test for a short transfer. The exceptions carry no text: their type is the report, and the
// outermost load and save routines catch everything (catch (...)) and turn it into a false result.

#include <cstdint>

namespace verdal {

// A disk file transferred fewer bytes than asked (end of file, I/O error, full disk), or a stored
// length does not fit the bytes left in a stream.
class TReadWriteException {};

// A memory file was used after Close or with a negative count, read past its length, or could not
// grow its block.
class TMemFileReadWriteException {};

class TBaseFile {
 public:
  virtual ~TBaseFile() = default;

  // Current position, or -1 when the stream is not usable.
  virtual int32_t Tell() = 0;
  virtual void SeekToBegin() = 0;
  virtual void SeekToEnd() = 0;
  // True if something was open and is now closed.
  virtual bool Close() = 0;
  // Moves to an absolute position; returns the new position, or -1 without moving.
  virtual int32_t Seek(int32_t position) = 0;
  // Exactly `count` bytes or an exception; returns `count`. A count of 0 always succeeds.
  virtual int32_t Read(void* buffer, int32_t count) = 0;
  virtual int32_t Write(const void* buffer, int32_t count) = 0;
  virtual bool IsOpen() = 0;
  // Truncates or extends. Returns false if the platform refused.
  virtual bool SetLength(int32_t length) = 0;
  // Length in bytes, or -1 when unknown.
  virtual int32_t GetLength() = 0;
  // Advisory byte-range lock between processes; false if another holder has the range.
  virtual bool LockRange(int32_t offset, int32_t count) = 0;
  virtual bool UnlockRange(int32_t offset, int32_t count) = 0;

 protected:
  TBaseFile() = default;
  TBaseFile(const TBaseFile&) = default;
  TBaseFile& operator=(const TBaseFile&) = default;
};

}  // namespace verdal
