#include "text_export.h"

#include <array>
#include <cstring>

#include "platform/cp1252.h"
#include "target_file.h"

namespace verdal::sqlbridge {
namespace {

constexpr unsigned char kSpecial = 1;  // the separator, the delimiter, CR, LF
constexpr unsigned char kHigh = 2;     // outside ASCII: needs converting to UTF-8

class CellWriter {
 public:
  CellWriter(TargetFile& out, CsvFormat format, bool utf8, bool oneColumn)
      : out_(out), format_(format), utf8_(utf8), oneColumn_(oneColumn) {
    for (int c = 0x80; c < 0x100; ++c) classes_[static_cast<size_t>(c)] = kHigh;
    for (char c : {format.separator, format.delimiter, '\r', '\n'})
      if (c != '\0') classes_[static_cast<unsigned char>(c)] |= kSpecial;
  }

  void Write(std::string_view value) {
    unsigned char found = 0;
    for (char c : value) found |= classes_[static_cast<unsigned char>(c)];
    std::string_view text = value;
    if ((found & kHigh) != 0 && utf8_) {
      cp1252::ToUtf8(value, converted_);
      text = converted_;  // the special bytes are ASCII and stay where they were
    }
    const bool first = first_;
    first_ = false;
    if (format_.delimiter == '\0') {
      if ((found & kSpecial) != 0) WriteReplaced(text);
      else out_.Append(text);
      return;
    }
    const bool blankEnds = !value.empty() && (IsBlank(value.front()) || IsBlank(value.back()));
    // A lone empty value would make a blank line, which reading skips; a byte order mark at the
    // very start of the file would be taken off by reading.
    const bool enclose = (found & kSpecial) != 0 || blankEnds || (value.empty() && oneColumn_) ||
                         (first && !value.empty() && static_cast<unsigned char>(value[0]) == 0xEF);
    if (!enclose) {
      out_.Append(text);
      return;
    }
    out_.Append(format_.delimiter);
    for (;;) {
      const void* at = std::memchr(text.data(), format_.delimiter, text.size());
      if (at == nullptr) break;
      const size_t n = static_cast<size_t>(static_cast<const char*>(at) - text.data()) + 1;
      out_.Append(text.substr(0, n));
      out_.Append(format_.delimiter);
      text.remove_prefix(n);
    }
    out_.Append(text);
    out_.Append(format_.delimiter);
  }

 private:
  static bool IsBlank(char c) { return c == ' ' || c == '\t'; }

  void WriteReplaced(std::string_view text) {
    const char blank = format_.separator == ' ' ? '_' : ' ';
    for (size_t i = 0; i < text.size(); ++i) {
      const char c = text[i];
      if (c == '\r' && i + 1 < text.size() && text[i + 1] == '\n') continue;  // CRLF: one blank
      out_.Append(c == format_.separator || c == '\r' || c == '\n' ? blank : c);
    }
  }

  TargetFile& out_;
  CsvFormat format_;
  bool utf8_;
  bool oneColumn_;
  bool first_ = true;
  std::array<unsigned char, 256> classes_{};
  std::string converted_;
};

}  // namespace

bool WriteTextExport(ExportSource& source, const ExportDefinition& definition, std::string& error) {
  TargetFile out;
  if (!out.Open(definition.target, error)) return false;
  const std::vector<OutputColumn>& columns = source.Columns();
  CellWriter cells(out, definition.text, definition.utf8, columns.size() == 1);
  const char separator = definition.text.separator;
  if (definition.columnLine) {
    for (size_t i = 0; i < columns.size(); ++i) {
      if (i > 0) out.Append(separator);
      cells.Write(columns[i].name);
    }
    out.Append("\r\n");
  }
  const bool rows = ForEachRow(
      source,
      [&] {
        for (size_t i = 0; i < columns.size(); ++i) {
          if (i > 0) out.Append(separator);
          cells.Write(source.Text(i));
        }
        out.Append("\r\n");
        return true;
      },
      error);
  if (!rows) return false;
  return out.Commit(error);
}

}  // namespace verdal::sqlbridge
