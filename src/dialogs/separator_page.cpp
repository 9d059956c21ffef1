#include "dialogs/separator_page.h"

namespace verdal::dialogs {

namespace {

std::vector<std::string> SeparatorNames() {
  std::vector<std::string> names;
  for (int code = 0; code < options::kSeparatorCount; ++code) names.emplace_back(options::SeparatorName(code));
  return names;
}

}  // namespace

TSeparatorConf1MapPage::TSeparatorConf1MapPage(options::TClipBoardData& record)
    : record_(record), field_(record.fieldSeparator), recordSeparator_(record.recordSeparator) {}

std::vector<ui::Control> TSeparatorConf1MapPage::Controls() const {
  return {{kFieldSeparator, 0, ui::ControlKind::kChoice, "Feldendezeichen:", 0, SeparatorNames()},
          {kRecordSeparator, 0, ui::ControlKind::kChoice, "Satzendezeichen:", 0, SeparatorNames()}};
}

std::string TSeparatorConf1MapPage::Text(int32_t control) const {
  const char* name = nullptr;
  if (control == kFieldSeparator) name = options::SeparatorName(field_);
  if (control == kRecordSeparator) name = options::SeparatorName(recordSeparator_);
  return name != nullptr ? name : "";
}

void TSeparatorConf1MapPage::SetText(int32_t control, const std::string& text) {
  const int32_t code = ui::ItemIndex(SeparatorNames(), text);
  if (code < 0) return;
  if (control == kFieldSeparator) field_ = static_cast<uint8_t>(code);
  if (control == kRecordSeparator) recordSeparator_ = static_cast<uint8_t>(code);
}

bool TSeparatorConf1MapPage::Apply() {
  record_.fieldSeparator = field_;
  record_.recordSeparator = recordSeparator_;
  return true;
}

}  // namespace verdal::dialogs
