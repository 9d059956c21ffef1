#pragma once
// TSeparatorConf1MapPage, "Separatoren": the two separators of a clipboard copy, each one of the
// six by name. A stored code beyond the six shows no choice and is kept until one is chosen.
// Written when the sheet is closed with OK.
#include <string>
#include <vector>

#include "dialogs/property_sheet.h"
#include "options/config_records.h"

namespace verdal::dialogs {

class TSeparatorConf1MapPage : public TPropertyPage {
 public:
  enum ControlId : int32_t { kFieldSeparator = 1, kRecordSeparator = 2 };

  explicit TSeparatorConf1MapPage(options::TClipBoardData& record);

  std::string Title() const override { return "Separatoren"; }
  std::vector<ui::Control> Controls() const override;
  std::string Text(int32_t control) const override;
  void SetText(int32_t control, const std::string& text) override;
  bool Apply() override;

 private:
  options::TClipBoardData& record_;
  uint8_t field_;
  uint8_t recordSeparator_;
};

}  // namespace verdal::dialogs
