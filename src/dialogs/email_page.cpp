#include "dialogs/email_page.h"

namespace verdal::dialogs {

namespace {

// The flag bit behind a check box; 0 for another control.
int32_t FlagOf(int32_t control) {
  switch (control) {
    case TEmailMapPage::kSpool: return options::TEmailData::kSpool;
    case TEmailMapPage::kAttach: return options::TEmailData::kAttach;
    case TEmailMapPage::kTemplate: return options::TEmailData::kTemplate;
    default: return 0;
  }
}

}  // namespace

TEmailMapPage::TEmailMapPage(options::TEmailData& record, ui::Host& host, VerdalWindow parent)
    : record_(record),
      host_(host),
      parent_(parent),
      subject_(record.subject),
      message_(record.message),
      attachment_(record.attachment),
      flags_(record.flags) {}

std::vector<ui::Control> TEmailMapPage::Controls() const {
  using ui::ControlKind;
  return {{kSubject, 0, ControlKind::kEdit, "Betreff:"},
          {kMessage, 0, ControlKind::kEdit, "Nachricht:"},
          {kSpool, 0, ControlKind::kCheckBox, "Emails in den Spooler stellen"},
          {kAttach, 0, ControlKind::kCheckBox, "Dateianhang"},
          {kAttachment, 0, ControlKind::kEdit, ""},  // the path, beside the flag
          {kBrowse, 0, ControlKind::kButton, "..."},
          {kTemplate, 0, ControlKind::kCheckBox, "Es handelt sich um eine Templatedatei"}};
}

std::string TEmailMapPage::Text(int32_t control) const {
  if (const int32_t flag = FlagOf(control)) return (flags_ & flag) != 0 ? "1" : "0";
  switch (control) {
    case kSubject: return subject_;
    case kMessage: return message_;
    case kAttachment: return attachment_;
    default: return {};
  }
}

void TEmailMapPage::SetText(int32_t control, const std::string& text) {
  if (const int32_t flag = FlagOf(control)) {
    flags_ = !text.empty() && text != "0" ? flags_ | flag : flags_ & ~flag;
    return;
  }
  switch (control) {
    case kSubject: subject_ = text; break;
    case kMessage: message_ = text; break;
    case kAttachment: attachment_ = text; break;
    case kBrowse: {
      ui::FileRequest request;
      request.filter = "Alle Dateien (*.*)|*.*|";
      request.initialPath = attachment_;
      if (std::optional<std::string> path = host_.PickFile(parent_, request)) attachment_ = *path;
      break;
    }
    default: break;
  }
}

bool TEmailMapPage::Apply() {
  record_.subject = subject_;
  record_.message = message_;
  record_.attachment = attachment_;
  record_.flags = flags_;
  return true;
}

}  // namespace verdal::dialogs
