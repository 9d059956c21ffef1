#include "text_import.h"

#include <cstdio>
#include <cstdlib>

#include "column_plan.h"
#include "exchange/import_exchange.h"
#include "platform/cp1252.h"

namespace verdal::sqlbridge {
namespace {

// A cell of the identity column as a row key: digits only, at most 2^31-1.
bool ParseKey(const std::string& cell, int32_t& key) {
  if (cell.empty() || cell.size() > 10) return false;
  int64_t value = 0;
  for (char c : cell) {
    if (c < '0' || c > '9') return false;
    value = value * 10 + (c - '0');
  }
  if (value > INT32_MAX) return false;
  key = static_cast<int32_t>(value);
  return true;
}

void ToCodePage(std::string& text, bool utf8, std::string& scratch) {
  if (!utf8) return;
  cp1252::FromUtf8(text, scratch);
  text.swap(scratch);
}

}  // namespace

bool FileIsUtf8(const std::string& path) {
  FILE* file = std::fopen(path.c_str(), "rb");
  if (file == nullptr) return false;
  std::string chunk;
  std::string carry;
  bool valid = true;
  char buffer[1 << 16];
  for (size_t n; valid && (n = std::fread(buffer, 1, sizeof buffer, file)) > 0;) {
    chunk = carry;
    chunk.append(buffer, n);
    // Hold back a sequence that the next piece may complete: from the last byte that is not a
    // continuation byte, looking at most three bytes back.
    size_t cut = chunk.size();
    for (size_t back = 0; back < 4 && cut > 0; ++back) {
      const auto b = static_cast<unsigned char>(chunk[cut - 1]);
      --cut;
      if ((b & 0xC0) != 0x80) break;
    }
    if (cut < chunk.size() && static_cast<unsigned char>(chunk[cut]) < 0x80) cut = chunk.size();
    valid = cp1252::IsUtf8(std::string_view(chunk).substr(0, cut));
    carry = chunk.substr(cut);
  }
  valid = valid && !std::ferror(file) && cp1252::IsUtf8(carry);
  std::fclose(file);
  return valid;
}

bool ImportTextSource(const ImportDefinition& definition, const ImportTarget& target,
                      std::string& error) {
  const bool utf8 = definition.charset == Charset::kUtf8 ||
                    (definition.charset == Charset::kAuto && FileIsUtf8(definition.dataSource));
  CsvReader reader(definition.format);
  if (!reader.Open(definition.dataSource.c_str())) {
    error = "The text file " + definition.dataSource + " cannot be opened.";
    return false;
  }
  std::string scratch;
  std::vector<std::string> cells;
  std::vector<exchange::ImportColumn> source;
  if (definition.columnLine) {
    const CsvReader::Status status = reader.Next(cells);
    if (status != CsvReader::Status::kRecord) {
      error = "The text file " + definition.dataSource + " has no column line.";
      return false;
    }
    for (std::string& name : cells) {
      ToCodePage(name, utf8, scratch);
      source.push_back({name, 12, -1});
    }
  } else {
    for (const std::string& name : definition.sourceFields) source.push_back({name, 12, -1});
  }

  ColumnPlan plan;
  if (!plan.Make(source, definition.pathColumns, target.fieldCount, target.names1, target.names2,
                 error))
    return false;
  int32_t identity = -1;
  if (definition.mode == exchange::kModeLinked && !definition.identityField.empty()) {
    identity = ColumnPlan::Find(source, definition.identityField);
    if (identity < 0) {
      error = "The identity field " + definition.identityField + " is no column of the file.";
      return false;
    }
  }

  const exchange::ImportHeader header = plan.Header(definition);
  exchange::ImportExchangeWriter writer;
  if (!writer.Open(target.exchangePath.c_str(), header)) {
    error = "The exchange file " + target.exchangePath + " cannot be created.";
    return false;
  }
  std::vector<std::string> row;
  for (int64_t line = 1;; ++line) {
    const CsvReader::Status status = reader.Next(cells);
    if (status == CsvReader::Status::kEnd) break;
    if (status == CsvReader::Status::kReadError) {
      error = "The text file " + definition.dataSource + " cannot be read to its end.";
      return false;
    }
    if (status == CsvReader::Status::kUnterminated) {
      error = "The text file " + definition.dataSource + " ends inside a delimited value.";
      return false;
    }
    cells.resize(source.size());
    for (std::string& cell : cells) ToCodePage(cell, utf8, scratch);
    int32_t key = -1;
    if (identity >= 0 && !ParseKey(cells[static_cast<size_t>(identity)], key)) {
      error = "Record " + std::to_string(line) + " has no whole number in " +
              definition.identityField + ": \"" + cells[static_cast<size_t>(identity)] + "\".";
      return false;
    }
    if (writer.Rows() == INT32_MAX) {
      error = "The text file has more rows than an import takes.";
      return false;
    }
    plan.Arrange(cells, row);
    writer.WriteRow(row, key);
  }
  if (!writer.Finish()) {
    error = "The exchange file " + target.exchangePath + " cannot be written.";
    return false;
  }
  return true;
}

}  // namespace verdal::sqlbridge
