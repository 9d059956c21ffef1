#pragma once
// TTablePrintDialog: the field page of a print configuration (IDD_TAB_PRINT). The columns on the
// right with the fields not yet printed on the left (TFieldChoice: "-->", "Alle", "<--",
// "Leeren", "Nach oben", "Nach unten"), the selected column's title, heading, width, height,
// alignment and flags, and the table's line thickness, free space, flags, ignore text and sort
// option. Edits of the selected column act on the page's copy at once; the record takes
// everything over on OK, with kind 2.
//
// The fonts of column titles and cells and the line colour are edited through plain controls
// (dialogs/print_page_parts.h): the platform's font and colour dialogs have no counterpart here.
#include <cstdint>
#include <string>
#include <vector>

#include "dialogs/field_choice.h"
#include "dialogs/print_page_parts.h"
#include "dialogs/property_sheet.h"
#include "listing/list_display.h"
#include "model/node_store.h"
#include "options/print_data.h"
#include "ui/host.h"

namespace verdal::options {
// The field a column names, for TFieldChoice (found by argument-dependent lookup).
inline const std::string& RowField(const TPrintItem& row) { return row.fieldName; }
}  // namespace verdal::options

namespace verdal::dialogs {

class TTablePrintDialog : public TPropertyPage {
 public:
  using Choice = TFieldChoice<options::TPrintItem>;  // ids 1 to 8
  enum ControlId : int32_t {
    kAlignment = 10,
    kTitle,
    kHeading,
    kWidth,
    kHeight,
    kAutoWidth,
    kAutoHeight,
    kMaxWidth,
    kMaxHeight,
    kTotal,
    kSubtotals,
    kCentred,
    kLineThickness = 30,
    kFreeSpace,
    kSingleLine,
    kPictures,
    kFitWidth,
    kUseIgnoreText,
    kIgnoreText,
    kSort,
    kSortName,
    kSortSettings,
    kLineColour,
    kColumnTitleFont = 50,  // five ids each
    kCellFont = 60,
  };

  // `title`: "Druckeinstellungen: Tabellarischer Ausdruck" on the option sheet, "Druckeinstellungen"
  // from the preview. `lists` gives the sort definitions (owner 1) that the sort option names.
  TTablePrintDialog(options::TPrintData& record, model::NodeStore& store,
                    listing::TListAndSortDisplayFieldInfoMananger& lists, ui::Host& host, VerdalWindow parent,
                    std::string title);

  // The record made when no configuration has the page's name: a column for every field not
  // hidden in lists.
  static options::TPrintData DefaultRecord(const std::string& name, const model::NodeStore& store);
  // A default column of that field: its title is the field's display name, or its name.
  static options::TPrintItem DefaultItem(const std::string& field, const model::NodeStore& store);

  std::string Title() const override { return title_; }
  std::vector<ui::Control> Controls() const override;
  std::string Text(int32_t control) const override;
  void SetText(int32_t control, const std::string& text) override;
  bool Apply() override;

 private:
  const options::TPrintItem* Selected() const;
  // Number, Boolean and time fields may have totals.
  bool MayTotal(const options::TPrintItem& item) const;
  std::vector<std::string> SortNames() const;
  void ChooseSort();

  options::TPrintData& record_;
  model::NodeStore& store_;
  listing::TListAndSortDisplayFieldInfoMananger& lists_;
  ui::Host& host_;
  VerdalWindow parent_;
  std::string title_;
  Choice choice_;
  options::TPrintData work_;  // the table's own members, taken over on OK
  bool sortOn_;
  FontControls columnTitleFont_{kColumnTitleFont, "Spaltentitel"};
  FontControls cellFont_{kCellFont, "Zellen"};
};

}  // namespace verdal::dialogs
