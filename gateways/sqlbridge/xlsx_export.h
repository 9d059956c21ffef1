#pragma once
// The export to an Excel workbook (XLSX) through libxlsxwriter.
#include <string>

#include "export_definition.h"
#include "export_source.h"

namespace verdal::sqlbridge {

// Writes the source's rows to definition.target: one worksheet, a bold row of column names, and
// typed cells where internal values are exported (numbers, dates and times with a date-time
// format, yes/no as booleans, the rest as text). With category columns the rows form an outline,
// each at the level of its depth in the tree (at most 7), summaries above their details. False,
// with the reason in `error` and no file left behind, when anything fails.
bool WriteXlsxExport(ExportSource& source, const ExportDefinition& definition, std::string& error);

}  // namespace verdal::sqlbridge
