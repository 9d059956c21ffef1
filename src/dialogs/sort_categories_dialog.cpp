#include "dialogs/sort_categories_dialog.h"

namespace verdal::dialogs {

// Texts are code page 1252, as everything the engine hands a host.

namespace {

struct Choice {
  int32_t id;
  const char* label;
  bool SortCategoriesChoices::*flag;
  int group;  // choices of one group exclude each other; 0 stands alone
};

constexpr Choice kChoices[] = {
    {TDbSortDlg::kWholeDatabase, "Die gesamte Datenbank", &SortCategoriesChoices::wholeDatabase, 1},
    {TDbSortDlg::kChildren, "Die Kinder ausgew\xE4hlten Eintrags", &SortCategoriesChoices::children, 1},
    {TDbSortDlg::kChildrenAndSubgroups, "Die Kinder des ausgew\xE4hlten Eintrags und Untergruppen",
     &SortCategoriesChoices::childrenAndSubgroups, 1},
    {TDbSortDlg::kAscending, "Aufsteigend", &SortCategoriesChoices::ascending, 2},
    {TDbSortDlg::kDescending, "Absteigend", nullptr, 2},
    {TDbSortDlg::kStrings, "Zeichenketten", &SortCategoriesChoices::asStrings, 3},
    {TDbSortDlg::kNumbers, "Zahlen", nullptr, 3},
    {TDbSortDlg::kPunctuation, "Punktuation als Symbol behandeln", &SortCategoriesChoices::punctuation, 0},
};

const Choice* Find(int32_t id) {
  for (const Choice& c : kChoices)
    if (c.id == id) return &c;
  return nullptr;
}

// A two-way group keeps one flag: the second choice is that flag cleared.
bool IsChecked(const SortCategoriesChoices& s, const Choice& c) {
  if (c.flag != nullptr) return s.*c.flag;
  return !(s.*Find(c.id - 1)->flag);
}

}  // namespace

SortCategoriesChoices& TDbSortDlg::Remembered() {
  static SortCategoriesChoices remembered;
  return remembered;
}

TDbSortDlg::TDbSortDlg() : choices_(Remembered()) {}

std::string TDbSortDlg::Title() const { return "Datenbankeintr\xE4ge sortieren"; }

std::vector<std::string> TDbSortDlg::Pages() const { return {Title()}; }

std::vector<ui::Control> TDbSortDlg::Controls() const {
  std::vector<ui::Control> controls = {
      {kWhatLabel, 0, ui::ControlKind::kText, "Was soll sortiert werden?", 0},
      {kOrderLabel, 0, ui::ControlKind::kText, "Sortierreihenfolge:", 0},
      {kTreatLabel, 0, ui::ControlKind::kText, "Eintr\xE4ge behandeln als:", 0},
  };
  for (const Choice& c : kChoices) controls.push_back({c.id, 0, ui::ControlKind::kCheckBox, c.label, 0});
  return controls;
}

std::string TDbSortDlg::Text(int32_t control) const {
  const Choice* c = Find(control);
  if (c == nullptr) return {};
  return IsChecked(choices_, *c) ? "1" : "0";
}

void TDbSortDlg::SetText(int32_t control, const std::string& text) {
  const Choice* c = Find(control);
  if (c == nullptr) return;
  const bool checked = text == "1";
  if (c->group == 0) {
    choices_.*c->flag = checked;
    return;
  }
  if (!checked) return;  // a choice of a group is cleared by checking another
  if (c->flag == nullptr) {
    choices_.*Find(c->id - 1)->flag = false;
    return;
  }
  for (const Choice& other : kChoices)
    if (other.group == c->group && other.flag != nullptr) choices_.*other.flag = &other == c;
}

bool TDbSortDlg::PressOk() {
  Remembered() = choices_;
  return true;
}

}  // namespace verdal::dialogs
