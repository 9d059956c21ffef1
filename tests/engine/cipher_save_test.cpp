// A save whose enciphering fails fails as a whole, through the C interface: code 26, the last good
// file stays, nothing is written in clear, and the password and flags stay for the next save.
// The failure is made with the fault hook, which only the static core reaches.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "api/field_helpers.h"
#include "api/temp_folder.h"
#include "platform/fault.h"
#include "verdal.h"

using verdal::platform::FaultSite;

namespace {

void FailEnciphering(bool on) {
  verdal::platform::FaultHook hook = [](FaultSite site) { return site == FaultSite::kEncipher; };
  verdal::platform::SetFaultHook(on ? hook : nullptr);
}

class CipherAtSave : public ::testing::Test {
 protected:
  void TearDown() override {
    FailEnciphering(false);
    VERDAL_CloseAllDBs();
  }
  TempFolder dir;
};

}  // namespace

// Compressed as well, so that the flag that must stand is one the old fallback cleared.
TEST_F(CipherAtSave, AFailedEncipheringFailsTheSaveAndKeepsTheLastGoodFile) {
  std::string name = dir / "g.dbd", copy = dir / "kopie.dbd", existing = dir / "da.dbd";
  VerdalHandle db = VERDAL_OpenDB(name.c_str(), nullptr, 1, 0, nullptr, 1, 0, 0);
  ASSERT_NE(db, 0u);
  AddField(db, "Name", 0);
  VERDAL_AddRecord(db, -1, "r", 0, std::string(3000, 'g').c_str(), 0, 0, nullptr);
  ASSERT_EQ(VERDAL_SetPWDAndCompression(db, "geheim123", 1), 1);
  ASSERT_EQ(VERDAL_Save(db, nullptr), 1);
  std::vector<uint8_t> good = TempFolder::Read(name);
  ASSERT_EQ(good.at(10), 1);  // compressed
  ASSERT_EQ(good.at(11), 1);  // enciphered

  VERDAL_SetData(db, 0, "Kontostand 4711", VERDAL_CURSOR_FIRST, 0, nullptr, nullptr);
  FailEnciphering(true);
  EXPECT_EQ(VERDAL_Save(db, nullptr), 0);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_WRITE_FILE);
  EXPECT_EQ(TempFolder::Read(name), good);
  EXPECT_FALSE(std::filesystem::exists(dir / "~g.dbd"));
  // Save-as: a new target is not made, an existing one keeps its content.
  EXPECT_EQ(VERDAL_Save(db, copy.c_str()), 0);
  EXPECT_FALSE(std::filesystem::exists(copy));
  TempFolder::Write(existing, std::vector<uint8_t>(10, 'd'));
  EXPECT_EQ(VERDAL_Save(db, existing.c_str()), 0);
  EXPECT_EQ(TempFolder::Read(existing), std::vector<uint8_t>(10, 'd'));

  // The password and the flags stand; the next save that can encipher does.
  char password[32];
  int32_t compress = -1;
  ASSERT_EQ(VERDAL_GetPWDAndCompression(db, password, &compress), 1);
  EXPECT_STREQ(password, "geheim123");
  EXPECT_EQ(compress, 1);
  FailEnciphering(false);
  ASSERT_EQ(VERDAL_Save(db, nullptr), 1);
  good = TempFolder::Read(name);
  EXPECT_EQ(good.at(11), 1);
  EXPECT_EQ(std::string(good.begin(), good.end()).find("Kontostand"), std::string::npos);

  // Closing a dirty database whose save cannot encipher keeps the last good file as well.
  VERDAL_SetData(db, 0, "Kontostand 4712", VERDAL_CURSOR_FIRST, 0, nullptr, nullptr);
  FailEnciphering(true);
  ASSERT_EQ(VERDAL_CloseDB(db), 1);
  EXPECT_EQ(TempFolder::Read(name), good);
  EXPECT_FALSE(std::filesystem::exists(dir / "~g.dbd"));
}
