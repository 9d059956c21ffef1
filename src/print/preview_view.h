#pragma once
// TPreviewView, what the print preview shows, worked out on numbers alone: the zoom step, the
// scroller, which recorded pages are in view and where each stands, and the status text. A host
// window (or none) feeds it the client size, keys and zoom choices, and paints by handing
// DrawPages a surface. Lengths are logical units of 0.1 mm; the client and hit points come in
// device pixels of a screen with the given dots per inch.
#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "print/profi_scroller.h"
#include "print/surface.h"

namespace verdal::print {

// What the view needs of a laid-out printout.
struct PreviewPages {
  virtual ~PreviewPages() = default;
  virtual float PageWidth() const = 0;  // logical units
  virtual float PageHeight() const = 0;
  virtual float MarginLeft() const = 0;  // the printable area's corner on the page
  virtual float MarginTop() const = 0;
  virtual int32_t PageCount() const = 0;
  // Plays recorded page `page` (from 1) with its printable area's corner at the surface's origin,
  // every length times `zoom`; a page outside the recorded ones plays nothing.
  virtual void PlayPage(int32_t page, Surface& surface, float zoom) = 0;
};

struct ZoomStep {
  const char* text;  // as the zoom box lists it
  float factor;
};
inline constexpr std::array<ZoomStep, 12> kZoomSteps{{
    {"2.5%", 0.025f}, {"4.0%", 0.04f}, {"6.3%", 0.063f}, {"10%", 0.1f},
    {"16%", 0.16f},   {"25%", 0.25f},  {"40%", 0.4f},    {"63%", 0.63f},
    {"100%", 1.0f},   {"120%", 1.2f},  {"160%", 1.6f},   {"250%", 2.5f},
}};

enum class PreviewKey {
  PageUp, PageDown, Home, End, Left, Right, Up, Down,
  NumPadPlus, NumPadMinus,  // the zoom steps
};

struct PagePlace {
  int32_t page = 0;  // from 1
  Rect rect;         // right and bottom exclusive
};

// What one pass of DrawPages worked out.
struct PageLayout {
  bool done = false;  // false: busy or nothing to show, and every other member is 0
  int32_t clientW = 0;
  int32_t clientH = 0;
  int32_t pageW = 0;
  int32_t pageH = 0;
  int32_t gap = 0;
  int32_t across = 0;
  int32_t down = 0;
  int32_t left = 0;
  int32_t top = 0;
  int32_t scrollX = 0;
  int32_t scrollY = 0;
  bool horizontalScroll = false;
  bool pagesFit = false;  // a whole page is less tall than the client
  int32_t step = 0;       // pages that don't fit: scroll length of one page
  int32_t currentPage = 0;
  std::vector<PagePlace> places;
  int32_t hitPage = 0;  // hit test: the page under the point, 0 for none
  int32_t hitX = 0;     // and the point's offset from its corner
  int32_t hitY = 0;
};

struct PixelPoint {
  int32_t x = 0;
  int32_t y = 0;
};

class TPreviewView {
 public:
  explicit TPreviewView(int32_t dpi = 96);
  // The scroller calls back into the view.
  TPreviewView(const TPreviewView&) = delete;
  TPreviewView& operator=(const TPreviewView&) = delete;

  // The printout shown, owned by the caller; null shows nothing.
  void SetPages(PreviewPages* pages) { pages_ = pages; }
  void SetBusy(bool busy) { busy_ = busy; }
  bool Busy() const { return busy_; }
  // Called whenever the whole client needs painting again.
  void SetRepaint(std::function<void()> repaint) { repaint_ = std::move(repaint); }

  // A new client size, in device pixels, applies the present zoom again.
  void SetClientSize(int32_t width, int32_t height);

  // The one routine behind drawing, measuring and hit testing. With a surface and `reallyDraw`
  // it paints the pages in view; with a point (device pixels in the client) it finds the page
  // under it. It sets the current page and the status text every time.
  PageLayout DrawPages(Surface* surface, const PixelPoint* hit, bool reallyDraw);
  PageLayout Measure() { return DrawPages(nullptr, nullptr, false); }

  // Takes zoom step `index` and fits the scroll ranges to it; a negative index is ignored.
  void ApplyZoom(int32_t index);
  void OnKey(PreviewKey key, bool ctrl);

  int32_t ZoomIndex() const { return zoomIndex_; }
  float Zoom() const { return kZoomSteps[zoomIndex_].factor; }
  bool PageFits() const { return pageFits_; }
  int32_t CurrentPage() const { return currentPage_; }
  const std::string& StatusText() const { return status_; }
  TProfiScroller& Scroller() { return scroller_; }
  const TProfiScroller& Scroller() const { return scroller_; }
  // Device pixels to logical units on this screen.
  int32_t DPtoLP(int32_t pixels) const;

 private:
  void Repaint();

  int32_t dpi_;
  PreviewPages* pages_ = nullptr;
  TProfiScroller scroller_;
  std::function<void()> repaint_;
  int32_t clientPxW_ = 0;
  int32_t clientPxH_ = 0;
  int32_t zoomIndex_ = 0;
  int32_t currentPage_ = 1;
  bool pageFits_ = true;
  bool busy_ = false;
  std::string status_;
};

}  // namespace verdal::print
