#pragma once
// The few file-system questions the engine asks. Hosts may write '\' or '/' in names; every call
// here maps '\' to '/' before it touches the file system.
#include <cstdint>
#include <string>

namespace verdal::platform {

std::string NativePath(const char* name);

// A name of 2 to 259 characters that names something the process can reach.
bool FileExists(const char* name);

// The path lies on a file system mounted read-only, or in a folder the process cannot write: the
// counterpart of a CD-ROM drive.
bool IsOnReadOnlyMedium(const char* name);

// Sets the owner's write bit; true if the file is writable afterwards.
bool MakeWritable(const char* name);

// The last-write time in nanoseconds; false if the file cannot be reached.
bool FileTime(const char* name, int64_t& time);

// The folder of the running program, without a trailing slash.
std::string ProgramFolder();

// The file's name and extension, after the last '/' or '\'.
std::string FileNamePart(const char* name);

// Copies a file onto another name, replacing it, and forces the copy to disk. Copying a file onto
// itself succeeds without work.
bool CopyFile(const char* from, const char* to);

// Replaces `to` by `from` in one step (both in one folder) and forces the folder to disk.
bool RenameFile(const char* from, const char* to);

// Overwrites a file with blanks up to its length, so its old content does not linger on the disk,
// then deletes it. A folder is refused. True if it could be opened and was deleted.
bool WipeFile(const char* name);

// Holds a file open so that its content can be wiped after another file has taken its name.
class FileToWipe {
 public:
  explicit FileToWipe(const char* name);
  ~FileToWipe();
  FileToWipe(const FileToWipe&) = delete;
  FileToWipe& operator=(const FileToWipe&) = delete;
  bool IsOpen() const { return fd_ >= 0; }
  // Overwrites the content with blanks; false if the file could not be opened or written.
  bool Wipe();

 private:
  int fd_ = -1;
};

// The name, trimmed of blanks, ends in extension (given with its dot), in any letter case.
bool HasExtension(const char* name, const char* extension);

}  // namespace verdal::platform
