#pragma once
// The printer's set-up on this platform, where the printer is a PDF file: the paper and its
// orientation. One page for a property sheet; it writes on OK only.
#include "dialogs/property_sheet.h"
#include "print/pdf_printer.h"

namespace verdal::dialogs {

class TPrinterSetupPage : public TPropertyPage {
 public:
  enum ControlId : int32_t { kPaper = 1, kOrientation = 2 };
  explicit TPrinterSetupPage(print::PageSetup& setup) : setup_(setup), edited_(setup) {}

  std::string Title() const override { return "Drucker einrichten"; }
  std::vector<ui::Control> Controls() const override;
  std::string Text(int32_t control) const override;
  void SetText(int32_t control, const std::string& text) override;
  bool Apply() override {
    setup_ = edited_;
    return true;
  }

 private:
  print::PageSetup& setup_;
  print::PageSetup edited_;
};

}  // namespace verdal::dialogs
