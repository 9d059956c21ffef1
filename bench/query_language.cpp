// The query language: compiling a filter once, and evaluating it once per node.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "query/query_expr.h"

#ifdef VERDAL_HAVE_SQLITE
#include <sqlite3.h>
#endif

using namespace verdal::query;

namespace {

constexpr size_t kRows = 1000000;

struct Row {
  std::string name;
  std::string preis;
};

const std::vector<Row>& Rows() {
  static const std::vector<Row> rows = [] {
    static const char* const kNames[] = {"Graben", "Abend",   "Kuchen", "Laborant",
                                         "Baum",   "Krabbe",  "Tisch",  "Habicht"};
    std::mt19937 random(42);
    std::vector<Row> r(kRows);
    char price[32];
    for (size_t i = 0; i < kRows; ++i) {
      std::snprintf(price, sizeof price, "%.2f", static_cast<double>(random() % 3000) / 100.0);
      r[i].name = std::string(kNames[random() % 8]) + std::to_string(i % 97);
      r[i].preis = price;
    }
    return r;
  }();
  return rows;
}

// Fields served the way an engine query serves them: a lookup in the current node's values.
class BenchQuery : public QueryExpr {
 public:
  BenchQuery() {
    DefineField("NAME", false, 0);
    DefineField("PREIS", false, 1);
    DefineField("ORT", false, 2);
    DefineField("PLZ", false, 3);
  }
  QX_Error GetField(QX_FieldText* textOut, int32_t index) override {
    textOut->owned = false;
    textOut->text = index == 0 ? current->name.c_str() : index == 1 ? current->preis.c_str() : "";
    return nullptr;
  }
  const Row* current = nullptr;
};

std::string TwentyClauses() {
  static const char* const kClauses[] = {
      "^NAME*=^\"AB\"", "#PREIS < 10.50", "ORT = \"Berlin\"", "#PLZ >= 10000",
      "NAME <> \"\"",   "#PREIS * 2 > 3", "^ORT*=^\"HAMB\"",  "not (PLZ = \"0\")",
      "@1 *= \"e\"",    "#@2 <= 99.99"};
  std::string text;
  for (int i = 0; i < 20; ++i) {
    if (i > 0) text += i % 3 == 0 ? " or " : " and ";
    text += kClauses[i % 10];
  }
  return text + ";";
}

void BM_ParseFilter20Clauses(benchmark::State& state) {
  BenchQuery q;
  const std::string text = TwentyClauses();
  for (auto _ : state) {
    if (q.Parse(text.c_str()) != nullptr) state.SkipWithError("parse failed");
    benchmark::DoNotOptimize(q.Tree());
  }
  state.SetLabel(std::to_string(text.size()) + " characters");
}
BENCHMARK(BM_ParseFilter20Clauses);

// One iteration is one evaluation, on the next of a million prepared nodes.
void BM_EvalFilterPerNode(benchmark::State& state) {
  const std::vector<Row>& rows = Rows();
  BenchQuery q;
  if (q.Parse("^NAME*=^\"AB\" and #PREIS < 10.50;") != nullptr) state.SkipWithError("parse failed");
  size_t i = 0, passed = 0;
  for (auto _ : state) {
    q.current = &rows[i];
    if (++i == rows.size()) i = 0;
    bool pass = false;
    q.EvalBool(&pass);
    passed += pass;
  }
  benchmark::DoNotOptimize(passed);
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations()));
}
BENCHMARK(BM_EvalFilterPerNode);

#ifdef VERDAL_HAVE_SQLITE
// The same filter in SQLite over an in-memory table, per row.
void BM_SqliteFilterPerRow(benchmark::State& state) {
  const std::vector<Row>& rows = Rows();
  sqlite3* db = nullptr;
  sqlite3_open(":memory:", &db);
  sqlite3_exec(db, "CREATE TABLE t(name TEXT, preis TEXT)", nullptr, nullptr, nullptr);
  sqlite3_exec(db, "BEGIN", nullptr, nullptr, nullptr);
  sqlite3_stmt* insert = nullptr;
  sqlite3_prepare_v2(db, "INSERT INTO t VALUES(?, ?)", -1, &insert, nullptr);
  for (const Row& r : rows) {
    sqlite3_bind_text(insert, 1, r.name.c_str(), -1, SQLITE_STATIC);
    sqlite3_bind_text(insert, 2, r.preis.c_str(), -1, SQLITE_STATIC);
    sqlite3_step(insert);
    sqlite3_reset(insert);
  }
  sqlite3_finalize(insert);
  sqlite3_exec(db, "COMMIT", nullptr, nullptr, nullptr);
  sqlite3_stmt* select = nullptr;
  sqlite3_prepare_v2(db,
                     "SELECT count(*) FROM t WHERE instr(upper(name), 'AB') > 0 "
                     "AND CAST(preis AS REAL) < 10.50",
                     -1, &select, nullptr);
  for (auto _ : state) {
    sqlite3_step(select);
    benchmark::DoNotOptimize(sqlite3_column_int(select, 0));
    sqlite3_reset(select);
  }
  sqlite3_finalize(select);
  sqlite3_close(db);
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * rows.size()));
}
BENCHMARK(BM_SqliteFilterPerRow)->Unit(benchmark::kMillisecond);
#endif

}  // namespace

BENCHMARK_MAIN();
