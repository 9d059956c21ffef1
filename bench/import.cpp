// Importing a CSV file of 1,000,000 rows and 10 columns (about 100 bytes a row; the first two
// columns a path of 50 regions and 20 cities each): VERDAL_Import through an .imp definition,
// mode 0, into an empty database in memory, against SQLite in memory reading the same file as its
// shell's .import does (a quote-aware reader, one prepared INSERT, one transaction), in the same
// run. Where the sqlite3 shell is installed, its own .import into :memory: is timed too.
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>
#include <vector>

#if VERDAL_HAVE_SQLITE
#include <sqlite3.h>
#endif

#include "support/best_time.h"
#include "verdal.h"

namespace {

// bench_support::Timed, with an untimed step after each iteration: closing a database is no part
// of an import, on either side.
template <class Step, class After>
void TimedThen(benchmark::State& state, const std::string& name, Step&& step, After&& after) {
  for (auto _ : state) {
    const auto start = std::chrono::steady_clock::now();
    state.counters["rows"] = static_cast<double>(step());
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    state.SetIterationTime(seconds);
    bench_support::NoteTime(name, seconds);
    after();
  }
}

constexpr int kRows = 1000000;
constexpr int kColumns = 10;

const std::filesystem::path& Folder() {
  static const std::filesystem::path folder =
      std::filesystem::temp_directory_path() / ("verdal-bench-import-" + std::to_string(getpid()));
  return folder;
}
std::string CsvPath() { return (Folder() / "rows.csv").string(); }
std::string DefinitionPath() { return (Folder() / "rows.imp").string(); }

// Writes the file and its definition once. Texts are enclosed in quotes, one in 16 holding the
// separator, so that a reader has to honour the quotes.
void MakeFiles() {
  static const bool made = [] {
    std::filesystem::create_directories(Folder());
    std::ofstream csv(CsvPath(), std::ios::binary);
    csv << "Region,Stadt,Name,Strasse,PLZ,Preis,Menge,Datum,Bemerkung,Code\n";
    char line[256];
    for (int i = 0; i < kRows; ++i) {
      const unsigned h = static_cast<unsigned>(i) * 2654435761u;
      const int region = static_cast<int>(h % 50), city = static_cast<int>((h >> 8) % 20);
      std::snprintf(line, sizeof line,
                    "Region %02d,Stadt %02d-%02d,\"Kunde %07u%s\",\"Hauptstrasse %u\",%05u,%u.%02u,%u,"
                    "2024-%02u-%02u,\"Auftrag %u vom Lager %u\",K%08u\n",
                    region, region, city, h % 9999991, (h & 15) == 0 ? ", GmbH" : "", h % 397 + 1,
                    h % 90000 + 10000, h % 5000, h % 100, h % 97 + 1, h % 12 + 1, h % 28 + 1,
                    static_cast<unsigned>(i), h % 40, h % 100000000);
      csv << line;
    }
    std::ofstream imp(DefinitionPath(), std::ios::binary);
    imp << "[ODBC_IMPORT]\nTXT_IMPORT_USE=1\nDATASOURCE=rows.csv\nIMPORT_TYPE=0\nTXT_IMPORT_SEPTYPE=2\n"
           "TXT_IMPORT_STRING_DELIM=\"\nTXT_IMPORT_CHARSET=UTF-8\nPATH_COLUMNS=Region,Stadt\n";
    return true;
  }();
  (void)made;
}

void BM_VerdalImport(benchmark::State& s) {
  MakeFiles();
  setenv("VERDAL_GATEWAY_DIR", VERDAL_GATEWAY_FOLDER, 1);
  bool failed = false;
  VerdalHandle db = 0;
  TimedThen(s, "verdal", [&] {
    db = VERDAL_OpenDB(nullptr, nullptr, 1, 0, nullptr, 3, 0, 0);
    int32_t count = 0;
    int32_t* cursors = nullptr;
    const int32_t ok = VERDAL_Import(db, DefinitionPath().c_str(), 0, nullptr, nullptr, 0, 0, &count,
                                     &cursors, 0, nullptr, nullptr, 0);
    if (ok != 1 || count != kRows) failed = true;
    if (cursors != nullptr) VERDAL_GetCategoryDeleteChildList(cursors);
    return static_cast<int64_t>(count);
  }, [&] { VERDAL_CloseDB(db); });
  if (failed) s.SkipWithError(("import failed, last error " + std::to_string(VERDAL_GetLastError())).c_str());
}
BENCHMARK(BM_VerdalImport)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(3);

#if VERDAL_HAVE_SQLITE
// One record of a CSV stream as the sqlite3 shell reads it: a field opened by a quote runs to the
// next single quote, "" stands for one; otherwise up to the separator or the line's end.
bool ReadRecord(std::FILE* in, std::vector<std::string>& fields) {
  fields.clear();
  int c = getc_unlocked(in);
  if (c == EOF) return false;
  std::string field;
  for (;;) {
    field.clear();
    if (c == '"') {
      for (c = getc_unlocked(in); c != EOF; c = getc_unlocked(in)) {
        if (c == '"' && (c = getc_unlocked(in)) != '"') break;
        field += static_cast<char>(c);
      }
    }
    for (; c != ',' && c != '\n' && c != EOF; c = getc_unlocked(in)) field += static_cast<char>(c);
    fields.push_back(field);
    if (c != ',') return true;
    c = getc_unlocked(in);
  }
}

void BM_SqliteImport(benchmark::State& s) {
  MakeFiles();
  sqlite3* db = nullptr;
  TimedThen(s, "sqlite", [&] {
    sqlite3_open(":memory:", &db);
    std::FILE* in = std::fopen(CsvPath().c_str(), "rb");
    std::vector<std::string> fields;
    ReadRecord(in, fields);  // the column line names the table's columns, all TEXT as .import has them
    std::string create = "CREATE TABLE t(", insert = "INSERT INTO t VALUES(";
    for (size_t i = 0; i < fields.size(); ++i) {
      create += (i ? ", \"" : "\"") + fields[i] + "\" TEXT";
      insert += i ? ",?" : "?";
    }
    sqlite3_exec(db, (create + ")").c_str(), nullptr, nullptr, nullptr);
    sqlite3_exec(db, "BEGIN", nullptr, nullptr, nullptr);
    sqlite3_stmt* ins = nullptr;
    sqlite3_prepare_v2(db, (insert + ")").c_str(), -1, &ins, nullptr);
    int64_t rows = 0;
    while (ReadRecord(in, fields)) {
      for (int i = 0; i < kColumns; ++i)
        sqlite3_bind_text(ins, i + 1, fields[static_cast<size_t>(i)].data(),
                          static_cast<int>(fields[static_cast<size_t>(i)].size()), SQLITE_STATIC);
      rows += sqlite3_step(ins) == SQLITE_DONE;
      sqlite3_reset(ins);
    }
    sqlite3_finalize(ins);
    sqlite3_exec(db, "COMMIT", nullptr, nullptr, nullptr);
    std::fclose(in);
    return rows;
  }, [&] { sqlite3_close(db); });
}
BENCHMARK(BM_SqliteImport)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(3);
#endif

// The sqlite3 shell's own .import into :memory:, the process start included (a few ms).
void BM_SqliteShellImport(benchmark::State& s) {
  MakeFiles();
  if (std::system("command -v sqlite3 >/dev/null") != 0) {
    s.SkipWithError("no sqlite3 shell");
    return;
  }
  bench_support::Timed(s, "sqlite shell", [] {
    std::FILE* shell = popen("sqlite3 :memory: >/dev/null", "w");
    std::fprintf(shell, ".mode csv\n.import '%s' t\n.quit\n", CsvPath().c_str());
    pclose(shell);
  });
}
BENCHMARK(BM_SqliteShellImport)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(3);

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  std::printf("\nRatio (best of 3):\n");
  bench_support::PrintRatio("import / sqlite C API", "verdal", "sqlite", 30);
  bench_support::PrintRatio("import / sqlite3 shell", "verdal", "sqlite shell", 30);
  VERDAL_CloseAllDBs();
  std::filesystem::remove_all(Folder());
  benchmark::Shutdown();
  return 0;
}
