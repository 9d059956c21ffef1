#include "column_plan.h"

#include <strings.h>

#include <algorithm>

#include "import_definition.h"

namespace verdal::sqlbridge {

int32_t ColumnPlan::Find(const std::vector<exchange::ImportColumn>& columns, std::string_view name) {
  for (size_t i = 0; i < columns.size(); ++i)
    if (columns[i].name.size() == name.size() &&
        strncasecmp(columns[i].name.data(), name.data(), name.size()) == 0)
      return static_cast<int32_t>(i);
  return -1;
}

bool ColumnPlan::Make(const std::vector<exchange::ImportColumn>& source,
                      const std::vector<std::string>& pathColumns, int32_t fieldCount,
                      const char* const* names1, const char* const* names2, std::string& error) {
  order_.clear();
  columns_.clear();
  std::vector<bool> taken(source.size(), false);
  for (const std::string& name : pathColumns) {
    const int32_t i = Find(source, name);
    if (i < 0) {
      error = "The path column " + name + " is no column of the source.";
      return false;
    }
    if (taken[static_cast<size_t>(i)]) continue;
    taken[static_cast<size_t>(i)] = true;
    order_.push_back(static_cast<size_t>(i));
    columns_.push_back(source[static_cast<size_t>(i)]);
  }
  pathColumns_ = static_cast<int16_t>(order_.size());

  if (fieldCount > 0 && names1 != nullptr) {
    for (int32_t n = 0; n < fieldCount; ++n) {
      const char* name = names1[n] != nullptr ? names1[n] : "";
      const int32_t i = Find(source, name);
      if (i < 0) {
        error = std::string("The column ") + name + " is no column of the source.";
        return false;
      }
      if (taken[static_cast<size_t>(i)]) continue;
      taken[static_cast<size_t>(i)] = true;
      order_.push_back(static_cast<size_t>(i));
      columns_.push_back(source[static_cast<size_t>(i)]);
      if (names2 != nullptr && names2[n] != nullptr) columns_.back().name = names2[n];
    }
  } else {
    for (size_t i = 0; i < source.size(); ++i) {
      if (taken[i]) continue;
      order_.push_back(i);
      columns_.push_back(source[i]);
    }
  }
  if (columns_.size() > 32767) {
    error = "The source has more than 32767 columns.";
    return false;
  }
  return true;
}

void ColumnPlan::Arrange(const std::vector<std::string>& sourceCells,
                         std::vector<std::string>& out) const {
  out.resize(order_.size());
  for (size_t i = 0; i < order_.size(); ++i) {
    const size_t from = order_[i];
    if (from < sourceCells.size()) out[i] = sourceCells[from];
    else out[i].clear();
  }
}

exchange::ImportHeader ColumnPlan::Header(const ImportDefinition& definition) const {
  exchange::ImportHeader header;
  header.identityField = definition.identityField;
  header.pathColumns = PathColumns();
  header.freeColumn = definition.freeColumn;
  header.mode = static_cast<int16_t>(definition.mode);
  header.columns = Columns();
  return header;
}

}  // namespace verdal::sqlbridge
