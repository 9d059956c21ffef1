#include "engine/database_links.h"

#include "engine/db_manager.h"
#include "engine/handle_table.h"
#include "engine/link_walk.h"
#include "model/field_info.h"
#include "model/field_names.h"
#include "model/fields.h"
#include "model/node_store.h"
#include "platform/trace.h"

namespace verdal::engine {
namespace {

model::TDBFieldInfo* FieldAt(TDBManager& db, int32_t index) {
  if (index < 0 || static_cast<size_t>(index) >= db.store.fields.size()) return nullptr;
  return db.store.fields[static_cast<size_t>(index)].get();
}

}  // namespace

bool ReadChain(TDBManager& db, int32_t fieldIndex, TDBRecursChecker& chain, const char* context) {
  model::TDBFieldInfo* field = FieldAt(db, fieldIndex);
  if (field == nullptr || field->type.dataType != model::kTypeLink) return false;
  const TDBRecursChecker* sound = db.links.SoundChain(fieldIndex);
  if (sound == nullptr) {
    platform::Trace("Error in %s: Invalid Crossdata in Table '%s-->%s', Field %d.", context,
                    db.fileName.c_str(), field->type.linkDatabase.c_str(), fieldIndex);
    return false;
  }
  chain = *sound;
  return true;
}

bool ResolveField(TDBManager& db, int32_t fieldIndex, TDBManager*& lastDatabase,
                  model::TDBFieldInfo*& lastField) {
  TDBRecursChecker chain;
  if (!ReadChain(db, fieldIndex, chain, "ResolveField()")) return false;
  lastDatabase = Handles().Lookup(chain.handles.back());
  lastField = FieldAt(*lastDatabase, chain.fields.back());
  return lastField != nullptr;
}

const TDBRecursChecker* DatabaseLinks::SoundChain(int32_t fieldIndex) {
  if (fieldIndex < 0 || static_cast<size_t>(fieldIndex) >= db_.store.fields.size()) return nullptr;
  const size_t at = static_cast<size_t>(fieldIndex);
  if (at < kept_.size() && kept_[at].kept && kept_[at].linksEpoch == LinksEpoch() &&
      kept_[at].fieldsEpoch == model::FieldListEpoch())
    return &kept_[at].chain;
  std::vector<TDBRecursChecker> chains;
  WalkLinks(&db_, chains, fieldIndex, nullptr, 0);
  bool sound = chains.size() == 1 && !chains[0].cut && chains[0].handles.size() >= 2;
  // A database of the chain may have been closed by a host called while it was opened.
  for (size_t i = 0; sound && i < chains[0].handles.size(); ++i)
    sound = Handles().Lookup(chains[0].handles[i]) != nullptr;
  // The walk may have called the host, which may have changed this database's fields.
  if (at >= db_.store.fields.size()) return nullptr;
  if (kept_.size() < db_.store.fields.size()) kept_.resize(db_.store.fields.size());
  KeptChain& k = kept_[at];
  k.kept = false;
  if (!sound) return nullptr;
  k.chain = std::move(chains[0]);
  k.kept = k.chain.fromPool;
  k.linksEpoch = LinksEpoch();
  k.fieldsEpoch = model::FieldListEpoch();
  return &k.chain;
}

bool DatabaseLinks::LinkChain(const model::TDataTypeInfo& linkField, std::vector<Hop>& hops) {
  const TDBRecursChecker* chain = SoundChain(FieldIndexOf(linkField));
  if (chain == nullptr) return false;
  hops.clear();
  for (size_t i = 0; i < chain->handles.size(); ++i) {
    TDBManager* db = Handles().Lookup(chain->handles[i]);
    if (db == nullptr) return false;
    hops.push_back(Hop{&db->links, chain->fields[i]});
  }
  return true;
}

bool DatabaseLinks::LinkTarget(const model::TDataTypeInfo& linkField, model::TLinkResolver*& database,
                               const model::TDataTypeInfo*& field) {
  const int32_t index = FieldIndexOf(linkField);
  TDBManager* target = index >= 0 ? OpenLinkedDatabase(db_, index) : nullptr;
  if (target == nullptr) return false;
  int32_t targetIndex = -1;
  const model::TDBFieldInfo* found = model::FieldByName(target->store, linkField.linkField.c_str(), &targetIndex);
  if (found == nullptr) return false;
  database = &target->links;
  field = &found->type;
  return true;
}

model::TDataTypeInfo* DatabaseLinks::FieldType(int32_t fieldIndex) {
  model::TDBFieldInfo* field = FieldAt(db_, fieldIndex);
  return field != nullptr ? &field->type : nullptr;
}

int32_t DatabaseLinks::FieldIndexOf(const model::TDataTypeInfo& type) const {
  const auto& fields = db_.store.fields;
  for (size_t i = 0; i < fields.size(); ++i)
    if (&fields[i]->type == &type) return static_cast<int32_t>(i);
  return -1;
}

bool DatabaseLinks::StoredValue(int32_t nodeId, int32_t fieldIndex, std::string& out) {
  std::optional<std::string_view> value = model::FieldValue(db_.store, nodeId, fieldIndex);
  if (!value) return false;
  out.assign(*value);
  return true;
}

std::string_view DatabaseLinks::Name() const { return db_.fileName; }

}  // namespace verdal::engine
