#pragma once
// ExportSource: the rows an export writes, read from the engine's export exchange file (and, with
// category columns, its companion file of paths) through read-ahead windows, with the columns the
// definition chooses: the category columns first, then the chosen fields in their order.
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "exchange/export_exchange.h"
#include "export_definition.h"
#include "io/fileex.h"
#include "io/read_ahead_file.h"
#include "odbc_values.h"

namespace verdal::sqlbridge {

struct OutputColumn {
  std::string name;        // as the target shows it: the display or the internal name
  int16_t sqlType = 12;
  int32_t width = 1;
  // What its texts are: a field's kind by its SQL type where internal values are exported; text
  // for display texts and for a category column.
  ValueKind kind = ValueKind::kText;
  int32_t category = -1;   // a category column's level from the top (0, 1, ...), else -1
  size_t field = 0;        // a field column's place among the exchange file's fields
};

class ExportSource {
 public:
  enum class Status { kRow, kEnd, kDamaged };

  // Reads the header of the exchange file at `exchangePath`, and opens the companion file beside
  // it when `categories` is set and the file is there. False, with the reason in `error`, for a
  // damaged header, a choice of fields that names no field, or nothing to export.
  bool Open(const std::string& exchangePath, bool categories, const ExportDefinition& definition,
            std::string& error);

  const std::vector<OutputColumn>& Columns() const { return columns_; }
  int32_t Rows() const { return header_.rowCount; }

  // Reads the next row. kEnd after the last, once both files are seen to end there; kDamaged for
  // a file cut short, longer than its rows, or whose counts cannot be right.
  Status Next();
  // The present row's text of a column: a category's name, or a field's display text or internal
  // value as the definition chooses. NUL-terminated.
  const std::string& Text(size_t column) const;
  // Whether the rows have their paths (the companion file is read).
  bool HasPaths() const { return paths_ != nullptr; }
  // The present row's depth in the tree: the number of names of its path less one; 0 without
  // the companion.
  int32_t Depth() const { return names_.empty() ? 0 : static_cast<int32_t>(names_.size()) - 1; }

 private:
  struct Stream {
    TFileEx file;
    std::unique_ptr<TReadAheadFile> in;
    bool Open(const std::string& path);
  };

  exchange::ExportHeader header_;
  std::vector<OutputColumn> columns_;
  bool displayValues_ = true;
  Stream exchange_;
  std::unique_ptr<Stream> paths_;
  int32_t row_ = 0;
  std::vector<std::string> internal_, display_, names_;
  const std::string empty_;
};

// Calls row() for every row of the source; false, with the reason in `error`, where the files are
// damaged or row() says false (having set `error`).
template <class Row>
bool ForEachRow(ExportSource& source, Row&& row, std::string& error) {
  for (;;) {
    const ExportSource::Status status = source.Next();
    if (status == ExportSource::Status::kEnd) return true;
    if (status == ExportSource::Status::kDamaged) {
      error = "The exchange file is damaged: cut short, longer than its rows, or of counts that cannot be.";
      return false;
    }
    if (!row()) return false;
  }
}

}  // namespace verdal::sqlbridge
