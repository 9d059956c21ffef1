// Exporting 1,000,000 records of 7 fields (two texts, a postcode, two numbers, a date, a remark;
// about 90 bytes a row) to a CSV file: VERDAL_Export of the whole tree through the bridge, against
// SQLite writing the same rows from an in-memory table in its shell's CSV format (a prepared
// SELECT, each value quoted where it needs it, buffered output), in the same run. Where the
// sqlite3 shell is installed, its own ".mode csv" / ".output" from a database file is timed too.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <unistd.h>
#include <vector>

#if VERDAL_HAVE_SQLITE
#include <sqlite3.h>
#endif

#include "support/best_time.h"
#include "api/field_helpers.h"
#include "verdal.h"

namespace {

constexpr int kRows = 1000000;
constexpr int kFields = 7;
const char* const kNames[kFields] = {"Name", "Strasse", "PLZ", "Preis", "Menge", "Datum", "Bemerkung"};
const int16_t kTypes[kFields] = {0, 0, 0, 1, 1, 5, 0};

const std::filesystem::path& Folder() {
  static const std::filesystem::path folder =
      std::filesystem::temp_directory_path() / ("verdal-bench-export-" + std::to_string(getpid()));
  return folder;
}

// Row i's values as a user would type them; one name in 16 holds the separator.
void Values(int i, std::vector<std::string>& v) {
  const unsigned h = static_cast<unsigned>(i) * 2654435761u;
  char buffer[96];
  v.resize(kFields);
  std::snprintf(buffer, sizeof buffer, "Kunde %07u%s", h % 9999991, (h & 15) == 0 ? ", GmbH" : "");
  v[0] = buffer;
  v[1] = "Hauptstrasse " + std::to_string(h % 397 + 1);
  std::snprintf(buffer, sizeof buffer, "%05u", h % 90000 + 10000);
  v[2] = buffer;
  std::snprintf(buffer, sizeof buffer, "%u.%02u", h % 5000, h % 100);
  v[3] = buffer;
  v[4] = std::to_string(h % 97 + 1);
  std::snprintf(buffer, sizeof buffer, "%02u.%02u.2024", h % 28 + 1, h % 12 + 1);
  v[5] = buffer;
  v[6] = "Auftrag " + std::to_string(i) + " vom Lager " + std::to_string(h % 40);
}

VerdalHandle Database() {
  static const VerdalHandle db = [] {
    VerdalHandle h = VERDAL_OpenDB(nullptr, nullptr, 1, 0, nullptr, 3, 0, 0);
    for (int f = 0; f < kFields; ++f) AddField(h, kNames[f], kTypes[f]);
    std::vector<std::string> v;
    for (int i = 0; i < kRows; ++i) {
      Values(i, v);
      const int32_t cursor = VERDAL_AddRecord(h, VERDAL_CURSOR_ROOT, v[0].c_str(), 0, v[0].c_str(), 0, 0, nullptr);
      for (int f = 1; f < kFields; ++f) VERDAL_SetData(h, f, v[static_cast<size_t>(f)].c_str(), cursor, 0, nullptr, nullptr);
    }
    return h;
  }();
  return db;
}

int64_t Lines(const std::string& path) {
  int64_t lines = 0;
  if (std::FILE* in = std::fopen(path.c_str(), "rb")) {
    for (int c; (c = getc_unlocked(in)) != EOF;) lines += c == '\n';
    std::fclose(in);
  }
  return lines;
}

void BM_VerdalExport(benchmark::State& s) {
  const VerdalHandle db = Database();
  setenv("VERDAL_GATEWAY_DIR", VERDAL_GATEWAY_FOLDER, 1);
  const std::string target = (Folder() / "verdal.csv").string();
  bench_support::Timed(s, "verdal", [&] {
    return VERDAL_Export(db, target.c_str(), 0, nullptr, 0, 0, 0, nullptr, 0, 0, 0, 0) == 1 ? kRows : 0;
  });
  if (Lines(target) != kRows + 1) s.SkipWithError("the export did not write every row");
}
BENCHMARK(BM_VerdalExport)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(3);

#if VERDAL_HAVE_SQLITE
sqlite3* SqliteTable(const char* name) {
  sqlite3* db = nullptr;
  sqlite3_open(name, &db);
  sqlite3_exec(db,
               "CREATE TABLE t(Name TEXT, Strasse TEXT, PLZ TEXT, Preis REAL, Menge INTEGER, Datum TEXT, "
               "Bemerkung TEXT); BEGIN",
               nullptr, nullptr, nullptr);
  sqlite3_stmt* ins = nullptr;
  sqlite3_prepare_v2(db, "INSERT INTO t VALUES(?,?,?,?,?,?,?)", -1, &ins, nullptr);
  std::vector<std::string> v;
  for (int i = 0; i < kRows; ++i) {
    Values(i, v);
    for (int f = 0; f < kFields; ++f)
      sqlite3_bind_text(ins, f + 1, v[static_cast<size_t>(f)].c_str(), -1, SQLITE_TRANSIENT);
    sqlite3_step(ins);
    sqlite3_reset(ins);
  }
  sqlite3_finalize(ins);
  sqlite3_exec(db, "COMMIT", nullptr, nullptr, nullptr);
  return db;
}

// A value as the sqlite3 shell's csv mode writes it: quoted when it holds a quote, the
// separator, a line break or a blank at either end, quotes doubled.
void PutCsv(std::FILE* out, const char* text) {
  const size_t n = std::strlen(text);
  bool quote = n > 0 && (text[0] == ' ' || text[n - 1] == ' ');
  for (size_t i = 0; i < n && !quote; ++i) quote = text[i] == '"' || text[i] == ',' || text[i] == '\n' || text[i] == '\r';
  if (!quote) {
    std::fwrite(text, 1, n, out);
    return;
  }
  std::fputc('"', out);
  for (size_t i = 0; i < n; ++i) {
    if (text[i] == '"') std::fputc('"', out);
    std::fputc(text[i], out);
  }
  std::fputc('"', out);
}

void BM_SqliteCsv(benchmark::State& s) {
  static sqlite3* db = SqliteTable(":memory:");
  const std::string target = (Folder() / "sqlite.csv").string();
  bench_support::Timed(s, "sqlite", [&] {
    std::FILE* out = std::fopen(target.c_str(), "wb");
    sqlite3_stmt* select = nullptr;
    sqlite3_prepare_v2(db, "SELECT * FROM t", -1, &select, nullptr);
    for (int f = 0; f < kFields; ++f) {
      if (f > 0) std::fputc(',', out);
      PutCsv(out, sqlite3_column_name(select, f));
    }
    std::fputs("\r\n", out);
    int64_t rows = 0;
    while (sqlite3_step(select) == SQLITE_ROW) {
      for (int f = 0; f < kFields; ++f) {
        if (f > 0) std::fputc(',', out);
        PutCsv(out, reinterpret_cast<const char*>(sqlite3_column_text(select, f)));
      }
      std::fputs("\r\n", out);
      ++rows;
    }
    sqlite3_finalize(select);
    std::fclose(out);
    return rows;
  });
}
BENCHMARK(BM_SqliteCsv)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(3);

// The sqlite3 shell from a database file, the process start included (a few ms).
void BM_SqliteShellCsv(benchmark::State& s) {
  if (std::system("command -v sqlite3 >/dev/null") != 0) {
    s.SkipWithError("no sqlite3 shell");
    return;
  }
  const std::string file = (Folder() / "rows.db").string();
  static const bool made = [&] {
    sqlite3_close(SqliteTable(file.c_str()));
    return true;
  }();
  (void)made;
  const std::string target = (Folder() / "shell.csv").string();
  bench_support::Timed(s, "sqlite shell", [&] {
    std::FILE* shell = popen(("sqlite3 '" + file + "' >/dev/null").c_str(), "w");
    std::fprintf(shell, ".headers on\n.mode csv\n.output '%s'\nSELECT * FROM t;\n.quit\n", target.c_str());
    pclose(shell);
  });
}
BENCHMARK(BM_SqliteShellCsv)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(3);
#endif

}  // namespace

int main(int argc, char** argv) {
  std::filesystem::create_directories(Folder());
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  std::printf("\nRatio (best of 3):\n");
  bench_support::PrintRatio("export / sqlite C API", "verdal", "sqlite", 30);
  bench_support::PrintRatio("export / sqlite3 shell", "verdal", "sqlite shell", 30);
  VERDAL_CloseAllDBs();
  std::filesystem::remove_all(Folder());
  benchmark::Shutdown();
  return 0;
}
