#include "mysql_handoff.h"

#include <dlfcn.h>

#include <cstdlib>
#include <mutex>

#include "platform/trace.h"

namespace verdal::sqlbridge {

std::string GatewayFolder() {
  const char* overridden = std::getenv("VERDAL_GATEWAY_DIR");
  if (overridden != nullptr && *overridden != '\0') return overridden;
  Dl_info info{};
  if (dladdr(reinterpret_cast<void*>(&GatewayFolder), &info) == 0 || info.dli_fname == nullptr)
    return ".";
  const std::string file = info.dli_fname;
  const size_t slash = file.rfind('/');
  return slash == std::string::npos ? "." : file.substr(0, slash);
}

int32_t HandOffToMySql(const char* definition, const char* exchangePath, VerdalPathMapperFn mapper,
                       int32_t flags, int32_t fieldCount, const char* const* names1,
                       const char* const* names2) {
  static std::mutex mutex;
  static MySQLSelectInfo_Fn selectInfo = nullptr;
  {
    std::lock_guard<std::mutex> lock(mutex);
    if (selectInfo == nullptr) {
      const std::string path = GatewayFolder() + "/libverdal_mysqlgate.so";
      void* module = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
      if (module == nullptr) {
        platform::Trace("sqlbridge: %s", dlerror());
        return 0;
      }
      selectInfo = reinterpret_cast<MySQLSelectInfo_Fn>(dlsym(module, "MySQLSelectInfo"));
      if (selectInfo == nullptr) {
        platform::Trace("sqlbridge: %s has no MySQLSelectInfo", path.c_str());
        dlclose(module);
        return 0;
      }
    }
  }
  return selectInfo(definition, exchangePath, mapper, flags, fieldCount, names1, names2);
}

}  // namespace verdal::sqlbridge
