#include "platform/file_system.h"

#include "platform/fault.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <strings.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <vector>

namespace verdal::platform {
namespace {

std::string FolderOf(const std::string& path) {
  size_t slash = path.find_last_of('/');
  if (slash == std::string::npos) return ".";
  if (slash == 0) return "/";
  return path.substr(0, slash);
}

}  // namespace

std::string NativePath(const char* name) {
  std::string path = name != nullptr ? name : "";
  for (char& c : path)
    if (c == '\\') c = '/';
  return path;
}

bool FileExists(const char* name) {
  if (name == nullptr || *name == '\0') return false;
  return access(NativePath(name).c_str(), F_OK) == 0;
}

bool NameTooLong(const char* name) {
  if (name == nullptr || *name == '\0') return false;
  return access(NativePath(name).c_str(), F_OK) != 0 && errno == ENAMETOOLONG;
}

bool IsOnReadOnlyMedium(const char* name) {
  std::string path = NativePath(name);
  std::string folder = FolderOf(path);
  if (access(folder.c_str(), F_OK) != 0) return false;  // no folder: nothing can be written there
  std::string probe = access(path.c_str(), F_OK) == 0 ? path : folder;
  struct statvfs fs {};
  if (statvfs(probe.c_str(), &fs) == 0 && (fs.f_flag & ST_RDONLY) != 0) return true;
  return access(folder.c_str(), W_OK) != 0;
}

bool IsWritable(const char* name) { return access(NativePath(name).c_str(), W_OK) == 0; }

bool MakeWritable(const char* name) {
  std::string path = NativePath(name);
  struct stat st {};
  if (stat(path.c_str(), &st) != 0) return false;
  if ((st.st_mode & S_IWUSR) == 0) chmod(path.c_str(), st.st_mode | S_IWUSR);
  return access(path.c_str(), W_OK) == 0;
}

bool HasExtension(const char* name, const char* extension) {
  if (name == nullptr || extension == nullptr) return false;
  std::string n = name;
  size_t end = n.find_last_not_of(' ');
  if (end == std::string::npos) return false;
  n.resize(end + 1);
  size_t ext = std::strlen(extension);
  return n.size() >= ext && strcasecmp(n.c_str() + n.size() - ext, extension) == 0;
}

bool FileTime(const char* name, int64_t& time) {
  struct stat st {};
  if (stat(NativePath(name).c_str(), &st) != 0) return false;
  time = static_cast<int64_t>(st.st_mtim.tv_sec) * 1000000000 + st.st_mtim.tv_nsec;
  return true;
}

std::string ProgramFolder() {
  char buffer[4096];
  ssize_t n = readlink("/proc/self/exe", buffer, sizeof buffer - 1);
  if (n <= 0) return ".";
  return FolderOf(std::string(buffer, static_cast<size_t>(n)));
}

std::string TemporaryFolder() {
  const char* folder = std::getenv("TMPDIR");
  return folder != nullptr && *folder != '\0' ? folder : "/tmp";
}

std::string MakeTemporaryFile(const char* prefix, const char* extension) {
  const std::string suffix = extension != nullptr ? extension : "";
  std::string pattern = TemporaryFolder() + "/" + prefix + "XXXXXX" + suffix;
  const int fd = mkstemps(pattern.data(), static_cast<int>(suffix.size()));
  if (fd < 0) return {};
  close(fd);
  return pattern;
}

bool ReadWholeFile(const char* name, std::string& text) {
  std::ifstream in(NativePath(name), std::ios::binary);
  if (!in) return false;
  text.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
  return !in.bad();
}

std::string EngineFolder() {
  Dl_info info{};
  if (dladdr(reinterpret_cast<void*>(&EngineFolder), &info) == 0 || info.dli_fname == nullptr)
    return ProgramFolder();
  char resolved[PATH_MAX];
  if (realpath(info.dli_fname, resolved) == nullptr) return ProgramFolder();
  return FolderOf(resolved);
}

std::string FileNamePart(const char* name) {
  std::string s = name != nullptr ? name : "";
  size_t slash = s.find_last_of("/\\");
  return slash == std::string::npos ? s : s.substr(slash + 1);
}

namespace {

constexpr size_t kBlock = 64000;

// Forces a folder's entries to disk, so a rename or a new file survives a crash.
void SyncFolder(const std::string& path) {
  int fd = ::open(FolderOf(path).c_str(), O_RDONLY | O_DIRECTORY);
  if (fd < 0) return;
  ::fsync(fd);
  ::close(fd);
}

bool SameFile(const std::string& a, const std::string& b) {
  struct stat sa {}, sb {};
  return ::stat(a.c_str(), &sa) == 0 && ::stat(b.c_str(), &sb) == 0 && sa.st_dev == sb.st_dev &&
         sa.st_ino == sb.st_ino;
}

}  // namespace

bool WriteAll(int fd, const char* data, size_t size) {
  while (size > 0) {
    if (InjectFault(FaultSite::kWrite)) return false;
    ssize_t n = ::write(fd, data, size);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) return false;
    data += n;
    size -= static_cast<size_t>(n);
  }
  return true;
}

std::string PartialNameOf(const std::string& target) {
  size_t slash = target.find_last_of('/');
  size_t at = slash == std::string::npos ? 0 : slash + 1;
  return target.substr(0, at) + "~" + target.substr(at);
}

bool WriteWholeFile(const char* name, const void* data, size_t size) {
  std::string target = NativePath(name);
  std::string partial = PartialNameOf(target);
  int out = ::open(partial.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC, 0666);
  if (out < 0) return false;
  bool ok = WriteAll(out, static_cast<const char*>(data), size) && !InjectFault(FaultSite::kSync) &&
            ::fsync(out) == 0;
  if (::close(out) != 0) ok = false;
  if (ok) ok = RenameFile(partial.c_str(), target.c_str());
  if (!ok) ::unlink(partial.c_str());
  return ok;
}

bool CopyFile(const char* from, const char* to) {
  std::string source = NativePath(from), target = NativePath(to);
  if (SameFile(source, target)) return true;
  if (InjectFault(FaultSite::kCopy)) return false;
  int in = ::open(source.c_str(), O_RDONLY);
  if (in < 0) return false;
  // The copy is made beside the target and renamed onto it, so the target is never half written.
  std::string partial = PartialNameOf(target);
  int out = ::open(partial.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
  bool ok = out >= 0;
  std::vector<char> buffer(kBlock);
  while (ok) {
    ssize_t n = ::read(in, buffer.data(), buffer.size());
    if (n < 0 && errno == EINTR) continue;
    if (n < 0) ok = false;
    if (n <= 0) break;
    ok = WriteAll(out, buffer.data(), static_cast<size_t>(n));
  }
  if (out >= 0) {
    if (ok) ok = !InjectFault(FaultSite::kSync) && ::fsync(out) == 0;
    if (::close(out) != 0) ok = false;
  }
  ::close(in);
  if (ok) ok = RenameFile(partial.c_str(), target.c_str());
  if (!ok) ::unlink(partial.c_str());
  return ok;
}

bool RenameFile(const char* from, const char* to) {
  std::string source = NativePath(from), target = NativePath(to);
  if (InjectFault(FaultSite::kRename) || ::rename(source.c_str(), target.c_str()) != 0) return false;
  SyncFolder(target);
  return true;
}

FileToWipe::FileToWipe(const char* name) {
  std::string path = NativePath(name);
  struct stat st {};
  if (::lstat(path.c_str(), &st) != 0 || !S_ISREG(st.st_mode)) return;
  MakeWritable(name);
  fd_ = ::open(path.c_str(), O_WRONLY | O_NOFOLLOW | O_CLOEXEC);
}

FileToWipe::~FileToWipe() {
  if (fd_ >= 0) ::close(fd_);
}

bool FileToWipe::Wipe() {
  struct stat st {};
  if (fd_ < 0 || ::fstat(fd_, &st) != 0) return false;
  if (st.st_nlink > 0) return true;  // still named elsewhere: not lingering, and not ours
  std::vector<char> blanks(kBlock, ' ');
  bool ok = true;
  for (off_t left = st.st_size; left > 0 && ok;) {
    size_t n = static_cast<size_t>(left) < blanks.size() ? static_cast<size_t>(left) : blanks.size();
    ok = WriteAll(fd_, blanks.data(), n);  // a short write ends the wiping
    left -= static_cast<off_t>(n);
  }
  ::fsync(fd_);
  return ok;
}

bool WipeFile(const char* name) {
  std::string path = NativePath(name);
  struct stat st {};
  if (::lstat(path.c_str(), &st) != 0 || S_ISDIR(st.st_mode)) return false;
  if (S_ISLNK(st.st_mode)) {
    // A link under the name: the name goes, the file it leads to is not ours to wipe.
    if (InjectFault(FaultSite::kDelete)) return false;
    return ::unlink(path.c_str()) == 0;
  }
  FileToWipe file(name);
  if (!file.IsOpen()) return false;
  // Deleted first, so that the wipe can tell whether another hard link still names the content.
  if (InjectFault(FaultSite::kDelete) || ::unlink(path.c_str()) != 0) return false;
  file.Wipe();
  return true;
}

bool SameFile(int fd, const char* name) {
  struct stat a {}, b {};
  return fd >= 0 && ::fstat(fd, &a) == 0 && ::stat(NativePath(name).c_str(), &b) == 0 &&
         a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

void RemoveCreatedFile(int fd, const char* name) {
  std::string path = NativePath(name);
  char resolved[PATH_MAX];
  if (::realpath(path.c_str(), resolved) != nullptr) path = resolved;
  if (SameFile(fd, path.c_str())) ::unlink(path.c_str());
}

}  // namespace verdal::platform
