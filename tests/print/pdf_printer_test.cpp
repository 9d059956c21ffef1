// The PDF printer writes whole documents or nothing; recorded pages play back into PNG pictures.
#include "print/pdf_printer.h"

#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "platform/fault.h"
#include "print/page_png.h"

using namespace verdal;
using namespace verdal::print;
namespace fs = std::filesystem;

namespace {

class PdfPrinterTest : public ::testing::Test {
 protected:
  void SetUp() override {
    std::string pattern = (fs::temp_directory_path() / "verdal-print-XXXXXX").string();
    folder = mkdtemp(pattern.data());
  }
  void TearDown() override {
    platform::SetFaultHook(nullptr);
    chmod(folder.c_str(), 0700);
    fs::remove_all(folder);
  }
  bool FolderEmpty(const std::string& f) { return fs::is_empty(f); }
  std::string folder;
};

std::string Output(const std::string& command) {
  std::string out;
  if (FILE* pipe = popen(command.c_str(), "r")) {
    char buffer[4096];
    for (size_t n; (n = fread(buffer, 1, sizeof buffer, pipe)) > 0;) out.append(buffer, n);
    pclose(pipe);
  }
  return out;
}

// Width and height from the PNG header (big-endian, after the signature and the IHDR length/type).
std::pair<uint32_t, uint32_t> PngSize(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::string b((std::istreambuf_iterator<char>(in)), {});
  auto be = [&](size_t at) {
    return b.size() < at + 4 ? 0u : uint32_t(uint8_t(b[at])) << 24 | uint8_t(b[at + 1]) << 16 | uint8_t(b[at + 2]) << 8 | uint8_t(b[at + 3]);
  };
  return {be(16), be(20)};
}

void DrawPage(Surface& s, const char* text) {
  s.SelectFont(FontSpec{});
  s.SetTextColour(0x000000FF);
  s.SetOrigin(200, 200);
  s.TextOut(0, 0, nullptr, text);
  Rect clip{0, 100, 300, 200};
  s.TextOut(0, 100, &clip, "abgeschnitten und weg");  // only the first few letters stay
  s.SelectPen(0, 0);
  s.MoveTo(0, 50);
  s.LineTo(1000, 50);
  s.FillRect(Rect{0, 300, 500, 400}, 0x00C0C0C0);
}

}  // namespace

TEST_F(PdfPrinterTest, WritesPagesAndRenamesOnlyAtClose) {
  EXPECT_EQ(PageSetup{}.Caps().physicalWidth, 4961);
  PageSetup letter{PageSetup::Paper::kLetter, true};
  EXPECT_EQ(letter.Caps().physicalWidth, 6600);
  EXPECT_EQ(letter.Caps().horzSizeMm, 279);
  EXPECT_EQ(letter.Caps().vertSizeMm, 216);

  const std::string path = folder + "/Tabelle.pdf";
  std::string reason;
  auto printer = PdfPrinter::Open(path, PageSetup{}, reason);
  ASSERT_NE(printer, nullptr) << reason;
  for (const char* text : {"Erste Seite: Stra\xDF" "e", "Zweite Seite: 1.234,50 \x80"}) {
    printer->StartPage();
    DrawPage(*printer, text);
    EXPECT_TRUE(printer->EndPage());
  }
  EXPECT_FALSE(fs::exists(path));  // not before the document is whole
  ASSERT_TRUE(printer->Close(reason)) << reason;
  EXPECT_EQ(std::distance(fs::directory_iterator(folder), {}), 1);
  const std::string info = Output("pdfinfo '" + path + "'");
  const size_t pages = info.find("Pages:");
  EXPECT_EQ(pages == std::string::npos ? -1 : std::stoi(info.substr(pages + 6)), 2) << info;
  EXPECT_NE(info.find("595.276 x 841.89 pts (A4)"), std::string::npos) << info;
  const std::string text = Output("pdftotext -layout '" + path + "' -");
  EXPECT_NE(text.find("Erste Seite: Stra\xC3\x9F" "e"), std::string::npos) << text;
  EXPECT_NE(text.find("Zweite Seite: 1.234,50 \xE2\x82\xAC"), std::string::npos) << text;
}

TEST_F(PdfPrinterTest, AFailedWriteLeavesNoFile) {
  std::string reason;
  // A full disk, met while a page is written or while the document is finished.
  for (int failAt : {1, 2}) {
    static int left;
    left = failAt;
    const std::string path = folder + "/voll.pdf";
    auto printer = PdfPrinter::Open(path, PageSetup{}, reason);
    ASSERT_NE(printer, nullptr) << reason;
    platform::SetFaultHook([](platform::FaultSite site) { return site == platform::FaultSite::kWrite && --left == 0; });
    printer->StartPage();
    DrawPage(*printer, "Seite");
    const bool pageWritten = printer->EndPage();
    EXPECT_FALSE(printer->Close(reason) && pageWritten);
    EXPECT_FALSE(reason.empty());
    platform::SetFaultHook(nullptr);
    EXPECT_TRUE(FolderEmpty(folder)) << failAt;
  }
  // A folder the process cannot write (as root, /proc takes no new files).
  chmod(folder.c_str(), 0500);
  const std::string locked = access(folder.c_str(), W_OK) == 0 ? "/proc" : folder;
  reason.clear();
  EXPECT_EQ(PdfPrinter::Open(locked + "/gesperrt.pdf", PageSetup{}, reason), nullptr);
  EXPECT_FALSE(reason.empty());
  EXPECT_FALSE(fs::exists(locked + "/gesperrt.pdf") || fs::exists(locked + "/~gesperrt.pdf"));
}

TEST_F(PdfPrinterTest, RecordedPagePlaysIntoPngsOfTheZoomedSize) {
  auto info = OpenInfoContext(PageSetup{});
  auto recording = info->NewRecording(2100, 2970);
  DrawPage(*recording, "Vorschau");
  auto page = info->EndRecording(std::move(recording));
  ASSERT_NE(page, nullptr);
  struct Case { float zoom; uint32_t width, height; };  // 2100 x 2970 x zoom x 96 x 0.003937, rounded
  for (const Case& c : {Case{1.0f, 794, 1123}, Case{0.5f, 397, 561}}) {
    const std::string path = folder + "/seite.png";
    ASSERT_TRUE(RenderPagePng(*page, 2100, 2970, c.zoom, 96, path));
    EXPECT_EQ(PngSize(path), std::make_pair(c.width, c.height)) << c.zoom;
    // The page is white where nothing was drawn and shows the grey box where it was.
    cairo_surface_t* png = cairo_image_surface_create_from_png(path.c_str());
    const unsigned char* data = cairo_image_surface_get_data(png);
    const int stride = cairo_image_surface_get_stride(png);
    auto pixel = [&](int x, int y) { return *reinterpret_cast<const uint32_t*>(data + y * stride + 4 * x) & 0xFFFFFF; };
    const float perUnit = c.zoom * 96 * 0.003937f;
    EXPECT_EQ(pixel(int(50 * perUnit), int(50 * perUnit)), 0xFFFFFFu);
    EXPECT_EQ(pixel(int(450 * perUnit), int(550 * perUnit)), 0xC0C0C0u);
    // The clipped text shows left of the clip's edge (at 500) and nothing right of it.
    auto inked = [&](int left, int right) {
      int n = 0;
      for (int y = int(300 * perUnit); y < int(340 * perUnit); ++y)
        for (int x = int(left * perUnit); x < int(right * perUnit); ++x) n += pixel(x, y) != 0xFFFFFF;
      return n;
    };
    EXPECT_GT(inked(200, 500), 0);
    EXPECT_EQ(inked(512, 900), 0);
    cairo_surface_destroy(png);
  }
  EXPECT_FALSE(RenderPagePng(*page, 2100, 2970, 1.0f, 96, folder + "/fehlt/seite.png"));
}
