#pragma once
// The import of a delimited text file into the exchange file.
#include <string>

#include "import_definition.h"

namespace verdal::sqlbridge {

// Writes the exchange file for a text source. Every column has SQL type 12 and unknown decimals.
// In mode 3 each row's key is its identity cell, which must be a whole number from 0 to 2^31-1
// (a file with another cell there is refused: its line could not be found again when the database
// writes back); a definition without IDENTFIELD (a data file named directly) gives every row -1.
// False, with the reason in `error`, for anything that stops the import; the caller removes the
// file then.
bool ImportTextSource(const ImportDefinition& definition, const ImportTarget& target,
                      std::string& error);

// Whether the whole file is well-formed UTF-8; read in pieces, so any size costs one buffer.
bool FileIsUtf8(const std::string& path);

}  // namespace verdal::sqlbridge
