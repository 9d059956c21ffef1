#pragma once
// The floor a printout is measured against: the same cells, already placed, drawn with plain
// cairo text calls (cairo_select_font_face, cairo_show_text) into a PDF, with no measuring, no
// wrapping and no layout. Whatever the printout spends above this is its own logic.
#include <cairo-pdf.h>
#include <cairo.h>

#include <cstdint>
#include <string>
#include <vector>

#include "platform/cp1252.h"
#include "print/pdf_printer.h"

namespace bench_support {

// A cell's text (code page 1252) with its top-left corner in logical units on its page.
struct PlacedCell {
  int32_t page = 0;  // from 0; cells come in page order
  int32_t x = 0;
  int32_t y = 0;
  std::string text;
  verdal::print::FontSpec font;
};

// Draws the cells page after page into a PDF at `path`; false when cairo could not write it.
inline bool DrawFloorPdf(const std::vector<PlacedCell>& cells, const verdal::print::PageSetup& setup,
                         const std::string& path) {
  const double points = 72.0 / 25.4;
  cairo_surface_t* pdf = cairo_pdf_surface_create(path.c_str(), setup.WidthMm() * points, setup.HeightMm() * points);
  cairo_t* cr = cairo_create(pdf);
  cairo_scale(cr, 72.0 / 254.0, 72.0 / 254.0);  // logical units of 0.1 mm
  cairo_set_source_rgb(cr, 0, 0, 0);
  int32_t page = cells.empty() ? 0 : cells.front().page;
  const verdal::print::FontSpec* selected = nullptr;
  double ascent = 0;
  std::string utf8;
  for (const PlacedCell& cell : cells) {
    for (; page < cell.page; ++page) cairo_show_page(cr);
    if (selected == nullptr || !(*selected == cell.font)) {
      selected = &cell.font;
      cairo_select_font_face(cr, cell.font.face.c_str(),
                             cell.font.italic ? CAIRO_FONT_SLANT_ITALIC : CAIRO_FONT_SLANT_NORMAL,
                             cell.font.weight >= 700 ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
      cairo_set_font_size(cr, cell.font.height);
      cairo_font_extents_t extents;
      cairo_font_extents(cr, &extents);
      ascent = extents.ascent;
    }
    utf8.clear();
    verdal::cp1252::ToUtf8(cell.text, utf8);
    cairo_move_to(cr, cell.x, cell.y + ascent);
    cairo_show_text(cr, utf8.c_str());
  }
  cairo_show_page(cr);
  cairo_destroy(cr);
  cairo_surface_finish(pdf);
  const bool ok = cairo_surface_status(pdf) == CAIRO_STATUS_SUCCESS;
  cairo_surface_destroy(pdf);
  return ok;
}

}  // namespace bench_support
