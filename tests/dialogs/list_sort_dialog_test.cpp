// The list display and sort page as a user drives it: a new definition shows every offered field,
// the moves between the lists and which buttons can act, the row details, and OK replacing the
// definition's items (a cancel leaves them).
#include <gtest/gtest.h>

#include "dialogs/option_sheet.h"
#include "engine/db_manager.h"
#include "model/fields.h"
#include "sheet_driver.h"
#include "ui/scripted_host.h"

using namespace verdal;

namespace {

const std::vector<std::string> kButtons{"-->", "Alle", "<--", "Leeren", "Nach oben", "Nach unten"};
const char kLeft[] = "Verf\xFCgbare Datenfelder:";

class ListSortDialog : public ::testing::Test {
 protected:
  void SetUp() override {
    struct {
      const char *name, *shown;
      bool hiddenInSort, hiddenInLists;
    } fields[] = {{"Name", "", false, false}, {"Ort", "Wohnort", false, false},
                  {"Preis", "", true, false}, {"Geheim", "", false, true}};
    for (const auto& f : fields) {
      model::TDBFieldInfo info;
      info.name = f.name;
      info.displayName = f.shown;
      info.type.hiddenInSort = f.hiddenInSort;
      info.type.hiddenInLists = f.hiddenInLists;
      model::AddFieldInfo(db.store, info, -1);
    }
  }

  bool Run(const std::string& name, bool sortFace, bool ok, const std::function<void(SheetDriver&)>& script) {
    host.sheet = [&](ui::Sheet& s) {
      SheetDriver d(s);
      script(d);
      return ok && s.PressOk();
    };
    return dialogs::RunListSortSheet(host, nullptr, "Ansicht", db.lists, db.store, name, sortFace);
  }

  engine::TDBManager db{0};
  ScriptedHost host;
};

std::vector<std::string> FieldsOf(const listing::TListSortAndDisplayFieldInfo* d) {
  std::vector<std::string> names;
  for (const auto& item : d->items) names.push_back(item.fieldName);
  return names;
}

}  // namespace

TEST_F(ListSortDialog, DisplayFaceMovesAndEditsRows) {
  const char kRight[] = "Darzustellende Datenfelder:";
  std::vector<uint8_t> created;
  auto edit = [&](SheetDriver& d) {
    created = StoredBytes(db.lists);
    EXPECT_EQ(d.Items(0, kRight), (std::vector<std::string>{"Name", "Ort", "Preis"}));
    EXPECT_EQ(d.Items(0, "Ausrichtung:"), (std::vector<std::string>{"Standard", "Links", "Zentriert", "Rechts"}));
    EXPECT_EQ(d.EnabledOf(0, kButtons), "001101");
    d.Press(0, "<--");
    EXPECT_EQ(d.Items(0, kLeft), std::vector<std::string>{"Name"});
    EXPECT_EQ(d.Get(0, kRight), "Ort");
    EXPECT_EQ(d.Get(0, "Anzeigename:"), "Wohnort");
    d.Set(0, kRight, "Preis");
    for (auto [label, text] : {std::pair{"Ausrichtung:", "Rechts"}, {"Ausrichtung:", "Oben"}, {"Breite:", " 12.9"},
                               {"Breite:", "abc"}, {"Anzeigename:", ""}, {"Schreibgesch\xFCtzt", "1"}})
      d.Set(0, label, text);
    d.Set(0, kRight, "Ort");  // filling the controls from a row writes nothing back
    EXPECT_EQ(d.Get(0, "Breite:"), "100");
    EXPECT_EQ(d.Get(0, "Ausrichtung:"), "Standard");
    d.Set(0, kLeft, "Name");
    d.Press(0, "-->");  // behind the selected row
    EXPECT_EQ(d.Items(0, kRight), (std::vector<std::string>{"Ort", "Name", "Preis"}));
    EXPECT_EQ(d.EnabledOf(0, kButtons), "001111");
    d.Press(0, "Nach unten");
    EXPECT_EQ(d.EnabledOf(0, kButtons), "001110");
    d.Press(0, "Nach unten");  // cannot act: nothing moves
  };
  EXPECT_FALSE(Run("Liste ", false, false, edit));
  EXPECT_EQ(StoredBytes(db.lists), created);
  EXPECT_EQ(FieldsOf(db.lists.FindDefinition("Liste", listing::DefinitionKind::kListDisplay)),
            (std::vector<std::string>{"Name", "Ort", "Preis"}));
  EXPECT_TRUE(Run("liste", false, true, edit));
  const auto* d = db.lists.FindDefinition("Liste", listing::DefinitionKind::kListDisplay);
  EXPECT_EQ(FieldsOf(d), (std::vector<std::string>{"Ort", "Preis", "Name"}));
  const auto& preis = d->items[1];
  EXPECT_EQ(preis.alignment, 1);
  EXPECT_EQ(preis.width, 12);
  EXPECT_EQ(preis.displayName, "");
  EXPECT_TRUE(preis.readOnly);
  EXPECT_EQ(d->items[2].displayName, "Name");
  EXPECT_EQ(d->items[0].displayName, "Wohnort");
}

TEST_F(ListSortDialog, SortFaceTakesNewRowsFromItsCheckBoxes) {
  const char kRight[] = "Zu sortierende Datenfelder:";
  EXPECT_TRUE(Run("Sortierung", true, true, [&](SheetDriver& d) {
    EXPECT_EQ(d.Items(0, kRight), (std::vector<std::string>{"Name", "Ort"}));  // none hidden in sorts
    EXPECT_EQ(d.Get(0, "Aufsteigend"), "1");
    d.Press(0, "Leeren");
    EXPECT_EQ(d.EnabledOf(0, kButtons), "010000");
    d.Set(0, "Aufsteigend", "0");
    d.Set(0, "Punktuation als Symbol behandeln", "1");
    d.Set(0, kLeft, "Ort");
    EXPECT_EQ(d.EnabledOf(0, kButtons), "110000");
    d.Press(0, "-->");
    d.Press(0, "Alle");  // with the initial values
    d.Set(0, "Kontrollelemente benachrichtigen", "1");
  }));
  const auto* d = db.lists.FindDefinition("Sortierung", listing::DefinitionKind::kSort);
  ASSERT_NE(d, nullptr);
  EXPECT_EQ(db.lists.FindDefinition("Sortierung", listing::DefinitionKind::kListDisplay), nullptr);
  EXPECT_EQ(FieldsOf(d), (std::vector<std::string>{"Ort", "Name"}));
  EXPECT_FALSE(d->items[0].ascending);
  EXPECT_TRUE(d->items[0].stringSort);
  EXPECT_TRUE(d->items[1].ascending);
  EXPECT_FALSE(d->items[1].stringSort);
  EXPECT_TRUE(d->notifyControls);
  ui::HeadlessHost headless;
  EXPECT_FALSE(dialogs::RunListSortSheet(headless, nullptr, "", db.lists, db.store, "Sortierung", true));
}
