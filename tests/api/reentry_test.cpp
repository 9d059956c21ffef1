// Host callbacks that call back in and close, empty or reload the database that is being changed
// or walked: the outer call ends normally, and what was asked for happens as it returns.
#include <gtest/gtest.h>

#include <string>

#include "field_helpers.h"
#include "temp_folder.h"
#include "verdal.h"

namespace {

enum class Outer { kDelete, kAdd, kWalk };
enum class Inside { kClose, kCloseAll, kEmpty, kLoad };

struct Host {
  VerdalHandle db = 0;
  Inside inside = Inside::kClose;
  int32_t reason = 0;  // the notification to act on; 0 for the tree walk
  int calls = 0;       // how often the host was called for that reason or node
  int32_t countInside = -1, loadInside = -1, errorInside = -1;

  void Act() {
    if (calls++ != 0) return;
    switch (inside) {
      case Inside::kClose: EXPECT_EQ(VERDAL_CloseDB(db), 1); break;
      case Inside::kCloseAll: VERDAL_CloseAllDBs(); break;
      case Inside::kEmpty: EXPECT_EQ(VERDAL_EmptyData(db, 1), 1); break;
      case Inside::kLoad:
        loadInside = VERDAL_Load(db, nullptr, 0);
        errorInside = VERDAL_GetLastError();
        break;
    }
    countInside = VERDAL_GetDBCount();
  }
  static int32_t Notified(intptr_t user, VerdalNotification* n) {
    auto* h = reinterpret_cast<Host*>(user);
    if (n->reason == h->reason) h->Act();
    return 1;
  }
  static intptr_t Visited(intptr_t seed, int32_t, int32_t, int32_t, intptr_t user) {
    reinterpret_cast<Host*>(user)->Act();
    return seed;
  }
};

}  // namespace

TEST(Reentry, ACallbackClosingEmptyingOrReloadingTheDatabaseWaitsForTheOuterCall) {
  TempFolder dir;
  for (Outer outer : {Outer::kDelete, Outer::kAdd, Outer::kWalk}) {
    for (Inside inside : {Inside::kClose, Inside::kCloseAll, Inside::kEmpty, Inside::kLoad}) {
      SCOPED_TRACE(static_cast<int>(outer) * 10 + static_cast<int>(inside));
      std::string name = dir / ("r" + std::to_string(static_cast<int>(outer) * 10 + static_cast<int>(inside)) + ".dbd");
      VerdalHandle db = VERDAL_OpenDB(name.c_str(), nullptr, 1, 0, nullptr, 1, 0, 0);
      ASSERT_NE(db, 0u);
      AddField(db, "Name", 0);
      // An open category K holding three records; the records go one by one in a delete.
      int32_t k = VERDAL_AddCategory(db, -1, "K");
      for (const char* title : {"a", "b", "c"}) VERDAL_AddRecord(db, k, title, 0, "v", 0, 0, nullptr);
      int32_t open = 1;
      VERDAL_SetCategoryInfo(db, k, nullptr, &open, nullptr, nullptr, 0, nullptr, 0, 0);
      VerdalHandle other = OpenMemoryDatabase();

      Host host;
      host.db = db;
      host.inside = inside;
      VERDAL_SetNotification(&Host::Notified, reinterpret_cast<intptr_t>(&host));
      switch (outer) {
        case Outer::kDelete:
          host.reason = VERDAL_NOTIFY_DELETED;
          EXPECT_EQ(VERDAL_DeleteRecord(db, k, VERDAL_DELETE_RECORDS, 1, nullptr, 1), 1);
          break;
        case Outer::kAdd:
          host.reason = VERDAL_NOTIFY_ADDED;
          EXPECT_GE(VERDAL_AddRecord(db, k, "d", 0, "v", 0, 0, nullptr), 0);
          break;
        case Outer::kWalk:
          EXPECT_EQ(VERDAL_BuildCategoryTree(db, 0, &Host::Visited, reinterpret_cast<intptr_t>(&host), 0, -1), 1);
          EXPECT_EQ(host.calls, 4);  // the walk went on over the whole tree
          break;
      }
      VERDAL_SetNotification(nullptr, 0);
      EXPECT_GE(host.calls, 1);

      switch (inside) {
        case Inside::kClose:
        case Inside::kCloseAll:
          // Still open inside the callback; gone afterwards (the other database closes at once).
          EXPECT_EQ(host.countInside, inside == Inside::kClose ? 2 : 1);
          EXPECT_EQ(VERDAL_GetFieldSize(db), 0);
          EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_HANDLE);
          break;
        case Inside::kEmpty:
          EXPECT_EQ(VERDAL_GetFieldSize(db), 1);  // definitions kept
          EXPECT_EQ(VERDAL_HasMember(db, k), 0);
          break;
        case Inside::kLoad:
          EXPECT_EQ(host.loadInside, 0);
          EXPECT_EQ(host.errorInside, VERDAL_ERR_TARGET);
          EXPECT_EQ(VERDAL_HasMember(db, k), outer == Outer::kDelete ? 0 : 1);
          break;
      }
      (void)other;
      VERDAL_CloseAllDBs();
    }
  }
}
