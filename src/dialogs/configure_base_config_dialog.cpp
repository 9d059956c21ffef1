#include "dialogs/configure_base_config_dialog.h"

#include <algorithm>

#include "platform/language.h"

namespace verdal::dialogs {

namespace {

const char* Say(const char* german, const char* english) { return platform::IsGerman() ? german : english; }

// Blanks at both ends go, as the name box is read.
std::string Trimmed(const std::string& text) {
  const size_t begin = text.find_first_not_of(' ');
  return begin == std::string::npos ? std::string() : options::TrimTrailingBlanks(text.substr(begin));
}

constexpr int kLastNumber = 32767;

}  // namespace

TConfigureBaseConfigDialog::TConfigureBaseConfigDialog(options::TBaseConfigClass& collection, TPropertySheet& sheet,
                                                       PageFactory pages, ui::Host& host, VerdalWindow parent)
    : collection_(collection), sheet_(sheet), pages_(std::move(pages)), host_(host), parent_(parent) {}

void TConfigureBaseConfigDialog::Start() {
  firstExtraPage_ = sheet_.PageCount();
  if (collection_.GetCount() == 0) {
    New();
    return;
  }
  Select(std::max(collection_.IndexOf(collection_.GetDefault()), 0));
}

std::vector<ui::Control> TConfigureBaseConfigDialog::Controls() const {
  using ui::ControlKind;
  const bool any = selected_ >= 0;
  return {{kNames, 0, ControlKind::kList, "", 0, Names()},
          {kName, 0, ControlKind::kEdit, "Name:"},
          {kComment, 0, ControlKind::kEdit, "Kommentar:"},
          {kNew, 0, ControlKind::kButton, "&Neu"},
          {kCopy, 0, ControlKind::kButton, "&Kopieren", 0, {}, any},
          {kDelete, 0, ControlKind::kButton, "&L\xF6schen", 0, {}, any},
          {kRename, 0, ControlKind::kButton, "&Umbenennen", 0, {}, any},
          {kImport, 0, ControlKind::kButton, "&Import"},
          {kExport, 0, ControlKind::kButton, "&Export"}};
}

std::vector<std::string> TConfigureBaseConfigDialog::Names() const {
  std::vector<std::string> names;
  for (int32_t i = 0; i < collection_.GetCount(); ++i) names.emplace_back(collection_.GetName(i));
  return names;
}

std::string TConfigureBaseConfigDialog::Text(int32_t control) const {
  switch (control) {
    case kNames: {
      const char* name = collection_.GetName(selected_);
      return name != nullptr ? name : "";
    }
    case kName: return name_;
    case kComment: return comment_;
    default: return {};
  }
}

void TConfigureBaseConfigDialog::SetText(int32_t control, const std::string& text) {
  switch (control) {
    case kNames: {
      // Choosing the selected entry again is no change of selection.
      const int32_t index = ui::ItemIndex(Names(), text);
      if (index >= 0 && index != selected_) Select(index);
      break;
    }
    case kName: name_ = text; break;
    case kComment: comment_ = text; break;
    case kNew: New(); break;
    case kCopy: CopyEntry(); break;
    case kDelete: Delete(); break;
    case kRename: Rename(); break;
    case kImport: Import(); break;
    case kExport: Export(); break;
    default: break;
  }
}

bool TConfigureBaseConfigDialog::Apply() {
  StoreComment();
  return true;
}

void TConfigureBaseConfigDialog::New() {
  std::string name = Trimmed(name_);
  if (name.empty() || collection_.IndexOf(name) >= 0)
    name = FreeName(Say("Neue Einstellung", "New Configuration"), 1);
  if (name.empty()) return;
  const int32_t index = collection_.Add(name);
  if (index >= 0) Select(index);
}

// A copy whose name is taken gets the first free number after it, from 2 on.
void TConfigureBaseConfigDialog::CopyEntry() {
  const char* old = collection_.GetName(selected_);
  if (old == nullptr) return;
  std::string name = std::string(Say("Kopie von ", "Copy of ")) + old;
  if (collection_.IndexOf(name) >= 0) name = FreeName(name, 2);
  if (name.empty()) return;
  const int32_t index = collection_.Copy(selected_, name.c_str());
  if (index >= 0) Select(index);
}

void TConfigureBaseConfigDialog::Delete() {
  if (selected_ < 0) return;
  const ui::Answer answer =
      host_.MessageBox(parent_, ui::ApplicationName(),
                       Say("Soll dieser Eintrag wirklich gel\xF6scht werden?",
                           "Are you sure you want to delete the selected entry?"),
                       ui::Buttons::kYesNo, ui::Icon::kQuestion, ui::Answer::kYes);
  if (answer != ui::Answer::kYes || !collection_.Remove(selected_)) return;
  const int32_t position = selected_;
  selected_ = -1;  // the comment box belonged to the entry that went
  Select(std::min(position, collection_.GetCount() - 1));
}

// The selected entry's own name, in any case, is no name in use.
void TConfigureBaseConfigDialog::Rename() {
  if (selected_ < 0) return;
  const std::string name = Trimmed(name_);
  if (name.empty()) {
    Refuse(Say("Ung\xFCltige Zeichenkettenl\xE4nge!", "Invalid character string length!"));
    return;
  }
  const int32_t holder = collection_.IndexOf(name);
  if (holder >= 0 && holder != selected_) {
    Refuse(Say("Eine Einstellung mit diesem Namen existiert bereits!",
               "An configuration with this name exists already!"));
    return;
  }
  collection_.SetName(selected_, name);
  collection_.SetDefault(name);
  name_ = name;
}

void TConfigureBaseConfigDialog::Import() {
  ui::FileRequest request;
  request.title = "Import";
  request.filter = collection_.GetFileFilter();
  const std::optional<std::string> path = host_.PickFile(parent_, request);
  if (!path) return;
  StoreComment();
  const options::SettingsResult result = collection_.ImportFile(*path);
  if (result == options::SettingsResult::kWrongKind)
    Refuse(Say("Dieser Einstellungstyp kann nicht an dieser Stelle eingef\xFCgt werden!",
               "This type of configuration cannot be inserted here!"));
  else if (result != options::SettingsResult::kOk)
    Refuse(Say("Falscher Dateityp oder Datei defekt!", "Wrong file type or invalid file!"));
  if (result == options::SettingsResult::kCannotOpen) return;
  // Read made every entry anew (a refused file by reading the old ones back): select again.
  const int32_t keep = result == options::SettingsResult::kOk
                           ? std::max(collection_.IndexOf(collection_.GetDefault()), 0)
                           : selected_;
  selected_ = -1;
  Select(std::min(keep, collection_.GetCount() - 1));
}

void TConfigureBaseConfigDialog::Export() {
  StoreComment();
  ui::FileRequest request;
  request.title = "Export";
  request.filter = collection_.GetFileFilter();
  request.save = true;
  const std::optional<std::string> path = host_.PickFile(parent_, request);
  if (path && collection_.ExportFile(*path) != options::SettingsResult::kOk)
    Refuse(Say("Fehler beim Schreiben!", "Error writing file!"));
}

void TConfigureBaseConfigDialog::Select(int32_t index) {
  StoreComment();
  const char* name = collection_.GetName(index);
  selected_ = name != nullptr ? index : -1;
  name_ = name != nullptr ? name : "";
  const char* comment = collection_.GetComment(selected_);
  comment_ = comment != nullptr ? comment : "";
  if (name != nullptr) collection_.SetDefault(name_);
  sheet_.RemovePagesFrom(firstExtraPage_);
  if (selected_ < 0) return;
  for (int32_t page = 0;; ++page) {
    std::unique_ptr<TPropertyPage> made = pages_(page, selected_);
    if (made == nullptr) break;
    sheet_.AddPage(std::move(made));
  }
}

void TConfigureBaseConfigDialog::StoreComment() {
  if (selected_ >= 0) collection_.SetComment(selected_, comment_);
}

void TConfigureBaseConfigDialog::Refuse(const char* text) {
  host_.MessageBox(parent_, ui::ApplicationName(), text, ui::Buttons::kOk, ui::Icon::kStop, ui::Answer::kOk);
}

std::string TConfigureBaseConfigDialog::FreeName(const std::string& base, int first) const {
  for (int n = first; n <= kLastNumber; ++n) {
    std::string name = base + std::to_string(n);
    if (collection_.IndexOf(name) < 0) return name;
  }
  return {};
}

}  // namespace verdal::dialogs
