// A save whose enciphering fails fails as a whole, through the C interface: code 26, the last good
// file stays, nothing is written in clear, and the password and flags stay for the next save.
// The failure is made with the fault hook, which only the static core reaches.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>
#include <string>
#include <vector>

#include "api/field_helpers.h"
#include "api/temp_folder.h"
#include "platform/fault.h"
#include "verdal.h"

using verdal::platform::FaultSite;

namespace {

bool FailEnciphering(FaultSite site) { return site == FaultSite::kEncipher; }

bool Exists(const std::string& name) {
  struct stat st {};
  return lstat(name.c_str(), &st) == 0;
}

bool HoldsText(const std::vector<uint8_t>& bytes, const std::string& text) {
  return std::string(bytes.begin(), bytes.end()).find(text) != std::string::npos;
}

class CipherAtSave : public ::testing::Test {
 protected:
  void TearDown() override {
    verdal::platform::SetFaultHook(nullptr);
    VERDAL_CloseAllDBs();
  }
  TempFolder dir;
};

}  // namespace

TEST_F(CipherAtSave, AFailedEncipheringFailsTheSaveAndKeepsTheLastGoodFile) {
  std::string name = dir / "g.dbd";
  VerdalHandle db = VERDAL_OpenDB(name.c_str(), nullptr, 1, 0, nullptr, 1, 0, 0);
  ASSERT_NE(db, 0u);
  AddField(db, "Name", 0);
  VERDAL_AddRecord(db, -1, "r", 0, std::string(3000, 'g').c_str(), 0, 0, nullptr);
  for (int32_t compress : {0, 1}) {
    SCOPED_TRACE(compress ? "compressed" : "not compressed");
    ASSERT_EQ(VERDAL_SetPWDAndCompression(db, "geheim123", compress), 1);
    ASSERT_EQ(VERDAL_Save(db, nullptr), 1);
    const std::vector<uint8_t> good = TempFolder::Read(name);
    ASSERT_EQ(good.at(11), 1);
    ASSERT_EQ(good.at(10), compress);

    VERDAL_SetData(db, 0, "Kontostand 4711", VERDAL_CURSOR_FIRST, 0, nullptr, nullptr);
    verdal::platform::SetFaultHook(FailEnciphering);
    EXPECT_EQ(VERDAL_Save(db, nullptr), 0);
    EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_WRITE_FILE);
    EXPECT_EQ(TempFolder::Read(name), good);
    EXPECT_FALSE(Exists(dir / "~g.dbd"));

    // Save-as: a new target is not made, an existing one keeps its content.
    std::string copy = dir / "kopie.dbd", existing = dir / "da.dbd";
    EXPECT_EQ(VERDAL_Save(db, copy.c_str()), 0);
    EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_WRITE_FILE);
    EXPECT_FALSE(Exists(copy));
    TempFolder::Write(existing, std::vector<uint8_t>(10, 'd'));
    EXPECT_EQ(VERDAL_Save(db, existing.c_str()), 0);
    EXPECT_EQ(TempFolder::Read(existing), std::vector<uint8_t>(10, 'd'));
    std::remove(existing.c_str());

    // The password and the flags stand; the next save that can encipher does.
    char password[32];
    int32_t flag = -1;
    ASSERT_EQ(VERDAL_GetPWDAndCompression(db, password, &flag), 1);
    EXPECT_STREQ(password, "geheim123");
    EXPECT_EQ(flag, compress);
    verdal::platform::SetFaultHook(nullptr);
    EXPECT_EQ(TempFolder::Read(dir / "g.bak"), good);
    ASSERT_EQ(VERDAL_Save(db, nullptr), 1);
    const std::vector<uint8_t> now = TempFolder::Read(name);
    EXPECT_EQ(now.at(11), 1);
    EXPECT_EQ(now.at(10), compress);
    EXPECT_FALSE(HoldsText(now, "Kontostand"));
    ASSERT_EQ(VERDAL_Save(db, copy.c_str()), 1);
    EXPECT_EQ(TempFolder::Read(copy).at(11), 1);
    EXPECT_FALSE(HoldsText(TempFolder::Read(copy), "Kontostand"));
    std::remove(copy.c_str());
    VERDAL_SetData(db, 0, std::string(3000, 'g').c_str(), VERDAL_CURSOR_FIRST, 0, nullptr, nullptr);
  }

  // Closing a dirty database whose save cannot encipher keeps the last good file as well.
  ASSERT_EQ(VERDAL_Save(db, nullptr), 1);
  const std::vector<uint8_t> good = TempFolder::Read(name);
  VERDAL_SetData(db, 0, "Kontostand 4711", VERDAL_CURSOR_FIRST, 0, nullptr, nullptr);
  verdal::platform::SetFaultHook(FailEnciphering);
  ASSERT_EQ(VERDAL_CloseDB(db), 1);
  verdal::platform::SetFaultHook(nullptr);
  EXPECT_EQ(TempFolder::Read(name), good);
  EXPECT_FALSE(Exists(dir / "~g.dbd"));
}
