#include "engine/path_mapper.h"

#include <cstring>

#include "engine/last_error.h"
#include "engine/settings.h"
#include "platform/trace.h"

namespace verdal::engine {

bool MapPath(std::string& path, VerdalPathMapperFn mapper) {
  if (mapper == nullptr) mapper = Switches().pathMapper;
  if (mapper == nullptr) return true;
  if (path.size() >= kMapperPathSize) {
    SetLastError(VERDAL_ERR_INPUT);
    platform::Trace("path too long for the path mapper: '%s'", path.c_str());
    return false;
  }
  char buffer[kMapperPathSize] = {};
  std::memcpy(buffer, path.data(), path.size());
  mapper(buffer);
  buffer[kMapperPathSize - 1] = '\0';
  path = buffer;
  return true;
}

}  // namespace verdal::engine
