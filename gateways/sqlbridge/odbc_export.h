#pragma once
// The export into a table of an ODBC data source.
#include <string>

#include "export_definition.h"

namespace verdal::sqlbridge {

// Writes the rows of the exchange file at `exchangePath` (with its companion of paths where
// `categories` is set) into definition.table, as definition.tableMode says: CREATE makes the table
// and fails where it exists; APPEND inserts into an existing table, its columns matched by name in
// any letter case, or makes a missing one; REPLACE drops and makes it. Values are bound parameters
// of one prepared INSERT, all rows in one transaction: on failure nothing stays, and a table this
// export made is dropped again. False, with the reason in `error`, when anything fails.
bool WriteOdbcExport(const std::string& exchangePath, bool categories,
                     const ExportDefinition& definition, std::string& error);

}  // namespace verdal::sqlbridge
