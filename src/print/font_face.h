#pragma once
// Fonts of the printout, resolved by name through pango and fontconfig ("Arial" becomes the
// metric-compatible Liberation Sans by fontconfig's aliases) and kept for the life of the process.
// A font is scaled so that its em is `height` logical units, with hinting off, so that advances and
// metrics are the font's own and the same on every device.
#include <cairo.h>

#include <cstdint>
#include <string>

#include "print/surface.h"

namespace verdal::print {

class FontFace {
 public:
  // The font for `wanted`, made at its first use. The engine is one-threaded: so is the cache.
  static const FontFace& For(const FontSpec& wanted);

  FontFace(const FontFace&) = delete;
  FontFace& operator=(const FontFace&) = delete;

  // The family fontconfig chose, e.g. "Liberation Sans"; empty when no font could be loaded.
  const std::string& Family() const { return family_; }
  // In a user space of logical units; null when no font could be loaded (nothing is drawn).
  cairo_scaled_font_t* ScaledFont() const { return scaledFont_; }
  // By code page 1252 byte: the glyph (0 for a byte that draws nothing) and its advance.
  const uint32_t* Glyphs() const { return glyphs_; }
  const float* Advances() const { return advances_; }
  const TextMetrics& Metrics() const { return metrics_; }
  bool Underline() const { return underline_; }
  bool StrikeOut() const { return strikeOut_; }
  // Below the baseline (negative: above it) and thickness of the underline and strike-out lines.
  float UnderlinePosition() const { return underlinePosition_; }
  float UnderlineThickness() const { return underlineThickness_; }
  float StrikeOutPosition() const { return strikeOutPosition_; }
  float StrikeOutThickness() const { return strikeOutThickness_; }

 private:
  explicit FontFace(const FontSpec& wanted);

  std::string family_;
  cairo_scaled_font_t* scaledFont_ = nullptr;
  uint32_t glyphs_[256] = {};
  float advances_[256] = {};
  TextMetrics metrics_;
  bool underline_ = false;
  bool strikeOut_ = false;
  float underlinePosition_ = 0;
  float underlineThickness_ = 0;
  float strikeOutPosition_ = 0;
  float strikeOutThickness_ = 0;
};

}  // namespace verdal::print
