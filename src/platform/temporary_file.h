#pragma once
// A temporary file that lives as long as its owner: made at once in $TMPDIR or /tmp, removed at
// the end of the scope. Its path is empty when none could be made.
#include <unistd.h>

#include <string>

#include "platform/file_system.h"

namespace verdal::platform {

class ScopedTemporaryFile {
 public:
  explicit ScopedTemporaryFile(const char* prefix) : path(MakeTemporaryFile(prefix)) {}
  ~ScopedTemporaryFile() {
    if (!path.empty()) unlink(path.c_str());
  }
  ScopedTemporaryFile(const ScopedTemporaryFile&) = delete;
  ScopedTemporaryFile& operator=(const ScopedTemporaryFile&) = delete;

  const std::string path;
};

}  // namespace verdal::platform
