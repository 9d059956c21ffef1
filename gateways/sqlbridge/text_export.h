#pragma once
// The export to a delimited text file (CSV, TSV).
#include <string>

#include "export_definition.h"
#include "export_source.h"

namespace verdal::sqlbridge {

// Writes the source's rows to definition.target. A value is enclosed in the delimiter when it
// holds the separator, the delimiter (doubled inside), CR or LF, or starts or ends with a blank,
// so that the bridge's own text import reads every value back as it was. Without a delimiter a
// separator or line break inside a value becomes a blank ('_' where the blank is the separator).
// False, with the reason in `error` and no file left behind, when anything fails.
bool WriteTextExport(ExportSource& source, const ExportDefinition& definition, std::string& error);

}  // namespace verdal::sqlbridge
