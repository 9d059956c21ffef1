#include "exchange/import_builder.h"

#include <algorithm>
#include <stdexcept>
#include <unordered_set>

#include "model/fields.h"
#include "model/number_text.h"
#include "model/place_walk.h"
#include "platform/collation.h"

namespace verdal::exchange {

using namespace model;

namespace {

std::string_view Trim(std::string_view text) {
  const size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

// Ids run out only after two thousand million objects; the import cannot go on then.
void Need(bool ok) {
  if (!ok) throw std::runtime_error("no id left");
}

}  // namespace

ImportBuilder::ImportBuilder(NodeStore& store, const ImportHeader& header, int32_t flags,
                             VerdalProgressFn progress)
    : store_(store), header_(header), flags_(flags), progress_(progress) {}

bool ImportBuilder::NamesRepeat(const ImportHeader& header) {
  std::unordered_set<std::string> seen;
  for (size_t i = static_cast<size_t>(header.pathColumns); i < header.columns.size(); ++i) {
    const std::string& name = header.columns[i].name;
    if (!platform::SameNameNoCase(name, kNodeIdColumn) && !seen.insert(platform::NameKeyNoCase(name)).second)
      return true;
  }
  return false;
}

bool ImportBuilder::PrepareColumns() {
  const bool byName = (header_.mode == kModeUpdate || header_.mode == kModeAdd) && !store_.fields.empty();
  const size_t count = header_.columns.size();
  columnTypes_.assign(count, TDataTypeInfo{});
  fieldPositions_.assign(count, -1);
  for (size_t i = 0; i < count; ++i) {
    const ImportColumn& column = header_.columns[i];
    columnTypes_[i].SqlToType(column.sqlType, column.decimals);
    if (i < static_cast<size_t>(header_.pathColumns)) continue;
    if (platform::SameNameNoCase(column.name, kNodeIdColumn)) {
      nodeIdColumn_ = static_cast<int32_t>(i);
      continue;
    }
    if (byName) {
      TDBFieldInfo* field = FieldByName(store_, column.name.c_str());
      if (field == nullptr) {
        if (!platform::SameNameNoCase(column.name, header_.freeColumn)) return false;
        continue;
      }
      fieldPositions_[i] = field->position;
      if (field->type.dataType != columnTypes_[i].dataType) columnTypes_[i] = field->type;
      continue;
    }
    TDBFieldInfo field;
    field.name = field.displayName = column.name;
    field.type = columnTypes_[i];
    if (header_.mode == kModeLinked && platform::SameNameNoCase(column.name, header_.identityField)) {
      field.type.dataType = kTypeNumber;
      field.type.decimals = 0;
      field.type.isCounter = 1;
      identityColumn_ = static_cast<int32_t>(i);
      columnTypes_[i] = field.type;
    }
    if (store_.fields.size() >= kMaxFields) return false;
    const int32_t index = AddFieldInfo(store_, field, -1);
    fieldPositions_[i] = store_.fields[static_cast<size_t>(index)]->position;
  }
  return true;
}

void ImportBuilder::EnterExistingCategories() {
  // Depth-first, so each level holds a category's parent before the category itself.
  std::vector<const TDBCategoryData*> places;
  TDBNode* root = &store_.MainView().root;
  CollectPlaces(store_, root, places, kKindCategories, true, false, nullptr, false);
  for (const TDBCategoryData* place : places) {
    const TDBCategoryRecord* rec = store_.categories.Find(place->categoryId);
    if (rec == nullptr || place->node == nullptr) continue;
    size_t depth = 0;
    for (const TDBNode* up = place->node->parent; up != nullptr && up != root; up = up->parent) ++depth;
    const int32_t parentId = rec->parentId < 0 ? -1 : rec->parentId;
    if (helper_.Find(depth, rec->name, parentId) == TImportHelper::kNone)
      helper_.Enter(depth, rec->name, parentId, rec->id);
  }
}

void ImportBuilder::ConvertCell(size_t column, std::string& cell) {
  if ((flags_ & kImportRaw) == 0) columnTypes_[column].ToInternal(cell, cell, false, nullptr);
}

void ImportBuilder::AddRow(std::vector<std::string>& cells, int32_t rowKey, int32_t rowIndex) {
  pathValues_.clear();
  std::string nodeId;
  for (size_t i = 0; i < cells.size(); ++i) {
    if (static_cast<int32_t>(i) == identityColumn_) {
      const long double value = ReadNumber(cells[i]);
      if (!anyIdentity_ || value > largestIdentity_) largestIdentity_ = value;
      anyIdentity_ = true;
    }
    ConvertCell(i, cells[i]);
    if (static_cast<int32_t>(i) == nodeIdColumn_) nodeId = cells[i];
    else if (i < static_cast<size_t>(header_.pathColumns)) pathValues_.push_back(cells[i]);
  }
  if (header_.mode == kModeUpdate && !nodeId.empty()) {
    const int32_t cursor = ReadInteger(nodeId);
    TDBCategoryData* place = cursor >= 0 ? LookupPlace(store_, cursor) : nullptr;
    if (place != nullptr) {
      UpdateExisting(*place, cells);
      return;
    }
  }
  AddUnderPath(cells, rowKey);
  if (rowIndex > 0 && progress_ != nullptr && header_.rowCount > 0)
    progress_(static_cast<int32_t>(int64_t{rowIndex} * 100 / header_.rowCount));
}

void ImportBuilder::UpdateExisting(TDBCategoryData& place, std::vector<std::string>& cells) {
  TDBDataRecord* data = DataOf(store_, &place);
  if (data == nullptr) {
    data = CreateDataRecord(store_, "", -1);
    Need(data != nullptr);
    place.dataId = data->id;
    place.data = data;
  }
  data->imported = true;
  for (size_t i = 0; i < cells.size(); ++i) {
    const int32_t position = fieldPositions_[i];
    if (position >= 0 && static_cast<size_t>(position) < data->values.size())
      data->values.Set(static_cast<size_t>(position), cells[i]);
  }
  for (auto it = pathValues_.rbegin(); it != pathValues_.rend(); ++it) {
    const std::string_view title = Trim(*it);
    if (title.empty()) continue;
    TDBCategoryRecord* rec = place.isCategory ? store_.categories.Find(place.categoryId) : nullptr;
    if (rec != nullptr) rec->name = rec->displayName = StoredName(title);
    else data->SetTitle(StoredName(title));
    break;
  }
}

void ImportBuilder::AddUnderPath(std::vector<std::string>& cells, int32_t rowKey) {
  int32_t parentId = -1;
  bool complete = true;
  for (size_t level = 0; level < pathValues_.size(); ++level) {
    const std::string name(Trim(pathValues_[level]));
    if (name.empty()) {
      complete = level == 0;
      break;
    }
    int32_t id = helper_.Find(level, name, parentId);
    if (id == TImportHelper::kNone) {
      id = MakeCategory(name, parentId, rowKey);
      helper_.Enter(level, name, parentId, id);
    }
    parentId = id;
  }
  if (pathValues_.empty() || complete) {
    // The values by field position; fields that no column fills get a new record's value.
    size_t slots = 0;
    for (const auto& field : store_.fields) slots = std::max(slots, static_cast<size_t>(field->position + 1));
    recordValues_.assign(slots, std::string());
    std::vector<bool> filled(slots, false);
    for (size_t i = 0; i < cells.size(); ++i) {
      const int32_t position = fieldPositions_[i];
      if (position < 0 || static_cast<size_t>(position) >= slots) continue;
      recordValues_[static_cast<size_t>(position)] = std::move(cells[i]);
      filled[static_cast<size_t>(position)] = true;
    }
    for (const auto& field : store_.fields)
      if (field->position >= 0 && !filled[static_cast<size_t>(field->position)])
        recordValues_[static_cast<size_t>(field->position)] = field->type.NewRecordValue();
    MakeRecord(parentId, rowKey);
  }
}

int32_t ImportBuilder::MakeCategory(const std::string& name, int32_t parentId, int32_t rowKey) {
  TDBCategoryRecord rec;
  Need(TakeId(store_.nextCategoryId, rec.id));
  rec.parentId = parentId;
  rec.name = rec.displayName = StoredName(name);
  rec.imported = true;
  const int32_t id = rec.id;
  Need(store_.categories.Insert(id, std::move(rec)) != nullptr);
  TDBDataRecord* data = CreateDataRecord(store_, "", rowKey);
  Need(data != nullptr);
  data->imported = true;
  TDBCategoryData* place = CreatePlace(store_, id, data->id, true, false);
  Need(place != nullptr);
  place->imported = true;
  added_.push_back(place);
  return id;
}

void ImportBuilder::MakeRecord(int32_t parentId, int32_t rowKey) {
  std::vector<std::string_view> views(recordValues_.begin(), recordValues_.end());
  TDBDataRecord* data = CreateDataRecordWith(store_, "", rowKey, views.data(), views.size());
  Need(data != nullptr);
  data->imported = true;
  TDBCategoryData* place = CreatePlace(store_, parentId, data->id, false, false);
  Need(place != nullptr);
  place->imported = true;
  added_.push_back(place);
}

void ImportBuilder::Finish() {
  if (header_.mode == kModeLinked && identityColumn_ >= 0) {
    if (TDBFieldInfo* field = FieldByName(store_, header_.columns[static_cast<size_t>(identityColumn_)].name.c_str()))
      field->type.counterValue = largestIdentity_;
  }
  if (!added_.empty()) {
    AttachPlaces(store_, added_, false);
    Renumber(store_);
  }
}

}  // namespace verdal::exchange
