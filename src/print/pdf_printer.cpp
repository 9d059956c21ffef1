#include "print/pdf_printer.h"

#include <cairo-pdf.h>
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

#include "platform/fault.h"
#include "platform/file_system.h"

namespace verdal::print {
namespace {

constexpr int32_t kDotsPerInch = 600;
constexpr double kPointsPerLogicalUnit = 72.0 / 254.0;  // a logical unit is 0.1 mm

int32_t Rounded(double value) { return static_cast<int32_t>(value + 0.5); }

}  // namespace

double PageSetup::WidthMm() const {
  const double shortSide = paper == Paper::kLetter ? 215.9 : 210.0;
  const double longSide = paper == Paper::kLetter ? 279.4 : 297.0;
  return landscape ? longSide : shortSide;
}

double PageSetup::HeightMm() const {
  const double shortSide = paper == Paper::kLetter ? 215.9 : 210.0;
  const double longSide = paper == Paper::kLetter ? 279.4 : 297.0;
  return landscape ? shortSide : longSide;
}

DeviceCaps PageSetup::Caps() const {
  DeviceCaps caps;
  caps.logPixelsX = kDotsPerInch;
  caps.logPixelsY = kDotsPerInch;
  caps.horzSizeMm = Rounded(WidthMm());
  caps.vertSizeMm = Rounded(HeightMm());
  caps.physicalWidth = Rounded(WidthMm() / 25.4 * kDotsPerInch);
  caps.physicalHeight = Rounded(HeightMm() / 25.4 * kDotsPerInch);
  caps.physicalOffsetX = 0;
  caps.physicalOffsetY = 0;
  return caps;
}

// Where cairo's PDF stream goes: the partial file, and the first error writing it.
struct PdfPrinter::Sink {
  std::string target;
  std::string partial;
  int fd = -1;
  int error = 0;  // errno of the first failed write, or EIO for an injected one

  static cairo_status_t Write(void* closure, const unsigned char* data, unsigned int length) {
    auto* sink = static_cast<Sink*>(closure);
    if (sink->fd < 0 || sink->error != 0) return CAIRO_STATUS_WRITE_ERROR;
    errno = 0;
    if (platform::WriteAll(sink->fd, reinterpret_cast<const char*>(data), length)) return CAIRO_STATUS_SUCCESS;
    sink->error = errno != 0 ? errno : EIO;
    return CAIRO_STATUS_WRITE_ERROR;
  }
};

std::unique_ptr<PdfPrinter> PdfPrinter::Open(const std::string& path, const PageSetup& setup,
                                             std::string& reason) {
  auto sink = std::make_unique<Sink>();
  sink->target = platform::NativePath(path.c_str());
  sink->partial = platform::PartialNameOf(sink->target);
  sink->fd = ::open(sink->partial.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC, 0666);
  if (sink->fd < 0) {
    reason = "cannot create " + sink->partial + ": " + std::strerror(errno);
    return nullptr;
  }
  const double points = 72.0 / 25.4;
  cairo_surface_t* pdf = cairo_pdf_surface_create_for_stream(&Sink::Write, sink.get(), setup.WidthMm() * points,
                                                             setup.HeightMm() * points);
  cairo_t* cr = cairo_create(pdf);
  cairo_surface_destroy(pdf);  // the context holds it
  std::unique_ptr<PdfPrinter> printer(new PdfPrinter(cr, setup, std::move(sink)));
  cairo_destroy(cr);
  if (printer->Failed(reason)) return nullptr;  // the destructor removes the partial file
  return printer;
}

PdfPrinter::PdfPrinter(cairo_t* cr, const PageSetup& setup, std::unique_ptr<Sink> sink)
    : CairoSurface(cr, kPointsPerLogicalUnit, setup.Caps()), sink_(std::move(sink)) {}

PdfPrinter::~PdfPrinter() { Discard(); }

void PdfPrinter::Discard() {
  if (sink_->fd < 0) return;
  // Nothing more reaches the file; cairo may still want to write what it holds when it finishes.
  ::close(sink_->fd);
  sink_->fd = -1;
  ::unlink(sink_->partial.c_str());
  cairo_surface_finish(cairo_get_target(Context()));
}

bool PdfPrinter::Failed(std::string& reason) {
  if (sink_->error != 0) {
    reason = "cannot write " + sink_->partial + ": " + std::strerror(sink_->error);
    return true;
  }
  cairo_status_t status = cairo_surface_status(cairo_get_target(Context()));
  if (status == CAIRO_STATUS_SUCCESS) status = cairo_status(Context());
  if (status != CAIRO_STATUS_SUCCESS) {
    reason = std::string("cannot make the PDF document: ") + cairo_status_to_string(status);
    return true;
  }
  return false;
}

bool PdfPrinter::EndPage() {
  if (sink_->fd < 0) return false;
  cairo_show_page(Context());
  std::string reason;
  return !Failed(reason);
}

bool PdfPrinter::Close(std::string& reason) {
  if (sink_->fd < 0) {
    reason = "the document is closed";
    return false;
  }
  cairo_surface_finish(cairo_get_target(Context()));
  bool ok = !Failed(reason);
  if (ok && (platform::InjectFault(platform::FaultSite::kSync) || ::fsync(sink_->fd) != 0)) {
    reason = "cannot write " + sink_->partial + ": " + std::strerror(errno != 0 ? errno : EIO);
    ok = false;
  }
  if (ok && ::close(std::exchange(sink_->fd, -1)) != 0) {
    reason = "cannot write " + sink_->partial + ": " + std::strerror(errno);
    ok = false;
  }
  if (ok && !platform::RenameFile(sink_->partial.c_str(), sink_->target.c_str())) {
    reason = "cannot rename " + sink_->partial + " to " + sink_->target + ": " + std::strerror(errno);
    ok = false;
  }
  if (!ok) {
    if (sink_->fd >= 0) ::close(std::exchange(sink_->fd, -1));
    ::unlink(sink_->partial.c_str());
  }
  return ok;
}

std::unique_ptr<CairoSurface> OpenInfoContext(const PageSetup& setup) {
  // An empty bounded recording: every drawing falls outside it and is dropped before it is kept.
  const cairo_rectangle_t nothing{0, 0, 0, 0};
  cairo_surface_t* recording = cairo_recording_surface_create(CAIRO_CONTENT_COLOR_ALPHA, &nothing);
  cairo_t* cr = cairo_create(recording);
  cairo_surface_destroy(recording);
  auto surface = std::make_unique<CairoSurface>(cr, 1.0, setup.Caps());
  cairo_destroy(cr);
  return surface;
}

}  // namespace verdal::print
