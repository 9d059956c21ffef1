#pragma once
// The export: the chosen places go into an exchange file, which the bridge turns into the target.
#include <cstdint>

#include "verdal.h"

namespace verdal::engine {

class TDBManager;

struct ExportRequest {
  const char* target = nullptr;
  intptr_t extra = 0;
  VerdalPathMapperFn mapper = nullptr;  // null: the process-wide one
  int32_t flags = 0;
  int32_t count = 0;  // with cursors, the places to export; otherwise all of view 0
  const int32_t* cursors = nullptr;
  intptr_t args[4] = {0, 0, 0, 0};
};

// 1 once the bridge has had the file, whatever it made of it; 0 with code 14 when the bridge
// cannot be loaded.
int32_t Export(TDBManager& db, const ExportRequest& request);

}  // namespace verdal::engine
