// Print configurations through the C interface: made on the kind 2 sheet, counted and named as
// options, kept by a save, copied by VERDAL_MoveOptions, removed by VERDAL_PrintTableDeleteOption.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "field_helpers.h"
#include "scripted_ui.h"
#include "temp_folder.h"
#include "verdal.h"

namespace {

std::vector<std::string> PrintNames(VerdalHandle db) {
  std::vector<std::string> names;
  for (int32_t i = 0; i < VERDAL_NumOptions(db, VERDAL_OPTION_PRINT, 0); ++i)
    names.push_back(VERDAL_GetOptionName(db, VERDAL_OPTION_PRINT, i, 0, nullptr, 0, 0, nullptr, nullptr));
  return names;
}

}  // namespace

TEST(PrintOptions, MadeOnTheSheetKeptBySaveCopiedAndDeleted) {
  TempFolder dir;
  ScriptedUi ui;
  VERDAL_SetLanguage(0x407);
  VerdalHandle db = OpenMemoryDatabase();
  AddField(db, "Ort", 0);
  AddField(db, "Betrag", 0);
  EXPECT_EQ(VERDAL_NumOptions(db, VERDAL_OPTION_PRINT, 0), 0);
  MakeOption(ui, db, VERDAL_OPTION_PRINT, "Kasse", {"Betrag"}, [](const VerdalSheet* s) {
    Set(s, PageWith(s, "Titel 1:"), "Titel 1:", "Kassenbuch");
  });
  EXPECT_EQ(PrintNames(db), (std::vector<std::string>{"Neue Einstellung1", "Kasse"}));
  int32_t isDefault = 0;
  EXPECT_STREQ(VERDAL_GetOptionName(db, VERDAL_OPTION_PRINT, 1, 5, &isDefault, 0, 0, nullptr, nullptr), "Kasse");
  EXPECT_EQ(isDefault, 1);
  EXPECT_EQ(VERDAL_SetDefaultOption(db, VERDAL_OPTION_PRINT, "Neue Einstellung1", 0), 1);

  const std::string file = dir / "druck.dbd";
  ASSERT_EQ(VERDAL_Save(db, file.c_str()), 1);
  VERDAL_CloseDB(db);
  db = VERDAL_OpenDB(file.c_str(), nullptr, 1, 0, nullptr, 1, 0, 0);
  ASSERT_NE(db, 0u);
  EXPECT_EQ(PrintNames(db), (std::vector<std::string>{"Neue Einstellung1", "Kasse"}));
  EXPECT_NE(VERDAL_GetOptionName(db, VERDAL_OPTION_PRINT, 0, 0, &isDefault, 0, 0, nullptr, nullptr), nullptr);
  EXPECT_EQ(isDefault, 1);
  // What the pages wrote came back: the sheet shows it again.
  ui.script = [](const VerdalSheet* s) {
    Set(s, 0, "", "Kasse");
    EXPECT_STREQ(s->getText(s, ControlId(s, PageWith(s, "Titel 1:"), "Titel 1:")), "Kassenbuch");
    const int32_t page = PageWith(s, "Gedruckte Spalten:");
    EXPECT_STREQ(s->item(s, ControlId(s, page, "Gedruckte Spalten:"), 0), "Betrag");
    s->pressCancel(s);
  };
  EXPECT_EQ(VERDAL_ConfigOptions(db, nullptr, VERDAL_OPTION_PRINT, 0, "Drucken", ""), 1);  // 1 also on cancel
  ui.script = nullptr;

  VerdalHandle other = OpenMemoryDatabase();
  EXPECT_EQ(VERDAL_MoveOptions(db, other), 1);
  EXPECT_EQ(PrintNames(other), PrintNames(db));

  // Deleting: a name of other case; a name that is none; a bad handle. The last error stays.
  VERDAL_GetFieldIndex(db, "nicht da");
  const int32_t error = VERDAL_GetLastError();
  EXPECT_NE(error, 0);
  EXPECT_EQ(VERDAL_PrintTableDeleteOption(db, "KASSE"), 1);
  EXPECT_EQ(VERDAL_GetLastError(), error);
  EXPECT_EQ(VERDAL_PrintTableDeleteOption(db, "Kasse"), -2);
  EXPECT_EQ(VERDAL_PrintTableDeleteOption(db, nullptr), -2);
  EXPECT_EQ(VERDAL_PrintTableDeleteOption(db + 1000, "Kasse"), -1);
  EXPECT_EQ(VERDAL_GetLastError(), error);
  EXPECT_EQ(PrintNames(db), std::vector<std::string>{"Neue Einstellung1"});
  EXPECT_EQ(PrintNames(other).size(), 2u);
  VERDAL_SetLanguage(0);
  VERDAL_CloseAllDBs();
}
