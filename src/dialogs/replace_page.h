#pragma once
// TReplaceMapPage, "Ersetzen-Einstellungen": the text a replacement option puts into its fields.
// Written when the sheet is closed with OK.
#include <string>
#include <vector>

#include "dialogs/property_sheet.h"
#include "options/config_records.h"

namespace verdal::dialogs {

class TReplaceMapPage : public TPropertyPage {
 public:
  enum ControlId : int32_t { kText = 1 };

  explicit TReplaceMapPage(options::TReplaceData& record) : record_(record), text_(record.text) {}

  std::string Title() const override { return "Ersetzen-Einstellungen"; }
  std::vector<ui::Control> Controls() const override {
    return {{kText, 0, ui::ControlKind::kEdit, "Geben Sie hier den Ersetzungstext ein:"}};
  }
  std::string Text(int32_t control) const override { return control == kText ? text_ : std::string(); }
  void SetText(int32_t control, const std::string& text) override {
    if (control == kText) text_ = text;
  }
  bool Apply() override {
    record_.text = text_;
    return true;
  }

 private:
  options::TReplaceData& record_;
  std::string text_;
};

}  // namespace verdal::dialogs
