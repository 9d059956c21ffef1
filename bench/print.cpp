// Laying out and printing 100,000 records of 8 columns to a PDF (A4, automatic widths, a total
// with running subtotals): the printout's layout pass and every page drawn through the PDF
// printer, against the floor of the same cell texts drawn at the same places with plain cairo
// text calls and no layout logic, in the same run. Also VERDAL_PrintTable end to end, headless
// (row marking, the preview's recorded pages, then the print).
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <unistd.h>
#include <vector>

#include "engine/db_manager.h"
#include "print/pdf_printer.h"
#include "print/print_out.h"
#include "print/print_rows.h"
#include "support/best_time.h"
#include "api/field_helpers.h"
#include "support/print_floor.h"
#include "verdal.h"

namespace {

using namespace verdal;

constexpr int kRows = 100000;
constexpr int kFields = 8;
const char* const kNames[kFields] = {"Name", "Strasse", "Ort", "Preis", "Menge", "Rabatt", "Datum", "Bemerkung"};
const int16_t kTypes[kFields] = {0, 0, 0, 1, 1, 1, 5, 0};

const std::filesystem::path& Folder() {
  static const std::filesystem::path folder =
      std::filesystem::temp_directory_path() / ("verdal-bench-print-" + std::to_string(getpid()));
  return folder;
}

VerdalHandle Database() {
  static const VerdalHandle db = [] {
    VerdalHandle h = VERDAL_OpenDB(nullptr, nullptr, 1, 0, nullptr, 3, 0, 0);
    for (int f = 0; f < kFields; ++f) AddField(h, kNames[f], kTypes[f]);
    char v[kFields][64];
    for (int i = 0; i < kRows; ++i) {
      const unsigned k = static_cast<unsigned>(i) * 2654435761u;
      std::snprintf(v[0], 64, "Kunde %07u", k % 9999991);
      std::snprintf(v[1], 64, "Hauptstrasse %u", k % 397 + 1);
      std::snprintf(v[2], 64, "%05u Bonn", k % 90000 + 10000);
      std::snprintf(v[3], 64, "%u.%02u", k % 5000, k % 100);
      std::snprintf(v[4], 64, "%u", k % 97 + 1);
      std::snprintf(v[5], 64, "%u.5", k % 30);
      std::snprintf(v[6], 64, "%02u.%02u.2024", k % 28 + 1, k % 12 + 1);
      std::snprintf(v[7], 64, "%s", (k & 7) == 0 ? "bitte vor dem Versand anrufen" : "");
      const int32_t cursor = VERDAL_AddRecord(h, VERDAL_CURSOR_ROOT, v[0], 0, v[0], 0, 0, nullptr);
      for (int f = 1; f < kFields; ++f) VERDAL_SetData(h, f, v[f], cursor, 0, nullptr, nullptr);
    }
    return h;
  }();
  return db;
}

options::TPrintData Configuration() {
  options::TPrintData data;
  data.title1 = "Kundenliste";
  for (const char* name : kNames) {
    options::TPrintItem item;
    item.fieldName = item.title = name;
    data.items.push_back(item);
  }
  data.items[3].total = data.items[3].subtotals = 1;
  return data;
}

// Passes every call on to the printer and notes where each text went, for the floor.
class NotingSurface : public print::Surface {
 public:
  NotingSurface(print::Surface& target, std::vector<bench_support::PlacedCell>& cells) : t_(target), cells_(cells) {}
  int32_t page = 0;
  print::DeviceCaps Caps() const override { return t_.Caps(); }
  void SetOrigin(int32_t x, int32_t y) override { ox_ = x, oy_ = y, t_.SetOrigin(x, y); }
  void SelectFont(const print::FontSpec& font) override { font_ = font, t_.SelectFont(font); }
  const float* Advances() override { return t_.Advances(); }
  print::TextMetrics Metrics() override { return t_.Metrics(); }
  void SetTextColour(int32_t c) override { t_.SetTextColour(c); }
  void TextOut(int32_t x, int32_t y, const print::Rect* clip, std::string_view text) override {
    cells_.push_back({page, x + ox_, y + oy_, std::string(text), font_});
    t_.TextOut(x, y, clip, text);
  }
  void SelectPen(int32_t w, int32_t c) override { t_.SelectPen(w, c); }
  void MoveTo(int32_t x, int32_t y) override { t_.MoveTo(x, y); }
  void LineTo(int32_t x, int32_t y) override { t_.LineTo(x, y); }
  void FillRect(const print::Rect& r, int32_t c) override { t_.FillRect(r, c); }
  std::unique_ptr<Surface> NewRecording(int32_t w, int32_t h) override { return t_.NewRecording(w, h); }
  std::unique_ptr<print::RecordedPage> EndRecording(std::unique_ptr<Surface> r) override {
    return t_.EndRecording(std::move(r));
  }
  void Play(const print::RecordedPage& p, float s) override { t_.Play(p, s); }

 private:
  print::Surface& t_;
  std::vector<bench_support::PlacedCell>& cells_;
  print::FontSpec font_;
  int32_t ox_ = 0, oy_ = 0;
};

std::vector<bench_support::PlacedCell> g_cells;
int32_t g_pages = 0;

// The printout as the print command runs it: a layout pass, then every page to the PDF.
int64_t PrintOnce(const std::string& path, bool note) {
  engine::TDBManager& db = *engine::AcceptHandle(Database());
  print::MarkFilteredRows(db.store, nullptr, nullptr);
  const print::PageSetup setup;
  print::TCalyxPrintOut out(db.store, Configuration(), nullptr, 0, -1, false, {});
  std::unique_ptr<print::CairoSurface> info = print::OpenInfoContext(setup);
  out.BeginPrinting(*info);
  std::string reason;
  std::unique_ptr<print::PdfPrinter> pdf = print::PdfPrinter::Open(path, setup, reason);
  if (pdf == nullptr) return 0;
  if (note) g_cells.clear();
  NotingSurface noting(*pdf, g_cells);
  for (int32_t page = 1; page <= out.PageCount(); ++page) {
    pdf->StartPage();
    noting.page = page - 1;
    if (note) out.PrintPage(page, noting);
    else out.PrintPage(page, *pdf);
    if (!pdf->EndPage()) return 0;
  }
  g_pages = out.PageCount();
  return pdf->Close(reason) ? kRows : 0;
}

void BM_Printout(benchmark::State& s) {
  std::filesystem::create_directories(Folder());
  const std::string path = (Folder() / "verdal.pdf").string();
  PrintOnce(path, true);  // the placed cells for the floor, outside the timing
  bench_support::Timed(s, "printout", [&] { return PrintOnce(path, false); });
  s.counters["pages"] = g_pages;
  s.counters["pages/s"] = benchmark::Counter(g_pages, benchmark::Counter::kIsIterationInvariantRate);
}
BENCHMARK(BM_Printout)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(3);

void BM_CairoFloor(benchmark::State& s) {
  const std::string path = (Folder() / "floor.pdf").string();
  bench_support::Timed(s, "floor", [&] {
    return bench_support::DrawFloorPdf(g_cells, print::PageSetup(), path) ? kRows : 0;
  });
  s.counters["cells"] = static_cast<double>(g_cells.size());
}
BENCHMARK(BM_CairoFloor)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(3);

void BM_PrintTableHeadless(benchmark::State& s) {
  const VerdalHandle db = Database();
  setenv("VERDAL_PRINT_DIR", Folder().c_str(), 1);
  bench_support::Timed(s, "VERDAL_PrintTable", [&] { return VERDAL_PrintTable(db, "", nullptr, nullptr, 0, nullptr, -1) == 1 ? kRows : 0; });
}
BENCHMARK(BM_PrintTableHeadless)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(1);

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  std::printf("\n%d rows, %d pages\n", kRows, g_pages);
  auto& best = bench_support::BestSeconds();
  if (best.count("printout")) {
    std::printf("printout: %.0f pages/s, %.2f us per row\n", g_pages / best["printout"], best["printout"] * 1e6 / kRows);
  }
  if (best.count("floor")) std::printf("floor:    %.0f pages/s, %.2f us per row\n", g_pages / best["floor"], best["floor"] * 1e6 / kRows);
  bench_support::PrintRatio("printout / cairo floor", "printout", "floor", 30);
  std::error_code e;
  std::printf("PDF sizes: printout %.1f MB, floor %.1f MB\n", std::filesystem::file_size(Folder() / "verdal.pdf", e) / 1e6,
              std::filesystem::file_size(Folder() / "floor.pdf", e) / 1e6);
  if (std::getenv("VERDAL_BENCH_KEEP") == nullptr) std::filesystem::remove_all(Folder());
  benchmark::Shutdown();
  return 0;
}
