#pragma once
// TFilterDialog, the dialog that creates and changes filters: the filters of a database, edited row by row. The
// dialog works on the database's collection directly, so what it changed stays also when it is
// cancelled. The controls show the row under edit; whenever another row comes under edit (a row
// chosen, added or deleted, another filter chosen, OK) they are written back into their row, and
// a row whose value is empty gets "whole word", so that it tests for an empty field instead of
// matching every one.
#include <string>
#include <vector>

#include "model/node_store.h"
#include "ui/host.h"
#include "listing/filter_parts.h"

namespace verdal::model {
class TLinkResolver;
}

namespace verdal::dialogs {

class TFilterDialog : public ui::Sheet {
 public:
  enum ControlId : int32_t {
    kFilterName = 1,   // the chosen filter; setting a known name chooses it
    kFilterList = 2,   // the names of all filters, one per line
    kRowList = 3,      // the readable texts of the rows, one per line
    kFieldList = 4,    // the names of the fields, one per line
    kField = 5,        // the field chosen in the field list, for the row under edit and new rows
    kLink = 6,         // "", "und" or "oder"
    kOpenBracket = 7,  // check box: "("
    kCondition = 8,    // the shown condition, "kleiner" to the last one
    kValue = 9,
    kCloseBracket = 10,  // check box: ")"
    kWholeWord = 11,
    kCaseSensitive = 12,
    kBeginsWith = 13,
    kWildcard = 14,
    kInternalNames = 15,  // check box: rows name fields by name instead of display name
  };
  static constexpr const char* kNewFilterName = "Neuer Filter";

  // Opens on the last chosen filter, or the first; a database without any filter gets one named
  // "Neuer Filter".
  TFilterDialog(listing::TDBFilterCollection& filters, model::NodeStore& database,
                VerdalWindow parent = nullptr, model::TLinkResolver* links = nullptr);

  std::string Title() const override;
  std::vector<std::string> Pages() const override;
  std::vector<ui::Control> Controls() const override;
  std::string Text(int32_t control) const override;
  // Lists cannot be set; a link, condition or field that is not one of the offered ones is
  // ignored.
  void SetText(int32_t control, const std::string& text) override;
  // Writes the row under edit back and remembers the chosen filter; always accepts.
  bool PressOk() override;
  void PressCancel() override {}

  // The buttons and list choices. Names are refused, with a stop message, when empty or blank
  // (the "invalid title" message) or when another filter has them, ignoring case.
  bool NewFilter(const std::string& name);
  bool RenameFilter(const std::string& name);
  bool SelectFilter(const std::string& name);
  void DeleteFilter();
  // Adds a row (condition "gleich", the chosen field) at the end and puts it under edit.
  void NewRow();
  bool SelectRow(int32_t index);
  void DeleteRow();

  listing::TDBFilterPartsItem* CurrentFilter() const;
  int32_t CurrentRow() const { return row_; }
  std::vector<std::string> RowTexts() const;

 private:
  bool NameAcceptable(const std::string& name, const listing::TDBFilterPartsItem* self);
  void StoreRow();
  void LoadRow();
  void ChooseFilter(int32_t index);

  listing::TDBFilterCollection& filters_;
  model::NodeStore& database_;
  VerdalWindow parent_;
  model::TLinkResolver* links_;
  int32_t filter_ = -1;
  int32_t row_ = -1;
  listing::TDBFilterParts editor_;  // the controls of the row under edit
  std::string chosenField_;
  bool internalNames_ = false;
};

}  // namespace verdal::dialogs
