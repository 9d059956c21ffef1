#pragma once
// The import of a MariaDB or MySQL table named by a definition file into the engine's exchange
// file.
#include <cstdint>
#include <string>
#include <vector>

#include "mysql_connection.h"
#include "verdal.h"

namespace verdal::mysqlgate {

// What a definition file (section "ODBC_IMPORT") says about a server table.
struct ImportDefinition {
  ConnectParams server;
  std::string table;
  std::string identityField;
  std::string freeColumn;
  int16_t mode = 0;
  std::vector<std::string> pathColumns;
};

// False with the reason in `error` when the file cannot be read, lacks the section or the table, or
// names a mode outside 0..3, or mode 3 without an identity field.
bool ReadImportDefinition(const char* path, ImportDefinition& out, std::string& error);

// Reads the table and writes the exchange file. Returns 1 on success, else 0 with no file left and
// `error` set. In mode 3 the connection stays open and its id is in the file's header.
int32_t ImportTable(const char* definition, const char* exchangePath, VerdalPathMapperFn mapper,
                    int32_t flags, int32_t fieldCount, const char* const* names1,
                    const char* const* names2, std::string& error);

}  // namespace verdal::mysqlgate
