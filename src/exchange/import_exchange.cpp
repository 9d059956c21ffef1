#include "exchange/import_exchange.h"

#include <cstdlib>

#include "io/memfile.h"
#include "io/read_ahead_file.h"
#include "io/stream_io.h"

namespace verdal::exchange {

bool ParseRowKey(const std::string& text, int32_t& key) {
  if (text.empty() || text.size() > 11) return false;
  char* end = nullptr;
  const long value = std::strtol(text.c_str(), &end, 10);
  if (*end != '\0' || value < INT32_MIN || value > INT32_MAX) return false;
  key = static_cast<int32_t>(value);
  return true;
}

bool CheckImportExchange(TBaseFile& file) {
  try {
    file.SeekToBegin();
    const int32_t length = file.GetLength();
    if (length < 0) return false;
    TReadAheadFile in(file, length);
    ImportHeader header;
    ReadImportHeader(in, header);
    // Each row takes 4 bytes per column at least, and 5 more for its key in mode 3.
    const int64_t rowBytes = int64_t{4} * static_cast<int64_t>(header.columns.size()) +
                             (header.mode == kModeLinked ? 5 : 0);
    // Rows of no bytes cannot be counted against the file: a bridge never writes them, and a
    // damaged count would make thousands of millions of empty records.
    if (rowBytes == 0 ? header.rowCount > 0 : !CountFits(in, header.rowCount, rowBytes)) return false;
    std::vector<std::string> cells;
    int32_t key = 0;
    for (int32_t row = 0; row < header.rowCount; ++row) ReadImportRow(in, header, cells, key);
    const bool atEnd = BytesLeft(in) == 0;
    file.SeekToBegin();
    return atEnd;
  } catch (...) {
    return false;
  }
}

bool ImportExchangeWriter::Open(const char* path, const ImportHeader& header) {
  if (!out_.Open(path)) return false;
  mode_ = header.mode;
  rows_ = 0;
  out_.PutInt32(0);  // the row count, written at Finish
  out_.PutInt32(header.connection);
  out_.PutInt16(header.backEnd);
  out_.PutString(header.databaseName);
  out_.PutString(header.tableName);
  out_.PutString(header.identityField);
  out_.PutInt16(static_cast<int16_t>(header.columns.size()));
  out_.PutInt16(header.pathColumns);
  out_.PutString(header.freeColumn);
  out_.PutInt16(header.mode);
  for (const ImportColumn& c : header.columns) {
    out_.PutString(c.name);
    out_.PutInt16(c.sqlType);
    out_.PutInt16(c.decimals);
  }
  return true;
}

void ImportExchangeWriter::WriteRow(const std::vector<std::string>& cells, int32_t rowKey) {
  for (const std::string& cell : cells) out_.PutString(cell);
  if (mode_ == kModeLinked) out_.PutString(std::to_string(rowKey));
  ++rows_;
}

bool ImportExchangeWriter::Finish() { return out_.FinishWithLeadingCount(rows_); }

}  // namespace verdal::exchange
