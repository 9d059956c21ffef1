#include "exchange/import_helper.h"

#include <cstring>

#include "platform/collation.h"

namespace verdal::exchange {

std::string TImportHelper::ExactKey(std::string_view name, int32_t parentId) {
  std::string key(sizeof parentId, '\0');
  std::memcpy(key.data(), &parentId, sizeof parentId);
  key.append(name);
  return key;
}

void TImportHelper::Remember(Level& l, std::string_view name, int32_t parentId, int32_t categoryId) {
  l.lastName.assign(name);
  l.lastParent = parentId;
  l.lastId = categoryId;
}

int32_t TImportHelper::Find(size_t level, std::string_view name, int32_t parentId) {
  if (level >= levels_.size()) return kNone;
  Level& l = levels_[level];
  if (l.lastId != kNone && l.lastParent == parentId && l.lastName == name) return l.lastId;
  auto hit = l.exact.find(ExactKey(name, parentId));
  if (hit != l.exact.end()) {
    Remember(l, name, parentId, hit->second);
    return hit->second;
  }
  for (const Entry& e : l.entries)
    if (e.parentId == parentId && platform::SameNameNoCase(e.name, name)) {
      // Remembered under this spelling too, so its next row is found by the hash.
      l.exact.emplace(ExactKey(name, parentId), e.categoryId);
      Remember(l, name, parentId, e.categoryId);
      return e.categoryId;
    }
  return kNone;
}

void TImportHelper::Enter(size_t level, std::string_view name, int32_t parentId, int32_t categoryId) {
  if (level >= levels_.size()) levels_.resize(level + 1);
  Level& l = levels_[level];
  l.entries.push_back({std::string(name), parentId, categoryId});
  l.exact.emplace(ExactKey(name, parentId), categoryId);
  Remember(l, name, parentId, categoryId);
}

}  // namespace verdal::exchange
