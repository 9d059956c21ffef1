#include "engine/link_walk.h"

#include <algorithm>
#include <string>

#include "engine/database_call.h"
#include "engine/db_manager.h"
#include "engine/handle_table.h"
#include "engine/last_error.h"
#include "engine/lifecycle.h"
#include "engine/pool_manager.h"
#include "engine/settings.h"
#include "model/fields.h"
#include "platform/file_system.h"

namespace verdal::engine {
namespace {

// Chains longer than this are cut: every step is a frame of the walk, and no real set of
// databases links that deep.
constexpr int32_t kMaxDepth = 256;

// The folder part of a file name, with its separator; empty for a bare name.
std::string FolderOf(const std::string& name) {
  const size_t slash = name.find_last_of("/\\");
  return slash == std::string::npos ? std::string() : name.substr(0, slash + 1);
}

void Cut(TDBRecursChecker* chain, int32_t depth) {
  if (chain != nullptr && depth > 1) chain->cut = true;
}

const model::TDataTypeInfo* LinkType(TDBManager& db, int32_t fieldIndex) {
  if (fieldIndex < 0 || static_cast<size_t>(fieldIndex) >= db.store.fields.size()) return nullptr;
  const model::TDataTypeInfo& type = db.store.fields[static_cast<size_t>(fieldIndex)]->type;
  if (type.dataType != model::kTypeLink || type.linkDatabase.empty() || type.linkField.empty())
    return nullptr;
  return &type;
}

uint64_t g_linksEpoch = 0;

}  // namespace

void LinksChanged() { ++g_linksEpoch; }
uint64_t LinksEpoch() { return g_linksEpoch; }

TDBManager* OpenLinkedDatabase(TDBManager& db, int32_t fieldIndex, bool* diskTouched) {
  const model::TDataTypeInfo* type = LinkType(db, fieldIndex);
  if (type == nullptr) return nullptr;
  const bool local = Switches().tryResolveLocally || (type->flags & 1) != 0;
  if (local && !db.fileName.empty()) {
    // Databases moved together find each other again beside the one that links.
    std::string here = FolderOf(db.fileName) + platform::FileNamePart(type->linkDatabase.c_str());
    if (here != type->linkDatabase) {
      if (diskTouched != nullptr) *diskTouched = true;
      if (Pool().FindByName(here.c_str()) != 0 || platform::FileExists(here.c_str())) {
        db.store.fields[static_cast<size_t>(fieldIndex)]->type.linkDatabase = std::move(here);
        db.store.fieldNames.Invalidate();  // where the link leads has changed
      }
    }
  }
  // Shown values ask at every value: a database open already is found without building a name.
  if (uint32_t h = Pool().FindByName(type->linkDatabase.c_str())) return Handles().Lookup(h);
  if (diskTouched != nullptr) *diskTouched = true;

  const std::string name = type->linkDatabase;  // the host may change fields while asked below
  const std::string folder = FolderOf(db.fileName);
  OpenRequest r;
  r.fileName = name.c_str();
  r.search = local;
  r.searchFolder = folder.c_str();
  r.sizeClass = 1;
  r.readOnly = db.readOnly;
  r.refuseReadOnly = true;
  r.mayCreate = false;
  // A link that cannot be followed is not an error of the call that follows it.
  const VerdalError before = static_cast<VerdalError>(LastError());
  const uint32_t h = OpenDatabase(r);
  SetLastError(before);
  return h != 0 ? Handles().Lookup(h) : nullptr;
}

void WalkLinks(TDBManager* db, std::vector<TDBRecursChecker>& chains, int32_t fieldIndex,
               TDBRecursChecker* chain, int32_t depth) {
  ++depth;
  if (db == nullptr || depth > kMaxDepth) {
    Cut(chain, depth);
    return;
  }
  // Opening a linked database may ask the host for its password, and the host may call back in:
  // this database stays whole until the walk has left it.
  DatabaseCall call(*db);
  for (size_t i = 0; i < db->store.fields.size(); ++i) {
    const int32_t index = static_cast<int32_t>(i);
    if (fieldIndex != -1 && index != fieldIndex) continue;
    if (LinkType(*db, index) == nullptr) continue;
    bool diskTouched = false;
    TDBManager* target = OpenLinkedDatabase(*db, index, &diskTouched);
    const model::TDataTypeInfo* type = LinkType(*db, index);  // the host may have changed fields
    if (target == nullptr || type == nullptr) {
      Cut(chain, depth);
      continue;
    }
    if (chain != nullptr && depth > 1 &&
        std::find(chain->handles.begin(), chain->handles.end(), target->Handle()) != chain->handles.end()) {
      Cut(chain, depth);
      continue;
    }
    int32_t targetField = -1;
    if (model::FieldByName(target->store, type->linkField.c_str(), &targetField) == nullptr) {
      Cut(chain, depth);
      continue;
    }
    TDBRecursChecker* current = chain;
    if (depth < 2) {
      chains.push_back(TDBRecursChecker{{db->Handle()}, {index}, false});
      current = &chains.back();  // only this level appends, and not while below it
    }
    current->handles.push_back(target->Handle());
    current->fields.push_back(targetField);
    current->fromPool = current->fromPool && !diskTouched;
    WalkLinks(target, chains, targetField, current, depth);
  }
}

}  // namespace verdal::engine
