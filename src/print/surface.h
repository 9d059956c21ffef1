#pragma once
// The drawing surface the table printout lays out and draws on, in logical units of 0.1 mm: the
// printer (a PDF file), the measuring context beside it, and recorded pages that the preview plays
// back at any zoom. Text is code page 1252 bytes. The width of a text is the sum of its
// characters' advances, rounded: Advances() gives that table for the selected font, so a caller
// that measures every prefix of a text (wrapping does) adds up itself and agrees with TextWidth.
// Text is drawn at those advances too, so what was measured is what is drawn.
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace verdal::print {

// What the logic asks of the device, in the device's own units (dots, millimetres).
struct DeviceCaps {
  int32_t logPixelsX = 600;
  int32_t logPixelsY = 600;
  int32_t horzSizeMm = 210;
  int32_t vertSizeMm = 297;
  int32_t physicalWidth = 4961;   // dots
  int32_t physicalHeight = 7016;  // dots
  int32_t physicalOffsetX = 0;    // dots of unprintable margin
  int32_t physicalOffsetY = 0;
};

// A font as the printout selects it: height is the em height in logical units (positive).
struct FontSpec {
  std::string face = "Arial";
  int32_t height = 35;
  int32_t weight = 400;  // 700 is bold
  bool italic = false;
  bool underline = false;
  bool strikeOut = false;
  bool operator==(const FontSpec&) const = default;
};

// In logical units, of the selected font.
struct TextMetrics {
  int32_t height = 0;  // ascent + descent
  int32_t ascent = 0;
  int32_t descent = 0;
  int32_t internalLeading = 0;
  int32_t externalLeading = 0;
};

struct Rect {
  int32_t left = 0;
  int32_t top = 0;
  int32_t right = 0;
  int32_t bottom = 0;
};

// A page drawn once and played back many times; what it holds is the surface's business.
class RecordedPage {
 public:
  virtual ~RecordedPage() = default;
};

class Surface {
 public:
  virtual ~Surface() = default;

  virtual DeviceCaps Caps() const = 0;
  // Moves the origin of logical coordinates to (x, y) logical units from the page's corner.
  virtual void SetOrigin(int32_t x, int32_t y) = 0;

  virtual void SelectFont(const FontSpec& font) = 0;
  // 256 advances of the selected font, in logical units, by code page 1252 byte.
  virtual const float* Advances() = 0;
  virtual TextMetrics Metrics() = 0;
  int32_t TextWidth(std::string_view text);

  virtual void SetTextColour(int32_t colour) = 0;  // a Windows colour value, 0x00BBGGRR
  // Text with its top-left corner at (x, y), clipped to `clip` (null: unclipped), transparent.
  virtual void TextOut(int32_t x, int32_t y, const Rect* clip, std::string_view text) = 0;

  // Lines: width in logical units (0 is the thinnest the device draws), colour as above.
  virtual void SelectPen(int32_t width, int32_t colour) = 0;
  virtual void MoveTo(int32_t x, int32_t y) = 0;
  virtual void LineTo(int32_t x, int32_t y) = 0;
  virtual void FillRect(const Rect& rect, int32_t colour) = 0;

  // Pages of a printing surface; a measuring or recording one ignores them.
  virtual void StartPage() {}
  // False when the page could not be written (a full disk); the printout then stops.
  virtual bool EndPage() { return true; }

  // A surface that records what is drawn on it, measuring as this one does, for a page of
  // `width` x `height` logical units; EndRecording turns it into the page.
  virtual std::unique_ptr<Surface> NewRecording(int32_t width, int32_t height) = 0;
  virtual std::unique_ptr<RecordedPage> EndRecording(std::unique_ptr<Surface> recording) = 0;
  // Plays a recorded page with its corner at the origin, every length times `scale`.
  virtual void Play(const RecordedPage& page, float scale) = 0;
};

}  // namespace verdal::print
