#pragma once
// TDbSortDlg (IDD_SORT_CATEGORIES), "Datenbankeinträge sortieren": what to sort by name (the whole
// database, the children of the chosen entry, or those and every group below), in which
// direction, and whether punctuation counts as symbols. Its choices last from one call to the
// next for the life of the library. Choices within a group exclude each other: checking one
// clears the others, and a checked choice cannot be cleared on its own.
#include <string>
#include <vector>

#include "ui/host.h"

namespace verdal::dialogs {

struct SortCategoriesChoices {
  bool ascending = true;
  bool asStrings = true;  // "Zeichenketten"; names always compare as text, whatever is chosen
  bool wholeDatabase = true;
  bool children = false;
  bool childrenAndSubgroups = false;
  bool punctuation = false;
};

class TDbSortDlg : public ui::Sheet {
 public:
  enum ControlId : int32_t {
    kWholeDatabase = 1,
    kChildren = 2,
    kChildrenAndSubgroups = 3,
    kAscending = 4,
    kDescending = 5,
    kStrings = 6,
    kNumbers = 7,
    kPunctuation = 8,
    kWhatLabel = 9,
    kOrderLabel = 10,
    kTreatLabel = 11,
  };

  // Starts from the choices of the last "Sortieren".
  TDbSortDlg();

  std::string Title() const override;
  std::vector<std::string> Pages() const override;
  std::vector<ui::Control> Controls() const override;
  std::string Text(int32_t control) const override;
  void SetText(int32_t control, const std::string& text) override;
  // "Sortieren": the choices are kept for the next call.
  bool PressOk() override;
  // "Abbruch": nothing is kept.
  void PressCancel() override {}

  const SortCategoriesChoices& Choices() const { return choices_; }
  // The choices every new dialog starts from.
  static SortCategoriesChoices& Remembered();

 private:
  SortCategoriesChoices choices_;
};

}  // namespace verdal::dialogs
