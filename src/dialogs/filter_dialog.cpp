#include "dialogs/filter_dialog.h"

#include <strings.h>

#include "model/fields.h"
#include "listing/filter_text.h"

namespace verdal::dialogs {

namespace {

const char kTitle[] = "Filter erzeugen/\xE4ndern";
const char kInvalidTitle[] = "Ung\xFCltiger Titel";
const char kTitleExists[] = "Dieser Titel existiert bereits";

std::string Lines(const std::vector<std::string>& lines) {
  std::string out;
  for (size_t i = 0; i < lines.size(); ++i) {
    if (i > 0) out += '\n';
    out += lines[i];
  }
  return out;
}

bool Blank(const std::string& text) { return text.find_first_not_of(" \t\r\n") == std::string::npos; }

// The index of text among the shown words of a table, -1 if it is none of them.
template <class Word>
int16_t ShownIndex(const std::string& text, int16_t count, Word word) {
  for (int16_t i = 0; i < count; ++i)
    if (text == word(i)) return i;
  return -1;
}

bool Checked(const std::string& text) { return !text.empty() && text != "0"; }

}  // namespace

TFilterDialog::TFilterDialog(listing::TDBFilterCollection& filters, model::NodeStore& database,
                             VerdalWindow parent, model::TLinkResolver* links)
    : filters_(filters), database_(database), parent_(parent), links_(links) {
  if (filters_.filters.empty()) {
    auto item = std::make_unique<listing::TDBFilterPartsItem>();
    item->name = kNewFilterName;
    filters_.filters.push_back(std::move(item));
  }
  if (!database_.fields.empty()) chosenField_ = database_.fields.front()->name;
  const int32_t last = filters_.IndexOf(filters_.currentFilter);
  ChooseFilter(last >= 0 ? last : 0);
}

std::string TFilterDialog::Title() const { return kTitle; }

std::vector<std::string> TFilterDialog::Pages() const { return {kTitle}; }

std::vector<ui::Control> TFilterDialog::Controls() const {
  using ui::ControlKind;
  return {{kFilterName, 0, ControlKind::kEdit, "Filter:", 0},
          {kFilterList, 0, ControlKind::kText, "", 0},
          {kRowList, 0, ControlKind::kText, "", 0},
          {kFieldList, 0, ControlKind::kText, "", 0},
          {kField, 0, ControlKind::kEdit, "Feld:", 0},
          {kLink, 0, ControlKind::kEdit, "Verkn\xFCpfung:", 0},
          {kOpenBracket, 0, ControlKind::kCheckBox, "(", 0},
          {kCondition, 0, ControlKind::kEdit, "Bedingung:", 0},
          {kValue, 0, ControlKind::kEdit, "Wert:", 0},
          {kCloseBracket, 0, ControlKind::kCheckBox, ")", 0},
          {kWholeWord, 0, ControlKind::kCheckBox, "Ganzes Wort (Textfelder)", 0},
          {kCaseSensitive, 0, ControlKind::kCheckBox, "Gross/Kleinschreibung beachten (Textfelder)", 0},
          {kBeginsWith, 0, ControlKind::kCheckBox, "Zu suchendes Wort beginnt mit Wert", 0},
          {kWildcard, 0, ControlKind::kCheckBox, "Suche mit Platzhalter (*)", 0},
          {kInternalNames, 0, ControlKind::kCheckBox, "Interne Feldnamen anzeigen", 0}};
}

std::string TFilterDialog::Text(int32_t control) const {
  const listing::TDBFilterPartsItem* item = CurrentFilter();
  switch (control) {
    case kFilterName: return item != nullptr ? item->name : std::string();
    case kFilterList: {
      std::vector<std::string> names;
      for (const auto& f : filters_.filters) names.push_back(f->name);
      return Lines(names);
    }
    case kRowList: return Lines(RowTexts());
    case kFieldList: {
      std::vector<std::string> names;
      for (const auto& f : database_.fields) names.push_back(f->name);
      return Lines(names);
    }
    case kField: return row_ >= 0 ? editor_.fieldName : chosenField_;
    case kLink: return listing::LinkText(editor_.link, false);
    case kOpenBracket: return editor_.openBracket.empty() ? "0" : "1";
    case kCondition: return listing::ConditionText(editor_.condition, false);
    case kValue: return editor_.value;
    case kCloseBracket: return editor_.closeBracket.empty() ? "0" : "1";
    case kWholeWord: return editor_.wholeWord ? "1" : "0";
    case kCaseSensitive: return editor_.caseSensitive ? "1" : "0";
    case kBeginsWith: return editor_.beginsWith ? "1" : "0";
    case kWildcard: return editor_.wildcard ? "1" : "0";
    case kInternalNames: return internalNames_ ? "1" : "0";
    default: return {};
  }
}

void TFilterDialog::SetText(int32_t control, const std::string& text) {
  switch (control) {
    case kFilterName: SelectFilter(text); break;
    case kField:
      if (model::TDBFieldInfo* field = model::FieldByName(database_, text.c_str())) {
        chosenField_ = field->name;
        if (row_ >= 0) editor_.fieldName = field->name;
      }
      break;
    case kLink: {
      const int16_t i = ShownIndex(text, 3, [](int16_t k) { return std::string(listing::LinkText(k, false)); });
      if (i >= 0) editor_.link = i;
      break;
    }
    case kCondition: {
      const int16_t i =
          ShownIndex(text, 6, [](int16_t k) { return std::string(listing::ConditionText(k, false)); });
      if (i >= 0) editor_.condition = i;
      break;
    }
    case kOpenBracket: editor_.openBracket = Checked(text) ? "(" : ""; break;
    case kCloseBracket: editor_.closeBracket = Checked(text) ? ")" : ""; break;
    case kValue: editor_.value = text; break;
    case kWholeWord: editor_.wholeWord = Checked(text); break;
    case kCaseSensitive: editor_.caseSensitive = Checked(text); break;
    case kBeginsWith: editor_.beginsWith = Checked(text); break;
    case kWildcard: editor_.wildcard = Checked(text); break;
    case kInternalNames: internalNames_ = Checked(text); break;
    default: break;
  }
}

bool TFilterDialog::PressOk() {
  StoreRow();
  if (const listing::TDBFilterPartsItem* item = CurrentFilter()) filters_.currentFilter = item->name;
  return true;
}

listing::TDBFilterPartsItem* TFilterDialog::CurrentFilter() const {
  if (filter_ < 0 || static_cast<size_t>(filter_) >= filters_.filters.size()) return nullptr;
  return filters_.filters[static_cast<size_t>(filter_)].get();
}

std::vector<std::string> TFilterDialog::RowTexts() const {
  std::vector<std::string> texts;
  listing::TDBFilterPartsItem* item = CurrentFilter();
  if (item == nullptr) return texts;
  std::string text;
  for (listing::TDBFilterParts& row : item->rows) {
    listing::RowText(row, database_, text, false, !internalNames_, links_);
    texts.push_back(text);
  }
  return texts;
}

bool TFilterDialog::NameAcceptable(const std::string& name, const listing::TDBFilterPartsItem* self) {
  const char* refusal = nullptr;
  if (Blank(name)) {
    refusal = kInvalidTitle;
  } else if (const listing::TDBFilterPartsItem* other = filters_.Find(name); other != nullptr && other != self) {
    refusal = kTitleExists;
  }
  if (refusal == nullptr) return true;
  ui::StopMessage(parent_, refusal);
  return false;
}

bool TFilterDialog::NewFilter(const std::string& name) {
  if (!NameAcceptable(name, nullptr)) return false;
  StoreRow();
  auto item = std::make_unique<listing::TDBFilterPartsItem>();
  item->name = name;
  filters_.filters.push_back(std::move(item));
  ChooseFilter(static_cast<int32_t>(filters_.filters.size()) - 1);
  return true;
}

bool TFilterDialog::RenameFilter(const std::string& name) {
  listing::TDBFilterPartsItem* item = CurrentFilter();
  if (item == nullptr || !NameAcceptable(name, item)) return false;
  item->name = name;
  return true;
}

bool TFilterDialog::SelectFilter(const std::string& name) {
  const int32_t index = filters_.IndexOf(name);
  if (index < 0) return false;
  StoreRow();
  ChooseFilter(index);
  return true;
}

void TFilterDialog::DeleteFilter() {
  if (CurrentFilter() == nullptr) return;
  filters_.filters.erase(filters_.filters.begin() + filter_);
  row_ = -1;
  ChooseFilter(filters_.filters.empty() ? -1 : 0);
}

void TFilterDialog::NewRow() {
  listing::TDBFilterPartsItem* item = CurrentFilter();
  if (item == nullptr) return;
  StoreRow();
  listing::TDBFilterParts row;
  row.condition = listing::kEqual;
  row.fieldName = chosenField_;
  item->rows.push_back(row);
  row_ = static_cast<int32_t>(item->rows.size()) - 1;
  LoadRow();
}

bool TFilterDialog::SelectRow(int32_t index) {
  listing::TDBFilterPartsItem* item = CurrentFilter();
  if (item == nullptr || index < 0 || static_cast<size_t>(index) >= item->rows.size()) return false;
  StoreRow();
  row_ = index;
  LoadRow();
  return true;
}

void TFilterDialog::DeleteRow() {
  listing::TDBFilterPartsItem* item = CurrentFilter();
  if (item == nullptr || row_ < 0) return;
  item->rows.erase(item->rows.begin() + row_);
  if (static_cast<size_t>(row_) >= item->rows.size()) row_ = static_cast<int32_t>(item->rows.size()) - 1;
  LoadRow();
}

void TFilterDialog::StoreRow() {
  listing::TDBFilterPartsItem* item = CurrentFilter();
  if (item == nullptr || row_ < 0 || static_cast<size_t>(row_) >= item->rows.size()) return;
  listing::TDBFilterParts& row = item->rows[static_cast<size_t>(row_)];
  const uint8_t version = row.rowVersion;
  row = editor_;
  row.rowVersion = version;
  if (row.value.empty()) row.wholeWord = 1;
  editor_ = row;
}

void TFilterDialog::LoadRow() {
  listing::TDBFilterPartsItem* item = CurrentFilter();
  if (item == nullptr || row_ < 0 || static_cast<size_t>(row_) >= item->rows.size()) {
    row_ = -1;
    editor_ = listing::TDBFilterParts();
    return;
  }
  editor_ = item->rows[static_cast<size_t>(row_)];
  chosenField_ = editor_.fieldName;
}

void TFilterDialog::ChooseFilter(int32_t index) {
  filter_ = index;
  listing::TDBFilterPartsItem* item = CurrentFilter();
  row_ = item != nullptr && !item->rows.empty() ? 0 : -1;
  LoadRow();
}

}  // namespace verdal::dialogs
