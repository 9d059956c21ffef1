#pragma once
// TImportHelper: the categories an import knows, one list per level of the path, so that a path
// element is found by its name (regardless of case) and its parent's id. The last answer of a
// level is kept, for consecutive rows of one category; names met again with the same bytes are
// found by a hash; only a name in another spelling walks the level's list in order.
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace verdal::exchange {

class TImportHelper {
 public:
  // The category id of the first entry at the level with that name and parent, -3 if none.
  int32_t Find(size_t level, std::string_view name, int32_t parentId);
  void Enter(size_t level, std::string_view name, int32_t parentId, int32_t categoryId);

  static constexpr int32_t kNone = -3;

 private:
  struct Entry {
    std::string name;
    int32_t parentId;
    int32_t categoryId;
  };
  struct Level {
    std::vector<Entry> entries;
    std::unordered_map<std::string, int32_t> exact;  // parent id bytes + name -> category id
    // The last answer: rows of one category come one after another.
    std::string lastName;
    int32_t lastParent = kNone;
    int32_t lastId = kNone;
  };
  static void Remember(Level& l, std::string_view name, int32_t parentId, int32_t categoryId);
  static std::string ExactKey(std::string_view name, int32_t parentId);
  std::vector<Level> levels_;
};

}  // namespace verdal::exchange
