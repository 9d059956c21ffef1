#pragma once
// What the bridge's export tests share: an export exchange file (and its companion of paths) built
// by hand, running a program and taking what it prints, and the Python readers of XLSX and HTML.
#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "api/temp_folder.h"
#include "bridge_export.h"
#include "exchange/export_exchange.h"
#include "support/byte_builder.h"

namespace verdal::sqlbridge::testing {

struct ExportTable {
  std::vector<exchange::ExportColumn> columns;  // "CAT1", "CAT2", ... first, where there are any
  std::vector<std::vector<std::string>> rows;   // per row: internal value, display text, ... per field
  std::vector<std::vector<std::string>> paths;  // per row: the names of its path; none: no companion

  void Write(const std::string& exchangePath) const {
    test_support::Bytes x;
    x.I32(static_cast<int32_t>(rows.size())).I16(static_cast<int16_t>(columns.size()));
    for (const auto& c : columns) x.Str(c.name).Str(c.displayName).I16(c.sqlType).I32(c.width);
    for (const auto& row : rows)
      for (const auto& text : row) x.Str(text);
    TempFolder::Write(exchangePath, x.b);
    if (paths.empty()) return;
    test_support::Bytes p;
    for (const auto& names : paths) {
      p.I16(static_cast<int16_t>(names.size()));
      for (const auto& name : names) p.Str(name);
    }
    TempFolder::Write(exchangePath + exchange::kPathsSuffix, p.b);
  }
};

// Two category columns and a field of each kind; the paths give the depths 2, 1 and 0.
inline ExportTable StandardTable() {
  ExportTable t;
  t.columns = {{"CAT1", "Region", 12, 20}, {"CAT2", "City", 12, 20}, {"name", "Name", 12, 30},
               {"price", "Price", 8, 10},  {"qty", "Qty", 4, 12},    {"day", "Day", 9, 10},
               {"at", "At", 10, 8},        {"stamp", "Stamp", 11, 19}, {"ok", "OK", -7, 1}};
  t.rows = {{"Anna; \"A\"", "Anna; \"A\"", "1.50", "1,50", "3", "3", "29.2.2024.0.0.0.0", "29.02.2024",
             "0.0.0.13.5.9.0", "13:05:09", "1.3.2024.8.9.10.250", "01.03.2024 08:09:10", "1", "Ja"},
            {" Bert\r\nZeile 2 ", " Bert\r\nZeile 2 ", "-2.25", "-2,25", "12345678901", "12345678901",
             "", "", "", "", "", "", "0", "Nein"},
            {"\x80 & <b>'x'</b>", "\x80 & <b>'x'</b>", "", "", "", "", "", "", "", "", "", "", "", ""}};
  t.paths = {{"Nord", "Kiel", "Anna"}, {"S\xFC" "d", "Bert"}, {"Cora"}};
  return t;
}

// The standard table in a fresh folder, exported by name.
class ExportFixture : public ::testing::Test {
 protected:
  void SetUp() override { StandardTable().Write(exchange_); }
  int32_t Export(const std::string& target, int32_t flags) {
    return RunExport(target.c_str(), exchange_.c_str(), nullptr, flags);
  }
  TempFolder folder_;
  std::string exchange_ = folder_ / "x.tmp";
};

inline std::string FileText(const std::string& path) {
  const std::vector<uint8_t> bytes = TempFolder::Read(path);
  return std::string(bytes.begin(), bytes.end());
}

// What the shell command prints on standard output; its exit status in `status`.
inline std::string Capture(const std::string& command, int* status = nullptr) {
  std::string out;
  FILE* pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) return "<popen failed>";
  char buffer[4096];
  for (size_t n; (n = fread(buffer, 1, sizeof buffer, pipe)) > 0;) out.append(buffer, n);
  const int result = pclose(pipe);
  if (status != nullptr) *status = result;
  return out;
}

// The lines a reader script of tests/support prints for a file (the script's own check of the
// file's structure included); a failed script fails the test.
inline std::vector<std::string> ScriptLines(const char* script, const std::string& file) {
  int status = 0;
  const std::string out = Capture(std::string(VERDAL_TEST_PYTHON) + " " + VERDAL_TEST_SUPPORT_DIR + "/" +
                                  script + " '" + file + "'", &status);
  EXPECT_EQ(status, 0) << script << " failed on " << file << ":\n" << out;
  std::vector<std::string> lines;
  for (size_t start = 0; start < out.size();) {
    const size_t end = out.find('\n', start);
    lines.push_back(out.substr(start, end - start));
    start = end == std::string::npos ? out.size() : end + 1;
  }
  return lines;
}

}  // namespace verdal::sqlbridge::testing
