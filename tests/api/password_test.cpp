// Password and compression settings as a host sets them, directly and through the dialog on a
// user interface of its own.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "verdal.h"

namespace {

VerdalHandle OpenMemory() { return VERDAL_OpenDB(nullptr, nullptr, 0, 0, nullptr, 1, 0, 0); }

struct Settings {
  std::string password;
  int32_t compress;
};
Settings Get(VerdalHandle db) {
  char password[32];
  std::memset(password, 'Z', sizeof password);
  int32_t compress = -7;
  EXPECT_EQ(VERDAL_GetPWDAndCompression(db, password, &compress), 1);
  return {password, compress};
}

// A host whose dialog runs a script of edits and button presses.
struct Script {
  struct Step {
    const char* password;  // null: press cancel instead
    const char* repeat;
    bool compress;
  };
  std::vector<Step> steps;
  std::vector<std::string> messages;
  std::vector<int32_t> okAnswers;
};
Script* g_script = nullptr;

int32_t ScriptMessage(intptr_t, VerdalWindow, const char*, const char* text, int32_t buttons,
                      int32_t icon, int32_t defaultAnswer) {
  EXPECT_EQ(buttons, VERDAL_MB_OK);
  EXPECT_EQ(icon, VERDAL_ICON_STOP);
  g_script->messages.emplace_back(text);
  return defaultAnswer;
}

void ScriptSheet(intptr_t, VerdalWindow, const VerdalSheet* sheet) {
  EXPECT_STREQ(sheet->title, "Passwort und Kompression einstellen");
  int32_t edits[2] = {-1, -1}, check = -1, found = 0;
  for (int32_t i = 0; i < sheet->controlCount; ++i) {
    VerdalControl c;
    sheet->control(sheet, i, &c);
    if (c.kind == VERDAL_CONTROL_MASKED && found < 2) {
      EXPECT_EQ(c.limit, 31);
      edits[found++] = c.id;
    }
    if (c.kind == VERDAL_CONTROL_CHECK) check = c.id;
  }
  ASSERT_EQ(found, 2);
  ASSERT_NE(check, -1);
  for (const Script::Step& s : g_script->steps) {
    if (s.password == nullptr) {
      sheet->pressCancel(sheet);
      return;
    }
    sheet->setText(sheet, edits[0], s.password);
    sheet->setText(sheet, edits[1], s.repeat);
    sheet->setText(sheet, check, s.compress ? "1" : "0");
    const int32_t ok = sheet->pressOk(sheet);
    g_script->okAnswers.push_back(ok);
    if (ok == 1) return;
  }
}

class Password : public ::testing::Test {
 protected:
  void SetUp() override {
    VERDAL_CloseAllDBs();
    VERDAL_SetLanguage(0x407);
  }
  void TearDown() override {
    VERDAL_SetUserInterface(nullptr);
    VERDAL_SetLanguage(0);
    VERDAL_CloseAllDBs();
    g_script = nullptr;
  }
};

TEST_F(Password, SetFollowsTheRules) {
  VerdalHandle db = OpenMemory();
  ASSERT_NE(db, 0u);
  const std::string len31(31, 'p'), len32(32, 'p');
  struct Case {
    const char* given;
    int32_t compress;
    int32_t result;
    const char* stored;  // what Get shows afterwards
    int32_t compressed;
  } cases[] = {
      {"  Hallo  ", 1, 1, "Hallo", 1},
      {"Hall", 0, -2, "Hallo", 1},       // four letters: refused, nothing changes
      {len32.c_str(), 0, -2, "Hallo", 1},
      {len31.c_str(), 0x100, 1, len31.c_str(), 0},  // only the low byte of the flag counts
      {"   ", 0x101, 1, "", 1},          // blanks only: no password
      {"  a b  ", 1, -2, "", 1},         // three characters after trimming
      {nullptr, 0, 1, "", 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.given != nullptr ? c.given : "(null)");
    EXPECT_EQ(VERDAL_SetPWDAndCompression(db, c.given, c.compress), c.result);
    const Settings s = Get(db);
    EXPECT_EQ(s.password, c.stored);
    EXPECT_EQ(s.compress, c.compressed);
  }
  // Null outputs are allowed.
  EXPECT_EQ(VERDAL_GetPWDAndCompression(db, nullptr, nullptr), 1);
}

TEST_F(Password, UnknownHandles) {
  EXPECT_EQ(VERDAL_GetPWDAndCompression(987654, nullptr, nullptr), -1);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_E_HANDLE);
  EXPECT_EQ(VERDAL_SetPWDAndCompression(987654, "Hallo", 0), -1);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_E_HANDLE);
  EXPECT_EQ(VERDAL_ConfigurePWDAndCompression(987654, nullptr, nullptr, nullptr), 0);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_E_HANDLE);
}

TEST_F(Password, DialogWithoutUserInterfaceChangesNothing) {
  VerdalHandle db = OpenMemory();
  ASSERT_EQ(VERDAL_SetPWDAndCompression(db, "geheim123", 1), 1);
  char password[32];
  int32_t compress = -1;
  EXPECT_EQ(VERDAL_ConfigurePWDAndCompression(db, nullptr, password, &compress), 1);
  EXPECT_STREQ(password, "geheim123");
  EXPECT_EQ(compress, 1);
  EXPECT_EQ(VERDAL_GetLastError(), 0);
}

TEST_F(Password, DialogRefusesThenTakesOver) {
  VerdalHandle db = OpenMemory();
  VerdalUserInterface ui{};
  ui.messageBox = ScriptMessage;
  ui.runSheet = ScriptSheet;
  VERDAL_SetUserInterface(&ui);

  Script script;
  g_script = &script;
  script.steps = {{"geheim123", "geheim124", true}, {"abc", "abc", true}, {" neu5 ", " neu5 ", true}};
  char password[32];
  int32_t compress = 0;
  EXPECT_EQ(VERDAL_ConfigurePWDAndCompression(db, nullptr, password, &compress), 1);
  EXPECT_EQ(script.okAnswers, (std::vector<int32_t>{0, 0, 1}));
  ASSERT_EQ(script.messages.size(), 2u);
  EXPECT_EQ(script.messages[0], "Pa\xDFwort und Best\xE4tigungspa\xDFwort stimmen nicht \xFC" "berein!");
  EXPECT_EQ(script.messages[1], "Das Pa\xDFwort mu\xDF mindestens 5 Zeichen lang sein!");
  EXPECT_STREQ(password, " neu5 ");  // the dialog keeps blanks
  EXPECT_EQ(compress, 1);

  // Cancel keeps what is there.
  Script cancel;
  g_script = &cancel;
  VERDAL_SetLanguage(0x409);
  cancel.steps = {{"x", "y", false}, {nullptr, nullptr, false}};
  EXPECT_EQ(VERDAL_ConfigurePWDAndCompression(db, nullptr, nullptr, nullptr), 1);
  ASSERT_EQ(cancel.messages.size(), 1u);
  EXPECT_EQ(cancel.messages[0], "Password and confirmation password must equal!");
  EXPECT_EQ(Get(db).password, " neu5 ");
  EXPECT_EQ(Get(db).compress, 1);

  // An empty password with compression off.
  Script clear;
  g_script = &clear;
  clear.steps = {{"", "", false}};
  EXPECT_EQ(VERDAL_ConfigurePWDAndCompression(db, nullptr, nullptr, nullptr), 1);
  EXPECT_EQ(Get(db).password, "");
  EXPECT_EQ(Get(db).compress, 0);
}

}  // namespace
