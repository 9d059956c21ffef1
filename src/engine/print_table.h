#pragma once
// VERDAL_PrintTable's work: choosing the rows, finding the print configuration, ordering the rows
// by its sort and running the preview, after which the configuration keeps what the preview's
// commands changed.
#include <cstdint>
#include <string>

#include "verdal.h"

namespace verdal::engine {

class TDBManager;

// 1 always; the preview reports its own failures to the user.
int32_t PrintTable(TDBManager& db, const char* configName, const char* filter, VerdalPrintFn callback,
                   int32_t count, const int32_t* ids, int32_t styleField);

// Where a print goes without asking: "<database name>.pdf" beside a database file, else in
// VERDAL_PRINT_DIR or the temporary folder.
std::string DefaultPdfPath(const TDBManager& db);

}  // namespace verdal::engine
