#pragma once
// What the bridge's tests share: writing a definition or data file, and reading an exchange file
// back whole.
#include <string>
#include <vector>

#include "api/temp_folder.h"
#include "exchange/import_exchange.h"
#include "io/fileex.h"

namespace verdal::sqlbridge::testing {

struct Exchange {
  exchange::ImportHeader header;
  std::vector<std::vector<std::string>> rows;
  std::vector<int32_t> keys;
};

inline void WriteText(const std::string& path, const std::string& text) {
  TempFolder::Write(path, std::vector<uint8_t>(text.begin(), text.end()));
}

// Reads the file the import wrote, after the engine's own whole-file check.
inline bool ReadExchange(const std::string& path, Exchange& out) {
  TFileEx file;
  if (!file.Open(path.c_str(), TFileEx::kRead) || !exchange::CheckImportExchange(file)) return false;
  exchange::ReadImportHeader(file, out.header);
  std::vector<std::string> cells;
  int32_t key = 0;
  for (int32_t i = 0; i < out.header.rowCount; ++i) {
    exchange::ReadImportRow(file, out.header, cells, key);
    out.rows.push_back(cells);
    out.keys.push_back(key);
  }
  return true;
}

inline std::vector<std::string> ColumnNames(const exchange::ImportHeader& header) {
  std::vector<std::string> names;
  for (const auto& c : header.columns) names.push_back(c.name);
  return names;
}

}  // namespace verdal::sqlbridge::testing
