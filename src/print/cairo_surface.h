#pragma once
// The drawing surface on a cairo context: the PDF printer, the measuring context and recorded
// pages are all this, over different cairo surfaces.
#include <cairo.h>

#include <memory>
#include <string>
#include <vector>

#include "print/surface.h"

namespace verdal::print {

class FontFace;

// A page recorded on a cairo recording surface, in logical units.
class CairoRecordedPage : public RecordedPage {
 public:
  explicit CairoRecordedPage(cairo_surface_t* recording) : recording_(recording) {}  // takes it over
  ~CairoRecordedPage() override { cairo_surface_destroy(recording_); }
  CairoRecordedPage(const CairoRecordedPage&) = delete;
  CairoRecordedPage& operator=(const CairoRecordedPage&) = delete;
  cairo_surface_t* Recording() const { return recording_; }

 private:
  cairo_surface_t* recording_;
};

class CairoSurface : public Surface {
 public:
  // Draws on `cr` (it takes a reference), where one logical unit is `scale` units of the context's
  // user space as it stands now; reports `caps` as its device.
  CairoSurface(cairo_t* cr, double scale, const DeviceCaps& caps);
  ~CairoSurface() override;
  CairoSurface(const CairoSurface&) = delete;
  CairoSurface& operator=(const CairoSurface&) = delete;

  DeviceCaps Caps() const override { return caps_; }
  void SetOrigin(int32_t x, int32_t y) override;

  void SelectFont(const FontSpec& font) override;
  const float* Advances() override;
  TextMetrics Metrics() override;

  void SetTextColour(int32_t colour) override { textColour_ = colour; }
  void TextOut(int32_t x, int32_t y, const Rect* clip, std::string_view text) override;

  void SelectPen(int32_t width, int32_t colour) override;
  void MoveTo(int32_t x, int32_t y) override;
  void LineTo(int32_t x, int32_t y) override;
  void FillRect(const Rect& rect, int32_t colour) override;

  std::unique_ptr<Surface> NewRecording(int32_t width, int32_t height) override;
  std::unique_ptr<RecordedPage> EndRecording(std::unique_ptr<Surface> recording) override;
  void Play(const RecordedPage& page, float scale) override;

 protected:
  // The context with every line drawn so far stroked.
  cairo_t* Context() {
    FlushLines();
    return cr_;
  }

 private:
  const FontFace& Font();
  void SetColour(int32_t colour);
  // Lines of one pen gather until the pen changes or anything else needs the path. Then lines
  // that continue each other on one row or column are joined and all are stroked at once: a
  // table frames every cell, and its grid drawn cell by cell would be dozens of times as many
  // operators in a PDF as the few long lines it shows.
  void FlushLines();

  cairo_t* cr_;
  cairo_matrix_t base_;  // logical units at origin (0, 0)
  DeviceCaps caps_;
  const FontFace* font_ = nullptr;
  int32_t textColour_ = 0;
  double penWidth_ = 0;
  int32_t penColour_ = 0;
  int32_t penX_ = 0;
  int32_t penY_ = 0;
  struct Segment {
    double x1, y1, x2, y2;  // logical units from the page's corner
  };
  std::vector<Segment> segments_;
  int32_t originX_ = 0;
  int32_t originY_ = 0;
  int32_t sourceColour_ = -1;  // the colour the context's source holds, -1 for none known
  cairo_scaled_font_t* cairoFont_ = nullptr;
  std::vector<cairo_glyph_t> glyphs_;
  std::vector<cairo_text_cluster_t> clusters_;
  std::string utf8_;
};

}  // namespace verdal::print
