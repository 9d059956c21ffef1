#pragma once
// Temporary files: one that lives as long as its owner, made at once in $TMPDIR or /tmp and
// removed at the end of the scope (its path is empty when none could be made); and one left for
// another program, removed when the process ends.
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

// Leaves the file for a program that reads it in its own time (a document the desktop opens after
// the call that handed it over has returned) and removes it when the process ends.
void RemoveAtProcessEnd(const std::string& path);

}  // namespace verdal::platform
