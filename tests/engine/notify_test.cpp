// The notification dispatcher: what only the dispatcher decides. Vetoes of reasons 1 and 3 and
// switching notifications off are seen through the C interface (tests/api).
#include <gtest/gtest.h>

#include <vector>

#include "engine/db_manager.h"
#include "engine/handle_table.h"
#include "engine/lifecycle.h"
#include "engine/notify.h"
#include "engine/pool_manager.h"
#include "engine/record_ops.h"
#include "engine/settings.h"

using namespace verdal::engine;

namespace {

struct Host {
  std::vector<int32_t> reasons;
  int32_t answer = 1;
  TDBManager* nestInto = nullptr;  // notify again from inside the callback
  bool nestedResult = false;
};

int32_t Record(intptr_t user, VerdalNotification* n) {
  Host& host = *reinterpret_cast<Host*>(user);
  host.reasons.push_back(n->reason);
  if (host.nestInto != nullptr) host.nestedResult = NotifyChange(host.nestInto, -2, 9, -10, 0, 0);
  return host.answer | 0x100;  // only the low byte counts
}

class Notify : public ::testing::Test {
 protected:
  void SetUp() override {
    db = Handles().Lookup(OpenDatabase(OpenRequest{}));
    ASSERT_NE(db, nullptr);
    record = AddRecord(*db, -1, "r", false, nullptr, -1, nullptr);  // before the host listens
    Switches().notification = Record;
    Switches().notificationUser = reinterpret_cast<intptr_t>(&host);
  }
  void TearDown() override {
    Switches() = Settings{};
    Pool().CloseAll();
  }

  Host host;
  TDBManager* db = nullptr;
  int32_t record = 0;
};

}  // namespace

TEST_F(Notify, TheLowByteOfTheAnswerDecidesAndOnlyReasonsOneAndThreeAreStopped) {
  host.answer = 0;  // 0x100 reaches the dispatcher: still a no
  EXPECT_FALSE(NotifyChange(db, record, 1, -10, 0, 0));
  EXPECT_FALSE(NotifyChange(db, record, 3, -10, 5, 0));
  // For the others the answer is passed back, but nothing was stopped by it.
  host.answer = 1;
  EXPECT_TRUE(NotifyChange(db, record, 2, -10, 0, 0));
  EXPECT_EQ(host.reasons, (std::vector<int32_t>{1, 3, 2}));
}

TEST_F(Notify, NestedNotificationsAreSuppressedWhileTheHostIsBusy) {
  host.nestInto = db;
  EXPECT_TRUE(NotifyChange(db, record, 8, 0, 0, 0));
  EXPECT_TRUE(host.nestedResult);
  EXPECT_EQ(host.reasons, (std::vector<int32_t>{8}));  // the nested call reached nobody
  EXPECT_TRUE(NotifyChange(nullptr, record, 1, -10, 0, 0));
}
