#include "print/profi_scroller.h"

#include <algorithm>

namespace verdal::print {

namespace {

int32_t Clamp(int64_t position, int32_t range) {
  return static_cast<int32_t>(std::clamp<int64_t>(position, 0, std::max(range, 0)));
}

}  // namespace

void TProfiScroller::SetUnits(int32_t xUnit, int32_t yUnit) {
  x_.unit = xUnit;
  y_.unit = yUnit;
}

void TProfiScroller::SetSteps(int32_t xLine, int32_t yLine, int32_t xPage, int32_t yPage) {
  x_.line = xLine;
  y_.line = yLine;
  x_.page = xPage;
  y_.page = yPage;
}

void TProfiScroller::SetRanges(int32_t xRange, int32_t yRange) {
  x_.range = std::max(xRange, 0);
  y_.range = std::max(yRange, 0);
  x_.position = Clamp(x_.position, x_.range);
  y_.position = Clamp(y_.position, y_.range);
}

void TProfiScroller::ScrollTo(int32_t x, int32_t y) {
  const int32_t newX = Clamp(x, x_.range);
  const int32_t newY = Clamp(y, y_.range);
  if (newX == x_.position && newY == y_.position) return;
  x_.position = newX;
  y_.position = newY;
  if (repaint_) repaint_();
}

void TProfiScroller::ScrollBy(int32_t dx, int32_t dy) {
  // In 64 bits so that a step past either end clamps instead of wrapping.
  ScrollTo(Clamp(int64_t{x_.position} + dx, x_.range), Clamp(int64_t{y_.position} + dy, y_.range));
}

int32_t TProfiScroller::BarRange(const ScrollAxis& axis) {
  return std::min(axis.range, kBarLimit);
}

int32_t TProfiScroller::BarPosition(const ScrollAxis& axis) {
  if (axis.range <= kBarLimit) return axis.position;
  return static_cast<int32_t>(int64_t{axis.position} * kBarLimit / axis.range);
}

int32_t TProfiScroller::PositionFromBar(const ScrollAxis& axis, int32_t bar) {
  if (axis.range <= kBarLimit) return Clamp(bar, axis.range);
  return Clamp(int64_t{bar} * axis.range / kBarLimit, axis.range);
}

}  // namespace verdal::print
