#include "print/font_face.h"

#include <pango/pangocairo.h>

#include <map>
#include <memory>
#include <tuple>

#include "platform/cp1252.h"

namespace verdal::print {
namespace {

int32_t Rounded(double value) { return static_cast<int32_t>(value + 0.5); }

// Unhinted outlines and metrics: hinting would bend advances to the pixels of one device.
cairo_font_options_t* UnhintedOptions() {
  static cairo_font_options_t* options = [] {
    cairo_font_options_t* o = cairo_font_options_create();
    cairo_font_options_set_hint_metrics(o, CAIRO_HINT_METRICS_OFF);
    cairo_font_options_set_hint_style(o, CAIRO_HINT_STYLE_NONE);
    return o;
  }();
  return options;
}

// One font map of our own for the process: pango's default map belongs to a thread.
PangoContext* FontContext() {
  static PangoContext* context = [] {
    PangoFontMap* map = pango_cairo_font_map_new();
    PangoContext* c = pango_font_map_create_context(map);
    g_object_unref(map);  // the context holds it
    pango_cairo_context_set_font_options(c, UnhintedOptions());
    return c;
  }();
  return context;
}

// Characters that the code page leaves to control codes draw nothing.
bool IsControl(char16_t c) { return c < 0x20 || (c >= 0x7F && c < 0xA0); }

}  // namespace

const FontFace& FontFace::For(const FontSpec& wanted) {
  using Key = std::tuple<std::string, int32_t, int32_t, bool, bool, bool>;
  static auto* cache = new std::map<Key, std::unique_ptr<FontFace>>();
  Key key{wanted.face, wanted.height, wanted.weight, wanted.italic, wanted.underline, wanted.strikeOut};
  auto it = cache->find(key);
  if (it == cache->end()) it = cache->emplace(key, std::unique_ptr<FontFace>(new FontFace(wanted))).first;
  return *it->second;
}

FontFace::FontFace(const FontSpec& wanted) : underline_(wanted.underline), strikeOut_(wanted.strikeOut) {
  const double em = wanted.height > 0 ? wanted.height : 1;
  PangoFontDescription* description = pango_font_description_new();
  pango_font_description_set_family(description, wanted.face.c_str());
  pango_font_description_set_weight(description, static_cast<PangoWeight>(wanted.weight > 0 ? wanted.weight : 400));
  pango_font_description_set_style(description, wanted.italic ? PANGO_STYLE_ITALIC : PANGO_STYLE_NORMAL);
  pango_font_description_set_absolute_size(description, em * PANGO_SCALE);
  PangoFont* font = pango_font_map_load_font(pango_context_get_font_map(FontContext()), FontContext(), description);
  pango_font_description_free(description);
  if (font == nullptr) return;

  PangoFontDescription* chosen = pango_font_describe(font);
  if (const char* family = pango_font_description_get_family(chosen)) family_ = family;
  pango_font_description_free(chosen);

  PangoFontMetrics* lines = pango_font_get_metrics(font, nullptr);
  underlinePosition_ = -static_cast<float>(pango_font_metrics_get_underline_position(lines)) / PANGO_SCALE;
  underlineThickness_ = static_cast<float>(pango_font_metrics_get_underline_thickness(lines)) / PANGO_SCALE;
  strikeOutPosition_ = -static_cast<float>(pango_font_metrics_get_strikethrough_position(lines)) / PANGO_SCALE;
  strikeOutThickness_ = static_cast<float>(pango_font_metrics_get_strikethrough_thickness(lines)) / PANGO_SCALE;
  pango_font_metrics_unref(lines);

  // Pango chose the face (with any synthetic bold or slant it needs); the scale is ours, so that
  // one user-space unit is one logical unit whatever pango's own resolution.
  cairo_scaled_font_t* pangoScaled = pango_cairo_font_get_scaled_font(PANGO_CAIRO_FONT(font));
  cairo_font_face_t* face = pangoScaled != nullptr ? cairo_scaled_font_get_font_face(pangoScaled) : nullptr;
  if (face != nullptr) {
    cairo_matrix_t fontMatrix, identity;
    cairo_matrix_init_scale(&fontMatrix, em, em);
    cairo_matrix_init_identity(&identity);
    scaledFont_ = cairo_scaled_font_create(face, &fontMatrix, &identity, UnhintedOptions());
    if (cairo_scaled_font_status(scaledFont_) != CAIRO_STATUS_SUCCESS) {
      cairo_scaled_font_destroy(scaledFont_);
      scaledFont_ = nullptr;
    }
  }
  g_object_unref(font);
  if (scaledFont_ == nullptr) {
    family_.clear();
    return;
  }

  for (int byte = 0; byte < 256; ++byte) {
    const char c = static_cast<char>(byte);
    if (IsControl(cp1252::ToUtf16(c))) continue;
    std::string utf8;
    cp1252::ToUtf8(std::string_view(&c, 1), utf8);
    cairo_glyph_t* glyphs = nullptr;
    int count = 0;
    if (cairo_scaled_font_text_to_glyphs(scaledFont_, 0, 0, utf8.data(), static_cast<int>(utf8.size()),
                                         &glyphs, &count, nullptr, nullptr, nullptr) == CAIRO_STATUS_SUCCESS &&
        count == 1 && glyphs[0].index != 0) {
      cairo_text_extents_t extents;
      cairo_scaled_font_glyph_extents(scaledFont_, glyphs, 1, &extents);
      glyphs_[byte] = static_cast<uint32_t>(glyphs[0].index);
      advances_[byte] = static_cast<float>(extents.x_advance);
    }
    cairo_glyph_free(glyphs);
  }

  cairo_font_extents_t extents;
  cairo_scaled_font_extents(scaledFont_, &extents);
  metrics_.ascent = Rounded(extents.ascent);
  metrics_.descent = Rounded(extents.descent);
  metrics_.height = metrics_.ascent + metrics_.descent;
  metrics_.internalLeading = metrics_.height - static_cast<int32_t>(em);
  const double lineGap = extents.height - extents.ascent - extents.descent;
  metrics_.externalLeading = lineGap > 0 ? Rounded(lineGap) : 0;
}

}  // namespace verdal::print
