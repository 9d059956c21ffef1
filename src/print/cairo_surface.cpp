#include "print/cairo_surface.h"

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

CairoSurface::~CairoSurface() { cairo_destroy(cr_); }

void CairoSurface::SetOrigin(int32_t x, int32_t y) {
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
  cairo_set_source_rgb(cr_, (colour & 0xFF) / 255.0, ((colour >> 8) & 0xFF) / 255.0,
                       ((colour >> 16) & 0xFF) / 255.0);
}

void CairoSurface::TextOut(int32_t x, int32_t y, const Rect* clip, std::string_view text) {
  const FontFace& font = Font();
  if (font.ScaledFont() == nullptr || text.empty()) return;
  // Each glyph stands where the sum of the advances before it puts it, as TextWidth counts; the
  // text goes along as one cluster per character so that a PDF reader can extract it.
  const float baseline = static_cast<float>(y + font.Metrics().ascent);
  std::vector<cairo_glyph_t> glyphs;
  std::vector<cairo_text_cluster_t> clusters;
  std::string utf8;
  glyphs.reserve(text.size());
  float pen = static_cast<float>(x);
  for (const char c : text) {
    const uint8_t byte = static_cast<uint8_t>(c);
    if (font.Glyphs()[byte] != 0) {
      const size_t before = utf8.size();
      std::string one;
      cp1252::ToUtf8(std::string_view(&c, 1), one);
      utf8 += one;
      glyphs.push_back({font.Glyphs()[byte], pen, baseline});
      clusters.push_back({static_cast<int>(utf8.size() - before), 1});
    }
    pen += font.Advances()[byte];
  }
  cairo_save(cr_);
  if (clip != nullptr) {
    cairo_rectangle(cr_, clip->left, clip->top, clip->right - clip->left, clip->bottom - clip->top);
    cairo_clip(cr_);
  }
  SetColour(textColour_);
  cairo_set_scaled_font(cr_, font.ScaledFont());
  if (!glyphs.empty())
    cairo_show_text_glyphs(cr_, utf8.data(), static_cast<int>(utf8.size()), glyphs.data(),
                           static_cast<int>(glyphs.size()), clusters.data(),
                           static_cast<int>(clusters.size()), cairo_text_cluster_flags_t(0));
  // Underline and strike-out belong to the font, as with the system's fonts, and run the text's
  // whole width.
  if (font.Underline() || font.StrikeOut()) {
    const double width = TextWidth(text);
    if (font.Underline())
      cairo_rectangle(cr_, x, baseline + font.UnderlinePosition(), width, font.UnderlineThickness());
    if (font.StrikeOut())
      cairo_rectangle(cr_, x, baseline + font.StrikeOutPosition(), width, font.StrikeOutThickness());
    cairo_fill(cr_);
  }
  cairo_restore(cr_);
}

void CairoSurface::SelectPen(int32_t width, int32_t colour) {
  // The thinnest line is one dot of the device; 254 logical units make an inch.
  penWidth_ = width > 0 ? width : 254.0 / (caps_.logPixelsX > 0 ? caps_.logPixelsX : 600);
  penColour_ = colour;
}

void CairoSurface::MoveTo(int32_t x, int32_t y) {
  penX_ = x;
  penY_ = y;
}

void CairoSurface::LineTo(int32_t x, int32_t y) {
  cairo_save(cr_);
  SetColour(penColour_);
  cairo_set_line_width(cr_, penWidth_);
  // The system's pens end round, so that thick frame lines meet without a notch at the corners.
  cairo_set_line_cap(cr_, CAIRO_LINE_CAP_ROUND);
  cairo_move_to(cr_, penX_, penY_);
  cairo_line_to(cr_, x, y);
  cairo_stroke(cr_);
  cairo_restore(cr_);
  MoveTo(x, y);
}

void CairoSurface::FillRect(const Rect& rect, int32_t colour) {
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
  cairo_surface_t* target = cairo_surface_reference(cairo_get_target(surface->cr_));
  recording.reset();
  return std::make_unique<CairoRecordedPage>(target);
}

void CairoSurface::Play(const RecordedPage& page, float scale) {
  auto* recorded = dynamic_cast<const CairoRecordedPage*>(&page);
  if (recorded == nullptr) return;
  cairo_save(cr_);
  cairo_scale(cr_, scale, scale);
  cairo_set_source_surface(cr_, recorded->Recording(), 0, 0);
  cairo_paint(cr_);
  cairo_restore(cr_);
}

}  // namespace verdal::print
