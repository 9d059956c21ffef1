#pragma once
// What an import reads and how: from a ".imp" definition (section "ODBC_IMPORT") or from the name
// of a data file alone. The keys are listed in the README's section on import definitions.
#include <cstdint>
#include <string>
#include <vector>

#include "csv_reader.h"
#include "definition_values.h"

namespace verdal::sqlbridge {

struct ImportDefinition {
  enum class Kind { kText, kOdbc, kMySql };
  Kind kind = Kind::kText;
  int32_t mode = 0;
  std::string identityField;            // IDENTFIELD
  std::vector<std::string> pathColumns; // PATH_COLUMNS, in order
  std::string freeColumn;               // FREE_COLUMN

  // A text source.
  std::string dataSource;               // the file, '/'-separated
  bool columnLine = true;               // TXT_IMPORT_USECOLUMNS
  CsvFormat format;
  std::vector<std::string> sourceFields;  // SRC_FIELD0.., names when there is no column line
  Charset charset = Charset::kAuto;

  // An ODBC source.
  std::string connect;                  // ODBC_CONNECT, a whole connection string
  std::string dsn, user, password;      // ODBC_DSN, ODBC_USER, ODBC_PASSWORD
  std::string table;                    // ODBC_TABLE
  std::string query;                    // ODBC_QUERY
};

// The caller's choice of columns and where the exchange file goes.
struct ImportTarget {
  std::string exchangePath;
  int32_t fieldCount = 0;
  const char* const* names1 = nullptr;
  const char* const* names2 = nullptr;
};

// Reads a definition file. False, with the reason in `error`, when it cannot be read or asks for
// something impossible (an unknown mode, a text source without a file, a query in mode 3).
bool LoadDefinition(const std::string& path, ImportDefinition& definition, std::string& error);

// A data file named directly: a text import with a column line, the separator guessed from the
// first line (tab for .tab and .tsv), '"' as delimiter, and `mode`. False for another extension.
bool DefinitionForDataFile(const std::string& path, int32_t mode, ImportDefinition& definition);

// Whether the name ends in ".imp", in any letter case.
bool IsDefinitionName(const std::string& path);

// Of ';', ',' and tab the one most frequent in the file's first line (';' when none occurs or the
// file cannot be read).
char GuessSeparator(const std::string& path);

}  // namespace verdal::sqlbridge
