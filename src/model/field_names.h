#pragma once
// Lookup of a field's index by name, regardless of case, in constant time: a host may define
// thousands of fields, and every new one is first looked up. The index follows the field list
// lazily: whoever reorders, removes or renames fields calls Invalidate, and the next lookup
// rebuilds it; a field appended at the end is noted with Added.
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "model/field_info.h"

namespace verdal::model {

// Counts the announced changes of the field lists of all databases (Added, Invalidate): what is
// worked out from field definitions across databases, such as the chains of link fields, may be
// kept while it stands still. Whoever changes a field in place (its name, where a link leads) must
// call Invalidate too.
uint64_t FieldListEpoch();

class FieldNameIndex {
 public:
  using FieldList = std::vector<std::unique_ptr<TDBFieldInfo>>;

  // The lowest index whose name equals name regardless of case, or -1.
  int32_t Find(const FieldList& fields, std::string_view name);
  // The field at index, the last of the list, was just appended.
  void Added(const FieldList& fields, size_t index);
  void Invalidate();

 private:
  void Build(const FieldList& fields);
  bool Current(const FieldList& fields) const;

  std::unordered_map<std::string, int32_t> first_;  // name key -> lowest index
  // The last name found, as written: links ask for the same name at every value they show, and
  // its collation key costs more than the rest of the lookup.
  std::string lastName_;
  int32_t lastIndex_ = -1;
  size_t count_ = 0;
  unsigned generation_ = 0;
  bool built_ = false;
};

}  // namespace verdal::model
