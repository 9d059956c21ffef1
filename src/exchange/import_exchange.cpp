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

ImportExchangeWriter::~ImportExchangeWriter() { file_.Close(); }

bool ImportExchangeWriter::Open(const char* path, const ImportHeader& header) {
  if (!file_.Open(path, TFileEx::kReadWrite | TFileEx::kCreate | TFileEx::kTruncate)) return false;
  mode_ = header.mode;
  rows_ = 0;
  failed_ = false;
  TMemFile head(4096);
  WriteInt32(0, head);
  WriteInt32(header.connection, head);
  WriteInt16(header.backEnd, head);
  WriteString(header.databaseName, head);
  WriteString(header.tableName, head);
  WriteString(header.identityField, head);
  WriteInt16(static_cast<int16_t>(header.columns.size()), head);
  WriteInt16(header.pathColumns, head);
  WriteString(header.freeColumn, head);
  WriteInt16(header.mode, head);
  for (const ImportColumn& c : header.columns) {
    WriteString(c.name, head);
    WriteInt16(c.sqlType, head);
    WriteInt16(c.decimals, head);
  }
  buffer_.assign(reinterpret_cast<const char*>(head.Data()), static_cast<size_t>(head.GetLength()));
  return true;
}

void ImportExchangeWriter::WriteRow(const std::vector<std::string>& cells, int32_t rowKey) {
  auto put = [this](std::string_view text) {
    const auto count = static_cast<uint32_t>(LengthBeforeNul(text.data(), text.size()));
    char bytes[4] = {static_cast<char>(count), static_cast<char>(count >> 8),
                     static_cast<char>(count >> 16), static_cast<char>(count >> 24)};
    buffer_.append(bytes, 4);
    buffer_.append(text.data(), count);
  };
  for (const std::string& cell : cells) put(cell);
  if (mode_ == kModeLinked) put(std::to_string(rowKey));
  ++rows_;
  if (buffer_.size() >= (1u << 20)) Flush();
}

void ImportExchangeWriter::Flush() {
  if (buffer_.empty() || failed_) return;
  try {
    file_.Write(buffer_.data(), static_cast<int32_t>(buffer_.size()));
  } catch (...) {
    failed_ = true;
  }
  buffer_.clear();
}

bool ImportExchangeWriter::Finish() {
  Flush();
  try {
    if (!failed_ && file_.Seek(0) == 0) WriteInt32(rows_, file_);
    else failed_ = true;
  } catch (...) {
    failed_ = true;
  }
  if (!file_.Close()) failed_ = true;
  return !failed_;
}

}  // namespace verdal::exchange
