#include "print/preview_view.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

namespace verdal::print {
namespace {

// Records every call as text; the page fake writes its plays into the same log.
struct RecordingSurface : Surface {
  std::vector<std::string> log;
  void Add(std::string s) { log.push_back(std::move(s)); }
  static std::string P(int32_t a, int32_t b) { return std::to_string(a) + "," + std::to_string(b); }
  void SetOrigin(int32_t x, int32_t y) override { Add("origin " + P(x, y)); }
  void SelectPen(int32_t w, int32_t c) override { Add("pen " + P(w, c)); }
  void MoveTo(int32_t x, int32_t y) override { Add("move " + P(x, y)); }
  void LineTo(int32_t x, int32_t y) override { Add("line " + P(x, y)); }
  void FillRect(const Rect& r, int32_t c) override {
    Add("fill " + P(r.left, r.top) + "," + P(r.right, r.bottom) + " " + std::to_string(c));
  }
  void Play(const RecordedPage&, float) override { Add("play"); }
  // The preview draws no text and records nothing.
  DeviceCaps Caps() const override { return {}; }
  void SelectFont(const FontSpec&) override { Add("font"); }
  const float* Advances() override { return nullptr; }
  TextMetrics Metrics() override { return {}; }
  void SetTextColour(int32_t) override { Add("colour"); }
  void TextOut(int32_t, int32_t, const Rect*, std::string_view) override { Add("text"); }
  std::unique_ptr<Surface> NewRecording(int32_t, int32_t) override { return nullptr; }
  std::unique_ptr<RecordedPage> EndRecording(std::unique_ptr<Surface>) override { return nullptr; }
};

struct FakePages : PreviewPages {
  int32_t count = 5;
  float PageWidth() const override { return 2000; }
  float PageHeight() const override { return 2800; }
  float MarginLeft() const override { return 100; }
  float MarginTop() const override { return 160; }
  int32_t PageCount() const override { return count; }
  void PlayPage(int32_t page, Surface& s, float zoom) override {
    auto& log = static_cast<RecordingSurface&>(s);
    log.Add("page " + std::to_string(page) + " x" + std::to_string(zoom));
  }
};

// At 254 dpi a device pixel is a logical unit, so that the numbers below read directly.
struct Preview {
  FakePages pages;
  TPreviewView view;
  int32_t repaints = 0;
  Preview(int32_t count, int32_t zoom, int32_t w, int32_t h, int32_t dpi = 254) : view(dpi) {
    pages.count = count;
    view.SetPages(&pages);
    view.SetRepaint([this] { ++repaints; });
    view.ApplyZoom(zoom);
    view.SetClientSize(w, h);
  }
  std::vector<int32_t> Shown() {
    std::vector<int32_t> shown;
    for (const PagePlace& p : view.Measure().places) shown.push_back(p.page);
    return shown;
  }
};

TEST(PreviewView, LaysPagesOutByZoomAndClient) {
  struct Case { int32_t zoom, w, h, dpi, gap, across, down, left, top; bool hScroll, fit;
                std::vector<int32_t> shown; } cases[] = {
      // 100% on a client narrower than a page: one across, scrolling, two rows of parts.
      {8, 1500, 1000, 254, 40, 1, 2, 50, 50, true, false, {1, 2}},
      // 2.5%: Round(40 x zoom) is 1, the gap still 5; far fewer pages than places.
      {0, 1500, 1000, 254, 5, 27, 13, 10, 15, false, true, {1, 2, 3, 4, 5}},
      {5, 1500, 1000, 254, 10, 2, 1, 245, 150, false, true, {1, 2}},
      // A 96 dpi screen: 1000 x 2000 pixels are 2646 x 5292 units.
      {8, 1000, 2000, 96, 40, 1, 1, 323, 1246, false, true, {1}},
  };
  for (const Case& c : cases) {
    Preview p(5, c.zoom, c.w, c.h, c.dpi);
    const PageLayout m = p.view.Measure();
    EXPECT_EQ(std::tuple(m.gap, m.across, m.down, m.left, m.top, m.horizontalScroll, m.pagesFit),
              std::tuple(c.gap, c.across, c.down, c.left, c.top, c.hScroll, c.fit)) << c.zoom;
    EXPECT_EQ(p.Shown(), c.shown) << c.zoom;
  }
}

TEST(PreviewView, ScrollsByPageGroupsOrByLengths) {
  Preview p(9, 5, 1500, 1000);  // two pages a group
  EXPECT_EQ(p.view.Scroller().Y().range, 4);
  p.view.OnKey(PreviewKey::Down, false);
  EXPECT_EQ(p.Shown(), (std::vector<int32_t>{3, 4}));
  EXPECT_EQ(p.view.StatusText(), "Seite 3 von 9");
  p.view.OnKey(PreviewKey::End, true);
  EXPECT_EQ(p.Shown(), std::vector<int32_t>{9});  // the place beside it stays empty
  EXPECT_EQ(p.view.StatusText(), "Seite 9 von 9");
  // Pages taller than the client: the end of one and the start of the next are seen.
  p.pages.count = 5;
  p.view.ApplyZoom(8);
  const ScrollAxis& x = p.view.Scroller().X();
  const ScrollAxis& y = p.view.Scroller().Y();  // 5 x 2850 - 1000 in steps of 100, rounded up:
  EXPECT_EQ(std::tuple(x.unit, x.range, x.page, y.unit, y.range, y.page),
            std::tuple(150, 4, 5, 100, 133, 5));
  p.view.Scroller().ScrollTo(0, 30);
  const PageLayout m = p.view.Measure();
  ASSERT_EQ(p.Shown(), (std::vector<int32_t>{2, 3}));
  EXPECT_EQ(m.places[0].rect.top, -100);  // 3000 is 150 into page 2
  EXPECT_EQ(m.places[1].rect.top, 2740);
  EXPECT_EQ(p.view.StatusText(), "Seite 2 von 5");
  // A change of fit mode keeps the current page in view.
  p.view.Scroller().ScrollTo(0, 86);  // in page 4
  p.view.ApplyZoom(5);
  EXPECT_EQ(p.Shown(), (std::vector<int32_t>{3, 4}));
  p.view.ApplyZoom(8);
  EXPECT_EQ(p.view.CurrentPage(), 3);
  p.view.ApplyZoom(-1);
  EXPECT_EQ(p.view.ZoomIndex(), 8);
  p.view.SetClientSize(1500, 3000);  // now the pages fit
  EXPECT_TRUE(p.view.PageFits());
}

TEST(PreviewView, DrawsAndHitTestsEachPage) {
  Preview p(2, 5, 1500, 1000);
  RecordingSurface s;
  p.view.DrawPages(&s, nullptr, false);
  EXPECT_TRUE(s.log.empty());
  p.view.DrawPages(&s, nullptr, true);
  const std::vector<std::string> first{
      "fill 245,150,745,850 16777215", "pen 3,0", "move 245,150", "line 745,150", "line 745,850",
      "line 245,850", "line 245,150", "move 249,854", "line 749,854", "line 749,154",
      "origin 270,190", "page 1 x0.250000", "origin 0,0"};
  ASSERT_EQ(s.log.size(), 2 * first.size());
  EXPECT_EQ(std::vector<std::string>(s.log.begin(), s.log.begin() + 13), first);
  EXPECT_EQ(s.log[13], "fill 755,150,1255,850 16777215");
  s.log.clear();
  p.view.SetBusy(true);
  EXPECT_FALSE(p.view.DrawPages(&s, nullptr, true).done);
  EXPECT_TRUE(s.log.empty());
  // Hit tests against the same pages, right and bottom edges excluded.
  p.view.SetBusy(false);
  struct Case { int32_t x, y, page, dx, dy; } cases[] = {
      {255, 170, 1, 10, 20}, {755, 150, 2, 0, 0}, {745, 400, 0, 0, 0},
      {300, 850, 0, 0, 0},   {750, 400, 0, 0, 0}};
  for (const Case& c : cases) {
    const PixelPoint point{c.x, c.y};
    const PageLayout m = p.view.DrawPages(nullptr, &point, false);
    EXPECT_EQ(std::tuple(m.hitPage, m.hitX, m.hitY), std::tuple(c.page, c.dx, c.dy)) << c.x;
  }
}

TEST(PreviewView, KeysScrollAndClampAtTheEnds) {
  Preview p(5, 8, 1500, 1000);  // x: range 4, page 5; y: range 133, page 5
  using enum PreviewKey;
  struct Case { PreviewKey key; bool ctrl; int32_t x, y; } cases[] = {
      {Up, false, 0, 0},         {Left, false, 0, 0},        {PageDown, false, 0, 5},
      {Down, false, 0, 6},       {PageDown, true, 4, 6},     {Right, false, 4, 6},
      {End, true, 4, 133},       {PageDown, false, 4, 133},  {Home, false, 0, 133},
      {PageUp, false, 0, 128},   {Home, true, 0, 0},         {End, false, 4, 0},
      {PageUp, true, 0, 0}};
  for (const Case& c : cases) {
    p.view.OnKey(c.key, c.ctrl);
    EXPECT_EQ(std::pair(p.view.Scroller().X().position, p.view.Scroller().Y().position),
              std::pair(c.x, c.y));
  }
  // Zoom keys step through the table and do nothing, not even a repaint, at either end.
  for (const auto& [key, end] :
       {std::pair(NumPadPlus, 11), {NumPadMinus, 0}}) {
    for (int32_t i = 0; i < 11; ++i) p.view.OnKey(key, false);
    const int32_t repaints = p.repaints;
    p.view.OnKey(key, false);
    EXPECT_EQ(std::pair(p.view.ZoomIndex(), p.repaints), std::pair(end, repaints));
  }
}

TEST(ProfiScroller, MapsLongRangesOntoTheBar) {
  struct Case { int32_t range, position, barRange, bar; } cases[] = {
      {100, 40, 100, 40}, {32767, 32767, 32767, 32767}, {65534, 32767, 32767, 16383},
      {1000000, 1000000, 32767, 32767}};
  for (const Case& c : cases) {
    const ScrollAxis a{c.position, c.range};
    EXPECT_EQ(TProfiScroller::BarRange(a), c.barRange);
    EXPECT_EQ(TProfiScroller::BarPosition(a), c.bar);
    EXPECT_EQ(TProfiScroller::PositionFromBar(a, TProfiScroller::BarRange(a)), c.range);
  }
}

}  // namespace
}  // namespace verdal::print
