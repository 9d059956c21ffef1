#include "bridge_import.h"

#include <unistd.h>

#include <string>

#include "import_definition.h"
#include "mapped_path.h"
#include "mysql_handoff.h"
#include "odbc_import.h"
#include "platform/file_system.h"
#include "platform/trace.h"
#include "text_import.h"

namespace verdal::sqlbridge {

int32_t RunImport(const char* input, const char* exchangePath, VerdalPathMapperFn mapper,
                  intptr_t option, int32_t flags, int32_t fieldCount, const char* const* names1,
                  const char* const* names2) {
  // There is no dialog to choose a source in a library: without one nothing can be read.
  if (input == nullptr || exchangePath == nullptr) return 0;
  std::string path;
  if (!MapHostPath(input, mapper, path)) return 0;
  if ((flags & kFlagConfigureOnly) != 0) return 1;

  ImportDefinition definition;
  std::string error;
  bool ok;
  if (IsDefinitionName(path)) {
    ok = LoadDefinition(path, definition, error);
    if (ok && definition.kind == ImportDefinition::Kind::kMySql)
      return HandOffToMySql(input, exchangePath, mapper, flags, fieldCount, names1, names2);
  } else {
    ok = option >= 0 && option <= 3 && DefinitionForDataFile(path, static_cast<int32_t>(option), definition);
    if (!ok) error = "No import reads " + path + " in mode " + std::to_string(option) + ".";
  }

  ImportTarget target{exchangePath, fieldCount, names1, names2};
  if (ok) {
    ok = definition.kind == ImportDefinition::Kind::kText
             ? ImportTextSource(definition, target, error)
             : ImportOdbcSource(definition, target, error);
  }
  if (!ok) {
    platform::Trace("sqlbridge: import of %s failed: %s", path.c_str(), error.c_str());
    unlink(platform::NativePath(exchangePath).c_str());
    return 0;
  }
  return 1;
}

}  // namespace verdal::sqlbridge
