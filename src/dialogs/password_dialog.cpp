#include "dialogs/password_dialog.h"

#include "platform/language.h"

namespace verdal::dialogs {

namespace {

const char kTitle[] = "Passwort und Kompression einstellen";
const char kPasswordLabel[] = "Passwort (eine Leereingabe l\xF6scht das Passwort):";
const char kRepeatLabel[] = "Passwortwiederholung:";
const char kCompressLabel[] = "Datenbank komprimieren";
const char kNoteText[] =
    "Anmerkung:\nAlgorithmus: Advanced Encryption Standard (AES) 256 Bits.\n"
    "Es wird zwischen Gro\xDF-und Kleinschreibung unterschieden.\n"
    "Kombinieren Sie m\xF6glichst Buchstaben mit Zahlen.";

const char* MismatchText() {
  return platform::IsGerman()
             ? "Pa\xDFwort und Best\xE4tigungspa\xDFwort stimmen nicht \xFC" "berein!"
             : "Password and confirmation password must equal!";
}

const char* TooShortText() {
  return platform::IsGerman() ? "Das Pa\xDFwort mu\xDF mindestens 5 Zeichen lang sein!"
                              : "The password must be long at least 5 tokens!";
}

}  // namespace

TPassWordDialog::TPassWordDialog(const std::string& password, bool compressed, VerdalWindow parent)
    : parent_(parent),
      password_(password.substr(0, kLimit)),
      repeat_(password_),
      compress_(compressed) {}

std::string TPassWordDialog::Title() const { return kTitle; }

std::vector<std::string> TPassWordDialog::Pages() const { return {kTitle}; }

std::vector<ui::Control> TPassWordDialog::Controls() const {
  return {{kPassword, 0, ui::ControlKind::kMaskedEdit, kPasswordLabel, kLimit},
          {kRepeat, 0, ui::ControlKind::kMaskedEdit, kRepeatLabel, kLimit},
          {kCompress, 0, ui::ControlKind::kCheckBox, kCompressLabel, 0},
          {kNote, 0, ui::ControlKind::kText, kNoteText, 0}};
}

std::string TPassWordDialog::Text(int32_t control) const {
  switch (control) {
    case kPassword: return password_;
    case kRepeat: return repeat_;
    case kCompress: return compress_ ? "1" : "0";
    case kNote: return kNoteText;
    default: return {};
  }
}

void TPassWordDialog::SetText(int32_t control, const std::string& text) {
  switch (control) {
    case kPassword: password_ = text.substr(0, kLimit); break;
    case kRepeat: repeat_ = text.substr(0, kLimit); break;
    case kCompress: compress_ = !text.empty() && text != "0"; break;
    default: break;
  }
}

bool TPassWordDialog::PressOk() {
  if (password_ != repeat_) {
    ui::StopMessage(parent_, MismatchText());
    return false;
  }
  if (!password_.empty() && password_.size() < kMinimumLength) {
    ui::StopMessage(parent_, TooShortText());
    return false;
  }
  return true;
}

}  // namespace verdal::dialogs
