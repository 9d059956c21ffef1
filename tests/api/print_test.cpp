// Tables printed through the C interface to real PDF files, read back with poppler's tools: pages,
// titles, page numbers of two horizontal parts, running subtotals and the total; the preview as a
// host shows it (pages to PNG, the commands); the callback's phases; the print action.
#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <regex>
#include <string>
#include <vector>

#include "field_helpers.h"
#include "scripted_ui.h"
#include "temp_folder.h"
#include "verdal.h"

namespace {

std::string Run(const std::string& command) {
  std::string out;
  if (FILE* p = popen(command.c_str(), "r")) {
    char buffer[4096];
    size_t n;
    while ((n = fread(buffer, 1, sizeof buffer, p)) > 0) out.append(buffer, n);
    pclose(p);
  }
  return out;
}

int PdfPages(const std::string& pdf) {
  std::smatch m;
  const std::string info = Run("pdfinfo '" + pdf + "' 2>&1");
  return std::regex_search(info, m, std::regex("Pages:\\s+(\\d+)")) ? std::stoi(m[1]) : -1;
}

// The text of each page, in page order.
std::vector<std::string> PdfPageTexts(const std::string& pdf) {
  std::vector<std::string> pages;
  std::string all = Run("pdftotext -layout '" + pdf + "' - 2>/dev/null");
  size_t start = 0;
  for (size_t feed; (feed = all.find('\f', start)) != std::string::npos; start = feed + 1)
    pages.push_back(all.substr(start, feed - start));
  return pages;
}

void PngSize(const std::string& png, uint32_t& width, uint32_t& height) {
  const std::vector<uint8_t> b = TempFolder::Read(png);
  width = height = 0;
  if (b.size() < 24) return;
  width = (b[16] << 24) | (b[17] << 16) | (b[18] << 8) | b[19];
  height = (b[20] << 24) | (b[21] << 16) | (b[22] << 8) | b[23];
}

class Printing : public ::testing::Test {
 protected:
  void SetUp() override {
    VERDAL_SetLanguage(0x407);
    VerdalHandle made = OpenMemoryDatabase();
    for (const char* field : {"Name", "Ort", "Notiz"}) AddField(made, field, 0);
    AddField(made, "Betrag", 1);
    for (int i = 1; i <= kRows; ++i) {
      const std::string name = "Kunde " + std::to_string(i), amount = std::to_string(i);
      const int32_t cursor = VERDAL_AddRecord(made, VERDAL_CURSOR_ROOT, name.c_str(), 0, nullptr, -1, 0, nullptr);
      VERDAL_SetData(made, 0, name.c_str(), cursor, 0, nullptr, nullptr);
      VERDAL_SetData(made, 1, i % 2 ? "Bonn" : "K\xF6ln", cursor, 0, nullptr, nullptr);
      VERDAL_SetData(made, 2, "eine Notiz, die breit genug ist", cursor, 0, nullptr, nullptr);
      VERDAL_SetData(made, 3, amount.c_str(), cursor, 0, nullptr, nullptr);
    }
    // Betrag totals with subtotals; Notiz 150 mm wide pushes itself into a second part.
    MakeOption(ui, made, VERDAL_OPTION_PRINT, "Liste", {"Name", "Ort", "Betrag", "Notiz"}, [](const VerdalSheet* s) {
      const int32_t page = PageWith(s, "Gedruckte Spalten:");
      s->setText(s, ControlId(s, page, "Gedruckte Spalten:"), "Betrag");
      Set(s, page, "Summe", "1");
      Set(s, page, "Zwischensummen", "1");
      s->setText(s, ControlId(s, page, "Gedruckte Spalten:"), "Notiz");
      Set(s, page, "Breite automatisch", "0");
      Set(s, page, "Breite (mm):", "150");
      Set(s, PageWith(s, "Titel 1:"), "Titel 1:", "Umsatzliste");
    });
    file = dir / "umsatz.dbd";
    ASSERT_EQ(VERDAL_Save(made, file.c_str()), 1);
    VERDAL_CloseDB(made);
    db = VERDAL_OpenDB(file.c_str(), nullptr, 1, 0, nullptr, 1, 0, 0);
    ASSERT_NE(db, 0u);
  }
  void TearDown() override {
    VERDAL_SetNumericTPoints(0, 1);
    VERDAL_SetLanguage(0);
    VERDAL_CloseAllDBs();
  }

  static constexpr int kRows = 2000;
  TempFolder dir;
  ScriptedUi ui;
  std::string file;
  VerdalHandle db = 0;
};

TEST_F(Printing, HeadlessPrintsTwoPartsWithRunningSubtotalsBesideTheDatabase) {
  VERDAL_SetNumericTPoints(1, 1);
  ASSERT_EQ(VERDAL_PrintTable(db, "Liste", nullptr, nullptr, 0, nullptr, -1), 1);
  const std::string pdf = dir / "umsatz.pdf";
  const std::vector<std::string> pages = PdfPageTexts(pdf);
  ASSERT_EQ(static_cast<int>(pages.size()), PdfPages(pdf));
  ASSERT_GE(pages.size(), 4u);
  ASSERT_EQ(pages.size() % 2, 0u) << "both parts break at the same rows";
  const size_t perPart = pages.size() / 2;
  long double running = 0;
  int lastCustomer = 0;
  for (size_t p = 0; p < pages.size(); ++p) {
    const std::string& text = pages[p];
    EXPECT_NE(text.find("Umsatzliste"), std::string::npos) << "page " << p + 1;
    if (p == 0) {
      EXPECT_NE(text.find("K\xC3\xB6ln"), std::string::npos) << "code page 1252 text comes out as itself";
    }
    const std::string number = "Seite: " + std::to_string(p % perPart + 1) + "." + std::to_string(p / perPart + 1);
    EXPECT_NE(text.find(number), std::string::npos) << number;
    if (p >= perPart) {
      EXPECT_EQ(text.find("Kunde"), std::string::npos) << "the second part has only the wide column";
      EXPECT_NE(text.find("eine Notiz"), std::string::npos);
      continue;
    }
    // The last customer on the page, and the subtotal of all rows up to it.
    static const std::regex customer("Kunde (\\d+)");
    for (auto it = std::sregex_iterator(text.begin(), text.end(), customer);
         it != std::sregex_iterator(); ++it)
      lastCustomer = std::stoi((*it)[1]);
    running = static_cast<long double>(lastCustomer) * (lastCustomer + 1) / 2;
    char expected[64];
    std::snprintf(expected, sizeof expected, "%.0Lf", running);
    std::string shown = expected;
    for (int at = static_cast<int>(shown.size()) - 3; at > 0; at -= 3) shown.insert(static_cast<size_t>(at), ".");
    shown += ",00";
    const bool last = p + 1 == perPart;
    EXPECT_NE(text.find(last ? "Summe" : "Zwischensumme"), std::string::npos) << "page " << p + 1;
    EXPECT_NE(text.find(shown), std::string::npos) << "page " << p + 1 << " wants " << shown;
  }
  EXPECT_EQ(lastCustomer, kRows);
  EXPECT_NE(pages[perPart - 1].find("2.001.000,00"), std::string::npos);
}

TEST_F(Printing, PreviewShownPagesAsPngAndItsCommands) {
  struct Seen {
    int32_t pages = 0;
    std::string status;
    uint32_t w100 = 0, h100 = 0, w25 = 0, h25 = 0;
    int calls = 0;
  } seen;
  const std::string png = dir / "seite.png", pdf = dir / "gewaehlt.pdf";
  ui.pickPath = pdf;
  ui.ShowPreviews([&](const VerdalPrintPreview* p) -> int32_t {
    if (++seen.calls > 1) return VERDAL_PREVIEW_CLOSE;
    seen.pages = p->pageCount;
    seen.status = p->statusText;
    EXPECT_EQ(p->renderPage(p, 1, 8, png.c_str()), 1);
    PngSize(png, seen.w100, seen.h100);
    EXPECT_EQ(p->renderPage(p, 1, 5, png.c_str()), 1);
    PngSize(png, seen.w25, seen.h25);
    EXPECT_EQ(p->renderPage(p, p->pageCount + 1, 5, png.c_str()), 0);
    EXPECT_EQ(p->renderPage(p, 1, 12, png.c_str()), 0);
    return VERDAL_PREVIEW_PRINT;
  });
  const int32_t rows[] = {0, 1, 2};
  ASSERT_EQ(VERDAL_PrintTable(db, "Liste", nullptr, nullptr, 3, rows, -1), 1);
  EXPECT_EQ(seen.calls, 2) << "shown again after printing, then closed";
  EXPECT_EQ(seen.pages, 2);
  EXPECT_EQ(seen.status, "Seite 1 von 2");
  // A4 at 96 dots per inch: 210 mm and 297 mm are 794 x 1123 pixels, a quarter of it 198 x 281.
  EXPECT_EQ(seen.w100, 794u);
  EXPECT_EQ(seen.h100, 1123u);
  EXPECT_EQ(seen.w25, 198u);
  EXPECT_EQ(seen.h25, 281u);
  EXPECT_EQ(PdfPages(pdf), 2);
  EXPECT_NE(PdfPageTexts(pdf)[0].find("Kunde 3"), std::string::npos);
  EXPECT_FALSE(std::ifstream(dir / "umsatz.pdf").good()) << "a shown preview prints where the user says";
}

// A host that, from inside the preview, installs another user interface, empties the database and
// closes it: the preview goes on with the host it showed itself on, which must stay alive until
// the call ends, and prints what the database still holds; the close waits for the call's end.
TEST_F(Printing, AHostThatCallsBackInFromThePreview) {
  int calls = 0;
  ui.script = [](const VerdalSheet* s) { s->pressCancel(s); };
  ui.pickPath = dir / "innen.pdf";
  ui.ShowPreviews([&](const VerdalPrintPreview*) -> int32_t {
    VerdalUserInterface other{};
    other.size = sizeof other;
    VERDAL_SetUserInterface(&other);
    if (++calls == 2) {
      VERDAL_EmptyData(db, 0);
      VERDAL_CloseDB(db);
    }
    return calls == 1 ? VERDAL_PREVIEW_CONFIGURE : calls == 2 ? VERDAL_PREVIEW_PRINT : VERDAL_PREVIEW_CLOSE;
  });
  const int32_t rows[] = {0};
  EXPECT_EQ(VERDAL_PrintTable(db, "Liste", nullptr, nullptr, 1, rows, -1), 1);
  EXPECT_EQ(calls, 3);
  EXPECT_EQ(PdfPages(dir / "innen.pdf"), 2);
  EXPECT_EQ(VERDAL_GetDBCount(), 0) << "closed once the print returned";
}

TEST_F(Printing, CallbackPhasesChooseRowsAndTitles) {
  static std::vector<int32_t> phases;
  static int32_t hostRows[] = {5, 6};
  phases.clear();
  VerdalPrintFn callback = [](VerdalPrintInfo* info, int32_t phase) -> int32_t {
    phases.push_back(phase);
    if (phase != 1) return 0;
    info->title1 = "Aus dem Host";
    info->count = 2;
    info->ids = hostRows;
    return 1;
  };
  ASSERT_EQ(VERDAL_PrintTable(db, "Liste", "Betrag > 1000", callback, 0, nullptr, -1), 1);
  EXPECT_EQ(phases, (std::vector<int32_t>{1, 3}));
  const std::vector<std::string> pages = PdfPageTexts(dir / "umsatz.pdf");
  ASSERT_EQ(pages.size(), 2u);
  EXPECT_NE(pages[0].find("Aus dem Host"), std::string::npos);
  EXPECT_NE(pages[0].find("Kunde 6"), std::string::npos);
  EXPECT_NE(pages[0].find("Kunde 7"), std::string::npos);
  EXPECT_EQ(pages[0].find("Kunde 8"), std::string::npos);
  EXPECT_NE(pages[0].find("13,00"), std::string::npos) << "the total of the host's rows";
}

TEST_F(Printing, TheActionPrintsAndHandlesAreChecked) {
  const int32_t rows[] = {9};
  VERDAL_ExecAction(db, VERDAL_OPTION_PRINT, "Liste", 1, rows);
  const std::vector<std::string> pages = PdfPageTexts(dir / "umsatz.pdf");
  ASSERT_EQ(pages.size(), 2u);
  EXPECT_NE(pages[0].find("Kunde 10"), std::string::npos);
  EXPECT_EQ(VERDAL_PrintTable(db + 1000, "Liste", nullptr, nullptr, 0, nullptr, -1), 0);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_HANDLE);
  // A configuration of an empty name is not added; one of a new name is.
  const int32_t before = VERDAL_NumOptions(db, VERDAL_OPTION_PRINT, 0);
  EXPECT_EQ(VERDAL_PrintTable(db, nullptr, nullptr, nullptr, 0, nullptr, -1), 1);
  EXPECT_EQ(VERDAL_NumOptions(db, VERDAL_OPTION_PRINT, 0), before);
  EXPECT_EQ(VERDAL_PrintTable(db, "Neu", nullptr, nullptr, 0, nullptr, -1), 1);
  EXPECT_EQ(VERDAL_NumOptions(db, VERDAL_OPTION_PRINT, 0), before + 1);
}

}  // namespace
