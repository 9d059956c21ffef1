#pragma once
// The import exchange file: what a gateway writes and the engine reads to build fields,
// categories and records. Little-endian; strings are the counted strings of the stream encoding.
//
//   4   number of rows           2  number of columns       then per column: string name,
//   4   connection (mode 3)      2  number of path columns               2 SQL type, 2 decimals
//   2   back-end kind            string free column name    then per row: one string per column,
//   string database name         2  mode                                 in mode 3 a row key string
//   string table name
//   string identity field name
//
// The reader checks a whole file before anything is built from it (CheckImportExchange), so that a
// file cut short or damaged is refused and the database stays as it was.
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "io/base_file.h"
#include "io/buffered_file_writer.h"
#include "io/fileex.h"
#include "io/stream_io.h"

namespace verdal::exchange {

struct ImportColumn {
  std::string name;
  int16_t sqlType = 12;
  int16_t decimals = -1;  // negative for unknown
};

struct ImportHeader {
  int32_t rowCount = 0;
  int32_t connection = 0;
  int16_t backEnd = 0;  // 0 the bridge, other values the MySQL gateway
  std::string databaseName;
  std::string tableName;
  std::string identityField;
  int16_t pathColumns = 0;
  std::string freeColumn;
  int16_t mode = 0;
  std::vector<ImportColumn> columns;
};

constexpr int16_t kModeReplace = 0, kModeUpdate = 1, kModeAdd = 2, kModeLinked = 3;
// The column that carries node identifiers in mode 1; never a field.
constexpr const char* kNodeIdColumn = "ZEPNODEID";

// Whether the text of a row key is a decimal number that fits 32 bits.
bool ParseRowKey(const std::string& text, int32_t& key);

// Reads header and column descriptions; throws TReadWriteException where the file is short or
// its counts cannot be right (negative, more path columns than columns, an unknown mode).
// Templates over the stream, so that a read-ahead window is read without a call per value.
template <class File>
void ReadImportHeader(File& file, ImportHeader& header) {
  header.rowCount = ReadInt32(file);
  header.connection = ReadInt32(file);
  header.backEnd = ReadInt16(file);
  ReadString(header.databaseName, file);
  ReadString(header.tableName, file);
  ReadString(header.identityField, file);
  const int16_t columns = ReadInt16(file);
  header.pathColumns = ReadInt16(file);
  ReadString(header.freeColumn, file);
  header.mode = ReadInt16(file);
  if (header.rowCount < 0 || columns < 0 || header.pathColumns < 0 || header.pathColumns > columns ||
      header.mode < kModeReplace || header.mode > kModeLinked)
    throw TReadWriteException();
  // A column description takes 8 bytes at least: no count larger than the file allows is made.
  if (!CountFits(file, columns, 8)) throw TReadWriteException();
  header.columns.assign(static_cast<size_t>(columns), {});
  for (ImportColumn& c : header.columns) {
    ReadString(c.name, file);
    c.sqlType = ReadInt16(file);
    c.decimals = ReadInt16(file);
  }
}

// Reads one row: header.columns.size() strings into cells, and the row key in mode 3 (-1 in the
// other modes). Throws TReadWriteException past the end.
template <class File>
void ReadImportRow(File& file, const ImportHeader& header, std::vector<std::string>& cells,
                   int32_t& rowKey) {
  cells.resize(header.columns.size());
  for (std::string& cell : cells) ReadString(cell, file);
  rowKey = -1;
  if (header.mode == kModeLinked) {
    std::string key;
    ReadString(key, file);
    if (!ParseRowKey(key, rowKey)) throw TReadWriteException();
  }
}

// Reads the whole file once, from its start through a read-ahead window, and goes back to the
// start: false unless the header is sound, every row is there with a numeric row key in mode 3,
// and nothing follows the last row.
bool CheckImportExchange(TBaseFile& file);

// Writes an exchange file for the gateways: the header first, rows as they come, and the row
// count patched in at Finish. Buffered, so a million rows cost few system calls.
class ImportExchangeWriter {
 public:
  // Creates (or truncates) the file and writes the header with the row count still 0.
  bool Open(const char* path, const ImportHeader& header);
  // cells must have one entry per column; rowKey is written only in mode 3.
  void WriteRow(const std::vector<std::string>& cells, int32_t rowKey);
  // Flushes, writes the row count and closes; false when any write failed.
  bool Finish();
  int32_t Rows() const { return rows_; }

 private:
  BufferedFileWriter out_;
  int16_t mode_ = 0;
  int32_t rows_ = 0;
};

}  // namespace verdal::exchange
