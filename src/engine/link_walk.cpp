#include "engine/link_walk.h"

#include <string>

#include "engine/db_manager.h"

namespace verdal::engine {
namespace {

struct LinkTarget {
  std::string tableFile;
  std::string tableField;
  uint32_t flags = 0;
};

// Field definitions do not carry link targets yet, so no field leads anywhere.
bool LinkOf(const model::TDBFieldInfo&, LinkTarget&) { return false; }

void Cut(TDBRecursChecker* chain, int32_t depth) {
  if (chain != nullptr && depth > 1) chain->cut = true;
}

}  // namespace

void WalkLinks(TDBManager* db, std::vector<TDBRecursChecker>& /*chains*/, int32_t fieldIndex,
               TDBRecursChecker* chain, int32_t depth) {
  ++depth;
  if (db == nullptr) {
    Cut(chain, depth);
    return;
  }
  const auto& fields = db->store.fields;
  for (size_t i = 0; i < fields.size(); ++i) {
    if (fieldIndex != -1 && static_cast<int32_t>(i) != fieldIndex) continue;
    LinkTarget target;
    if (!LinkOf(*fields[i], target)) continue;
    // Opening the target and following it on lands with link fields.
    Cut(chain, depth);
  }
}

}  // namespace verdal::engine
