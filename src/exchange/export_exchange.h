#pragma once
// The export exchange file: what the engine writes and the bridge reads to write a target.
// Little-endian; strings are the counted strings of the stream encoding.
//
//   4  number of rows        then per column: string name, string display name, 2 SQL type,
//   2  number of columns                      4 width
//                            then per row, for each field column (never for the category
//                            columns): string internal value, string display text
//
// With category columns ("CAT1", "CAT2", ...: they come first and are text) the rows carry no
// values for them. Their values go to a companion file beside the exchange file, its name with
// kPathsSuffix added: per row, 2 bytes for the number of names and that many strings, the names
// of the place's categories from the top down and last its own. A reader that does not know the
// companion reads the exchange file alone.
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "io/base_file.h"
#include "io/buffered_file_writer.h"
#include "io/stream_io.h"

namespace verdal::exchange {

struct ExportColumn {
  std::string name;
  std::string displayName;
  int16_t sqlType = 12;
  int32_t width = 1;
};

struct ExportHeader {
  int32_t rowCount = 0;
  int16_t categoryColumns = 0;  // the leading "CAT%d" columns; not stored, found by their names
  std::vector<ExportColumn> columns;
};

constexpr const char* kPathsSuffix = ".paths";
// Flag bits of an export that the engine and the bridge read.
constexpr int32_t kExportEditOnly = 0x400;         // the bridge only brings the definition up to date
constexpr int32_t kExportCategoryColumns = 0x800;  // category columns; the whole tree gives records only
constexpr int32_t kExportDefinitionFile = 0x4000;  // `target` names a definition file

// "CAT1", "CAT2", ...: the name of category column `n`, counted from 1.
std::string CategoryColumnName(int n);

// Reads the row count and the column descriptions. The category columns are the leading ones
// named "CAT1", "CAT2", ... in turn. Throws TReadWriteException where the file is short or a count
// cannot be right.
template <class File>
void ReadExportHeader(File& file, ExportHeader& header) {
  header.rowCount = ReadInt32(file);
  const int16_t columns = ReadInt16(file);
  if (header.rowCount < 0 || columns < 0) throw TReadWriteException();
  // A column description takes 14 bytes at least: no count larger than the file allows is made.
  if (!CountFits(file, columns, 14)) throw TReadWriteException();
  header.columns.assign(static_cast<size_t>(columns), {});
  header.categoryColumns = 0;
  bool leading = true;
  for (ExportColumn& c : header.columns) {
    ReadString(c.name, file);
    ReadString(c.displayName, file);
    c.sqlType = ReadInt16(file);
    c.width = ReadInt32(file);
    leading = leading && c.name == CategoryColumnName(header.categoryColumns + 1);
    if (leading) ++header.categoryColumns;
  }
}

// Reads one row: for each field column (those after the category columns) its internal value and
// its display text. Throws TReadWriteException past the end.
template <class File>
void ReadExportRow(File& file, const ExportHeader& header, std::vector<std::string>& internal,
                   std::vector<std::string>& display) {
  const size_t fields = header.columns.size() - static_cast<size_t>(header.categoryColumns);
  internal.resize(fields);
  display.resize(fields);
  for (size_t i = 0; i < fields; ++i) {
    ReadString(internal[i], file);
    ReadString(display[i], file);
  }
}

// Reads one row's names from the companion file: its categories from the top down, then itself.
template <class File>
void ReadExportPath(File& file, std::vector<std::string>& names) {
  const int16_t count = ReadInt16(file);
  if (count < 0 || !CountFits(file, count, 4)) throw TReadWriteException();
  names.resize(static_cast<size_t>(count));
  for (std::string& name : names) ReadString(name, file);
}

// The writing side, through a buffer: the header, a row's values field by field, a row's names in
// the companion file.
void WriteExportHeader(BufferedFileWriter& out, const ExportHeader& header);
inline void WriteExportValue(BufferedFileWriter& out, std::string_view internal,
                             std::string_view display) {
  out.PutString(internal);
  out.PutString(display);
}
void WriteExportPath(BufferedFileWriter& out, const std::vector<std::string_view>& names);

}  // namespace verdal::exchange
