#pragma once
// A drawing surface whose text metrics the test fixes: every character advances `advance` units
// ('i' a third of it, so that widths are not all multiples), lines are as tall as the font.
// It records what is drawn, in page coordinates, so that tests read layouts as numbers.
#include <memory>
#include <string>
#include <vector>

#include "print/surface.h"

namespace verdal::print::testing {

struct Drawn {
  std::string text;  // empty for a line
  int32_t x = 0, y = 0, x2 = 0, y2 = 0;
  int32_t weight = 400;
  Rect clip{};
};

class FixedSurface : public Surface {
 public:
  explicit FixedSurface(float advance = 10.0f, DeviceCaps caps = A4At254()) : caps_(caps) {
    for (float& a : advances_) a = advance;
    advances_[static_cast<unsigned char>('i')] = advance / 3;
  }
  // 254 dots per inch: one dot is one logical unit.
  static DeviceCaps A4At254() {
    DeviceCaps caps;
    caps.logPixelsX = caps.logPixelsY = 254;
    caps.physicalWidth = 2100;
    caps.physicalHeight = 2970;
    return caps;
  }

  DeviceCaps Caps() const override { return caps_; }
  void SetOrigin(int32_t x, int32_t y) override { ox_ = x, oy_ = y; }
  void SelectFont(const FontSpec& font) override { font_ = font; }
  const float* Advances() override { return advances_; }
  TextMetrics Metrics() override { return {font_.height, font_.height * 4 / 5, font_.height / 5, 0, 0}; }
  void SetTextColour(int32_t) override {}
  void TextOut(int32_t x, int32_t y, const Rect* clip, std::string_view text) override {
    Drawn d{std::string(text), x + ox_, y + oy_, 0, 0, font_.weight, {}};
    if (clip != nullptr) d.clip = {clip->left + ox_, clip->top + oy_, clip->right + ox_, clip->bottom + oy_};
    drawn.push_back(d);
  }
  void SelectPen(int32_t width, int32_t) override { pen = width; }
  void MoveTo(int32_t x, int32_t y) override { px_ = x + ox_, py_ = y + oy_; }
  void LineTo(int32_t x, int32_t y) override {
    drawn.push_back({"", px_, py_, x + ox_, y + oy_, pen, {}});
    px_ = x + ox_, py_ = y + oy_;
  }
  void FillRect(const Rect&, int32_t) override {}
  std::unique_ptr<Surface> NewRecording(int32_t, int32_t) override {
    return std::make_unique<FixedSurface>(advances_[0], caps_);
  }
  struct Page : RecordedPage {
    std::vector<Drawn> drawn;
  };
  std::unique_ptr<RecordedPage> EndRecording(std::unique_ptr<Surface> recording) override {
    auto page = std::make_unique<Page>();
    page->drawn = static_cast<FixedSurface&>(*recording).drawn;
    return page;
  }
  void Play(const RecordedPage& page, float) override {
    for (const Drawn& d : static_cast<const Page&>(page).drawn) drawn.push_back(d);
  }

  std::vector<Drawn> drawn;
  int32_t pen = 0;

  std::vector<std::string> Texts() const {
    std::vector<std::string> out;
    for (const Drawn& d : drawn)
      if (!d.text.empty()) out.push_back(d.text);
    return out;
  }

 private:
  DeviceCaps caps_;
  float advances_[256];
  FontSpec font_;
  int32_t ox_ = 0, oy_ = 0, px_ = 0, py_ = 0;
};

}  // namespace verdal::print::testing
