#pragma once
// TFileExportMapPage, "Bearbeiten": an export definition is the bridge's own file, so the page has
// one button, which hands a copy of it to the bridge to edit and takes the result back. Like every
// kind's page it writes the option only when the sheet is closed with OK.
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "dialogs/property_sheet.h"
#include "model/node_store.h"
#include "options/config_records.h"

namespace verdal::dialogs {

// Runs the export with `definitionPath` as its target and `flags`; true when the bridge had it.
using EditExportDefinition = std::function<bool(const std::string& definitionPath, int32_t flags)>;

class TFileExportMapPage : public TPropertyPage {
 public:
  enum ControlId : int32_t { kEdit = 1 };

  TFileExportMapPage(options::TFileExpData& record, model::NodeStore& store, EditExportDefinition edit)
      : record_(record), store_(store), edit_(std::move(edit)), definition_(record.definition) {}

  std::string Title() const override { return "Bearbeiten"; }
  std::vector<ui::Control> Controls() const override;
  std::string Text(int32_t) const override { return std::string(); }
  void SetText(int32_t control, const std::string& text) override;
  bool Apply() override {
    record_.definition = definition_;
    return true;
  }

 private:
  void Edit();
  options::TFileExpData& record_;
  model::NodeStore& store_;
  EditExportDefinition edit_;
  std::vector<uint8_t> definition_;
};

}  // namespace verdal::dialogs
