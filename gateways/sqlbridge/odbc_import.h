#pragma once
// The import of an ODBC table or query into the exchange file.
#include <string>

#include "import_definition.h"

namespace verdal::sqlbridge {

// Reads ODBC_TABLE (all its columns) or ODBC_QUERY and writes the exchange file: column types
// from the driver's description, values in internal form, back-end kind 0. In mode 3 the
// identity field must be an integer column of the table (each row's key is its value, -1 where it
// is NULL), and the connection stays open under the id written into the header. False, with the
// reason in `error`, for anything that stops the import; the connection is closed then.
bool ImportOdbcSource(const ImportDefinition& definition, const ImportTarget& target,
                      std::string& error);

}  // namespace verdal::sqlbridge
