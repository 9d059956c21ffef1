#include "print/preview_view.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace verdal::print {

namespace {

constexpr int32_t kMargin = 50;       // 5 mm around pages that need scrolling
constexpr int32_t kOutlinePen = 3;    // 0.25 mm, rounded to whole units
constexpr int32_t kShadowOffset = 4;  // 0.4 mm
constexpr int32_t kWhite = 0x00FFFFFF;
constexpr int32_t kBlack = 0;

int32_t Round(double value) { return static_cast<int32_t>(std::lround(value)); }

int32_t CeilDiv(int64_t a, int64_t b) { return static_cast<int32_t>(a <= 0 ? 0 : (a + b - 1) / b); }

// Where `count` pages of `size` with `gap` between them stand when centred in `client`.
int32_t Centred(int32_t client, int32_t count, int32_t gap, int32_t size) {
  return static_cast<int32_t>((client - (count - 1) * gap - count * size) * 0.5);
}

void DrawPage(Surface& surface, const Rect& r) {
  surface.FillRect(r, kWhite);
  surface.SelectPen(kOutlinePen, kBlack);
  surface.MoveTo(r.left, r.top);
  surface.LineTo(r.right, r.top);
  surface.LineTo(r.right, r.bottom);
  surface.LineTo(r.left, r.bottom);
  surface.LineTo(r.left, r.top);
  // The shadow: right and bottom edges once more, further out.
  surface.MoveTo(r.left + kShadowOffset, r.bottom + kShadowOffset);
  surface.LineTo(r.right + kShadowOffset, r.bottom + kShadowOffset);
  surface.LineTo(r.right + kShadowOffset, r.top + kShadowOffset);
}

}  // namespace

TPreviewView::TPreviewView(int32_t dpi) : dpi_(dpi) {
  scroller_.SetRepaint([this] { Repaint(); });
}

void TPreviewView::Repaint() {
  if (repaint_) repaint_();
}

int32_t TPreviewView::DPtoLP(int32_t pixels) const { return Round(pixels / (dpi_ * 0.003937)); }

void TPreviewView::SetClientSize(int32_t width, int32_t height) {
  clientPxW_ = width;
  clientPxH_ = height;
  ApplyZoom(zoomIndex_);
}

PageLayout TPreviewView::DrawPages(Surface* surface, const PixelPoint* hit, bool reallyDraw) {
  PageLayout out;
  if (busy_ || pages_ == nullptr) return out;
  const int32_t count = pages_->PageCount();
  if (count <= 0) return out;
  out.done = true;

  const float zoom = Zoom();
  out.gap = std::max(5, Round(40 * zoom));
  out.pageW = Round(pages_->PageWidth() * zoom);
  out.pageH = Round(pages_->PageHeight() * zoom);
  out.clientW = DPtoLP(clientPxW_);
  out.clientH = DPtoLP(clientPxH_);
  const ScrollAxis& sx = scroller_.X();
  const ScrollAxis& sy = scroller_.Y();
  out.scrollX = sx.position * sx.unit;
  out.scrollY = sy.position * sy.unit;
  out.across = std::max(1, out.clientW / (out.pageW + out.gap));
  out.down = std::max(1, out.clientH / (out.pageH + out.gap));
  out.left = kMargin;
  out.top = kMargin;

  out.horizontalScroll = out.pageW >= out.clientW;
  if (!out.horizontalScroll) {
    out.scrollX = 0;
    out.left = Centred(out.clientW, out.across, out.gap, out.pageW);
  }
  out.pagesFit = out.pageH < out.clientH;
  if (out.pagesFit) {
    // The vertical scroller counts whole groups of pages, its unit being the group's size.
    out.currentPage = out.scrollY + 1;
    out.scrollY = 0;
    out.top = Centred(out.clientH, out.down, out.gap, out.pageH);
  } else {
    out.step = out.pageH + out.top;
    out.currentPage = out.scrollY / out.step + 1;
    out.scrollY %= out.step;
    out.down = 2;  // the end of one page and the start of the next
  }
  currentPage_ = out.currentPage;
  char status[48];
  std::snprintf(status, sizeof status, "Seite %d von %d", out.currentPage, count);
  status_ = status;

  int32_t n = out.currentPage;
  for (int32_t r = 0; r < out.down && n <= count; ++r) {
    for (int32_t c = 0; c < out.across && n <= count; ++c, ++n) {
      PagePlace place{n, {}};
      place.rect.left = (out.pageW + out.gap) * c - out.scrollX + out.left;
      place.rect.top = (out.pageH + out.gap) * r - out.scrollY + out.top;
      place.rect.right = place.rect.left + out.pageW;
      place.rect.bottom = place.rect.top + out.pageH;
      out.places.push_back(place);
    }
  }

  if (hit != nullptr) {
    const int32_t x = DPtoLP(hit->x);
    const int32_t y = DPtoLP(hit->y);
    for (const PagePlace& place : out.places) {
      const Rect& r = place.rect;
      if (x >= r.left && x < r.right && y >= r.top && y < r.bottom) {
        out.hitPage = place.page;
        out.hitX = x - r.left;
        out.hitY = y - r.top;
        return out;
      }
    }
  }
  if (surface == nullptr || !reallyDraw) return out;

  const int32_t marginX = Round(pages_->MarginLeft() * zoom);
  const int32_t marginY = Round(pages_->MarginTop() * zoom);
  for (const PagePlace& place : out.places) {
    DrawPage(*surface, place.rect);
    surface->SetOrigin(place.rect.left + marginX, place.rect.top + marginY);
    pages_->PlayPage(place.page, *surface, zoom);
    surface->SetOrigin(0, 0);
  }
  return out;
}

void TPreviewView::ApplyZoom(int32_t index) {
  if (index < 0 || index >= static_cast<int32_t>(kZoomSteps.size())) return;
  // The page in view before the change, measured with the units that are still in force.
  const PageLayout before = Measure();
  const int32_t shown = before.done ? before.currentPage : currentPage_;

  zoomIndex_ = index;
  scroller_.SetUnits(1, 1);
  scroller_.SetSteps(1, 1, 1, 1);
  const PageLayout m = Measure();
  if (!m.done) {
    scroller_.SetRanges(0, 0);
    Repaint();
    return;
  }
  const int32_t count = pages_->PageCount();

  int32_t xUnit = 1;
  int32_t xRange = 0;
  if (m.horizontalScroll) {
    xUnit = std::max(1, m.clientW / 10);
    xRange = CeilDiv(m.pageW - m.clientW, xUnit);
    scroller_.SetHorizontalPage(std::max(1, m.clientW / (2 * xUnit)));
  }

  int32_t yUnit = 1;
  int32_t yRange = 0;
  int32_t scrollTo = -1;
  if (m.pagesFit) {
    const int32_t group = m.across * m.down;
    yRange = std::max(0, CeilDiv(count, group) - 1);
    yUnit = group;
    if (!pageFits_) scrollTo = (shown - 1) / group;
  } else {
    const int64_t total = int64_t{count} * m.step - m.clientH;
    yUnit = std::max(1, m.clientH / 10);
    yRange = CeilDiv(total, yUnit);
    scroller_.SetVerticalPage(std::max(1, m.clientH / (2 * yUnit)));
    if (pageFits_) scrollTo = static_cast<int32_t>(int64_t{m.step} * (shown - 1) / yUnit);
  }
  scroller_.SetUnits(xUnit, yUnit);
  scroller_.SetRanges(xRange, yRange);
  if (scrollTo >= 0) scroller_.ScrollTo(scroller_.X().position, scrollTo);
  pageFits_ = m.pagesFit;
  Measure();  // the current page and status text under the new units
  Repaint();
}

void TPreviewView::OnKey(PreviewKey key, bool ctrl) {
  const ScrollAxis& x = scroller_.X();
  const ScrollAxis& y = scroller_.Y();
  switch (key) {
    case PreviewKey::PageUp:
      ctrl ? scroller_.ScrollBy(-x.page, 0) : scroller_.ScrollBy(0, -y.page);
      break;
    case PreviewKey::PageDown:
      ctrl ? scroller_.ScrollBy(x.page, 0) : scroller_.ScrollBy(0, y.page);
      break;
    case PreviewKey::Home:
      ctrl ? scroller_.ScrollTo(x.position, 0) : scroller_.ScrollTo(0, y.position);
      break;
    case PreviewKey::End:
      ctrl ? scroller_.ScrollTo(x.position, y.range) : scroller_.ScrollTo(x.range, y.position);
      break;
    case PreviewKey::Left: scroller_.ScrollBy(-x.line, 0); break;
    case PreviewKey::Right: scroller_.ScrollBy(x.line, 0); break;
    case PreviewKey::Up: scroller_.ScrollBy(0, -y.line); break;
    case PreviewKey::Down: scroller_.ScrollBy(0, y.line); break;
    case PreviewKey::NumPadPlus:
      if (zoomIndex_ + 1 < static_cast<int32_t>(kZoomSteps.size())) ApplyZoom(zoomIndex_ + 1);
      break;
    case PreviewKey::NumPadMinus:
      if (zoomIndex_ > 0) ApplyZoom(zoomIndex_ - 1);
      break;
  }
}

}  // namespace verdal::print
