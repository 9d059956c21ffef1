// Exported functions of printing: the table through its preview, and the print configurations.
#include <string>

#include "engine/api/api_frame.h"
#include "engine/option_kinds.h"
#include "engine/print_table.h"
#include "verdal.h"

using namespace verdal;
using api::Judge;
using engine::TDBManager;

extern "C" {

VERDAL_API int32_t VERDAL_PrintTable(VerdalHandle handle, const char* configName, const char* filter,
                                     VerdalPrintFn callback, int32_t count, const int32_t* ids,
                                     int32_t styleField) {
  return api::WithDatabase("VERDAL_PrintTable", handle, 0, Judge::kResult, [&](TDBManager& db) {
    return engine::PrintTable(db, configName, filter, callback, count, ids, styleField);
  });
}

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
