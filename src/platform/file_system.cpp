#include "platform/file_system.h"

#include <sys/stat.h>
#include <sys/statvfs.h>
#include <strings.h>
#include <unistd.h>

#include <cstring>

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
  if (name == nullptr) return false;
  size_t length = std::strlen(name);
  if (length < 2 || length > 259) return false;
  return access(NativePath(name).c_str(), F_OK) == 0;
}

bool IsOnReadOnlyMedium(const char* name) {
  std::string path = NativePath(name);
  std::string probe = access(path.c_str(), F_OK) == 0 ? path : FolderOf(path);
  struct statvfs fs {};
  if (statvfs(probe.c_str(), &fs) == 0 && (fs.f_flag & ST_RDONLY) != 0) return true;
  return access(FolderOf(path).c_str(), W_OK) != 0;
}

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

std::string FileNamePart(const char* name) {
  std::string s = name != nullptr ? name : "";
  size_t slash = s.find_last_of("/\\");
  return slash == std::string::npos ? s : s.substr(slash + 1);
}

}  // namespace verdal::platform
