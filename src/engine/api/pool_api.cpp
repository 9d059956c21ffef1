// Exported functions of the pool and the process-wide switches.
#include <cstring>

#include "engine/api/api_frame.h"
#include "engine/link_walk.h"
#include "engine/pool_manager.h"
#include "engine/settings.h"
#include "exchange/gateways.h"
#include "ui/host.h"
#include "verdal.h"

using verdal::engine::Pool;
using verdal::engine::Switches;

extern "C" {

VERDAL_API int32_t VERDAL_GetDBCount(void) {
  verdal::engine::SetLastError(VERDAL_ERR_NONE);
  return Pool().Count();
}

VERDAL_API VerdalHandle VERDAL_GetDBHandle(int32_t index) {
  verdal::engine::SetLastError(VERDAL_ERR_NONE);
  return Pool().HandleAt(index);
}

VERDAL_API void VERDAL_CloseAllDBs(void) {
  try {
    Pool().CloseAll();
  } catch (...) {
    verdal::api::TraceFailure("VERDAL_CloseAllDBs");
  }
}

VERDAL_API void VERDAL_SetNotify(int32_t enable) { Switches().notify = enable != 0; }

VERDAL_API void VERDAL_SetNotification(VerdalNotifyFn callback, intptr_t user) {
  Switches().notification = callback;
  Switches().notificationUser = user;
}

VERDAL_API int32_t VERDAL_SetApplicationName(const char* name) {
  if (name != nullptr && std::strlen(name) > 100) return 0;
  verdal::ui::SetApplicationName(name);
  // The bridge names its connections after the application, where it can be had.
  if (name != nullptr) {
    const verdal::exchange::SqlBridge* bridge = verdal::exchange::LoadSqlBridge();
    if (bridge != nullptr && bridge->setApplicationName != nullptr) bridge->setApplicationName(name);
  }
  return 1;
}

VERDAL_API void VERDAL_SetPathMapper(VerdalPathMapperFn mapper) { Switches().pathMapper = mapper; }

VERDAL_API void VERDAL_SetNumericTPoints(int32_t enable, int32_t onlyWithDecimals) {
  Switches().thousandsPoints = enable != 0;
  Switches().thousandsPointsOnlyWithDecimals = onlyWithDecimals != 0;
}

VERDAL_API void VERDAL_SetTryResolveDBReferencesLocal(int32_t enable) {
  Switches().tryResolveLocally = enable != 0;
  verdal::engine::LinksChanged();
}

}  // extern "C"
