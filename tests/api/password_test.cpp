// Password and compression settings as a host sets them, directly and through the dialog on a
// user interface of its own.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "temp_folder.h"
#include "field_helpers.h"
#include "verdal.h"

namespace {

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

// A host whose dialog types the scripted password pairs (null: press cancel) and records the
// stop messages and the answers to OK.
std::vector<std::pair<const char*, const char*>> g_steps;
std::vector<std::string> g_messages;
std::vector<int32_t> g_okAnswers;

int32_t ScriptMessage(intptr_t, VerdalWindow, const char*, const char* text, int32_t buttons,
                      int32_t icon, int32_t defaultAnswer) {
  EXPECT_EQ(buttons, VERDAL_MB_OK);
  EXPECT_EQ(icon, VERDAL_ICON_STOP);
  g_messages.emplace_back(text);
  return defaultAnswer;
}

void ScriptSheet(intptr_t, VerdalWindow, const VerdalSheet* sheet) {
  EXPECT_STREQ(sheet->title, "Passwort und Kompression einstellen");
  std::vector<int32_t> edits;
  int32_t check = -1;
  for (int32_t i = 0; i < sheet->controlCount; ++i) {
    VerdalControl c;
    sheet->control(sheet, i, &c);
    if (c.kind == VERDAL_CONTROL_MASKED) edits.push_back(c.id);
    if (c.kind == VERDAL_CONTROL_CHECK) check = c.id;
  }
  ASSERT_EQ(edits.size(), 2u);
  for (const auto& [password, repeat] : g_steps) {
    if (password == nullptr) return sheet->pressCancel(sheet);
    sheet->setText(sheet, edits[0], password);
    sheet->setText(sheet, edits[1], repeat);
    sheet->setText(sheet, check, *password != '\0' ? "1" : "0");
    g_okAnswers.push_back(sheet->pressOk(sheet));
    if (g_okAnswers.back() == 1) return;
  }
}

// Prompt answers, null for cancel; every prompt is counted.
std::vector<const char*> g_answers;
int32_t g_prompts = 0;

int32_t ScriptPrompt(intptr_t, VerdalWindow, const char*, const char* prompt, int32_t limit,
                     char* text) {
  EXPECT_STREQ(prompt, "Bitte geben Sie das Pa\xDFwort ein:");
  EXPECT_EQ(limit, 31);
  const char* answer = static_cast<size_t>(g_prompts) < g_answers.size() ? g_answers[g_prompts] : nullptr;
  ++g_prompts;
  if (answer == nullptr) return 0;
  std::strcpy(text, answer);
  return 1;
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
    g_steps.clear();
    g_messages.clear();
    g_okAnswers.clear();
    g_answers.clear();
    g_prompts = 0;
  }
};

TEST_F(Password, SetFollowsTheRules) {
  VerdalHandle db = OpenMemoryDatabase(1);
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
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_HANDLE);
  EXPECT_EQ(VERDAL_SetPWDAndCompression(987654, "Hallo", 0), -1);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_HANDLE);
  EXPECT_EQ(VERDAL_ConfigurePWDAndCompression(987654, nullptr, nullptr, nullptr), 0);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_HANDLE);
}

TEST_F(Password, DialogWithoutUserInterfaceChangesNothing) {
  VerdalHandle db = OpenMemoryDatabase(1);
  ASSERT_EQ(VERDAL_SetPWDAndCompression(db, "geheim123", 1), 1);
  char password[32];
  int32_t compress = -1;
  EXPECT_EQ(VERDAL_ConfigurePWDAndCompression(db, nullptr, password, &compress), 1);
  EXPECT_STREQ(password, "geheim123");
  EXPECT_EQ(compress, 1);
  EXPECT_EQ(VERDAL_GetLastError(), 0);
}

TEST_F(Password, DialogRefusesThenTakesOver) {
  VerdalHandle db = OpenMemoryDatabase(1);
  VerdalUserInterface ui{};
  ui.messageBox = ScriptMessage;
  ui.runSheet = ScriptSheet;
  VERDAL_SetUserInterface(&ui);

  g_steps = {{"geheim123", "geheim124"}, {"abc", "abc"}, {" neu5 ", " neu5 "}};
  char password[32];
  int32_t compress = 0;
  EXPECT_EQ(VERDAL_ConfigurePWDAndCompression(db, nullptr, password, &compress), 1);
  EXPECT_EQ(g_okAnswers, (std::vector<int32_t>{0, 0, 1}));
  ASSERT_EQ(g_messages.size(), 2u);
  EXPECT_EQ(g_messages[1], "Das Pa\xDFwort mu\xDF mindestens 5 Zeichen lang sein!");
  EXPECT_STREQ(password, " neu5 ");  // the dialog keeps blanks
  EXPECT_EQ(compress, 1);

  // Cancel after a refusal keeps what is there.
  g_steps = {{"x", "y"}, {nullptr, nullptr}};
  EXPECT_EQ(VERDAL_ConfigurePWDAndCompression(db, nullptr, nullptr, nullptr), 1);
  EXPECT_EQ(Get(db).password, " neu5 ");
  EXPECT_EQ(Get(db).compress, 1);

  // An empty password, compression off.
  g_steps = {{"", ""}};
  EXPECT_EQ(VERDAL_ConfigurePWDAndCompression(db, nullptr, nullptr, nullptr), 1);
  EXPECT_EQ(Get(db).password, "");
  EXPECT_EQ(Get(db).compress, 0);
}

TEST_F(Password, EncipheredFilesOpenWithSessionOrPrompt) {
  TempFolder folder;
  const std::string a = folder / "a.dbd";
  auto open = [](const std::string& name) { return VERDAL_OpenDB(name.c_str(), nullptr, 1, 0, nullptr, 1, 0, 0); };
  VerdalHandle db = open(a);
  ASSERT_NE(db, 0u);
  ASSERT_EQ(VERDAL_AddCategory(db, VERDAL_CURSOR_ROOT, "Kunden"), 0);
  ASSERT_EQ(VERDAL_SetPWDAndCompression(db, "geheim123", 1), 1);
  ASSERT_EQ(VERDAL_Save(db, nullptr), 1);
  ASSERT_EQ(VERDAL_CloseDB(db), 1);
  const std::vector<uint8_t> sealed = TempFolder::Read(a);
  ASSERT_GT(sealed.size(), 20u);
  EXPECT_EQ(sealed[10], 1);
  EXPECT_EQ(sealed[11], 1);

  VerdalUserInterface ui{};
  ui.promptPassword = ScriptPrompt;
  VERDAL_SetUserInterface(&ui);
  // The session knows the password of a.dbd: no prompt, and the settings are back.
  db = open(a);
  ASSERT_NE(db, 0u);
  EXPECT_EQ(g_prompts, 0);
  EXPECT_EQ(Get(db).password, "geheim123");
  EXPECT_EQ(Get(db).compress, 1);
  EXPECT_EQ(VERDAL_GetItemCount(db), 1);
  ASSERT_EQ(VERDAL_CloseDB(db), 1);

  // Another name has no session password: a cancelled prompt fails the open with its code.
  const std::string c = folder / "c.dbd";
  TempFolder::Write(c, sealed);
  g_answers.clear();
  EXPECT_EQ(open(c), 0u);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_READ_FILE);
  EXPECT_EQ(g_prompts, 1);
}

}  // namespace
