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
  int calls = 0;  // how often the host was told of an added or deleted record, or walked a node

  void Act() {
    if (calls++ != 0) return;
    switch (inside) {
      case Inside::kClose: EXPECT_EQ(VERDAL_CloseDB(db), 1); break;
      case Inside::kCloseAll: VERDAL_CloseAllDBs(); break;
      case Inside::kEmpty: EXPECT_EQ(VERDAL_EmptyData(db, 1), 1); break;
      case Inside::kLoad:
        EXPECT_EQ(VERDAL_Load(db, nullptr, 0), 0);
        EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_TARGET);
        break;
    }
    // Still open inside the callback; another database that is not in a call closes at once.
    EXPECT_EQ(VERDAL_GetDBCount(), inside == Inside::kCloseAll ? 1 : 2);
  }
  static int32_t Notified(intptr_t user, VerdalNotification* n) {
    auto* h = reinterpret_cast<Host*>(user);
    if (n->reason == VERDAL_NOTIFY_ADDED || n->reason == VERDAL_NOTIFY_DELETED) h->Act();
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
      const std::string run = std::to_string(static_cast<int>(outer) * 10 + static_cast<int>(inside));
      SCOPED_TRACE(run);
      VerdalHandle db = VERDAL_OpenDB((dir / (run + ".dbd")).c_str(), nullptr, 1, 0, nullptr, 1, 0, 0);
      ASSERT_NE(db, 0u);
      AddField(db, "Name", 0);
      // An open category K holding three records; the records go one by one in a delete.
      int32_t k = VERDAL_AddCategory(db, -1, "K");
      for (const char* title : {"a", "b", "c"}) VERDAL_AddRecord(db, k, title, 0, "v", 0, 0, nullptr);
      int32_t open = 1;
      VERDAL_SetCategoryInfo(db, k, nullptr, &open, nullptr, nullptr, 0, nullptr, 0, 0);
      ASSERT_NE(OpenMemoryDatabase(), 0u);

      Host host{db, inside};
      VERDAL_SetNotification(&Host::Notified, reinterpret_cast<intptr_t>(&host));
      if (outer == Outer::kDelete)
        EXPECT_EQ(VERDAL_DeleteRecord(db, k, VERDAL_DELETE_RECORDS, 1, nullptr, 1), 1);
      else if (outer == Outer::kAdd)
        EXPECT_GE(VERDAL_AddRecord(db, k, "d", 0, "v", 0, 0, nullptr), 0);
      else
        EXPECT_EQ(VERDAL_BuildCategoryTree(db, 0, &Host::Visited, reinterpret_cast<intptr_t>(&host), 0, -1), 1);
      VERDAL_SetNotification(nullptr, 0);
      EXPECT_GE(host.calls, 1);
      if (outer == Outer::kWalk) {
        EXPECT_EQ(host.calls, 4);  // the walk went on over the whole tree
      }

      if (inside == Inside::kClose || inside == Inside::kCloseAll) {
        EXPECT_EQ(VERDAL_GetFieldSize(db), 0);  // gone now
        EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_HANDLE);
      } else {
        EXPECT_EQ(VERDAL_GetFieldSize(db), 1);  // definitions kept
        EXPECT_EQ(VERDAL_HasMember(db, k), inside == Inside::kLoad && outer != Outer::kDelete ? 1 : 0);
      }
      VERDAL_CloseAllDBs();
    }
  }
}
