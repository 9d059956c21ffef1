#include "platform/temporary_folder.h"

#include <stdlib.h>

#include <filesystem>
#include <map>
#include <mutex>

#include "platform/file_system.h"

namespace verdal::platform {
namespace {

struct Folder {
  std::string path;
  int users = 0;
};

std::mutex g_mutex;
std::map<std::string, Folder>& Folders() {
  static auto* folders = new std::map<std::string, Folder>;  // outlives every user, even at exit
  return *folders;
}

}  // namespace

SharedTemporaryFolder::SharedTemporaryFolder(const char* prefix) : prefix_(prefix) {
  std::lock_guard<std::mutex> lock(g_mutex);
  Folder& folder = Folders()[prefix_];
  if (folder.users == 0) {
    std::string pattern = TemporaryFolder() + "/" + prefix_ + "XXXXXX";
    if (mkdtemp(pattern.data()) == nullptr) return;
    folder.path = pattern;
  }
  ++folder.users;
  path_ = folder.path;
}

SharedTemporaryFolder::~SharedTemporaryFolder() {
  if (path_.empty()) return;
  std::lock_guard<std::mutex> lock(g_mutex);
  Folder& folder = Folders()[prefix_];
  if (--folder.users > 0) return;
  std::error_code ignored;
  std::filesystem::remove_all(folder.path, ignored);  // links inside are removed, not followed
  folder.path.clear();
}

}  // namespace verdal::platform
