#include "print/page_png.h"

#include <cairo.h>

#include "platform/file_system.h"
#include "print/cairo_surface.h"

namespace verdal::print {
namespace {

// Device pixels per logical unit, for a device of so many dots per inch.
constexpr float kInchPerLogicalUnit = 0.003937f;

cairo_status_t Append(void* closure, const unsigned char* data, unsigned int length) {
  static_cast<std::string*>(closure)->append(reinterpret_cast<const char*>(data), length);
  return CAIRO_STATUS_SUCCESS;
}

}  // namespace

int32_t PagePixels(float length, float zoom, int32_t screenDpi) {
  return static_cast<int32_t>(length * zoom * static_cast<float>(screenDpi) * kInchPerLogicalUnit + 0.5f);
}

bool RenderPagePng(const RecordedPage& page, float pageWidth, float pageHeight, float zoom,
                   int32_t screenDpi, const std::string& path) {
  const int32_t width = PagePixels(pageWidth, zoom, screenDpi);
  const int32_t height = PagePixels(pageHeight, zoom, screenDpi);
  if (width <= 0 || height <= 0) return false;
  cairo_surface_t* image = cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height);
  cairo_t* cr = cairo_create(image);
  cairo_set_source_rgb(cr, 1, 1, 1);
  cairo_paint(cr);
  {
    DeviceCaps caps;
    caps.logPixelsX = caps.logPixelsY = screenDpi;
    CairoSurface screen(cr, 1.0, caps);
    screen.Play(page, zoom * static_cast<float>(screenDpi) * kInchPerLogicalUnit);
  }
  std::string png;
  bool ok = cairo_status(cr) == CAIRO_STATUS_SUCCESS &&
            cairo_surface_write_to_png_stream(image, &Append, &png) == CAIRO_STATUS_SUCCESS;
  cairo_destroy(cr);
  cairo_surface_destroy(image);
  return ok && platform::WriteWholeFile(path.c_str(), png.data(), png.size());
}

}  // namespace verdal::print
