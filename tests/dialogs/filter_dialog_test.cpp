// The filter dialog as a user drives it through the user interface: the first filter of a new
// database, rows written back when another row comes under edit, the empty-value rule, names,
// and the switch between display names and names.
#include "dialogs/filter_dialog.h"

#include <gtest/gtest.h>

#include "engine/db_manager.h"
#include "model/fields.h"
#include "ui/scripted_host.h"
#include "listing/filter_text.h"

using namespace verdal;
using dialogs::TFilterDialog;

namespace {

class FilterDialog : public ::testing::Test {
 protected:
  void SetUp() override {
    model::TDBFieldInfo ort;
    ort.name = "Ort";
    ort.displayName = "Wohnort";
    model::AddFieldInfo(db.store, ort, -1);
    model::TDBFieldInfo preis;
    preis.name = "Preis";
    preis.type.dataType = model::kTypeNumber;
    model::AddFieldInfo(db.store, preis, -1);
  }

  // Runs the dialog through the host with the script; true when it was closed with OK.
  bool Run(const std::function<bool(TFilterDialog&)>& script) {
    host.sheet = [&](ui::Sheet& s) { return script(static_cast<TFilterDialog&>(s)); };
    TFilterDialog dialog(db.filters, db.store);
    return ui::CurrentHost().RunSheet(nullptr, dialog);
  }

  engine::TDBManager db{0};
  ScriptedHost host;
};

}  // namespace

TEST_F(FilterDialog, BuildsAFilterRowByRow) {
  ASSERT_TRUE(Run([](TFilterDialog& d) {
    EXPECT_EQ(d.Title(), "Filter erzeugen/\xE4ndern");
    EXPECT_EQ(d.Text(TFilterDialog::kFilterList), "Neuer Filter");
    EXPECT_EQ(d.Text(TFilterDialog::kFieldList), "Ort\nPreis");
    EXPECT_EQ(d.CurrentRow(), -1);
    d.NewRow();
    EXPECT_EQ(d.Text(TFilterDialog::kField), "Ort");
    EXPECT_EQ(d.Text(TFilterDialog::kCondition), "gleich");
    d.SetText(TFilterDialog::kValue, "Kiel");
    d.SetText(TFilterDialog::kOpenBracket, "1");
    d.SetText(TFilterDialog::kCaseSensitive, "1");
    d.SetText(TFilterDialog::kField, "preis");  // the field list's choice, for the next row too
    d.NewRow();
    EXPECT_EQ(d.Text(TFilterDialog::kField), "Preis");
    d.SetText(TFilterDialog::kLink, "oder");
    d.SetText(TFilterDialog::kCondition, "kleiner");
    d.SetText(TFilterDialog::kCondition, "weniger");  // not offered: ignored
    d.SetText(TFilterDialog::kValue, "10");
    d.SetText(TFilterDialog::kCloseBracket, "1");
    EXPECT_TRUE(d.SelectRow(0));  // writes row 2 back
    EXPECT_EQ(d.Text(TFilterDialog::kValue), "Kiel");
    EXPECT_EQ(d.Text(TFilterDialog::kRowList),
              " ( Preis gleich Kiel \noder  Preis kleiner 10 )");
    d.SetText(TFilterDialog::kField, "Ort");
    d.SetText(TFilterDialog::kInternalNames, "0");
    EXPECT_TRUE(d.RenameFilter("Kiel billig"));
    return d.PressOk();
  }));
  EXPECT_EQ(db.filters.currentFilter, "Kiel billig");
  EXPECT_STREQ(listing::FilterText(db.filters, db.store, "kiel billig"),
               "  ( \\eval{Ort|*=|\"Kiel\"|0}  or  \\eval{Preis|<|10|0} )");

  // Opening again comes back to the last filter, with display names until names are asked for.
  Run([](TFilterDialog& d) {
    EXPECT_EQ(d.Text(TFilterDialog::kRowList), " ( Wohnort gleich Kiel \noder  Preis kleiner 10 )");
    d.SetText(TFilterDialog::kInternalNames, "1");
    EXPECT_EQ(d.RowTexts().front(), " ( Ort gleich Kiel ");
    return false;
  });
  EXPECT_EQ(db.filters.filters.size(), 1u);
}

TEST_F(FilterDialog, AnEmptyValueTestsForAnEmptyField) {
  Run([](TFilterDialog& d) {
    d.NewRow();
    d.SetText(TFilterDialog::kValue, "");
    EXPECT_EQ(d.Text(TFilterDialog::kWholeWord), "0");
    d.NewRow();  // the first row is written back with whole word set
    d.SetText(TFilterDialog::kValue, "x");
    d.SelectRow(0);
    EXPECT_EQ(d.Text(TFilterDialog::kWholeWord), "1");
    return d.PressOk();
  });
  const auto& rows = db.filters.filters.front()->rows;
  ASSERT_EQ(rows.size(), 2u);
  EXPECT_EQ(rows[0].wholeWord, 1);
  EXPECT_EQ(rows[1].wholeWord, 0);
  EXPECT_STREQ(listing::FilterText(db.filters, db.store, "Neuer Filter"),
               "   \\eval{Ort|=|\"\"|4}    \\eval{Ort|*=|\"x\"|4} ");
}

TEST_F(FilterDialog, NamesAreCheckedAndFiltersComeAndGo) {
  Run([this](TFilterDialog& d) {
    EXPECT_FALSE(d.NewFilter("   "));
    EXPECT_FALSE(d.NewFilter("neuer FILTER"));
    EXPECT_TRUE(d.NewFilter("Zweiter"));
    EXPECT_FALSE(d.RenameFilter(""));
    EXPECT_FALSE(d.RenameFilter("Neuer filter"));
    EXPECT_TRUE(d.RenameFilter("ZWEITER"));  // its own name in other case
    EXPECT_EQ(host.messages, (std::vector<std::string>{"Ung\xFCltiger Titel",
                                                        "Dieser Titel existiert bereits",
                                                        "Ung\xFCltiger Titel",
                                                        "Dieser Titel existiert bereits"}));
    d.NewRow();
    d.SetText(TFilterDialog::kValue, "a");
    d.SetText(TFilterDialog::kFilterName, "Neuer Filter");  // choosing another filter writes back
    EXPECT_EQ(d.Text(TFilterDialog::kRowList), "");
    EXPECT_TRUE(d.SelectFilter("zweiter"));
    EXPECT_EQ(d.Text(TFilterDialog::kRowList), "  Wohnort gleich a ");
    d.DeleteRow();
    EXPECT_EQ(d.CurrentRow(), -1);
    d.DeleteFilter();
    EXPECT_EQ(d.Text(TFilterDialog::kFilterList), "Neuer Filter");
    return d.PressOk();
  });
  EXPECT_EQ(db.filters.currentFilter, "Neuer Filter");
  ASSERT_EQ(db.filters.filters.size(), 1u);
  EXPECT_TRUE(db.filters.filters[0]->rows.empty());
}
