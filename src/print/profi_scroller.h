#pragma once
// TProfiScroller, the preview's scroller: a position, range, unit, line step and page step for
// each direction. Positions count in units (logical units of 0.1 mm, or whole page groups), so a
// range can exceed what a 16-bit scroll bar holds; the bar is then shown with range 32767 and the
// position scaled onto it. Every scroll clamps to 0..range and repaints the whole client.
#include <cstdint>
#include <functional>

namespace verdal::print {

struct ScrollAxis {
  int32_t position = 0;
  int32_t range = 0;
  int32_t unit = 1;  // logical units per position
  int32_t line = 1;  // positions per line step
  int32_t page = 1;  // positions per page step
};

class TProfiScroller {
 public:
  static constexpr int32_t kBarLimit = 32767;

  const ScrollAxis& X() const { return x_; }
  const ScrollAxis& Y() const { return y_; }

  // Called after every scroll that moved the position.
  void SetRepaint(std::function<void()> repaint) { repaint_ = std::move(repaint); }

  void SetUnits(int32_t xUnit, int32_t yUnit);
  void SetSteps(int32_t xLine, int32_t yLine, int32_t xPage, int32_t yPage);
  void SetHorizontalPage(int32_t page) { x_.page = page; }
  void SetVerticalPage(int32_t page) { y_.page = page; }
  // A negative range counts as 0; positions beyond a new range move back to its end.
  void SetRanges(int32_t xRange, int32_t yRange);

  void ScrollTo(int32_t x, int32_t y);
  void ScrollBy(int32_t dx, int32_t dy);

  // The scroll bar's view of an axis, and a bar position (a dragged thumb) back to a position.
  static int32_t BarRange(const ScrollAxis& axis);
  static int32_t BarPosition(const ScrollAxis& axis);
  static int32_t PositionFromBar(const ScrollAxis& axis, int32_t bar);

 private:
  ScrollAxis x_;
  ScrollAxis y_;
  std::function<void()> repaint_;
};

}  // namespace verdal::print
