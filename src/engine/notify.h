#pragma once
// Notifications from the engine to the host: one record for the process, handed to the host's
// callback before and after each change. The host may veto reasons 1 and 3.
#include <cstdint>

#include "verdal.h"

namespace verdal::engine {

class TDBManager;

void ClearNotificationRecord();
const VerdalNotification& NotificationRecord();

// Tells the host about a change. False only when the host vetoed reason 1 or 3. Reasons 1, 2, 12
// and 14 travel on along the link chains of the database. When the host was called, valueOut
// receives the value word as the host left it (VERDAL_DeleteRecord lets it change the flags).
bool NotifyChange(TDBManager* db, int32_t cursor, int32_t reason, int32_t field, int32_t value,
                  int32_t extra, int32_t* valueOut = nullptr);

}  // namespace verdal::engine
