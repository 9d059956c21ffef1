#include "platform/temporary_file.h"

#include <mutex>
#include <vector>

namespace verdal::platform {
namespace {

// Removes what it holds when the process ends (static destruction, also at dlclose).
struct FilesToRemove {
  std::mutex mutex;
  std::vector<std::string> paths;
  ~FilesToRemove() {
    for (const std::string& path : paths) unlink(path.c_str());
  }
};

FilesToRemove g_filesToRemove;

}  // namespace

void RemoveAtProcessEnd(const std::string& path) {
  if (path.empty()) return;
  std::lock_guard<std::mutex> lock(g_filesToRemove.mutex);
  g_filesToRemove.paths.push_back(path);
}

}  // namespace verdal::platform
