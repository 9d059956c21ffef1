#include "engine/notify.h"

#include <cstdlib>
#include <vector>

#include "engine/database_call.h"
#include "engine/db_manager.h"
#include "engine/handle_table.h"
#include "engine/link_walk.h"
#include "engine/settings.h"
#include "model/node_store.h"

namespace verdal::engine {
namespace {

VerdalNotification g_record;

void FillPlace(TDBManager& db, int32_t cursor) {
  int32_t categoryCursor = -1;
  bool isCategory = true;
  model::CategoryOfCursor(db.store, cursor, categoryCursor, isCategory);
  g_record.categoryId = categoryCursor;
  g_record.isCategory = isCategory ? 1 : 0;
}

// Calls the host with busy set; the low byte of its answer is the verdict. A linked database told
// here counts as being called: what the host asks for it waits until the callback has returned.
// The caller must not touch db afterwards, for it may have been closed then.
bool Send(TDBManager& db, int32_t cursor, int32_t reason) {
  DatabaseCall call(db);
  const Settings& s = Switches();
  g_record.busy = 1;
  g_record.reason = reason;
  g_record.database = static_cast<int32_t>(db.Handle());
  g_record.cursor = cursor;
  int32_t answer = s.notification(s.notificationUser, &g_record);
  g_record.busy = 0;
  return (answer & 0xFF) != 0;
}

bool TravelsAlongLinks(int32_t reason) {
  return reason == VERDAL_NOTIFY_CURRENT_CHANGING || reason == VERDAL_NOTIFY_CURRENT_CHANGED ||
         reason == VERDAL_NOTIFY_FILTERS_CHANGED || reason == VERDAL_NOTIFY_LIST_OPTIONS_CHANGED;
}

}  // namespace

void ClearNotificationRecord() {
  g_record = VerdalNotification{};
  g_record.cursor = -1;
  g_record.categoryId = -1;
  g_record.field = -10;
}

const VerdalNotification& NotificationRecord() { return g_record; }

bool NotifyChange(TDBManager* db, int32_t cursor, int32_t reason, int32_t field, int32_t value,
                  int32_t extra, int32_t* valueOut) {
  const Settings& s = Switches();
  if (!s.notify || s.notification == nullptr || db == nullptr || g_record.busy != 0) return true;
  FillPlace(*db, cursor);
  g_record.field = field;
  g_record.value = value;
  g_record.extra = extra;
  bool result = Send(*db, cursor, reason);
  if (valueOut != nullptr) *valueOut = g_record.value;
  if (!result && (reason == VERDAL_NOTIFY_CURRENT_CHANGING || reason == VERDAL_NOTIFY_DELETING))
    return false;
  if (!TravelsAlongLinks(reason)) return result;

  std::vector<TDBRecursChecker> chains;
  WalkLinks(db, chains, -1, nullptr, 0);
  std::vector<uint32_t> told;
  for (const TDBRecursChecker& chain : chains) {
    if (chain.cut) continue;
    for (size_t j = 1; j < chain.handles.size(); ++j) {
      TDBManager* from = Handles().Lookup(chain.handles[j - 1]);
      TDBManager* to = Handles().Lookup(chain.handles[j]);
      if (from == nullptr || to == nullptr) break;
      std::optional<std::string_view> link =
          model::FieldValue(from->store, from->store.currentCursor, chain.fields[j - 1]);
      if (!link) break;
      int32_t target = static_cast<int32_t>(std::strtol(link->data(), nullptr, 10));  // NUL-ended
      FillPlace(*to, target);
      if (reason == VERDAL_NOTIFY_CURRENT_CHANGED) to->store.currentCursor = target;
      bool alreadyTold = false;
      for (uint32_t h : told) alreadyTold = alreadyTold || h == to->Handle();
      if (alreadyTold || Switches().notification == nullptr || g_record.busy != 0) continue;
      told.push_back(to->Handle());
      if (!Send(*to, target, reason) && reason == VERDAL_NOTIFY_CURRENT_CHANGING) return false;
    }
  }
  return result;
}

}  // namespace verdal::engine
