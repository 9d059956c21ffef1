// Exported function for views.
#include "engine/api/api_frame.h"
#include "engine/handle_table.h"
#include "engine/pool_manager.h"
#include "model/view_set.h"
#include "verdal.h"

using namespace verdal;

extern "C" {

// A bad handle gives -1 without touching the last error; a mode outside 1 to 3 gives -1 and
// code 11.
VERDAL_API int32_t VERDAL_CreateView(VerdalHandle handle, const char* name, int32_t mode) {
  try {
    if (!engine::Pool().Find(handle)) return -1;
    engine::TDBManager* db = engine::Handles().Lookup(handle);
    int32_t index = model::CreateView(db->store, name, mode);
    if (index < 0) {
      engine::SetLastError(VERDAL_ERR_INPUT);
      api::TraceFailure("VERDAL_CreateView");
    }
    return index;
  } catch (...) {
    api::TraceFailure("VERDAL_CreateView");
    return -1;
  }
}

}  // extern "C"
