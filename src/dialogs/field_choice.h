#pragma once
// TFieldChoice: the two lists of a page that chooses fields, the offered fields not yet chosen on
// the left and the chosen rows in their order on the right, each with a selection, and the six
// buttons between them. Both the field selection of the options and the list display and sort
// page use it; what a row holds beyond its field is the page's (`Row`).
//
// The left list is worked out from the offered fields each time, so a field moved back from the
// right returns to its place in field order, and a row whose field no longer exists is never
// offered again once removed. A button acts only where it is enabled.
#include <algorithm>
#include <cstdint>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

#include "listing/list_display.h"
#include "model/node_store.h"
#include "platform/collation.h"
#include "ui/host.h"

namespace verdal::dialogs {

// The field a row names.
inline const std::string& RowField(const std::string& row) { return row; }
inline const std::string& RowField(const listing::TListAndSortDisplayFieldInfoData& row) {
  return row.fieldName;
}

// The names of the fields a user may choose, in field order: none hidden in lists or hidden
// altogether, and with alsoSort none hidden in sorts.
std::vector<std::string> OfferedFields(const model::NodeStore& store, bool alsoSort);

// The labels of the choice's buttons, in the order of their ids from kAdd on.
extern const char* const kFieldChoiceButtons[6];

template <class Row>
class TFieldChoice {
 public:
  enum ControlId : int32_t { kAvailable = 1, kChosen, kAdd, kAddAll, kRemove, kClear, kUp, kDown };
  static constexpr int32_t kLastId = kDown;

  // The first row is selected, no field on the left.
  TFieldChoice(std::vector<std::string> offered, std::vector<Row> rows)
      : offered_(std::move(offered)), rows_(std::move(rows)), chosen_(rows_.empty() ? -1 : 0) {}

  // The offered fields that no row names, ignoring case, in field order.
  std::vector<std::string> Available() const {
    std::unordered_set<std::string> taken;
    for (const Row& row : rows_) taken.insert(platform::NameKeyNoCase(RowField(row)));
    std::vector<std::string> left;
    for (const std::string& name : offered_)
      if (taken.count(platform::NameKeyNoCase(name)) == 0) left.push_back(name);
    return left;
  }
  std::vector<std::string> ChosenNames() const {
    std::vector<std::string> names;
    for (const Row& row : rows_) names.push_back(RowField(row));
    return names;
  }
  const std::vector<Row>& Rows() const { return rows_; }
  Row* SelectedRow() { return Valid(chosen_, rows_.size()) ? &rows_[static_cast<size_t>(chosen_)] : nullptr; }

  bool Enabled(int32_t id) const { return Enabled(id, Available().size()); }

  std::vector<ui::Control> Controls(const char* availableLabel, const char* chosenLabel) const {
    std::vector<std::string> left = Available();
    const size_t leftCount = left.size();
    std::vector<ui::Control> controls;
    controls.push_back({kAvailable, 0, ui::ControlKind::kList, availableLabel, 0, std::move(left)});
    controls.push_back({kChosen, 0, ui::ControlKind::kList, chosenLabel, 0, ChosenNames()});
    for (int32_t id = kAdd; id <= kLastId; ++id)
      controls.push_back({id, 0, ui::ControlKind::kButton, kFieldChoiceButtons[id - kAdd], 0, {}, Enabled(id, leftCount)});
    return controls;
  }

  // The selected field or row of a list; "" for a button. False for an id that is not the choice's.
  bool Text(int32_t id, std::string& out) const {
    if (id < kAvailable || id > kLastId) return false;
    out.clear();
    if (id == kAvailable) {
      const std::vector<std::string> left = Available();
      if (Valid(available_, left.size())) out = left[static_cast<size_t>(available_)];
    } else if (id == kChosen && Valid(chosen_, rows_.size())) {
      out = RowField(rows_[static_cast<size_t>(chosen_)]);
    }
    return true;
  }

  // Selects in a list or presses a button; `make` makes the row for a field that "-->" or "Alle"
  // moves right. False for an id that is not the choice's.
  template <class Make>
  bool SetText(int32_t id, const std::string& text, Make&& make) {
    if (id < kAvailable || id > kLastId) return false;
    if (id == kAvailable || id == kChosen) {
      const std::vector<std::string> items = id == kAvailable ? Available() : ChosenNames();
      const int32_t index = ui::ItemIndex(items, text);
      if (index >= 0 || text.empty()) (id == kAvailable ? available_ : chosen_) = index;
      return true;
    }
    if (!Enabled(id)) return true;
    switch (id) {
      case kAdd: {
        const std::string field = Available()[static_cast<size_t>(available_)];
        const int32_t at = Valid(chosen_, rows_.size()) ? chosen_ + 1 : static_cast<int32_t>(rows_.size());
        rows_.insert(rows_.begin() + at, make(field));
        chosen_ = at;
        available_ = Clamp(available_, Available().size());
        break;
      }
      case kAddAll:
        for (const std::string& field : Available()) rows_.push_back(make(field));
        if (chosen_ < 0) chosen_ = 0;
        available_ = -1;
        break;
      case kRemove:
        rows_.erase(rows_.begin() + chosen_);
        chosen_ = Clamp(chosen_, rows_.size());
        available_ = Clamp(available_, Available().size());
        break;
      case kClear:
        rows_.clear();
        chosen_ = -1;
        break;
      case kUp:
      case kDown: {
        const int32_t to = chosen_ + (id == kUp ? -1 : 1);
        std::swap(rows_[static_cast<size_t>(chosen_)], rows_[static_cast<size_t>(to)]);
        chosen_ = to;
        break;
      }
    }
    return true;
  }

 private:
  // `left`: how many fields the left list holds.
  bool Enabled(int32_t id, size_t left) const {
    switch (id) {
      case kAdd: return Valid(available_, left);
      case kAddAll: return left > 0;
      case kRemove: return Valid(chosen_, rows_.size());
      case kClear: return !rows_.empty();
      case kUp: return Valid(chosen_, rows_.size()) && chosen_ > 0;
      case kDown: return Valid(chosen_, rows_.size()) && chosen_ + 1 < static_cast<int32_t>(rows_.size());
      default: return true;
    }
  }
  static bool Valid(int32_t index, size_t size) { return index >= 0 && static_cast<size_t>(index) < size; }
  // The same place, or the last one when the list got shorter; -1 for an empty list.
  static int32_t Clamp(int32_t index, size_t size) {
    if (size == 0) return -1;
    return std::min(index, static_cast<int32_t>(size) - 1);
  }

  std::vector<std::string> offered_;
  std::vector<Row> rows_;
  int32_t available_ = -1;
  int32_t chosen_;
};

}  // namespace verdal::dialogs
