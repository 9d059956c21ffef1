#pragma once
// The few file-system questions the engine asks. Hosts may write '\' or '/' in names; every call
// here maps '\' to '/' before it touches the file system.
#include <cstddef>
#include <cstdint>
#include <string>

namespace verdal::platform {

std::string NativePath(const char* name);

// A name that names something the process can reach. Any length the system takes counts: the
// 259-character limit of the original's buffers does not apply inside the engine.
bool FileExists(const char* name);

// The system refuses the name as too long (ENAMETOOLONG: the whole path, or one of its parts).
// Such a name is neither an existing file nor a missing one.
bool NameTooLong(const char* name);

// The path lies on a file system mounted read-only, or in an existing folder the process cannot
// write: the counterpart of a CD-ROM drive. A folder that does not exist is not a medium at all.
bool IsOnReadOnlyMedium(const char* name);

// The process may write the file (access W_OK: its mode, an immutable flag, a read-only mount).
bool IsWritable(const char* name);

// Sets the owner's write bit; true if the file is writable afterwards.
bool MakeWritable(const char* name);

// The last-write time in nanoseconds; false if the file cannot be reached.
bool FileTime(const char* name, int64_t& time);

// The folder of the running program, without a trailing slash.
std::string ProgramFolder();

// The folder of the file the engine's code was loaded from (libverdal.so, or a program that links
// the engine statically), without a trailing slash.
std::string EngineFolder();

// The folder for temporary files: $TMPDIR, or /tmp where it is not set.
std::string TemporaryFolder();

// Creates an empty file of a new name in $TMPDIR or /tmp, readable by its owner only, beginning
// with the prefix and ending in the extension (given with its dot); its path, or "" when none
// could be made.
std::string MakeTemporaryFile(const char* prefix, const char* extension = "");

// The whole content of a file; false when it cannot be opened or read.
bool ReadWholeFile(const char* name, std::string& text);

// The file's name and extension, after the last '/' or '\'.
std::string FileNamePart(const char* name);

// Copies a file onto another name, replacing it, and forces the copy to disk. Copying a file onto
// itself succeeds without work.
bool CopyFile(const char* from, const char* to);

// Writes a file anew with these bytes: written beside it and renamed onto the name, so that a
// failed write leaves the old file, or none, never a half-written one.
bool WriteWholeFile(const char* name, const void* data, size_t size);

// Writes all the bytes to the descriptor, through interruptions and short writes; false on an
// error (a full disk) or an injected write fault.
bool WriteAll(int fd, const char* data, size_t size);

// The name a file is written under before it is renamed onto `target`: "~" before the file name,
// in the same folder, so that the final rename stays on one file system.
std::string PartialNameOf(const std::string& target);

// Replaces `to` by `from` in one step (both in one folder) and forces the folder to disk.
bool RenameFile(const char* from, const char* to);

// Deletes a file and overwrites its content with blanks up to its length, so that it does not
// linger on the disk. A folder is refused. A symbolic link is deleted, never written through, and
// content that another hard link still names is left as it is: only what nothing names any more
// is wiped. True if it could be opened and was deleted.
bool WipeFile(const char* name);

// Holds a file open so that its content can be wiped after another file has taken its name.
// A symbolic link under the name is not followed (nothing is held).
class FileToWipe {
 public:
  explicit FileToWipe(const char* name);
  ~FileToWipe();
  FileToWipe(const FileToWipe&) = delete;
  FileToWipe& operator=(const FileToWipe&) = delete;
  bool IsOpen() const { return fd_ >= 0; }
  // Overwrites the content with blanks, once no name is left for it; content that another hard
  // link still names is not the database's to wipe and stays. False if the file could not be
  // opened or written.
  bool Wipe();

 private:
  int fd_ = -1;
};

// The descriptor and the name lead to the same file (device and inode), links followed.
bool SameFile(int fd, const char* name);

// Removes the file that `fd` has open, under `name` or, where `name` is a symbolic link, under the
// path the link resolves to; only if that is still the same file. For undoing a file that a failed
// write created.
void RemoveCreatedFile(int fd, const char* name);

// The name, trimmed of blanks, ends in extension (given with its dot), in any letter case.
bool HasExtension(const char* name, const char* extension);

}  // namespace verdal::platform
