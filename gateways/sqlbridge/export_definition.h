#pragma once
// What an export writes and how: from an export definition (section "ODBC_EXPORT") or from the
// name of a data file alone. The keys are listed in the README's section on export definitions.
#include <string>
#include <vector>

#include "csv_reader.h"

namespace verdal::sqlbridge {

enum class ExportFormat { kText, kXlsx, kHtml, kOdbc };
enum class TableMode { kCreate, kAppend, kReplace };

struct ExportDefinition {
  ExportFormat format = ExportFormat::kText;
  std::string target;             // the file of a file format, native
  CsvFormat text;                 // separator and delimiter ('\0': none) of a text file
  bool columnLine = true;         // TXT_EXPORT_USECOLUMNS
  bool utf8 = true;               // TXT_EXPORT_CHARSET
  bool internalValues = false;    // EXPORT_VALUES
  bool internalNames = false;     // EXPORT_COLUMN_NAMES
  std::vector<std::string> fields;  // EXPORT_FIELDS; empty for all

  std::string connect, dsn, user, password;  // ODBC_CONNECT, ODBC_DSN, ODBC_USER, ODBC_PASSWORD
  std::string table;                         // ODBC_TABLE
  TableMode tableMode = TableMode::kCreate;  // ODBC_TABLE_MODE
};

// Reads a definition file. False, with the reason in `error`, when it cannot be read, has no
// section ODBC_EXPORT, or asks for something unknown or incomplete.
bool LoadExportDefinition(const std::string& path, ExportDefinition& definition, std::string& error);

// A data file named directly: its format from the extension (.csv .txt .asc: ';' and '"'; .tsv
// .tab: tab and '"'; .xlsx; .htm .html), UTF-8, a column line, display values and names. False for
// another extension.
bool ExportDefinitionForDataFile(const std::string& path, ExportDefinition& definition);

// Brings the definition at `path` up to date in place: every key present, with its value or the
// default, the rest of the file kept (comments excepted). An absent or empty file becomes a new
// definition. False, with the file unchanged, when it cannot be read, is no profile with the
// section ODBC_EXPORT, or cannot be written.
bool CompleteExportDefinition(const std::string& path, std::string& error);

}  // namespace verdal::sqlbridge
