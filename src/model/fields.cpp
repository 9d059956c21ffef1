#include "model/fields.h"

#include <vector>

#include "platform/collation.h"
#include "platform/trace.h"

namespace verdal::model {

namespace {

int32_t g_nextSerial = 0;

}  // namespace

TDBFieldInfo::TDBFieldInfo() : serial(g_nextSerial++) {}

TDBFieldInfo* FieldByName(NodeStore& store, const char* name, int32_t* index) {
  if (name == nullptr) return nullptr;
  const int32_t i = store.fieldNames.Find(store.fields, name);
  if (i < 0) return nullptr;
  if (index != nullptr) *index = i;
  return store.fields[static_cast<size_t>(i)].get();
}

int32_t FieldIndexByName(NodeStore& store, const char* name, bool givePosition,
                         const TDBDataRecord* record) {
  if (name == nullptr) return -1;
  const int32_t first = store.fieldNames.Find(store.fields, name);
  if (first < 0 || !givePosition) return first;
  // A name that a damaged file holds twice: a later field may still have a value in the record.
  for (size_t i = static_cast<size_t>(first); i < store.fields.size(); ++i) {
    const TDBFieldInfo& f = *store.fields[i];
    if (i != static_cast<size_t>(first) && !platform::SameNameNoCase(f.name, name)) continue;
    if (record != nullptr && (f.position < 0 || static_cast<size_t>(f.position) >= record->values.size()))
      continue;
    return f.position;
  }
  return -1;
}

int32_t AddFieldInfo(NodeStore& store, const TDBFieldInfo& pattern, int32_t index) {
  auto field = std::make_unique<TDBFieldInfo>();
  int32_t serial = field->serial;
  *field = pattern;
  field->serial = serial;
  int32_t position = static_cast<int32_t>(store.fields.size());
  bool anyRecord = false;
  store.data.ForEach([&](int32_t, TDBDataRecord* record) {
    record->values.PushBack(field->type.NewRecordValue());
    int32_t took = static_cast<int32_t>(record->values.size()) - 1;
    position = anyRecord ? std::max(position, took) : took;
    anyRecord = true;
  });
  field->position = static_cast<int16_t>(position);
  if (index < 0 || static_cast<size_t>(index) > store.fields.size())
    index = static_cast<int32_t>(store.fields.size());
  store.fields.insert(store.fields.begin() + index, std::move(field));
  store.fieldNames.Added(store.fields, static_cast<size_t>(index));
  return index;
}

int32_t MoveField(NodeStore& store, int32_t from, int32_t to) {
  auto& fields = store.fields;
  if (from < 0 || static_cast<size_t>(from) >= fields.size()) return -1;
  std::unique_ptr<TDBFieldInfo> field = std::move(fields[static_cast<size_t>(from)]);
  fields.erase(fields.begin() + from);
  if (to < 0 || static_cast<size_t>(to) > fields.size()) to = static_cast<int32_t>(fields.size());
  fields.insert(fields.begin() + to, std::move(field));
  store.fieldNames.Invalidate();
  return to;
}

void RemoveField(NodeStore& store, int32_t index) {
  auto& fields = store.fields;
  if (index < 0 || static_cast<size_t>(index) >= fields.size()) return;
  int32_t p = fields[static_cast<size_t>(index)]->position;
  fields.erase(fields.begin() + index);
  store.fieldNames.Invalidate();
  store.data.ForEach([&](int32_t, TDBDataRecord* record) {
    if (fields.empty())
      record->values.Clear();
    else if (p >= 0)
      record->values.Erase(static_cast<size_t>(p));
  });
  if (p < 0) return;  // it held no value in any record
  for (auto& f : fields)
    if (f->position >= p) --f->position;
}

void RepairFieldPositions(NodeStore& store) {
  size_t n = store.fields.size();
  std::vector<bool> free(n, true);
  for (const auto& f : store.fields)
    if (f->position >= 0 && static_cast<size_t>(f->position) < n) free[static_cast<size_t>(f->position)] = false;
  for (auto& f : store.fields) {
    if (f->position < 0 || static_cast<size_t>(f->position) < n) continue;
    platform::Trace("Correcting Invalid FieldPos: %d", f->position);
    size_t p = 0;
    while (p < n && !free[p]) ++p;
    if (p == n) {
      platform::Trace("No Correction");
      continue;
    }
    free[p] = false;
    platform::Trace("OK:%d-->%d", f->position, static_cast<int32_t>(p));
    f->position = static_cast<int16_t>(p);
  }
}

}  // namespace verdal::model
