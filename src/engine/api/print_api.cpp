// Exported functions of printing: the print configurations of a database.
#include <string>

#include "engine/api/api_frame.h"
#include "engine/option_kinds.h"
#include "verdal.h"

using namespace verdal;
using engine::TDBManager;

extern "C" {

VERDAL_API int32_t VERDAL_PrintTableDeleteOption(VerdalHandle handle, const char* configName) {
  return api::QuietlyWithDatabase(handle, -1, [&](TDBManager& db) -> int32_t {
    // A sheet open on the database holds its records: nothing is removed under it.
    if (db.openSheets != 0) return -2;
    const int32_t index = db.prints.IndexOf(configName != nullptr ? configName : "");
    if (index < 0) return -2;
    db.prints.Remove(index);
    db.MarkDirty();
    return 1;
  });
}

}  // extern "C"
