#pragma once
// TEmailMapPage, "Email-Einstellungen": subject, message, the three flags and the attachment path
// of an e-mail option. The button beside the path picks a file, starting from the path. Written
// when the sheet is closed with OK.
#include <string>
#include <vector>

#include "dialogs/property_sheet.h"
#include "options/config_records.h"

namespace verdal::dialogs {

class TEmailMapPage : public TPropertyPage {
 public:
  enum ControlId : int32_t {
    kSubject = 1,
    kMessage = 2,
    kSpool = 3,
    kAttach = 4,
    kTemplate = 5,
    kAttachment = 6,
    kBrowse = 7,
  };

  TEmailMapPage(options::TEmailData& record, ui::Host& host, VerdalWindow parent);

  std::string Title() const override { return "Email-Einstellungen"; }
  std::vector<ui::Control> Controls() const override;
  std::string Text(int32_t control) const override;
  void SetText(int32_t control, const std::string& text) override;
  bool Apply() override;

 private:
  options::TEmailData& record_;
  ui::Host& host_;
  VerdalWindow parent_;
  std::string subject_;
  std::string message_;
  std::string attachment_;
  int32_t flags_;
};

}  // namespace verdal::dialogs
