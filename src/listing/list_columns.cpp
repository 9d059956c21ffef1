#include "listing/list_columns.h"

#include "model/data_type_info.h"
#include "model/fields.h"

namespace verdal::listing {

namespace {

constexpr int32_t kDefaultFieldWidth = 24;

// A host is told left, right or centred: a link field that cannot be followed shows as text.
uint8_t AlignmentOf(const model::TDBFieldInfo& field, model::TLinkResolver* links) {
  const int shown = field.type.DisplayClass(links);
  return shown == model::kDisplayNumber || shown == model::kDisplayFixed ? static_cast<uint8_t>(shown) : 0;
}

model::TDBFieldInfo* FieldAt(model::NodeStore& store, int32_t index) {
  return index >= 0 && static_cast<size_t>(index) < store.fields.size() ? store.fields[index].get() : nullptr;
}

TListSortAndDisplayFieldInfo* Find(const TListAndSortDisplayFieldInfoMananger& lists, const char* name,
                                   DefinitionKind kind) {
  return name != nullptr ? lists.FindDefinition(name, kind) : nullptr;
}

}  // namespace

int32_t ColumnCount(const TListAndSortDisplayFieldInfoMananger& lists, model::NodeStore& store,
                    const char* name) {
  if (name == nullptr) return static_cast<int32_t>(store.fields.size());
  const auto* d = Find(lists, name, DefinitionKind::kListDisplay);
  return d != nullptr ? static_cast<int32_t>(d->items.size()) : -2;
}

int32_t Column(const TListAndSortDisplayFieldInfoMananger& lists, model::NodeStore& store,
               const char* name, int32_t index, ListColumn& out, model::TLinkResolver* links) {
  if (name == nullptr) {
    const model::TDBFieldInfo* field = FieldAt(store, index);
    if (field == nullptr) return -5;
    out = ListColumn{AlignmentOf(*field, links), field->type.readOnly != 0, kDefaultFieldWidth,
                     field->name.c_str(), field->ShownName().c_str(), index};
    return 1;
  }
  const auto* d = Find(lists, name, DefinitionKind::kListDisplay);
  if (d == nullptr) return -2;
  if (index < 0 || static_cast<size_t>(index) >= d->items.size()) return -3;
  const TListAndSortDisplayFieldInfoData& item = d->items[index];
  int32_t fieldIndex = -1;
  const model::TDBFieldInfo* field = model::FieldByName(store, item.fieldName.c_str(), &fieldIndex);
  if (field == nullptr) return -5;
  const uint8_t alignment =
      item.alignment == TListAndSortDisplayFieldInfoData::kAlignFromType ? AlignmentOf(*field, links) : item.alignment;
  const std::string& heading = item.displayName.empty() ? item.fieldName : item.displayName;
  out = ListColumn{alignment, item.readOnly || field->type.readOnly != 0, item.width, item.fieldName.c_str(),
                   heading.c_str(), fieldIndex};
  return 1;
}

int32_t SetColumnWidth(TListAndSortDisplayFieldInfoMananger& lists, model::NodeStore& store,
                       const char* name, int32_t index, int32_t width) {
  auto* d = Find(lists, name, DefinitionKind::kListDisplay);
  if (d == nullptr) return -2;
  if (index < 0 || static_cast<size_t>(index) >= d->items.size()) return -3;
  auto& item = d->items[index];
  if (model::FieldByName(store, item.fieldName.c_str()) == nullptr) return -5;
  item.width = width;
  return 1;
}

int32_t SortTop(const TListAndSortDisplayFieldInfoMananger& lists, model::NodeStore& store,
                const char* name, int32_t* fieldIndexOut, int32_t* ascendingOut) {
  const auto* d = Find(lists, name, DefinitionKind::kSort);
  if (d == nullptr) return -2;
  // Without items a sort runs ascending, so that is what the host is told.
  const bool ascending = d->items.empty() || d->items[0].ascending;
  if (ascendingOut != nullptr) *ascendingOut = ascending ? 1 : 0;
  if (fieldIndexOut != nullptr)
    *fieldIndexOut = d->items.empty() ? -1 : model::FieldIndexByName(store, d->items[0].fieldName.c_str());
  return 1;
}

int32_t SetSortTop(TListAndSortDisplayFieldInfoMananger& lists, model::NodeStore& store,
                   const char* name, int32_t fieldIndex, bool ascending, bool mustExist, bool& changed) {
  changed = false;
  if (name == nullptr) return -2;
  const model::TDBFieldInfo* field = FieldAt(store, fieldIndex);
  if (field == nullptr) return -3;
  if (TListSortAndDisplayFieldInfo* d = lists.FindDefinition(name, DefinitionKind::kSort)) {
    changed = true;
    return PutSortFieldFirst(*d, fieldIndex, field->name, ascending, [&](const std::string& fieldName) {
      return model::FieldIndexByName(store, fieldName.c_str());
    });
  }
  if (mustExist) return -2;
  const std::string trimmed = options::TrimTrailingBlanks(name);
  if (trimmed.empty() || lists.FindDefinition(trimmed, DefinitionKind::kSort) != nullptr) return -2;
  auto d = std::make_unique<TListSortAndDisplayFieldInfo>();
  d->kind = static_cast<uint8_t>(DefinitionKind::kSort);
  d->name = trimmed;
  TListAndSortDisplayFieldInfoData item;
  item.fieldName = field->name;
  item.displayName = field->ShownName();
  item.ascending = ascending;
  d->items.push_back(std::move(item));
  lists.Append(std::move(d));
  changed = true;
  return 1;
}

}  // namespace verdal::listing
