// Stored options run over records through VERDAL_ExecAction: the clipboard copy with its
// separators and the stop key, the replacement over many records past fields that refuse, and the
// answers for names and kinds that do not fit.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "field_helpers.h"
#include "scripted_ui.h"
#include "verdal.h"

namespace {

class Actions : public ::testing::Test {
 protected:
  void SetUp() override {
    db = OpenMemoryDatabase();
    AddField(db, "Name", 0);
    AddField(db, "Menge", 1);
    TDBFieldParams fixed = FieldParams("Fest", 0);
    fixed.readOnly = 1;
    ASSERT_EQ(VERDAL_AddField(db, &fixed, -1, 1), 2);
  }
  void TearDown() override { VERDAL_CloseAllDBs(); }

  int32_t Record(const char* name, const char* amount) {
    const int32_t cursor = VERDAL_AddRecord(db, VERDAL_CURSOR_ROOT, name, 0, name, 0, 0, nullptr);
    VERDAL_SetData(db, 1, amount, cursor, 0, nullptr, nullptr);
    return cursor;
  }

  ScriptedUi ui;
  VerdalHandle db = 0;
};

TEST_F(Actions, ClipboardCopiesShownValuesWithTheOptionsSeparatorsUntilStopped) {
  const std::vector<int32_t> cursors = {Record("Apfel", "3"), Record("Birne", "12.5")};
  MakeOption(ui, db, VERDAL_OPTION_CLIPBOARD, "Liste", {"Name", "Menge"}, [](const VerdalSheet* s) {
    const int32_t page = PageWith(s, "Feldendezeichen:");
    Set(s, page, "Feldendezeichen:", "Komma");
    Set(s, page, "Satzendezeichen:", "Zeilenumbruch");
  });
  const std::string apple = std::string("Apfel,") + VERDAL_GetData(db, 1, cursors[0], 0, 1) + "\r\n";
  const std::string pear = std::string("Birne,") + VERDAL_GetData(db, 1, cursors[1], 0, 1) + "\r\n";
  ASSERT_EQ(VERDAL_ExecAction(db, VERDAL_OPTION_CLIPBOARD, "LISTE", 2, cursors.data()), 1);
  EXPECT_EQ(ui.clipboard, apple + pear);
  // Stopped before the second record: what was done so far still reaches the clipboard.
  ui.stopAfter = 2;
  ASSERT_EQ(VERDAL_ExecAction(db, VERDAL_OPTION_CLIPBOARD, "Liste", 2, cursors.data()), 1);
  EXPECT_EQ(ui.clipboard, apple);

  // No separators at all, and a cursor that names nothing: values run together, nothing for it.
  MakeOption(ui, db, VERDAL_OPTION_CLIPBOARD, "Dicht", {"Menge", "Name"}, [](const VerdalSheet* s) {
    const int32_t page = PageWith(s, "Feldendezeichen:");
    Set(s, page, "Feldendezeichen:", "Kein Trennzeichen");
    Set(s, page, "Satzendezeichen:", "Kein Trennzeichen");
  });
  ui.stopAfter = 0;
  const int32_t some[] = {cursors[1], 99999};
  ASSERT_EQ(VERDAL_ExecAction(db, VERDAL_OPTION_CLIPBOARD, "Dicht", 2, some), 1);
  EXPECT_EQ(ui.clipboard, std::string(VERDAL_GetData(db, 1, cursors[1], 0, 1)) + "Birne");
}

TEST_F(Actions, ReplacementWritesEveryRecordAndPassesFieldsThatRefuse) {
  std::vector<int32_t> cursors;
  for (int i = 0; i < 10000; ++i) cursors.push_back(Record(("r" + std::to_string(i)).c_str(), "1"));
  MakeOption(ui, db, VERDAL_OPTION_REPLACE, "Leeren", {"Fest", "Name", "Menge"}, [](const VerdalSheet* s) {
    Set(s, PageWith(s, "Geben Sie hier den Ersetzungstext ein:"),
               "Geben Sie hier den Ersetzungstext ein:", "7");
  });
  ASSERT_EQ(VERDAL_ExecAction(db, VERDAL_OPTION_REPLACE, "leeren", 10000, cursors.data()), 1);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_NONE);
  int changed = 0;
  for (int32_t c : cursors)
    changed += std::string(VERDAL_GetData(db, 0, c, 1, 0)) == "7" && std::string(VERDAL_GetData(db, 2, c, 1, 0)).empty();
  EXPECT_EQ(changed, 10000);
  EXPECT_STREQ(VERDAL_GetData(db, 1, cursors[9999], 1, 0), VERDAL_ConvertData(db, 1, "7", 1, 0, 0));
}

TEST_F(Actions, UnknownNamesKindsAndHandles) {
  const int32_t cursor = Record("Apfel", "1");
  for (int32_t kind : {VERDAL_OPTION_CLIPBOARD, VERDAL_OPTION_EXPORT, VERDAL_OPTION_EMAIL, VERDAL_OPTION_REPLACE}) {
    EXPECT_EQ(VERDAL_ExecAction(db, kind, "fehlt", 1, &cursor), 0) << kind;
    EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_INPUT) << kind;
  }
  EXPECT_EQ(VERDAL_ExecAction(db, VERDAL_OPTION_FIELD_VIEW, "fehlt", 1, &cursor), 1);
  EXPECT_EQ(VERDAL_ExecAction(db, 4, nullptr, 0, nullptr), 1);
  EXPECT_EQ(VERDAL_ExecAction(db + 1000, VERDAL_OPTION_CLIPBOARD, "x", 1, &cursor), 0);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_HANDLE);
}

}  // namespace
