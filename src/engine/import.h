#pragma once
// VERDAL_Import's worker: the bridge reads a source into an exchange file, and the exchange file
// becomes fields, categories and records; in mode 3 the database stays linked to the source.
#include <cstdint>

#include "verdal.h"

namespace verdal::engine {

class TDBManager;

struct ImportRequest {
  const char* input = nullptr;
  intptr_t extra = 0;
  VerdalPathMapperFn mapper = nullptr;
  VerdalProgressFn progress = nullptr;
  intptr_t option = 0;
  int32_t flags = 0;
  int32_t* outCount = nullptr;
  int32_t** outCursors = nullptr;
  int32_t fieldCount = 0;
  const char* const* names1 = nullptr;
  const char* const* names2 = nullptr;
  intptr_t reserved = 0;
};

// 1 on success; 0 with the last error set (14 no bridge, 15 the bridge failed, 16 no exchange
// file, 17 an exchange file that cannot be opened, is empty or damaged; 0 for a column that
// matches no field in modes 1 and 2). Every failure leaves the database as it was.
int32_t Import(TDBManager& db, const ImportRequest& request);

// True (code 10) while an import builds in this database: a progress callback that adds, deletes
// or moves nodes would meet places not yet in the tree, or take away categories the import holds.
bool RefusedWhileImporting(TDBManager& db);

// At close and before a new link: the write-back of a text source, when the database has one.
void WriteBackImportSource(TDBManager& db);

}  // namespace verdal::engine
