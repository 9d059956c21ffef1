#pragma once
// The export to an HTML document.
#include <string>

#include "export_definition.h"
#include "export_source.h"

namespace verdal::sqlbridge {

// Writes the source's rows to definition.target as a standalone UTF-8 document: a title from the
// file's name, one table with a head of column names and a body of rows. Every text is escaped
// (& < > " '), and a line break inside a value becomes <br>. False, with the reason in `error`
// and no file left behind, when anything fails.
bool WriteHtmlExport(ExportSource& source, const ExportDefinition& definition, std::string& error);

}  // namespace verdal::sqlbridge
