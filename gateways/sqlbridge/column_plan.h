#pragma once
// ColumnPlan: which source columns an import writes, in which order and under which names. The
// path columns come first, in the order the definition names them; then the chosen columns (all
// when the caller names none), each under its new name.
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "exchange/import_exchange.h"

namespace verdal::sqlbridge {

struct ImportDefinition;

class ColumnPlan {
 public:
  // `source` has the source's column descriptions. `names1`/`names2` (fieldCount entries each,
  // names2 or its entries may be null) choose and rename columns; path columns are always taken
  // from the source, chosen or not. False, with the reason in `error`, for a name that is no
  // source column.
  bool Make(const std::vector<exchange::ImportColumn>& source,
            const std::vector<std::string>& pathColumns, int32_t fieldCount,
            const char* const* names1, const char* const* names2, std::string& error);

  // The exchange file's column descriptions.
  const std::vector<exchange::ImportColumn>& Columns() const { return columns_; }
  // The exchange file's header for these columns under a definition; the caller adds the link.
  exchange::ImportHeader Header(const ImportDefinition& definition) const;
  int16_t PathColumns() const { return pathColumns_; }
  // The cells of the exchange row from the source row's cells (as many as the source columns).
  void Arrange(const std::vector<std::string>& sourceCells, std::vector<std::string>& out) const;

  // The index of the column with this name in any letter case, or -1.
  static int32_t Find(const std::vector<exchange::ImportColumn>& columns, std::string_view name);

 private:
  std::vector<size_t> order_;  // source index per exchange column
  std::vector<exchange::ImportColumn> columns_;
  int16_t pathColumns_ = 0;
};

}  // namespace verdal::sqlbridge
