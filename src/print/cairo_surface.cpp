#include "print/cairo_surface.h"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "platform/cp1252.h"
#include "print/font_face.h"

namespace verdal::print {

CairoSurface::CairoSurface(cairo_t* cr, double scale, const DeviceCaps& caps)
    : cr_(cairo_reference(cr)), caps_(caps) {
  cairo_scale(cr_, scale, scale);
  cairo_get_matrix(cr_, &base_);
  SelectPen(0, 0);
}

CairoSurface::~CairoSurface() {
  FlushLines();
  cairo_destroy(cr_);
}

void CairoSurface::SetOrigin(int32_t x, int32_t y) {
  originX_ = x;
  originY_ = y;
  cairo_set_matrix(cr_, &base_);
  cairo_translate(cr_, x, y);
}

const FontFace& CairoSurface::Font() {
  if (font_ == nullptr) font_ = &FontFace::For(FontSpec{});
  return *font_;
}

void CairoSurface::SelectFont(const FontSpec& font) { font_ = &FontFace::For(font); }

const float* CairoSurface::Advances() { return Font().Advances(); }

TextMetrics CairoSurface::Metrics() { return Font().Metrics(); }

void CairoSurface::SetColour(int32_t colour) {
  sourceColour_ = colour;
  cairo_set_source_rgb(cr_, (colour & 0xFF) / 255.0, ((colour >> 8) & 0xFF) / 255.0,
                       ((colour >> 16) & 0xFF) / 255.0);
}

namespace {

// The UTF-8 form of every code page 1252 byte, made once.
const std::string& Utf8Of(uint8_t byte) {
  static const auto table = [] {
    std::vector<std::string> t(256);
    for (int b = 0; b < 256; ++b) {
      const char c = static_cast<char>(b);
      cp1252::ToUtf8(std::string_view(&c, 1), t[static_cast<size_t>(b)]);
    }
    return t;
  }();
  return table[byte];
}

}  // namespace

void CairoSurface::TextOut(int32_t x, int32_t y, const Rect* clip, std::string_view text) {
  const FontFace& font = Font();
  if (font.ScaledFont() == nullptr || text.empty()) return;
  // Each glyph stands where the sum of the advances before it puts it, as TextWidth counts; the
  // text goes along as one cluster per character so that a PDF reader can extract it.
  const float baseline = static_cast<float>(y + font.Metrics().ascent);
  glyphs_.clear();
  clusters_.clear();
  utf8_.clear();
  float pen = static_cast<float>(x);
  for (const char c : text) {
    const uint8_t byte = static_cast<uint8_t>(c);
    if (font.Glyphs()[byte] != 0) {
      const std::string& one = Utf8Of(byte);
      utf8_ += one;
      glyphs_.push_back({font.Glyphs()[byte], pen, baseline});
      clusters_.push_back({static_cast<int>(one.size()), 1});
    }
    pen += font.Advances()[byte];
  }
  // A clip costs the PDF a saved state and a clipping path; most texts lie inside their cell.
  const bool clipped = clip != nullptr &&
                       (x < clip->left || pen > static_cast<float>(clip->right) || y < clip->top ||
                        y + font.Metrics().height > clip->bottom);
  const bool lines = font.Underline() || font.StrikeOut();
  if (clipped || lines) FlushLines();
  if (sourceColour_ != textColour_) SetColour(textColour_);
  if (cairoFont_ != font.ScaledFont()) {
    cairoFont_ = font.ScaledFont();
    cairo_set_scaled_font(cr_, cairoFont_);
  }
  if (clipped) {
    cairo_save(cr_);
    cairo_rectangle(cr_, clip->left, clip->top, clip->right - clip->left, clip->bottom - clip->top);
    cairo_clip(cr_);
  }
  if (!glyphs_.empty())
    cairo_show_text_glyphs(cr_, utf8_.data(), static_cast<int>(utf8_.size()), glyphs_.data(),
                           static_cast<int>(glyphs_.size()), clusters_.data(),
                           static_cast<int>(clusters_.size()), cairo_text_cluster_flags_t(0));
  // Underline and strike-out belong to the font, as with the system's fonts, and run the text's
  // whole width.
  if (lines) {
    const double width = TextWidth(text);
    if (font.Underline())
      cairo_rectangle(cr_, x, baseline + font.UnderlinePosition(), width, font.UnderlineThickness());
    if (font.StrikeOut())
      cairo_rectangle(cr_, x, baseline + font.StrikeOutPosition(), width, font.StrikeOutThickness());
    cairo_fill(cr_);
  }
  if (clipped) cairo_restore(cr_);  // the source and font were set outside, so they stay
}

void CairoSurface::SelectPen(int32_t width, int32_t colour) {
  // The thinnest line is one dot of the device; 254 logical units make an inch.
  const double newWidth = width > 0 ? width : 254.0 / (caps_.logPixelsX > 0 ? caps_.logPixelsX : 600);
  if (newWidth == penWidth_ && colour == penColour_) return;
  FlushLines();
  penWidth_ = newWidth;
  penColour_ = colour;
}

void CairoSurface::MoveTo(int32_t x, int32_t y) {
  penX_ = x;
  penY_ = y;
}

void CairoSurface::LineTo(int32_t x, int32_t y) {
  segments_.push_back({static_cast<double>(penX_ + originX_), static_cast<double>(penY_ + originY_),
                       static_cast<double>(x + originX_), static_cast<double>(y + originY_)});
  MoveTo(x, y);
}

namespace {

// Joins segments on one line (same `across`) whose spans touch or overlap.
template <class Emit>
void JoinOnLines(std::vector<std::array<double, 3>>& lines, Emit&& emit) {
  std::sort(lines.begin(), lines.end());
  for (size_t i = 0; i < lines.size();) {
    std::array<double, 3> run = lines[i++];
    while (i < lines.size() && lines[i][0] == run[0] && lines[i][1] <= run[2]) run[2] = std::max(run[2], lines[i++][2]);
    emit(run);
  }
}

}  // namespace

void CairoSurface::FlushLines() {
  if (segments_.empty()) return;
  std::vector<std::array<double, 3>> rows, columns;  // (y, x from, x to) and (x, y from, y to)
  cairo_matrix_t current;
  cairo_get_matrix(cr_, &current);
  cairo_set_matrix(cr_, &base_);
  cairo_new_path(cr_);
  for (const Segment& s : segments_) {
    if (s.y1 == s.y2) rows.push_back({s.y1, std::min(s.x1, s.x2), std::max(s.x1, s.x2)});
    else if (s.x1 == s.x2) columns.push_back({s.x1, std::min(s.y1, s.y2), std::max(s.y1, s.y2)});
    else {
      cairo_move_to(cr_, s.x1, s.y1);
      cairo_line_to(cr_, s.x2, s.y2);
    }
  }
  segments_.clear();
  JoinOnLines(rows, [&](const std::array<double, 3>& r) {
    cairo_move_to(cr_, r[1], r[0]);
    cairo_line_to(cr_, r[2], r[0]);
  });
  JoinOnLines(columns, [&](const std::array<double, 3>& c) {
    cairo_move_to(cr_, c[0], c[1]);
    cairo_line_to(cr_, c[0], c[2]);
  });
  if (sourceColour_ != penColour_) SetColour(penColour_);
  cairo_set_line_width(cr_, penWidth_);
  // The system's pens end round, so that thick frame lines meet without a notch at the corners.
  cairo_set_line_cap(cr_, CAIRO_LINE_CAP_ROUND);
  cairo_stroke(cr_);
  cairo_set_matrix(cr_, &current);
}

void CairoSurface::FillRect(const Rect& rect, int32_t colour) {
  FlushLines();
  sourceColour_ = -1;
  cairo_save(cr_);
  SetColour(colour);
  cairo_rectangle(cr_, rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top);
  cairo_fill(cr_);
  cairo_restore(cr_);
}

std::unique_ptr<Surface> CairoSurface::NewRecording(int32_t width, int32_t height) {
  const cairo_rectangle_t extents{0, 0, static_cast<double>(width), static_cast<double>(height)};
  cairo_surface_t* recording = cairo_recording_surface_create(CAIRO_CONTENT_COLOR_ALPHA, &extents);
  cairo_t* cr = cairo_create(recording);
  cairo_surface_destroy(recording);  // the context holds it
  auto surface = std::make_unique<CairoSurface>(cr, 1.0, caps_);
  cairo_destroy(cr);
  return surface;
}

std::unique_ptr<RecordedPage> CairoSurface::EndRecording(std::unique_ptr<Surface> recording) {
  auto* surface = dynamic_cast<CairoSurface*>(recording.get());
  if (surface == nullptr) return nullptr;
  surface->FlushLines();
  cairo_surface_t* target = cairo_surface_reference(cairo_get_target(surface->cr_));
  recording.reset();
  return std::make_unique<CairoRecordedPage>(target);
}

void CairoSurface::Play(const RecordedPage& page, float scale) {
  auto* recorded = dynamic_cast<const CairoRecordedPage*>(&page);
  if (recorded == nullptr) return;
  FlushLines();
  sourceColour_ = -1;
  cairo_save(cr_);
  cairo_scale(cr_, scale, scale);
  cairo_set_source_surface(cr_, recorded->Recording(), 0, 0);
  cairo_paint(cr_);
  cairo_restore(cr_);
}

}  // namespace verdal::print
