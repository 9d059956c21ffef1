// Option sheets through the C interface, driven by a host written against verdal.h alone: entries
// of every kind made on their pages, kept by a save, carried by settings files, and the results
// of confirming and cancelling.
#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "field_helpers.h"
#include "recording_host.h"
#include "scripted_ui.h"
#include "temp_folder.h"
#include "verdal.h"

namespace {


// On the names page: a new entry named `name`; then, where the kind has a field page, the first
// available field made active.
void NewEntry(const VerdalSheet* s, const char* name, bool withField) {
  Set(s, 0, "Name:", name);
  Set(s, 0, "&Neu", "1");
  Set(s, 0, "Kommentar:", "erkl\xE4rt");
  if (!withField) return;
  for (int32_t page = 1; page < s->pageCount; ++page)
    for (int32_t i = 0; i < s->controlCount; ++i) {
      VerdalControl c;
      s->control(s, i, &c);
      const bool available = std::strcmp(c.label, "Verf\xFCgbare Felder:") == 0 ||
                             std::strcmp(c.label, "Verf\xFCgbare Datenfelder:") == 0;
      if (c.page != page || !available) continue;
      const int32_t add = ControlId(s, page, "-->");
      EXPECT_EQ(s->enabled(s, add), 0);  // nothing chosen to move yet
      s->setText(s, c.id, s->item(s, c.id, 0));
      EXPECT_EQ(s->enabled(s, add), 1);
      s->setText(s, add, "1");
      return;
    }
}

std::vector<std::string> Names(VerdalHandle db, int32_t kind, int32_t owner) {
  std::vector<std::string> names;
  for (int32_t i = 0; i < VERDAL_NumOptions(db, kind, owner); ++i)
    names.push_back(VERDAL_GetOptionName(db, kind, i, owner, nullptr, 0, 0, nullptr, nullptr));
  return names;
}

constexpr int32_t kKinds[] = {VERDAL_OPTION_CLIPBOARD, VERDAL_OPTION_FIELD_VIEW, VERDAL_OPTION_EXPORT,
                              VERDAL_OPTION_EMAIL, VERDAL_OPTION_REPLACE, VERDAL_OPTION_SORT};

}  // namespace

TEST(Options, EntriesOfEveryKindAreMadeOnTheirSheetsAndKeptBySaveAndSettingsFiles) {
  TempFolder dir;
  ScriptedUi ui;
  RecordingHost heard;
  VERDAL_SetLanguage(0x407);
  VerdalHandle db = OpenMemoryDatabase();
  AddField(db, "Ort", 0);
  AddField(db, "Mail", 0);
  for (int32_t kind : kKinds) {
    ui.script = [](const VerdalSheet* s) {
      NewEntry(s, "Eintrag", true);
      EXPECT_EQ(s->pressOk(s), 1);
    };
    SCOPED_TRACE(kind);
    ASSERT_EQ(VERDAL_ConfigOptions(db, nullptr, kind, 7, "Optionen", ""), 1);
    // The first pass gave an empty collection an entry of its own.
    EXPECT_EQ(Names(db, kind, 7), (std::vector<std::string>{"Neue Einstellung1", "Eintrag"}));
  }
  EXPECT_EQ(Names(db, VERDAL_OPTION_CLIPBOARD, 8).size(), 0u);  // made under owner 7
  EXPECT_EQ(Names(db, VERDAL_OPTION_SORT, 8).size(), 2u);       // sort definitions have no owner
  EXPECT_EQ(heard.Take().size(), 1u);                           // only the sort sheet notifies
  int32_t top = -9;
  EXPECT_EQ(VERDAL_GetListSortTopInfo(db, "Eintrag", &top, nullptr), 1);
  EXPECT_EQ(top, 0);

  const std::string file = dir / "optionen.dbd";
  ASSERT_EQ(VERDAL_Save(db, file.c_str()), 1);
  VERDAL_CloseDB(db);
  db = VERDAL_OpenDB(file.c_str(), nullptr, 1, 0, nullptr, 1, 0, 0);
  VerdalHandle other = OpenMemoryDatabase();
  AddField(other, "Mail", 0);
  int32_t isDefault = -1, count = -1;
  char fields[2][8];
  EXPECT_STREQ(VERDAL_GetOptionName(db, VERDAL_OPTION_FIELD_VIEW, 1, 7, &isDefault, 2, 8, &count, &fields[0][0]),
               "Eintrag");
  EXPECT_EQ(isDefault, 1);  // the entry selected last on the sheet
  ASSERT_EQ(count, 1);
  EXPECT_STREQ(fields[0], "Ort");
  EXPECT_EQ(VERDAL_GetOptionName(other, VERDAL_OPTION_FIELD_VIEW, 0, 7, nullptr, 2, 8, &count, &fields[0][0]),
            nullptr);

  // Each kind through its settings file into a database that has none.
  for (int32_t kind : kKinds) {
    SCOPED_TRACE(kind);
    // What was saved came back, with the entries of owner 7 still hidden from owner 8.
    EXPECT_EQ(Names(db, kind, 7), (std::vector<std::string>{"Neue Einstellung1", "Eintrag"}));
    EXPECT_EQ(Names(db, kind, 8).size(), kind == VERDAL_OPTION_SORT ? 2u : 0u);  // sorts have no owner
    ui.pickPath = dir / ("kind" + std::to_string(kind));
    ui.script = [](const VerdalSheet* s) {
      Set(s, 0, "&Export", "1");
      s->pressCancel(s);
    };
    EXPECT_EQ(VERDAL_ConfigOptions(db, nullptr, kind, 7, "Optionen", ""), 0);
    EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_CANCELLED);
    ui.script = [](const VerdalSheet* s) {
      Set(s, 0, "&Import", "1");
      EXPECT_STREQ(s->getText(s, ControlId(s, 0, "Kommentar:")), "erkl\xE4rt");  // the default's comment
      EXPECT_EQ(s->pressOk(s), 1);
    };
    EXPECT_EQ(VERDAL_ConfigOptions(other, nullptr, kind, 7, "Optionen", ""), 1);
    EXPECT_EQ(Names(other, kind, 7), Names(db, kind, 7));
  }
  // The view's field is one the second database has not.
  EXPECT_NE(VERDAL_GetOptionName(other, VERDAL_OPTION_FIELD_VIEW, 1, 7, nullptr, 2, 8, &count, &fields[0][0]),
            nullptr);
  EXPECT_EQ(count, 0);
  VERDAL_SetLanguage(0);
  VERDAL_CloseAllDBs();
}

TEST(Options, SheetsWithoutAUserInterfaceAnswerAsCancelled) {
  RecordingHost heard;
  VerdalHandle db = OpenMemoryDatabase();
  AddField(db, "Ort", 0);
  EXPECT_EQ(VERDAL_ConfigOptions(db, nullptr, VERDAL_OPTION_FILTER, 0, "Filter", "Neuer Filter"), 0);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_CANCELLED);
  EXPECT_EQ(VERDAL_ConfigOptions(db, nullptr, 4, 0, "x", ""), 0);
  // The print sheet answers 1 however it closed; its first pass gave the empty list an entry.
  EXPECT_EQ(VERDAL_ConfigOptions(db, nullptr, VERDAL_OPTION_PRINT, 0, "x", "Druck"), 1);
  int32_t isDefault = 0;
  EXPECT_NE(VERDAL_GetOptionName(db, VERDAL_OPTION_PRINT, 0, 0, &isDefault, 0, 0, nullptr, nullptr), nullptr);
  EXPECT_EQ(isDefault, 1);
  EXPECT_EQ(VERDAL_GetOptionName(db, VERDAL_OPTION_PRINT, 1, 0, &isDefault, 0, 0, nullptr, nullptr), nullptr);
  // The page of a definition that does not exist makes it, with every field, before it is shown.
  EXPECT_EQ(VERDAL_ConfigView(db, nullptr, "Ansicht", "Liste", 0), 0);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_CANCELLED);
  EXPECT_EQ(VERDAL_GetListDisplayFieldSize(db, "Liste"), 1);
  EXPECT_EQ(VERDAL_ConfigView(db + 1000, nullptr, "Ansicht", "Liste", 0), 0);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_HANDLE);
  EXPECT_TRUE(heard.Take().empty());
  VERDAL_CloseAllDBs();
}

TEST(Options, AConfirmedListPageChangesColumnsAndACancelledOneLeavesThem) {
  ScriptedUi ui;
  VerdalHandle db = OpenMemoryDatabase();
  AddField(db, "Ort", 0);
  AddField(db, "PLZ", 1);
  for (bool confirm : {false, true}) {
    ui.script = [confirm](const VerdalSheet* s) {
      Set(s, 0, "Breite:", "250");
      Set(s, 0, "Anzeigename:", "Wohnort");
      if (confirm) s->pressOk(s); else s->pressCancel(s);
    };
    EXPECT_EQ(VERDAL_ConfigView(db, nullptr, "Ansicht", "Liste", 0), confirm ? 1 : 0);
    ListDisplayFieldRecord r;
    ASSERT_EQ(VERDAL_GetListDisplayFieldInfo(db, "Liste", 0, &r), 1);
    EXPECT_EQ(r.width, confirm ? 250 : 100);
    EXPECT_STREQ(r.heading, confirm ? "Wohnort" : "Ort");
    EXPECT_EQ(VERDAL_GetListDisplayFieldInfo(db, "Liste", 1, &r), 1);
    EXPECT_EQ(r.alignment, 1);  // a number field's column from its type
  }
  EXPECT_EQ(VERDAL_SetListDisplayFieldInfoColWidth(db, "Liste", 1, 33), 1);
  EXPECT_EQ(VERDAL_SetListDisplayFieldInfoColWidth(db, "Liste", 2, 33), -3);
  VERDAL_CloseAllDBs();
}

TEST(Options, ASheetsPagesKeepTheirEntriesWhateverTheHostCallsMeanwhile) {
  ScriptedUi ui;
  VerdalHandle db = OpenMemoryDatabase();
  VerdalHandle other = OpenMemoryDatabase();
  AddField(db, "Ort", 0);
  AddField(other, "Ort", 0);
  ASSERT_EQ(VERDAL_SetListSortTopInfo(other, "Fremd", 0, 1, 0), 1);
  std::vector<int32_t> nested;
  ui.script = [&](const VerdalSheet* s) {
    // Another sheet on the same database, and a copy of options over those the pages show.
    nested.push_back(VERDAL_ConfigView(db, nullptr, "x", "Liste", 1));
    nested.push_back(VERDAL_GetLastError());
    nested.push_back(VERDAL_MoveOptions(other, db));
    nested.push_back(VERDAL_GetLastError());
    nested.push_back(VERDAL_EmptyData(db, 0));  // waits until the sheet is closed
    // The pages follow the chosen entry: none without one.
    nested.push_back(s->pageCount);
    Set(s, 0, "&L\xF6schen", "1");
    nested.push_back(s->pageCount);
    Set(s, 0, "Name:", "Nach Ort");
    Set(s, 0, "&Neu", "1");
    nested.push_back(s->pageCount);
    s->pressOk(s);
  };
  EXPECT_EQ(VERDAL_ConfigOptions(db, nullptr, VERDAL_OPTION_SORT, 0, "Sortierung", ""), 1);
  EXPECT_EQ(nested, (std::vector<int32_t>{0, VERDAL_ERR_TARGET, 0, VERDAL_ERR_TARGET, 1, 2, 1, 2}));
  EXPECT_EQ(VERDAL_NumOptions(db, VERDAL_OPTION_SORT, 0), 0);  // the deferred emptying ran at the end
  EXPECT_EQ(VERDAL_MoveOptions(other, db), 1);  // and with the sheet closed, copies are taken again
  EXPECT_EQ(VERDAL_NumOptions(db, VERDAL_OPTION_SORT, 0), 1);
  VERDAL_CloseAllDBs();
}
