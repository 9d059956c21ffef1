#pragma once
// The printer of this platform: a PDF file, one PDF page per printed page, written beside its name
// and renamed onto it only when the whole document was written. Beside it, the information context
// that measures as the printer does and draws nowhere.
#include <memory>
#include <string>

#include "print/cairo_surface.h"

namespace verdal::print {

// The paper the printout is laid out for. The printer has 600 dots per inch and no unprintable
// margin.
struct PageSetup {
  enum class Paper { kA4, kLetter };
  Paper paper = Paper::kA4;
  bool landscape = false;

  // The sheet as it lies, in millimetres.
  double WidthMm() const;
  double HeightMm() const;
  DeviceCaps Caps() const;
};

class PdfPrinter : public CairoSurface {
 public:
  // Starts the document for `path`, or answers null with the reason.
  static std::unique_ptr<PdfPrinter> Open(const std::string& path, const PageSetup& setup, std::string& reason);
  // A printer not closed leaves nothing behind: the partial file is removed.
  ~PdfPrinter() override;

  bool EndPage() override;
  // Finishes the document and gives it its name. False, with the reason, when anything could not
  // be written; then no file is left, neither the name nor the partial one.
  bool Close(std::string& reason);

 private:
  struct Sink;
  PdfPrinter(cairo_t* cr, const PageSetup& setup, std::unique_ptr<Sink> sink);
  bool Failed(std::string& reason);
  void Discard();

  std::unique_ptr<Sink> sink_;
};

// A surface that measures as the printer of `setup` does and keeps nothing that is drawn on it.
std::unique_ptr<CairoSurface> OpenInfoContext(const PageSetup& setup);

}  // namespace verdal::print
