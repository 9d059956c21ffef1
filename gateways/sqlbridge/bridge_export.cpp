#include "bridge_export.h"

#include <string>

#include "exchange/export_exchange.h"
#include "export_definition.h"
#include "export_source.h"
#include "html_export.h"
#include "mapped_path.h"
#include "odbc_export.h"
#include "platform/trace.h"
#include "text_export.h"
#include "xlsx_export.h"

namespace verdal::sqlbridge {
namespace {

bool Export(const std::string& path, const char* exchangePath, int32_t flags, std::string& error) {
  const bool definitionFile = (flags & exchange::kExportDefinitionFile) != 0;
  ExportDefinition definition;
  if (definitionFile) {
    if (!LoadExportDefinition(path, definition, error)) return false;
  } else if (!ExportDefinitionForDataFile(path, definition)) {
    error = "No export writes a file of this extension.";
    return false;
  }
  const bool categories = (flags & exchange::kExportCategoryColumns) != 0;
  if (definition.format == ExportFormat::kOdbc) return WriteOdbcExport(exchangePath, categories, definition, error);
  ExportSource source;
  if (!source.Open(exchangePath, categories, definition, error)) return false;
  switch (definition.format) {
    case ExportFormat::kXlsx: return WriteXlsxExport(source, definition, error);
    case ExportFormat::kHtml: return WriteHtmlExport(source, definition, error);
    default: return WriteTextExport(source, definition, error);
  }
}

}  // namespace

int32_t RunExport(const char* target, const char* exchangePath, VerdalPathMapperFn mapper, int32_t flags) {
  std::string path;
  if (target == nullptr || !MapHostPath(target, mapper, path)) return 0;
  std::string error;
  bool ok;
  if ((flags & exchange::kExportEditOnly) != 0) {
    // No dialogs in a library: a definition is brought up to date for the user to edit instead.
    ok = (flags & exchange::kExportDefinitionFile) == 0 || CompleteExportDefinition(path, error);
  } else {
    ok = exchangePath != nullptr && Export(path, exchangePath, flags, error);
    if (exchangePath == nullptr) error = "No exchange file was given.";
  }
  if (!ok) platform::Trace("sqlbridge: export to %s failed: %s", path.c_str(), error.c_str());
  return ok ? 1 : 0;
}

}  // namespace verdal::sqlbridge
