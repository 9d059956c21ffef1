#include "dialogs/table_print_page.h"

#include "dialogs/option_sheet.h"
#include "model/fields.h"
#include "options/option_containers.h"

namespace verdal::dialogs {

namespace {

const std::vector<std::string>& AlignmentNames() {
  static const std::vector<std::string> names{"Standard", "Links", "Zentriert", "Rechts"};
  return names;
}
constexpr int16_t kAlignmentValues[] = {options::kAlignByType, options::kAlignLeft, options::kAlignCentre,
                                        options::kAlignRight};

const char* Flag(bool on) { return on ? "1" : "0"; }

constexpr int32_t kPageFlags =
    options::kPrintSingleLine | options::kPrintNoPictures | options::kPrintFitWidth | options::kPrintIgnoreText;

}  // namespace

TTablePrintDialog::TTablePrintDialog(options::TPrintData& record, model::NodeStore& store,
                                     listing::TListAndSortDisplayFieldInfoMananger& lists, ui::Host& host,
                                     VerdalWindow parent, std::string title)
    : record_(record),
      store_(store),
      lists_(lists),
      host_(host),
      parent_(parent),
      title_(std::move(title)),
      choice_(OfferedFields(store, false), record.items),
      work_(record),
      sortOn_(!record.sortName.empty()) {}

options::TPrintItem TTablePrintDialog::DefaultItem(const std::string& field, const model::NodeStore& store) {
  options::TPrintItem item;
  item.fieldName = field;
  item.title = field;
  for (const auto& f : store.fields)
    if (f->name == field) item.title = f->ShownName();
  return item;
}

options::TPrintData TTablePrintDialog::DefaultRecord(const std::string& name, const model::NodeStore& store) {
  options::TPrintData record;
  record.name = name;
  for (const auto& f : store.fields)
    if (f->type.hiddenInLists == 0) record.items.push_back(DefaultItem(f->name, store));
  return record;
}

const options::TPrintItem* TTablePrintDialog::Selected() const {
  return const_cast<Choice&>(choice_).SelectedRow();
}

bool TTablePrintDialog::MayTotal(const options::TPrintItem& item) const {
  const model::TDBFieldInfo* field = model::FieldByName(store_, item.fieldName.c_str());
  if (field == nullptr) return false;
  const int16_t type = field->type.dataType;
  return type == model::kTypeNumber || type == model::kTypeYesNo || type == model::kTypeTime;
}

std::vector<std::string> TTablePrintDialog::SortNames() const {
  lists_.owner = 1;  // the sort definitions
  std::vector<std::string> names;
  for (int32_t i = 0; i < lists_.GetCount(); ++i) names.emplace_back(lists_.GetName(i));
  return names;
}

std::vector<ui::Control> TTablePrintDialog::Controls() const {
  using ui::ControlKind;
  std::vector<ui::Control> c = choice_.Controls("Verf\xFCgbare Felder:", "Gedruckte Spalten:");
  const options::TPrintItem* item = Selected();
  const bool any = item != nullptr;
  const bool widthOn = any && !(item->autoWidth != 0 && item->maxWidth == 0);
  const bool heightOn = any && !(item->autoHeight != 0 && item->maxHeight == 0);
  const bool total = any && MayTotal(*item);
  c.push_back({kAlignment, 0, ControlKind::kChoice, "Ausrichtung:", 0, AlignmentNames(), any});
  c.push_back({kTitle, 0, ControlKind::kEdit, "Spaltentitel:", 0, {}, any});
  c.push_back({kHeading, 0, ControlKind::kEdit, "\xDC\x62\x65rschrift:", 0, {}, any});
  c.push_back({kWidth, 0, ControlKind::kEdit, "Breite (mm):", 0, {}, widthOn});
  c.push_back({kHeight, 0, ControlKind::kEdit, "H\xF6he (mm):", 0, {}, heightOn});
  c.push_back({kAutoWidth, 0, ControlKind::kCheckBox, "Breite automatisch", 0, {}, any});
  c.push_back({kAutoHeight, 0, ControlKind::kCheckBox, "H\xF6he automatisch", 0, {}, any});
  c.push_back({kMaxWidth, 0, ControlKind::kCheckBox, "Breite als H\xF6\x63hstwert", 0, {}, any && item->autoWidth != 0});
  c.push_back({kMaxHeight, 0, ControlKind::kCheckBox, "H\xF6he als H\xF6\x63hstwert", 0, {}, any && item->autoHeight != 0});
  c.push_back({kTotal, 0, ControlKind::kCheckBox, "Summe", 0, {}, total});
  c.push_back({kSubtotals, 0, ControlKind::kCheckBox, "Zwischensummen", 0, {}, total && item->total != 0});
  c.push_back({kCentred, 0, ControlKind::kCheckBox, "Spalte zentrieren", 0, {}, any});
  c.push_back({kLineThickness, 0, ControlKind::kEdit, "Linienst\xE4rke (mm):"});
  c.push_back({kFreeSpace, 0, ControlKind::kEdit, "Abstand (mm):"});
  c.push_back({kSingleLine, 0, ControlKind::kCheckBox, "Einzeilige Ausgabe"});
  c.push_back({kPictures, 0, ControlKind::kCheckBox, "Bilder in der Vorschau"});
  c.push_back({kFitWidth, 0, ControlKind::kCheckBox, "An Seitenbreite anpassen"});
  c.push_back({kUseIgnoreText, 0, ControlKind::kCheckBox, "Text ignorieren"});
  c.push_back({kIgnoreText, 0, ControlKind::kEdit, "Zu ignorierender Text:"});
  c.push_back({kSort, 0, ControlKind::kCheckBox, "Sortieren"});
  c.push_back({kSortName, 0, ControlKind::kChoice, "Sortierung:", 0, SortNames(), sortOn_});
  c.push_back({kSortSettings, 0, ControlKind::kButton, "Einstellen...", 0, {}, sortOn_});
  c.push_back({kLineColour, 0, ControlKind::kEdit, "Linienfarbe:"});
  columnTitleFont_.Add(c);
  cellFont_.Add(c);
  return c;
}

std::string TTablePrintDialog::Text(int32_t control) const {
  std::string out;
  if (choice_.Text(control, out)) return out;
  if (columnTitleFont_.Text(work_.columnTitleFont, control, out)) return out;
  if (cellFont_.Text(work_.cellFont, control, out)) return out;
  const options::TPrintItem* item = Selected();
  switch (control) {
    case kLineThickness: return TwoDecimals(work_.lineThickness);
    case kFreeSpace: return TwoDecimals(work_.freeSpace);
    case kSingleLine: return Flag(work_.flags & options::kPrintSingleLine);
    case kPictures: return Flag(!(work_.flags & options::kPrintNoPictures));
    case kFitWidth: return Flag(work_.flags & options::kPrintFitWidth);
    case kUseIgnoreText: return Flag(work_.flags & options::kPrintIgnoreText);
    case kIgnoreText: return work_.ignoreText;
    case kSort: return Flag(sortOn_);
    case kSortName: return work_.sortName;
    case kLineColour: return std::to_string(work_.lineColour);
    default: break;
  }
  if (item == nullptr) return {};
  switch (control) {
    case kAlignment:
      for (size_t i = 0; i < AlignmentNames().size(); ++i)
        if (kAlignmentValues[i] == item->alignment) return AlignmentNames()[i];
      return {};
    case kTitle: return item->title;
    case kHeading: return item->heading;
    case kWidth: return TwoDecimals(item->width);
    case kHeight: return TwoDecimals(item->height);
    case kAutoWidth: return Flag(item->autoWidth);
    case kAutoHeight: return Flag(item->autoHeight);
    case kMaxWidth: return Flag(item->maxWidth);
    case kMaxHeight: return Flag(item->maxHeight);
    case kTotal: return Flag(item->total);
    case kSubtotals: return Flag(item->subtotals);
    case kCentred: return Flag(item->centred);
    default: return {};
  }
}

void TTablePrintDialog::SetText(int32_t control, const std::string& text) {
  if (choice_.SetText(control, text, [this](const std::string& field) { return DefaultItem(field, store_); }))
    return;
  if (columnTitleFont_.SetText(work_.columnTitleFont, control, text)) return;
  if (cellFont_.SetText(work_.cellFont, control, text)) return;
  const bool on = text == "1";
  auto setFlag = [this](int32_t bit, bool set) { work_.flags = set ? (work_.flags | bit) : (work_.flags & ~bit); };
  double number = 0;
  switch (control) {
    case kLineThickness:
      if (ParseNumber(text, number) && number >= 0) work_.lineThickness = number;
      return;
    case kFreeSpace:
      if (ParseNumber(text, number) && number >= 0) work_.freeSpace = number;
      return;
    case kSingleLine: setFlag(options::kPrintSingleLine, on); return;
    case kPictures: setFlag(options::kPrintNoPictures, !on); return;
    case kFitWidth: setFlag(options::kPrintFitWidth, on); return;
    case kUseIgnoreText: setFlag(options::kPrintIgnoreText, on); return;
    case kIgnoreText: work_.ignoreText = text; return;
    case kSort: sortOn_ = on; return;
    case kSortName:
      if (sortOn_ && ui::ItemIndex(SortNames(), text) >= 0) work_.sortName = text;
      return;
    case kSortSettings:
      if (sortOn_) ChooseSort();
      return;
    case kLineColour: {
      int32_t colour = 0;
      if (ParseInteger(text, colour) && colour >= 0 && colour <= 0xFFFFFF) work_.lineColour = colour;
      return;
    }
    default: break;
  }
  options::TPrintItem* item = choice_.SelectedRow();
  if (item == nullptr) return;
  switch (control) {
    case kAlignment: {
      const int32_t index = ui::ItemIndex(AlignmentNames(), text);
      if (index >= 0) item->alignment = kAlignmentValues[index];
      break;
    }
    case kTitle: item->title = text; break;
    case kHeading: item->heading = text; break;
    case kWidth:
      if (ParseNumber(text, number) && number >= 0 && !(item->autoWidth != 0 && item->maxWidth == 0))
        item->width = number;
      break;
    case kHeight:
      if (ParseNumber(text, number) && number >= 0 && !(item->autoHeight != 0 && item->maxHeight == 0))
        item->height = number;
      break;
    case kAutoWidth:
      item->autoWidth = on;
      if (!on) item->maxWidth = 0;
      break;
    case kAutoHeight:
      item->autoHeight = on;
      if (!on) item->maxHeight = 0;
      break;
    case kMaxWidth:
      if (item->autoWidth != 0) item->maxWidth = on;
      break;
    case kMaxHeight:
      if (item->autoHeight != 0) item->maxHeight = on;
      break;
    case kTotal:
      if (MayTotal(*item)) item->total = on;
      break;
    case kSubtotals:
      if (MayTotal(*item) && item->total != 0) item->subtotals = on;
      break;
    case kCentred: item->centred = on; break;
    default: break;
  }
}

// "Einstellen...": the sort options on the sort definitions; the one selected there
// when the sheet closes becomes the sort of this configuration.
void TTablePrintDialog::ChooseSort() {
  lists_.owner = 1;
  if (!work_.sortName.empty()) lists_.SetDefault(work_.sortName);
  RunOptionSheet(host_, parent_, "Sortierung", static_cast<int32_t>(options::OptionKind::kSort), lists_, store_);
  lists_.owner = 1;
  const int32_t index = lists_.IndexOf(lists_.GetDefault());
  if (index >= 0) work_.sortName = lists_.GetName(index);
}

bool TTablePrintDialog::Apply() {
  record_.items = choice_.Rows();
  record_.lineThickness = work_.lineThickness;
  record_.freeSpace = work_.freeSpace;
  record_.flags = (record_.flags & ~kPageFlags) | (work_.flags & kPageFlags);
  record_.ignoreText = work_.ignoreText;
  record_.sortName = sortOn_ ? work_.sortName : std::string();
  record_.columnTitleFont = work_.columnTitleFont;
  record_.cellFont = work_.cellFont;
  record_.lineColour = work_.lineColour;
  record_.kind = options::TPrintData::kTable;
  return true;
}

}  // namespace verdal::dialogs
