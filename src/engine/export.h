#pragma once
// The export: the chosen places go into an exchange file, which the bridge turns into the target.
#include <cstdint>
#include <string>
#include <vector>

#include "verdal.h"

namespace verdal::model {
struct TDBCategoryData;
}

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

// The two halves of an export's own work, apart so that they can be checked without a bridge:
// the places it takes (the cursors that exist, in their order; or the whole of view 0, records
// only under category columns), and the exchange file for them, with its companion of paths under
// category columns. View 0 must be numbered, as Export does first.
std::vector<const model::TDBCategoryData*> ExportPlaces(TDBManager& db, const ExportRequest& request);
void WriteExportExchange(TDBManager& db, const std::vector<const model::TDBCategoryData*>& places,
                         bool categories, const std::string& path);

}  // namespace verdal::engine
