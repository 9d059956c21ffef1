// Saving and loading a database of 1,000,000 records with 10 fields in 1,000 categories, against
// its peers in the same run: the raw write and read of the same number of bytes, and SQLite
// saving and loading the same rows. Ratios are printed at the end (our time / peer time).
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <sys/types.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#if VERDAL_HAVE_SQLITE
#include <sqlite3.h>
#endif

#include "support/best_time.h"
#include "support/big_database.h"
#include "verdal.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kRecords = 1000000;

std::map<std::string, double>& g_seconds = bench_support::BestSeconds();  // the best time of each step
std::map<std::string, double> g_peakBytes;

std::string Folder() {
  static std::string folder = [] {
    std::string pattern = (std::filesystem::temp_directory_path() / "verdal-bench-XXXXXX").string();
    return std::string(mkdtemp(pattern.data()));
  }();
  return folder;
}

VerdalHandle Big() {
  static VerdalHandle db = [] {
    VerdalHandle h = bench_support::NewDatabaseWithFields();
    bench_support::AddRecords(h, bench_support::AddCategories(h), kRecords, bench_support::Values());
    return h;
  }();
  return db;
}

// Reading /proc/self/status: resident memory now and its peak since the last reset.
long StatusKb(const char* key) {
  std::ifstream status("/proc/self/status");
  std::string line;
  while (std::getline(status, line))
    if (line.rfind(key, 0) == 0) return std::stol(line.substr(std::strlen(key)));
  return 0;
}


std::string FileFor(const char* kind) { return Folder() + "/" + kind + ".dbd"; }

void Save(benchmark::State& state, const char* kind, const char* password, int compress) {
  VerdalHandle db = Big();
  VERDAL_SetPWDAndCompression(db, password, compress);
  std::string name = FileFor(kind);
  bench_support::Timed(state, std::string("save ") + kind, [&] { VERDAL_Save(db, name.c_str()); });
  state.counters["MB"] = static_cast<double>(std::filesystem::file_size(name)) / 1e6;
}

// A load is mostly what a host does once, early in its process, when no freed memory of earlier
// steps is at hand to be reused: every page it fills is new. Each such step therefore also runs
// in a fresh process of this program (--child), which prints its time and the growth of its
// peak resident memory.
enum class ChildStep { kLoad, kRawRead, kSqliteLoad };

struct ChildResult {
  double seconds = -1;
  double peakBytes = -1;
};

ChildResult RunInFreshProcess(ChildStep step, const std::string& name, const char* password) {
  std::string command = "/proc/" + std::to_string(getpid()) + "/exe --child " +
                        std::to_string(static_cast<int>(step)) + " '" + name + "' '" +
                        (password != nullptr ? password : "") + "'";
  ChildResult result;
  FILE* out = popen(command.c_str(), "r");
  if (out == nullptr) return result;
  if (std::fscanf(out, "%lf %lf", &result.seconds, &result.peakBytes) != 2) result = ChildResult{};
  pclose(out);
  return result;
}

double SqliteLoadSeconds(const std::string& name);

int ChildMain(int step, const char* name, const char* password) {
  long before = StatusKb("VmRSS:");
  auto start = Clock::now();
  bool ok = true;
  if (step == static_cast<int>(ChildStep::kLoad)) {
    ok = VERDAL_OpenDB(name, *password != '\0' ? password : nullptr, 1, 0, nullptr, 3, 1, 0) != 0;
  } else if (step == static_cast<int>(ChildStep::kRawRead)) {
    const size_t size = std::filesystem::file_size(name);
    char* bytes = static_cast<char*>(std::malloc(size));
    int fd = ::open(name, O_RDONLY);
    ok = bytes != nullptr && ::read(fd, bytes, size) == static_cast<ssize_t>(size);
    ::close(fd);
    benchmark::DoNotOptimize(bytes);
  } else {
#if VERDAL_HAVE_SQLITE
    SqliteLoadSeconds(name);
#else
    ok = false;
#endif
  }
  double seconds = std::chrono::duration<double>(Clock::now() - start).count();
  std::printf("%f %f\n", ok ? seconds : -1.0, ok ? (StatusKb("VmHWM:") - before) * 1024.0 : -1.0);
  std::fflush(stdout);
  _exit(0);  // no need to free a gigabyte of records one by one
}

// The best of three fresh processes.
void Fresh(benchmark::State& state, const std::string& key, ChildStep step, const std::string& name,
           const char* password) {
  for (auto _ : state) {
    for (int run = 0; run < 3; ++run) {
      ChildResult r = RunInFreshProcess(step, name, password);
      if (r.seconds < 0) {
        state.SkipWithError("step failed in a fresh process");
        return;
      }
      if (!g_seconds.count(key) || r.seconds < g_seconds[key]) g_seconds[key] = r.seconds;
      if (step == ChildStep::kLoad) g_peakBytes[key] = r.peakBytes / static_cast<double>(std::filesystem::file_size(name));
    }
    state.SetIterationTime(g_seconds[key]);
  }
}

void Load(benchmark::State& state, const char* kind, const char* password) {
  std::string name = FileFor(kind);
  std::string key = std::string("load ") + kind;
  for (auto _ : state) {
    auto start = Clock::now();
    VerdalHandle db = VERDAL_OpenDB(name.c_str(), password, 1, 0, nullptr, 3, 1, 0);
    double seconds = std::chrono::duration<double>(Clock::now() - start).count();
    state.SetIterationTime(seconds);
    if (db == 0) state.SkipWithError("load failed");
    if (!g_seconds.count(key) || seconds < g_seconds[key]) g_seconds[key] = seconds;
    state.PauseTiming();
    VERDAL_CloseDB(db);
    state.ResumeTiming();
  }
  g_peakBytes[key] = RunInFreshProcess(ChildStep::kLoad, name, password).peakBytes /
                     static_cast<double>(std::filesystem::file_size(name));
}

void BM_SavePlain(benchmark::State& s) { Save(s, "plain", "", 0); }
void BM_LoadPlain(benchmark::State& s) { Load(s, "plain", nullptr); }
void BM_LoadPlainFresh(benchmark::State& s) {
  Fresh(s, "load plain, fresh process", ChildStep::kLoad, FileFor("plain"), nullptr);
}
void BM_SaveCompressed(benchmark::State& s) { Save(s, "compressed", "", 1); }
void BM_LoadCompressed(benchmark::State& s) { Load(s, "compressed", nullptr); }
void BM_SaveEnciphered(benchmark::State& s) { Save(s, "enciphered", "geheim", 0); }
void BM_LoadEnciphered(benchmark::State& s) { Load(s, "enciphered", "geheim"); }
void BM_SaveBoth(benchmark::State& s) { Save(s, "both", "geheim", 1); }
void BM_LoadBoth(benchmark::State& s) { Load(s, "both", "geheim"); }

// The peer of saving and loading: the same number of bytes written (and forced to disk, as a save
// does) and read back in one piece.
void BM_RawWrite(benchmark::State& state) {
  std::vector<char> bytes(std::filesystem::file_size(FileFor("plain")), 'x');
  std::string name = Folder() + "/raw.bin";
  bench_support::Timed(state, "raw write", [&] {
    int fd = ::open(name.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    if (::write(fd, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size())) state.SkipWithError("write");
    ::fsync(fd);
    ::close(fd);
  });
}

void BM_RawRead(benchmark::State& state) {
  std::string name = FileFor("plain");
  std::vector<char> bytes(std::filesystem::file_size(name));
  bench_support::Timed(state, "raw read", [&] {
    int fd = ::open(name.c_str(), O_RDONLY);
    if (::read(fd, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size())) state.SkipWithError("read");
    ::close(fd);
    benchmark::DoNotOptimize(bytes.data());
  });
}

// The same read into memory taken for it, as a load takes memory for what it reads: the first
// touch of each page costs the kernel a fault and a cleared page.
void BM_RawReadNew(benchmark::State& state) {
  std::string name = FileFor("plain");
  const size_t size = std::filesystem::file_size(name);
  bench_support::Timed(state, "raw read into new memory", [&] {
    char* bytes = static_cast<char*>(std::malloc(size));  // large: mapped afresh, given back at free
    int fd = ::open(name.c_str(), O_RDONLY);
    if (bytes == nullptr || ::read(fd, bytes, size) != static_cast<ssize_t>(size)) state.SkipWithError("read");
    ::close(fd);
    benchmark::DoNotOptimize(bytes);
    std::free(bytes);
  });
}

// The same read into memory new to a fresh process, as a load has it.
void BM_RawReadFresh(benchmark::State& state) {
  Fresh(state, "raw read, fresh process", ChildStep::kRawRead, FileFor("plain"), nullptr);
}

#if VERDAL_HAVE_SQLITE
// The same rows in SQLite: one table of categories, one of records with the ten values.
void BM_SqliteSave(benchmark::State& state) {
  VerdalHandle db = Big();
  // The rows as text, taken out of the database outside the timing.
  std::vector<std::vector<std::string>> rows;
  rows.reserve(kRecords);
  int32_t category = 0;
  for (int32_t c = VERDAL_Seek(db, -1, 1, 0, 1, 1, &category, 3); c >= 0;
       c = VERDAL_Seek(db, c, 1, 0, 1, 1, &category, 3)) {
    if (category == c) continue;  // a category: its records follow
    std::vector<std::string> row{std::to_string(c), std::to_string(category)};
    for (int f = 0; f < bench_support::kFields; ++f) row.emplace_back(VERDAL_GetData(db, f, c, 1, 0));
    rows.push_back(std::move(row));
  }
  std::string name = Folder() + "/peer.sqlite";
  bench_support::Timed(state, "sqlite save", [&] {
    std::filesystem::remove(name);
    sqlite3* s = nullptr;
    sqlite3_open(name.c_str(), &s);
    sqlite3_exec(s, "CREATE TABLE categories(id INTEGER PRIMARY KEY, name TEXT);"
                    "CREATE TABLE records(id INTEGER PRIMARY KEY, category INTEGER, name TEXT,"
                    " vorname TEXT, ort TEXT, strasse TEXT, preis REAL, menge REAL, datum TEXT,"
                    " zeit TEXT, aktiv INTEGER, bezahlt INTEGER); BEGIN", nullptr, nullptr, nullptr);
    sqlite3_stmt* cat = nullptr;
    sqlite3_prepare_v2(s, "INSERT INTO categories VALUES(?, 'Kategorie')", -1, &cat, nullptr);
    for (int i = 0; i < bench_support::kCategories; ++i) {
      sqlite3_bind_int(cat, 1, i);
      sqlite3_step(cat);
      sqlite3_reset(cat);
    }
    sqlite3_finalize(cat);
    sqlite3_stmt* ins = nullptr;
    sqlite3_prepare_v2(s, "INSERT INTO records VALUES(?,?,?,?,?,?,?,?,?,?,?,?)", -1, &ins, nullptr);
    for (const auto& row : rows) {
      for (int i = 0; i < 12; ++i)
        sqlite3_bind_text(ins, i + 1, row[static_cast<size_t>(i)].c_str(), -1, SQLITE_STATIC);
      sqlite3_step(ins);
      sqlite3_reset(ins);
    }
    sqlite3_finalize(ins);
    sqlite3_exec(s, "COMMIT", nullptr, nullptr, nullptr);
    sqlite3_close(s);
  });
}

double SqliteLoadSeconds(const std::string& name) {
  auto start = Clock::now();
  sqlite3* s = nullptr;
  sqlite3_open_v2(name.c_str(), &s, SQLITE_OPEN_READONLY, nullptr);
  std::vector<std::vector<std::string>> rows;
  rows.reserve(kRecords);
  sqlite3_stmt* q = nullptr;
  sqlite3_prepare_v2(s, "SELECT * FROM records", -1, &q, nullptr);
  while (sqlite3_step(q) == SQLITE_ROW) {
    std::vector<std::string> row;
    row.reserve(12);
    for (int i = 0; i < 12; ++i) {
      const unsigned char* t = sqlite3_column_text(q, i);
      row.emplace_back(t != nullptr ? reinterpret_cast<const char*>(t) : "");
    }
    rows.push_back(std::move(row));
  }
  sqlite3_finalize(q);
  sqlite3_close(s);
  benchmark::DoNotOptimize(rows.data());
  return std::chrono::duration<double>(Clock::now() - start).count();
}

void BM_SqliteLoad(benchmark::State& state) {
  std::string name = Folder() + "/peer.sqlite";
  bench_support::Timed(state, "sqlite load", [&] { SqliteLoadSeconds(name); });
}

void BM_SqliteLoadFresh(benchmark::State& state) {
  Fresh(state, "sqlite load, fresh process", ChildStep::kSqliteLoad, Folder() + "/peer.sqlite", nullptr);
}
#endif

BENCHMARK(BM_SavePlain)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_RawWrite)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_LoadPlain)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_RawRead)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_RawReadNew)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_LoadPlainFresh)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK(BM_RawReadFresh)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(1);
#if VERDAL_HAVE_SQLITE
BENCHMARK(BM_SqliteSave)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_SqliteLoad)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_SqliteLoadFresh)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(1);
#endif
BENCHMARK(BM_SaveCompressed)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK(BM_LoadCompressed)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK(BM_SaveEnciphered)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK(BM_LoadEnciphered)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK(BM_SaveBoth)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK(BM_LoadBoth)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(1);

void Ratio(const char* what, const char* ours, const char* peer) {
  if (g_seconds.count(ours) && g_seconds.count(peer))
    std::printf("%-28s %8.3f s / %8.3f s = %6.2f\n", what, g_seconds[ours], g_seconds[peer],
                g_seconds[ours] / g_seconds[peer]);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc == 5 && std::string(argv[1]) == "--child") return ChildMain(std::atoi(argv[2]), argv[3], argv[4]);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  std::printf("\nRatios (our time / peer time, best of the runs):\n");
  Ratio("plain save / raw write", "save plain", "raw write");
  Ratio("plain load / raw read", "load plain", "raw read");
  Ratio("plain load / read, new memory", "load plain", "raw read into new memory");
  Ratio("plain save / SQLite save", "save plain", "sqlite save");
  Ratio("plain load / SQLite load", "load plain", "sqlite load");
  std::printf("\nThe same in fresh processes (best of three), as a host's first load:\n");
  Ratio("plain load / raw read", "load plain, fresh process", "raw read, fresh process");
  Ratio("plain load / warm raw read", "load plain, fresh process", "raw read");
  Ratio("plain load / SQLite load", "load plain, fresh process", "sqlite load, fresh process");
  std::printf("\nPeak resident memory of a load in a fresh process, per byte of file:\n");
  for (const auto& [step, perByte] : g_peakBytes) std::printf("%-28s %6.1f\n", step.c_str(), perByte);
  std::filesystem::remove_all(Folder());
  benchmark::Shutdown();
  return 0;
}
