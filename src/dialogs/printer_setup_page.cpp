#include "dialogs/printer_setup_page.h"

namespace verdal::dialogs {

namespace {
const char* const kPapers[] = {"A4", "Letter"};
const char* const kOrientations[] = {"Hochformat", "Querformat"};
}  // namespace

std::vector<ui::Control> TPrinterSetupPage::Controls() const {
  return {{kPaper, 0, ui::ControlKind::kChoice, "Papier:", 0, {kPapers[0], kPapers[1]}},
          {kOrientation, 0, ui::ControlKind::kChoice, "Ausrichtung:", 0, {kOrientations[0], kOrientations[1]}}};
}

std::string TPrinterSetupPage::Text(int32_t control) const {
  if (control == kPaper) return kPapers[edited_.paper == print::PageSetup::Paper::kLetter ? 1 : 0];
  if (control == kOrientation) return kOrientations[edited_.landscape ? 1 : 0];
  return "";
}

void TPrinterSetupPage::SetText(int32_t control, const std::string& text) {
  if (control == kPaper && (text == kPapers[0] || text == kPapers[1]))
    edited_.paper = text == kPapers[1] ? print::PageSetup::Paper::kLetter : print::PageSetup::Paper::kA4;
  if (control == kOrientation && (text == kOrientations[0] || text == kOrientations[1]))
    edited_.landscape = text == kOrientations[1];
}

}  // namespace verdal::dialogs
