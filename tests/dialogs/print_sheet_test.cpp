// The print option sheet as a user drives it: New's naming, the field page's enabling rules and
// what OK takes over, the page set-up, and import of a .prn with a record of another kind.
#include "dialogs/print_sheet.h"

#include <gtest/gtest.h>

#include "api/temp_folder.h"
#include "dialogs/table_print_page.h"
#include "engine/db_manager.h"
#include "model/fields.h"
#include "options/print_file.h"
#include "platform/language.h"
#include "sheet_driver.h"
#include "ui/scripted_host.h"

using namespace verdal;

namespace {

class PrintSheet : public ::testing::Test {
 protected:
  void SetUp() override {
    platform::SetLanguageId(0x407);
    AddField("Name", model::kTypeText, false, "Kunde");
    AddField("Betrag", model::kTypeNumber, false, "");
    AddField("Intern", model::kTypeText, true, "");
  }
  void TearDown() override { platform::SetLanguageId(0); }
  void AddField(const char* name, int16_t type, bool hidden, const char* shown) {
    model::TDBFieldInfo f;
    f.name = name;
    f.displayName = shown;
    f.type.dataType = type;
    f.type.hiddenInLists = hidden;
    model::AddFieldInfo(db.store, f, -1);
  }
  bool Run(const std::function<bool(SheetDriver&)>& script) {
    host.sheet = [&](ui::Sheet& s) {
      SheetDriver d(s);
      const bool ok = script(d);
      if (!ok) s.PressCancel();
      return ok && s.PressOk();
    };
    return dialogs::RunPrintOptionSheet(host, nullptr, "Drucken", db.prints, db.store, db.lists);
  }

  engine::TDBManager db{0};
  ScriptedHost host;
  TempFolder folder;
};

}  // namespace

TEST_F(PrintSheet, NewTakesAFreeNameOrNumbersAndTheFieldPageEnablesByTheRules) {
  EXPECT_TRUE(Run([&](SheetDriver& d) {
    EXPECT_EQ(d.Items(0, ""), std::vector<std::string>{"Neue Einstellung1"});
    d.Set(0, "Name:", "Kasse");
    d.Press(0, "&Neu");
    d.Press(0, "&Neu");  // the name box holds a name in use: the number sequence goes on
    EXPECT_EQ(d.Items(0, ""), (std::vector<std::string>{"Neue Einstellung1", "Kasse", "Neue Einstellung2"}));
    d.Set(0, "", "Kasse");
    EXPECT_EQ(d.Pages(), (std::vector<std::string>{"Einstellungen", dialogs::kTablePrintTitle, "Seite einrichten"}));
    // A new configuration has no columns; hidden fields are never offered.
    EXPECT_EQ(d.Items(1, "Verf\xFCgbare Felder:"), (std::vector<std::string>{"Name", "Betrag"}));
    const std::vector<std::string> column{"Spaltentitel:", "Breite (mm):", "H\xF6he (mm):", "Breite als H\xF6\x63hstwert",
                                          "Summe", "Zwischensummen"};
    EXPECT_EQ(d.EnabledOf(1, column), "000000");
    d.Press(1, "Alle");
    EXPECT_EQ(d.Items(1, "Gedruckte Spalten:"), (std::vector<std::string>{"Name", "Betrag"}));
    EXPECT_EQ(d.Get(1, "Spaltentitel:"), "Kunde");  // the display name
    EXPECT_EQ(d.Get(1, "Breite (mm):"), "40.00");
    EXPECT_EQ(d.EnabledOf(1, column), "100100");  // automatic width without a limit; text has no total
    d.Set(1, "Breite als H\xF6\x63hstwert", "1");
    EXPECT_EQ(d.EnabledOf(1, column), "110100");
    d.Set(1, "Breite automatisch", "0");  // the limit goes with it
    EXPECT_EQ(d.Get(1, "Breite als H\xF6\x63hstwert"), "0");
    d.Set(1, "Breite (mm):", "33,456");
    EXPECT_EQ(d.Get(1, "Breite (mm):"), "33.46");
    d.Set(1, "Gedruckte Spalten:", "Betrag");
    EXPECT_EQ(d.EnabledOf(1, column), "100110");
    d.Set(1, "Summe", "1");
    EXPECT_EQ(d.EnabledOf(1, column), "100111");
    d.Set(1, "Zwischensummen", "1");
    d.Set(1, "Ausrichtung:", "Rechts");
    d.Set(1, "Bilder in der Vorschau", "0");
    d.Set(1, "Einzeilige Ausgabe", "1");
    d.Set(1, "Linienst\xE4rke (mm):", "0.5");
    d.Set(1, "Spaltentitel Gr\xF6\xDF\x65 (pt):", "12");
    d.Set(2, "Titel 1:", "Kunden");
    d.Set(2, "Titel 2 Ausrichtung:", "Rechts");
    d.Set(2, "Rand links (mm):", "20");
    d.Set(2, "Querformat", "1");
    return true;
  }));
  const options::TPrintData* r = db.prints.Find("Kasse");
  ASSERT_NE(r, nullptr);
  EXPECT_EQ(db.prints.currentPrintConfig, "Kasse");
  ASSERT_EQ(r->items.size(), 2u);
  EXPECT_EQ(r->items[0].width, 33.456);
  EXPECT_EQ(r->items[0].autoWidth, 0);
  EXPECT_EQ(r->items[1].alignment, options::kAlignRight);
  EXPECT_EQ(r->items[1].subtotals, 1);
  EXPECT_EQ(r->flags, options::kPrintNoPictures | options::kPrintSingleLine);
  EXPECT_EQ(r->lineThickness, 0.5);
  EXPECT_EQ(r->columnTitleFont.pointSize, 120);
  EXPECT_EQ(r->columnTitleFont.lfHeight, -16);
  EXPECT_EQ(r->columnTitleFont.lfWeight, 700);
  EXPECT_EQ(r->title1, "Kunden");
  EXPECT_EQ(r->title2Align, options::kAlignRight);
  EXPECT_EQ(r->leftMargin, 20.0);
  EXPECT_EQ(r->landscape, 1);
  EXPECT_EQ(r->kind, 2);
}

TEST_F(PrintSheet, ImportOfAnotherKindTakesNothingAndExportWritesThePrnFile) {
  db.prints.Add("Liste");
  const std::string path = folder / "alle.prn";
  options::TPrintConfigs other;
  other.Add("Gut");
  other.Add("Etiketten");
  other.records[1].kind = 3;
  ASSERT_EQ(options::SavePrintFile(other, path), options::SettingsResult::kOk);
  host.files = {path, folder / "aus.prn"};
  Run([&](SheetDriver& d) {
    d.Press(0, "&Import");
    d.Press(0, "&Export");
    return false;
  });
  ASSERT_EQ(host.fileRequests.size(), 2u);
  EXPECT_EQ(host.fileRequests[0].filter, "Druck-Einstellung (*.prn)|*.prn|");
  EXPECT_EQ(host.messages,
            std::vector<std::string>{"Dieser Einstellungstyp kann nicht an dieser Stelle eingef\xFCgt werden!"});
  EXPECT_EQ(db.prints.GetCount(), 1);
  options::TPrintConfigs exported;
  EXPECT_EQ(options::ImportPrintFile(exported, folder / "aus.prn", 2), options::SettingsResult::kOk);
  EXPECT_EQ(exported.records, db.prints.records);
}

TEST_F(PrintSheet, DefaultRecordAndSettingsSheet) {
  options::TPrintData r = dialogs::TTablePrintDialog::DefaultRecord("Vorschau", db.store);
  ASSERT_EQ(r.items.size(), 2u);
  EXPECT_EQ(r.items[0].title, "Kunde");
  EXPECT_EQ(r.items[1].title, "Betrag");
  host.sheet = [&](ui::Sheet& s) {
    SheetDriver d(s);
    EXPECT_EQ(d.Pages(), (std::vector<std::string>{"Druckeinstellungen", "Seite einrichten"}));
    d.Set(0, "Gedruckte Spalten:", "Betrag");
    d.Press(0, "<--");
    d.Set(1, "Datum anzeigen", "0");
    return s.PressOk();
  };
  EXPECT_TRUE(dialogs::RunPrintSettingsSheet(host, nullptr, r, db.store, db.lists));
  EXPECT_EQ(r.items.size(), 1u);
  EXPECT_EQ(r.showDate, 0);
}
