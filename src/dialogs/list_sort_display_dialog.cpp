#include "dialogs/list_sort_display_dialog.h"

#include <cmath>
#include <cstring>
#include <limits>
#include <memory>

#include "model/fields.h"
#include "model/number_text.h"

namespace verdal::dialogs {

namespace {

struct Alignment {
  const char* text;
  uint8_t code;
};
constexpr Alignment kAlignments[] = {
    {"Standard", listing::TListAndSortDisplayFieldInfoData::kAlignFromType},
    {"Links", 0},
    {"Zentriert", 2},
    {"Rechts", 1},
};

const char* AlignmentText(uint8_t code) {
  for (const Alignment& a : kAlignments)
    if (a.code == code) return a.text;
  return "";  // a code no choice stands for is kept until another is chosen
}

std::vector<std::string> AlignmentTexts() {
  std::vector<std::string> texts;
  for (const Alignment& a : kAlignments) texts.emplace_back(a.text);
  return texts;
}

bool Checked(const std::string& text) { return !text.empty() && text != "0"; }
const char* CheckText(bool on) { return on ? "1" : "0"; }

// The box "Breite:" holds a number, cut to an integer. A text that holds no number, or one past
// the range of a width, leaves the width as it was: a half-typed entry must not zero a column.
bool ReadWidth(const std::string& text, int32_t& width) {
  size_t i = text.find_first_not_of(" \t");
  if (i == std::string::npos) return false;
  if (text[i] == '+' || text[i] == '-') ++i;
  if (i < text.size() && text[i] == '.') ++i;
  if (i >= text.size() || text[i] < '0' || text[i] > '9') return false;
  const long double value = std::trunc(model::ReadNumber(text));
  if (value < std::numeric_limits<int32_t>::min() || value > std::numeric_limits<int32_t>::max()) return false;
  width = static_cast<int32_t>(value);
  return true;
}

listing::TListSortAndDisplayFieldInfo* FindOrAdd(listing::TListAndSortDisplayFieldInfoMananger& lists,
                                                 model::NodeStore& store, const std::string& name,
                                                 bool sortFace) {
  const auto kind = sortFace ? listing::DefinitionKind::kSort : listing::DefinitionKind::kListDisplay;
  if (auto* found = lists.FindDefinition(name, kind)) return found;
  auto definition = std::make_unique<listing::TListSortAndDisplayFieldInfo>();
  definition->kind = static_cast<uint8_t>(kind);
  definition->name = name;
  for (const std::string& field : OfferedFields(store, sortFace)) {
    listing::TListAndSortDisplayFieldInfoData item;
    item.fieldName = field;
    item.displayName = model::FieldByName(store, field.c_str())->ShownName();
    definition->items.push_back(std::move(item));
  }
  lists.Append(std::move(definition));
  return lists.FindDefinition(options::TrimTrailingBlanks(name), kind);
}

}  // namespace

TListSortAndDisplayDialog::TListSortAndDisplayDialog(listing::TListAndSortDisplayFieldInfoMananger& lists,
                                                     model::NodeStore& store, const std::string& name,
                                                     bool sortFace)
    : store_(store),
      sortFace_(sortFace),
      definition_(FindOrAdd(lists, store, name, sortFace)),
      choice_(OfferedFields(store, sortFace), definition_ != nullptr ? definition_->items : std::vector<Item>()) {
  if (definition_ != nullptr && sortFace_) {
    ignoreCategories_ = definition_->ignoreCategories;
    notifyControls_ = definition_->notifyControls;
  }
  ShowRow();
}

std::string TListSortAndDisplayDialog::Title() const { return sortFace_ ? "Sortierung" : "Listenanzeige"; }

std::vector<ui::Control> TListSortAndDisplayDialog::Controls() const {
  using ui::ControlKind;
  std::vector<ui::Control> controls = choice_.Controls(
      "Verf\xFC" "gbare Datenfelder:", sortFace_ ? "Zu sortierende Datenfelder:" : "Darzustellende Datenfelder:");
  if (sortFace_) {
    controls.push_back({kAscending, 0, ControlKind::kCheckBox, "Aufsteigend"});
    controls.push_back({kStringSort, 0, ControlKind::kCheckBox, "Punktuation als Symbol behandeln"});
    controls.push_back({kNotifyControls, 0, ControlKind::kCheckBox, "Kontrollelemente benachrichtigen"});
  } else {
    controls.push_back({kAlignment, 0, ControlKind::kChoice, "Ausrichtung:", 0, AlignmentTexts()});
    controls.push_back({kDisplayName, 0, ControlKind::kEdit, "Anzeigename:"});
    controls.push_back({kWidth, 0, ControlKind::kEdit, "Breite:"});
    controls.push_back({kReadOnly, 0, ControlKind::kCheckBox, "Schreibgesch\xFCtzt"});
  }
  return controls;
}

std::string TListSortAndDisplayDialog::Text(int32_t control) const {
  std::string text;
  if (choice_.Text(control, text)) return text;
  switch (control) {
    case kAscending: return CheckText(ascending_);
    case kStringSort: return CheckText(stringSort_);
    case kIgnoreCategories: return CheckText(ignoreCategories_);
    case kNotifyControls: return CheckText(notifyControls_);
    case kAlignment: return AlignmentText(alignment_);
    case kDisplayName: return displayName_;
    case kWidth: return width_;
    case kReadOnly: return CheckText(readOnly_);
    default: return {};
  }
}

void TListSortAndDisplayDialog::SetText(int32_t control, const std::string& text) {
  const bool picked = choice_.SetText(control, text, [&](const std::string& field) {
    return MakeRow(field, control == Choice::kAdd);
  });
  if (picked)
    ShowRow();
  else
    SetDetail(control, text);
}

bool TListSortAndDisplayDialog::Apply() {
  if (definition_ == nullptr) return true;
  definition_->items = choice_.Rows();
  if (sortFace_) {
    definition_->ignoreCategories = ignoreCategories_;
    definition_->notifyControls = notifyControls_;
  }
  return true;
}

TListSortAndDisplayDialog::Item TListSortAndDisplayDialog::MakeRow(const std::string& field, bool fromCheckBoxes) {
  Item row;
  row.fieldName = field;
  if (const model::TDBFieldInfo* info = model::FieldByName(store_, field.c_str())) row.displayName = info->ShownName();
  if (sortFace_ && fromCheckBoxes) {
    row.ascending = ascending_;
    row.stringSort = stringSort_;
  }
  return row;
}

void TListSortAndDisplayDialog::ShowRow() {
  const Item* row = choice_.SelectedRow();
  if (row == nullptr) return;
  filling_ = true;
  if (sortFace_) {
    SetDetail(kAscending, CheckText(row->ascending));
    SetDetail(kStringSort, CheckText(row->stringSort));
  } else {
    SetDetail(kAlignment, AlignmentText(row->alignment));
    alignment_ = row->alignment;  // also a code that no choice stands for
    SetDetail(kDisplayName, row->displayName);
    SetDetail(kWidth, std::to_string(row->width));
    SetDetail(kReadOnly, CheckText(row->readOnly));
  }
  filling_ = false;
}

void TListSortAndDisplayDialog::SetDetail(int32_t control, const std::string& text) {
  Item* row = filling_ ? nullptr : choice_.SelectedRow();
  switch (control) {
    case kAscending:
      ascending_ = Checked(text);
      if (row != nullptr && sortFace_) row->ascending = ascending_;
      break;
    case kStringSort:
      stringSort_ = Checked(text);
      if (row != nullptr && sortFace_) row->stringSort = stringSort_;
      break;
    case kIgnoreCategories: ignoreCategories_ = Checked(text); break;
    case kNotifyControls: notifyControls_ = Checked(text); break;
    case kAlignment:
      for (const Alignment& a : kAlignments) {
        if (text != a.text) continue;
        alignment_ = a.code;
        if (row != nullptr && !sortFace_) row->alignment = a.code;
      }
      break;
    case kDisplayName:
      displayName_ = text;
      if (row != nullptr && !sortFace_) row->displayName = text;
      break;
    case kWidth:
      width_ = text;
      if (row != nullptr && !sortFace_) ReadWidth(text, row->width);
      break;
    case kReadOnly:
      readOnly_ = Checked(text);
      if (row != nullptr && !sortFace_) row->readOnly = readOnly_;
      break;
    default: break;
  }
}

}  // namespace verdal::dialogs
