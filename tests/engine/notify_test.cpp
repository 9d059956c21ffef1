// The notification dispatcher: what the host sees, vetoes, and nested calls.
#include <gtest/gtest.h>

#include <vector>

#include "engine/db_manager.h"
#include "engine/handle_table.h"
#include "engine/lifecycle.h"
#include "engine/notify.h"
#include "engine/pool_manager.h"
#include "engine/settings.h"

using namespace verdal::engine;
namespace model = verdal::model;

namespace {

struct Seen {
  int32_t reason, database, cursor, categoryId, busy, isCategory, field, value, extra;
};

struct Host {
  std::vector<Seen> seen;
  int32_t answer = 1;
  TDBManager* nestInto = nullptr;  // notify again from inside the callback
  bool nestedResult = false;
};

int32_t Record(intptr_t user, VerdalNotification* n) {
  Host& host = *reinterpret_cast<Host*>(user);
  host.seen.push_back({n->reason, n->database, n->cursor, n->categoryId, n->busy, n->isCategory,
                       n->field, n->value, n->extra});
  if (host.nestInto != nullptr) host.nestedResult = NotifyChange(host.nestInto, -2, 9, -10, 0, 0);
  return host.answer | 0x100;  // only the low byte counts
}

class Notify : public ::testing::Test {
 protected:
  void SetUp() override {
    handle = OpenDatabase(OpenRequest{});
    db = Handles().Lookup(handle);
    ASSERT_NE(db, nullptr);
    // A category with one record, and a record at top level.
    auto& s = db->store;
    model::TDBCategoryRecord rec;
    rec.id = s.nextCategoryId++;
    rec.parentId = -1;
    int32_t categoryId = rec.id;
    s.categories.Insert(categoryId, std::move(rec));
    category = AddPlace(categoryId, true);
    inCategory = AddPlace(categoryId, false);
    topLevel = AddPlace(-1, false);
    model::Renumber(s);
    Switches().notification = Record;
    Switches().notificationUser = reinterpret_cast<intptr_t>(&host);
  }
  void TearDown() override {
    Switches() = Settings{};
    Pool().CloseAll();
  }
  int32_t AddPlace(int32_t categoryId, bool isCategory) {
    model::TDBCategoryData p;
    p.cursor = db->store.nextCursor++;
    p.categoryId = categoryId;
    p.isCategory = isCategory;
    model::TDBCategoryData* raw = db->store.places.Insert(p.cursor, std::move(p));
    model::AttachPlaces(db->store, {raw}, true);
    return raw->cursor;
  }

  Host host;
  uint32_t handle = 0;
  TDBManager* db = nullptr;
  int32_t category = 0, inCategory = 0, topLevel = 0;
};

}  // namespace

TEST_F(Notify, OnlyReasonsOneAndThreeCanBeVetoed) {
  host.answer = 0;
  EXPECT_FALSE(NotifyChange(db, topLevel, 1, -10, 0, 0));
  EXPECT_FALSE(NotifyChange(db, topLevel, 3, -10, 5, 0));
  EXPECT_EQ(host.seen.size(), 2u);
  // For the others the answer is passed back, but nothing was stopped by it.
  host.answer = 1;
  EXPECT_TRUE(NotifyChange(db, topLevel, 2, -10, 0, 0));
}

TEST_F(Notify, NestedNotificationsAreSuppressedWhileTheHostIsBusy) {
  host.nestInto = db;
  EXPECT_TRUE(NotifyChange(db, topLevel, 8, 0, 0, 0));
  EXPECT_TRUE(host.nestedResult);
  EXPECT_EQ(host.seen.size(), 1u);  // the nested call reached nobody
}

TEST_F(Notify, NothingIsSentWhenSwitchedOffOrWithoutCallbackOrDatabase) {
  Switches().notify = false;
  EXPECT_TRUE(NotifyChange(db, topLevel, 1, -10, 0, 0));
  Switches().notify = true;
  EXPECT_TRUE(NotifyChange(nullptr, topLevel, 1, -10, 0, 0));
  Switches().notification = nullptr;
  host.answer = 0;
  EXPECT_TRUE(NotifyChange(db, topLevel, 3, -10, 0, 0));
  EXPECT_TRUE(host.seen.empty());
}
