#pragma once
// TDBFieldMapPage, "Datenfelder": the field selection of an option record. The active list starts
// with the record's field names in their order, also names the database no longer has; the
// record's `fields` become the active list only when the sheet is closed with OK.
#include <string>
#include <vector>

#include "dialogs/field_choice.h"
#include "dialogs/property_sheet.h"
#include "model/node_store.h"

namespace verdal::dialogs {

class TDBFieldMapPage : public TPropertyPage {
 public:
  using Choice = TFieldChoice<std::string>;  // ids 1 to 8

  TDBFieldMapPage(std::vector<std::string>& fields, const model::NodeStore& store);

  std::string Title() const override { return "Datenfelder"; }
  std::vector<ui::Control> Controls() const override;
  std::string Text(int32_t control) const override;
  void SetText(int32_t control, const std::string& text) override;
  bool Apply() override;

 private:
  std::vector<std::string>& fields_;
  Choice choice_;
};

}  // namespace verdal::dialogs
