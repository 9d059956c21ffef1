#include "dialogs/field_map_page.h"

namespace verdal::dialogs {

TDBFieldMapPage::TDBFieldMapPage(std::vector<std::string>& fields, const model::NodeStore& store)
    : fields_(fields), choice_(OfferedFields(store, true), fields) {}

std::vector<ui::Control> TDBFieldMapPage::Controls() const {
  return choice_.Controls("Verf\xFC" "gbare Felder:", "Aktive Felder:");
}

std::string TDBFieldMapPage::Text(int32_t control) const {
  std::string text;
  choice_.Text(control, text);
  return text;
}

void TDBFieldMapPage::SetText(int32_t control, const std::string& text) {
  choice_.SetText(control, text, [](const std::string& field) { return field; });
}

bool TDBFieldMapPage::Apply() {
  fields_ = choice_.Rows();
  return true;
}

}  // namespace verdal::dialogs
