#include "exchange/export_exchange.h"

namespace verdal::exchange {

std::string CategoryColumnName(int n) { return "CAT" + std::to_string(n); }

void WriteExportHeader(BufferedFileWriter& out, const ExportHeader& header) {
  out.PutInt32(header.rowCount);
  out.PutInt16(static_cast<int16_t>(header.columns.size()));
  for (const ExportColumn& c : header.columns) {
    out.PutString(c.name);
    out.PutString(c.displayName);
    out.PutInt16(c.sqlType);
    out.PutInt32(c.width);
  }
}

void WriteExportPath(BufferedFileWriter& out, const std::vector<std::string_view>& names) {
  out.PutInt16(static_cast<int16_t>(names.size()));
  for (std::string_view name : names) out.PutString(name);
}

}  // namespace verdal::exchange
