#include "html_export.h"

#include "platform/file_system.h"
#include "target_file.h"

namespace verdal::sqlbridge {
namespace {

// Code page 1252 text as escaped UTF-8.
void AppendEscaped(TargetFile& out, std::string_view text, std::string& scratch) {
  if (text.find_first_of("&<>\"'\r\n") == std::string_view::npos) {
    out.AppendText(text, true);
    return;
  }
  scratch.clear();
  for (size_t i = 0; i < text.size(); ++i) {
    switch (const char c = text[i]) {
      case '&': scratch += "&amp;"; break;
      case '<': scratch += "&lt;"; break;
      case '>': scratch += "&gt;"; break;
      case '"': scratch += "&quot;"; break;
      case '\'': scratch += "&#39;"; break;
      case '\r':
        if (i + 1 < text.size() && text[i + 1] == '\n') ++i;
        scratch += "<br>";
        break;
      case '\n': scratch += "<br>"; break;
      default: scratch += c;
    }
  }
  out.AppendText(scratch, true);
}

}  // namespace

bool WriteHtmlExport(ExportSource& source, const ExportDefinition& definition, std::string& error) {
  TargetFile out;
  if (!out.Open(definition.target, error)) return false;
  std::string scratch;
  std::string title = platform::FileNamePart(definition.target.c_str());
  const size_t dot = title.rfind('.');
  if (dot != std::string::npos && dot > 0) title.resize(dot);
  out.Append("<!DOCTYPE html>\n<html>\n<head>\n<meta charset=\"utf-8\">\n<title>");
  AppendEscaped(out, title, scratch);
  out.Append("</title>\n</head>\n<body>\n<table>\n<thead>\n<tr>");
  const std::vector<OutputColumn>& columns = source.Columns();
  for (const OutputColumn& column : columns) {
    out.Append("<th>");
    AppendEscaped(out, column.name, scratch);
    out.Append("</th>");
  }
  out.Append("</tr>\n</thead>\n<tbody>\n");
  const bool rows = ForEachRow(
      source,
      [&] {
        out.Append("<tr>");
        for (size_t i = 0; i < columns.size(); ++i) {
          out.Append("<td>");
          AppendEscaped(out, source.Text(i), scratch);
          out.Append("</td>");
        }
        out.Append("</tr>\n");
        return true;
      },
      error);
  if (!rows) return false;
  out.Append("</tbody>\n</table>\n</body>\n</html>\n");
  return out.Commit(error);
}

}  // namespace verdal::sqlbridge
