#include "mapped_path.h"

#include <cstring>

#include "platform/file_system.h"

namespace verdal::sqlbridge {
namespace {

constexpr size_t kMapperBuffer = 260;

}  // namespace

bool MapHostPath(const char* name, VerdalPathMapperFn mapper, std::string& path) {
  path = name;
  if (mapper != nullptr) {
    if (path.size() >= kMapperBuffer) return false;
    char buffer[kMapperBuffer] = {};
    std::memcpy(buffer, path.data(), path.size());
    mapper(buffer);
    buffer[kMapperBuffer - 1] = '\0';
    path = buffer;
  }
  path = platform::NativePath(path.c_str());
  return true;
}

}  // namespace verdal::sqlbridge
