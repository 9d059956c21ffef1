#pragma once
// TListSortAndDisplayDialog: the page that edits one list display definition (face IDD_DISPLAY:
// columns with alignment, heading, width and read-only flag) or one sort definition (face
// IDD_SORT: fields ascending or not, punctuation as symbols). The fields are chosen with the two
// lists of TFieldChoice; the right list works on copies of the items, which replace the
// definition's items only when the sheet is closed with OK.
//
// The detail controls show the selected row, and a change in one writes to that row at once. The
// sort face's two check boxes also keep their state without a row: "-->" gives the new row theirs.
#include <cstdint>
#include <string>
#include <vector>

#include "dialogs/field_choice.h"
#include "dialogs/property_sheet.h"
#include "listing/list_display.h"
#include "model/node_store.h"

namespace verdal::dialogs {

class TListSortAndDisplayDialog : public TPropertyPage {
 public:
  using Item = listing::TListAndSortDisplayFieldInfoData;
  using Choice = TFieldChoice<Item>;
  enum ControlId : int32_t {
    // 1 to 8: the lists and buttons of the field choice (Choice::kAvailable ...)
    kAscending = 10,       // sort face
    kStringSort = 11,      // sort face
    kIgnoreCategories = 12,  // sort face, kept but not shown: no sort reads it
    kNotifyControls = 13,  // sort face
    kAlignment = 20,       // list display face, "Standard", "Links", "Zentriert" or "Rechts"
    kDisplayName = 21,
    kWidth = 22,
    kReadOnly = 23,
  };

  // Finds the definition `name` of the face's kind; where there is none it is added at once, with
  // a row for every offered field. An empty name finds and adds nothing, and the page then has
  // nothing to apply.
  TListSortAndDisplayDialog(listing::TListAndSortDisplayFieldInfoMananger& lists, model::NodeStore& store,
                            const std::string& name, bool sortFace);

  std::string Title() const override;
  std::vector<ui::Control> Controls() const override;
  std::string Text(int32_t control) const override;
  void SetText(int32_t control, const std::string& text) override;
  // The definition's items become the rows; on the sort face its two flags the check boxes'.
  bool Apply() override;

 private:
  Item MakeRow(const std::string& field, bool fromCheckBoxes);
  void ShowRow();
  void SetDetail(int32_t control, const std::string& text);

  model::NodeStore& store_;
  bool sortFace_;
  listing::TListSortAndDisplayFieldInfo* definition_ = nullptr;
  Choice choice_;
  // What the detail controls hold.
  bool ascending_ = true;
  bool stringSort_ = false;
  bool ignoreCategories_ = false;
  bool notifyControls_ = false;
  uint8_t alignment_ = Item::kAlignFromType;
  std::string displayName_;
  std::string width_;
  bool readOnly_ = false;
  bool filling_ = false;  // the controls are being filled from a row: nothing writes back
};

}  // namespace verdal::dialogs
