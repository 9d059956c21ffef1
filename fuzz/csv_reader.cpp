// Fuzzes the bridge's CSV reader. The first byte chooses the separator, the second the delimiter,
// the rest is the file. The cells read must survive a round trip: written back with every cell
// enclosed (or bare, without a delimiter) and read again, they give the same records.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "csv_reader.h"

using verdal::sqlbridge::CsvFormat;
using verdal::sqlbridge::CsvReader;

namespace {

using Records = std::vector<std::vector<std::string>>;

Records ReadAll(std::string_view text, CsvFormat format, bool& unterminated) {
  CsvReader reader(format);
  reader.Assign(text);
  Records records;
  std::vector<std::string> cells;
  unterminated = false;
  for (;;) {
    const CsvReader::Status status = reader.Next(cells);
    if (status == CsvReader::Status::kEnd) break;
    if (cells.empty()) std::abort();  // a record has at least one cell
    records.push_back(cells);
    if (status == CsvReader::Status::kUnterminated) {
      unterminated = true;
      break;
    }
    if (status != CsvReader::Status::kRecord) std::abort();
  }
  return records;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 2) return 0;
  static constexpr char kSeparators[] = {';', ',', '\t', ' ', '|'};
  static constexpr char kDelimiters[] = {'"', '\'', '\0', '"'};
  const CsvFormat format{kSeparators[data[0] % sizeof kSeparators],
                         kDelimiters[data[1] % sizeof kDelimiters]};
  const std::string_view text(reinterpret_cast<const char*>(data) + 2, size - 2);

  bool unterminated = false;
  const Records records = ReadAll(text, format, unterminated);

  // A mark of its own in front, so that a first cell that starts with the mark's bytes stays.
  std::string written = "\xEF\xBB\xBF";
  for (const auto& record : records) {
    for (size_t i = 0; i < record.size(); ++i) {
      if (i > 0) written += format.separator;
      if (format.delimiter == '\0') {
        written += record[i];
        continue;
      }
      written += format.delimiter;
      for (char c : record[i]) {
        written += c;
        if (c == format.delimiter) written += c;
      }
      written += format.delimiter;
    }
    written += '\n';
  }
  bool again = false;
  const Records reread = ReadAll(written, format, again);
  if (again || reread != records) std::abort();
  return 0;
}
