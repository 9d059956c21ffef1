#include "model/field_names.h"

#include "platform/collation.h"

namespace verdal::model {
namespace {
uint64_t g_fieldListEpoch = 0;
}  // namespace

uint64_t FieldListEpoch() { return g_fieldListEpoch; }

void FieldNameIndex::Invalidate() {
  built_ = false;
  ++g_fieldListEpoch;
}

bool FieldNameIndex::Current(const FieldList& fields) const {
  // The count guards against a change that was not announced; a rename is caught at the hit.
  return built_ && count_ == fields.size() && generation_ == platform::CollationGeneration();
}

void FieldNameIndex::Build(const FieldList& fields) {
  first_.clear();
  first_.reserve(fields.size());
  generation_ = platform::CollationGeneration();
  for (size_t i = 0; i < fields.size(); ++i)
    first_.emplace(platform::NameKeyNoCase(fields[i]->name), static_cast<int32_t>(i));
  count_ = fields.size();
  built_ = true;
  lastIndex_ = -1;
}

void FieldNameIndex::Added(const FieldList& fields, size_t index) {
  ++g_fieldListEpoch;
  if (built_ && count_ + 1 == fields.size() && index + 1 == fields.size() &&
      generation_ == platform::CollationGeneration()) {
    first_.emplace(platform::NameKeyNoCase(fields[index]->name), static_cast<int32_t>(index));
    count_ = fields.size();
    return;
  }
  built_ = false;
}

int32_t FieldNameIndex::Find(const FieldList& fields, std::string_view name) {
  if (lastIndex_ >= 0 && Current(fields) && name == lastName_ &&
      static_cast<size_t>(lastIndex_) < fields.size() && fields[static_cast<size_t>(lastIndex_)]->name == name)
    return lastIndex_;
  for (int pass = 0; pass < 2; ++pass) {
    if (!Current(fields)) Build(fields);
    auto it = first_.find(platform::NameKeyNoCase(name));
    if (it == first_.end()) return -1;
    const auto i = static_cast<size_t>(it->second);
    if (i < fields.size() && platform::SameNameNoCase(fields[i]->name, name)) {
      lastName_.assign(name);
      lastIndex_ = it->second;
      return it->second;
    }
    Invalidate();  // a field was renamed or moved without notice
  }
  // Keys that agree on names the comparison tells apart: ask the comparison itself.
  for (size_t i = 0; i < fields.size(); ++i)
    if (platform::SameNameNoCase(fields[i]->name, name)) return static_cast<int32_t>(i);
  return -1;
}

}  // namespace verdal::model
