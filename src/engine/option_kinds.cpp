#include "engine/option_kinds.h"

#include "engine/last_error.h"
#include "model/fields.h"
#include "options/option_containers.h"

namespace verdal::engine {

using options::OptionKind;

options::TBaseConfigClass* ConfigCollection(TDBManager& db, int32_t kind, int32_t owner) {
  options::TBaseConfigClass* collection = nullptr;
  if (kind == static_cast<int32_t>(OptionKind::kSort)) {
    collection = &db.lists;
    owner = 1;  // the sort definitions; the list display ones are not options of their own
  } else {
    collection = db.options.ForKind(kind);
  }
  if (collection != nullptr) collection->owner = owner;
  return collection;
}

int32_t OptionCount(TDBManager& db, int32_t kind, int32_t owner) {
  switch (static_cast<OptionKind>(kind)) {
    case OptionKind::kFilter: return static_cast<int32_t>(db.filters.filters.size());
    case OptionKind::kPrint: return db.prints.GetCount();
    default: break;
  }
  options::TBaseConfigClass* collection = ConfigCollection(db, kind, owner);
  return collection != nullptr ? collection->GetCount() : 0;
}

const char* OptionName(TDBManager& db, int32_t kind, int32_t index, int32_t owner) {
  switch (static_cast<OptionKind>(kind)) {
    case OptionKind::kFilter:
      return index >= 0 && static_cast<size_t>(index) < db.filters.filters.size()
                 ? db.filters.filters[index]->name.c_str()
                 : nullptr;
    case OptionKind::kPrint: return db.prints.GetName(index);
    default: break;
  }
  options::TBaseConfigClass* collection = ConfigCollection(db, kind, owner);
  return collection != nullptr ? collection->GetName(index) : nullptr;
}

const std::string* OptionDefault(TDBManager& db, int32_t kind, int32_t owner) {
  switch (static_cast<OptionKind>(kind)) {
    case OptionKind::kFilter: return &db.filters.currentFilter;
    case OptionKind::kPrint: return &db.prints.currentPrintConfig;
    default: break;
  }
  options::TBaseConfigClass* collection = ConfigCollection(db, kind, owner);
  return collection != nullptr ? &collection->GetDefault() : nullptr;
}

bool SetOptionDefault(TDBManager& db, int32_t kind, const std::string& name, int32_t owner) {
  switch (static_cast<OptionKind>(kind)) {
    case OptionKind::kFilter: db.filters.currentFilter = name; return true;
    case OptionKind::kPrint: db.prints.currentPrintConfig = name; return true;
    default: break;
  }
  options::TBaseConfigClass* collection = ConfigCollection(db, kind, owner);
  if (collection != nullptr) collection->SetDefault(name);
  return collection != nullptr;
}

std::vector<std::string> FieldViewFields(TDBManager& db, int32_t index, int32_t owner) {
  std::vector<std::string> names;
  db.options.fieldViews.owner = owner;
  const options::TDBFieldConfigData* view = db.options.fieldViews.At(index);
  if (view == nullptr) return names;
  for (const std::string& name : view->fields)
    if (model::FieldByName(db.store, name.c_str()) != nullptr) names.push_back(name);
  return names;
}

void CopyOptions(const TDBManager& source, TDBManager& target) {
  target.lists.CopyFrom(source.lists);
  target.filters.CopyFrom(source.filters);
  target.options = source.options;
  target.prints.records = source.prints.records;
  target.prints.currentPrintConfig = source.prints.currentPrintConfig;
}

bool OptionSheetOpen::MayChange(TDBManager& db) {
  if (db.openSheets == 0) return true;
  SetLastError(VERDAL_ERR_TARGET);
  return false;
}

}  // namespace verdal::engine
