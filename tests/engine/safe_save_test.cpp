// A save that fails at any step, or whose process dies there, leaves a whole database under the
// file name (the old one or the new one) and the old one in the backup.
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "engine/db_manager.h"
#include "engine/pool_manager.h"
#include "engine/values.h"
#include "model/cursor.h"
#include "model/fields.h"
#include "platform/fault.h"

using namespace verdal;
using platform::FaultSite;

namespace {

FaultSite g_site;
int g_failAt = 0;   // which occurrence of the site fails; 0: none
int g_seen = 0;
bool g_die = false;

bool Hook(FaultSite site) {
  if (site != g_site || ++g_seen != g_failAt) return false;
  if (g_die) _exit(0);  // the process dies here, without closing anything
  return true;
}

// The value the database under this name holds, "" if it cannot be loaded.
std::string ValueIn(const std::string& name) {
  engine::TDBManager probe(1);
  if (!probe.Open(name.c_str(), false, true, false)) return "<no load>";
  std::optional<std::string_view> v = model::FieldValue(probe.store, model::ResolveCursor(probe.store, -3), 0);
  return v ? std::string(*v) : "<no value>";
}

class SafeSave : public ::testing::TestWithParam<std::tuple<FaultSite, bool>> {
 protected:
  void SetUp() override {
    std::string pattern = (std::filesystem::temp_directory_path() / "verdal-save-XXXXXX").string();
    folder = mkdtemp(pattern.data());
    name = folder + "/d.dbd";
    engine::TDBManager db(1);
    ASSERT_TRUE(db.Open(name.c_str(), true, false, false));
    model::TDBFieldInfo field;
    field.name = "Name";
    model::AddFieldInfo(db.store, field, -1);
    model::CreatePlace(db.store, -1, model::CreateDataRecord(db.store, "", -1)->id, false, false);
    db.store.data.Find(0)->values.Set(0, "alt");
    db.MarkDirty();
    ASSERT_TRUE(db.SafeSave());
  }
  void TearDown() override {
    platform::SetFaultHook(nullptr);
    std::filesystem::remove_all(folder);
  }
  // Opens the database, changes the value and saves, with the hook armed for occurrence n.
  // Returns whether the site was reached n times.
  bool SaveWithFault(int n) {
    auto [site, die] = GetParam();
    g_site = site;
    g_failAt = n;
    g_seen = 0;
    g_die = die;
    if (die) {
      pid_t child = fork();
      if (child == 0) {
        platform::SetFaultHook(Hook);
        Change();
        _exit(g_seen >= n ? 0 : 3);  // 3: the save ran through without reaching the site
      }
      int status = 0;
      waitpid(child, &status, 0);
      return WIFEXITED(status) && WEXITSTATUS(status) == 0;
    }
    platform::SetFaultHook(Hook);
    Change();
    platform::SetFaultHook(nullptr);
    return g_seen >= n;
  }
  void Change() {
    engine::TDBManager db(1);
    if (!db.Open(name.c_str(), false, false, false)) return;
    db.store.data.Find(0)->values.Set(0, "neu");
    db.MarkDirty();
    db.SafeSave();
    db.saveOnClose = false;
  }

  std::string folder, name;
};

}  // namespace

TEST_P(SafeSave, EveryStepCanFailWithoutLosingTheDatabase) {
  int reached = 0;
  for (int n = 1; n < 500; ++n) {
    // Back to the old state, with its backup, before each try.
    {
      engine::TDBManager db(1);
      ASSERT_TRUE(db.Open(name.c_str(), false, false, false)) << "try " << n;
      db.store.data.Find(0)->values.Set(0, "alt");
      db.MarkDirty();
      ASSERT_TRUE(db.SafeSave());
      db.MarkDirty();
      ASSERT_TRUE(db.SafeSave());  // the backup now holds "alt" as well
    }
    bool hit = SaveWithFault(n);
    std::string now = ValueIn(name);
    EXPECT_TRUE(now == "alt" || now == "neu") << "occurrence " << n << ": " << now;
    EXPECT_EQ(ValueIn(folder + "/d.bak"), "alt") << "occurrence " << n;
    if (!hit) break;
    reached = n;
  }
  RecordProperty("steps", reached);
  auto [site, die] = GetParam();
  if (site != FaultSite::kDelete) {
    EXPECT_GT(reached, 0) << "the save never reached this step";
  }
}

std::string SiteName(const ::testing::TestParamInfo<std::tuple<FaultSite, bool>>& info) {
  static const char* names[] = {"Write", "Sync", "Rename", "Copy", "Delete"};
  return std::string(names[static_cast<int>(std::get<0>(info.param))]) +
         (std::get<1>(info.param) ? "Dies" : "Fails");
}

INSTANTIATE_TEST_SUITE_P(Sites, SafeSave,
                         ::testing::Combine(::testing::Values(FaultSite::kWrite, FaultSite::kSync,
                                                              FaultSite::kRename, FaultSite::kCopy,
                                                              FaultSite::kDelete),
                                            ::testing::Bool()),
                         SiteName);
