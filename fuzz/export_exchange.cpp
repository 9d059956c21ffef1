// Arbitrary bytes as an export exchange file and its companion of paths, exported by the bridge
// through a definition. The first byte chooses the target (CSV in four ways, HTML, XLSX) and
// whether category columns are read; two bytes give the companion's length; the companion and
// the exchange file follow. An export must never crash nor leave its partial file, and a CSV with
// a delimiter must read back, through the bridge's own reader, as exactly the values exported.
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "bridge_export.h"
#include "csv_reader.h"
#include "exchange/export_exchange.h"
#include "export_source.h"
#include "platform/cp1252.h"
#include "platform/file_system.h"

using namespace verdal;
using namespace verdal::sqlbridge;

namespace {

struct Target {
  const char* file;
  const char* keys;
  CsvFormat format;  // for the read back; a delimiter of '\0' is not read back
  bool utf8;
};
const Target kTargets[] = {
    {"out.csv", "", {';', '"'}, true},
    {"out.csv", "TXT_EXPORT_SEPTYPE=2\nTXT_EXPORT_STRING_DELIM='\nTXT_EXPORT_CHARSET=CP1252\nTXT_EXPORT_USECOLUMNS=0\n"
                "EXPORT_VALUES=INTERNAL\n", {',', '\''}, false},
    {"out.csv", "TXT_EXPORT_SEPTYPE=3\n", {' ', '"'}, true},
    {"out.tsv", "TXT_EXPORT_STRING_DELIM=\n", {'\t', '\0'}, true},
    {"out.html", "", {';', '\0'}, true},
    {"out.xlsx", "", {';', '\0'}, true},
};

// The folder of this process's files; in memory where it can be, since every export forces its
// file to disk.
const std::string& Folder() {
  static const std::string folder = [] {
    std::string pattern = (access("/dev/shm", W_OK) == 0 ? "/dev/shm" : "/tmp") + std::string("/fuzz-export-XXXXXX");
    return std::string(mkdtemp(pattern.data()));
  }();
  return folder;
}

void WriteFile(const std::string& path, const uint8_t* data, size_t size) {
  FILE* f = std::fopen(path.c_str(), "wb");
  if (f == nullptr) std::abort();
  if (size > 0) std::fwrite(data, 1, size, f);
  std::fclose(f);
}

// The CSV read back must give the header's names (where written) and every row's texts.
void CheckReadBack(const Target& target, const ExportDefinition& definition, const std::string& exchangePath,
                   bool categories, const std::string& output) {
  ExportSource source;
  std::string error;
  if (!source.Open(exchangePath, categories, definition, error)) std::abort();
  CsvReader reader(target.format);
  if (!reader.Open(output.c_str())) std::abort();
  std::vector<std::string> cells;
  std::string text;
  auto expect = [&](auto&& valueOf) {
    if (reader.Next(cells) != CsvReader::Status::kRecord || cells.size() != source.Columns().size()) std::abort();
    for (size_t i = 0; i < cells.size(); ++i) {
      text = cells[i];
      if (target.utf8) cp1252::FromUtf8(cells[i], text);
      if (text != valueOf(i)) std::abort();
    }
  };
  if (definition.columnLine) expect([&](size_t i) { return source.Columns()[i].name; });
  while (source.Next() == ExportSource::Status::kRow) expect([&](size_t i) { return source.Text(i); });
  if (reader.Next(cells) != CsvReader::Status::kEnd) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 3 || size > (1 << 16)) return 0;
  const Target& target = kTargets[(data[0] & 0x7F) % (sizeof kTargets / sizeof kTargets[0])];
  const bool categories = (data[0] & 0x80) != 0;
  const size_t companion = std::min<size_t>(data[1] | (data[2] << 8), size - 3);
  const std::string exchangePath = Folder() + "/x.tmp", pathsPath = exchangePath + exchange::kPathsSuffix;
  WriteFile(pathsPath, data + 3, companion);
  WriteFile(exchangePath, data + 3 + companion, size - 3 - companion);
  const std::string definitionPath = Folder() + "/def.exp", output = Folder() + "/" + target.file;
  const std::string definition = std::string("[ODBC_EXPORT]\nDATASOURCE=") + target.file + "\n" + target.keys;
  WriteFile(definitionPath, reinterpret_cast<const uint8_t*>(definition.data()), definition.size());
  std::remove(output.c_str());

  const int32_t flags = exchange::kExportDefinitionFile | (categories ? exchange::kExportCategoryColumns : 0);
  const int32_t result = RunExport(definitionPath.c_str(), exchangePath.c_str(), nullptr, flags);
  if (platform::FileExists(platform::PartialNameOf(output).c_str())) std::abort();
  if (result == 0 && platform::FileExists(output.c_str())) std::abort();
  if (result == 1 && target.format.delimiter != '\0') {
    ExportDefinition loaded;
    std::string error;
    if (!LoadExportDefinition(definitionPath, loaded, error)) std::abort();
    CheckReadBack(target, loaded, exchangePath, categories, output);
  }
  return 0;
}
