#include "dialogs/print_preview_window.h"

#include "dialogs/print_sheet.h"
#include "dialogs/printer_setup_page.h"
#include "print/page_png.h"
#include "platform/trace.h"
#include "ui/host.h"

namespace verdal::dialogs {

namespace {

constexpr int32_t kScreenDpi = 96;
constexpr int32_t kStartZoom = 8;  // 100%

}  // namespace

print::PageSetup& ProcessPrinter() {
  static print::PageSetup printer;
  return printer;
}

TCYXPreviewWindow::TCYXPreviewWindow(ui::Host& host, VerdalWindow parent, PreviewRequest request)
    : host_(host), parent_(parent), request_(std::move(request)), view_(kScreenDpi) {}

TCYXPreviewWindow::~TCYXPreviewWindow() { view_.SetPages(nullptr); }

// The host's callback at a phase; its answer, false without one.
bool TCYXPreviewWindow::Phase(int32_t phase) {
  if (request_.callback == nullptr) return false;
  return request_.callback(&info_, phase) != 0;
}

std::unique_ptr<print::TCalyxPrintOut> TCYXPreviewWindow::NewPrintout(bool recordPages) {
  const int32_t* ids = request_.explicitRows ? request_.ids.data() : nullptr;
  return std::make_unique<print::TCalyxPrintOut>(*request_.store, *request_.record, ids,
                                                 static_cast<int32_t>(request_.ids.size()),
                                                 request_.styleField, recordPages, request_.environment);
}

void TCYXPreviewWindow::Rebuild() {
  info_ = VerdalPrintInfo{};
  const bool took = Phase(1);
  bool hostRows = false;
  if (took) {
    if (info_.filter != nullptr && request_.reselect) {
      request_.reselect(info_.filter);
      request_.explicitRows = false;
      request_.ids.clear();
    }
    if (info_.title1 != nullptr) request_.record->title1 = info_.title1;
    if (info_.title2 != nullptr) request_.record->title2 = info_.title2;
    if (info_.count > 0 && info_.ids != nullptr) {
      // Copied: the host may free its list once the printout is built.
      request_.ids.assign(info_.ids, info_.ids + info_.count);
      request_.explicitRows = hostRows = true;
      if (request_.reselect) request_.reselect(nullptr);
    }
  }
  view_.SetPages(nullptr);
  printout_.reset();
  printout_ = NewPrintout(true);
  if (hostRows) Phase(3);
}

void TCYXPreviewWindow::LayOut() {
  const print::PageSetup setup = ProcessPrinter();
  std::unique_ptr<print::CairoSurface> info = print::OpenInfoContext(setup);
  printout_->GetDialogInfo(*info);
  view_.SetPages(this);
  view_.SetBusy(false);
  view_.ApplyZoom(view_.ZoomIndex());
}

void TCYXPreviewWindow::Open() {
  ProcessPrinter().landscape = request_.record->landscape != 0;
  view_.SetClientSize(1280, 960);  // until a host tells its own
  Rebuild();
  LayOut();
  view_.ApplyZoom(kStartZoom);
  while (true) {
    const std::optional<ui::PreviewCommand> command = host_.ShowPrintPreview(parent_, *this);
    if (!command) {  // nobody to show it to: print once and close
      Print(request_.pdfPath);
      return;
    }
    switch (*command) {
      case ui::PreviewCommand::kConfigure: Configure(); break;
      case ui::PreviewCommand::kPrinterSetup: PrinterSetup(); break;
      case ui::PreviewCommand::kPrint: {
        ui::FileRequest file;
        file.title = "Drucken";
        file.filter = "PDF (*.pdf)|*.pdf|";
        file.initialPath = request_.pdfPath;
        file.save = true;
        const std::optional<std::string> path = host_.PickFile(parent_, file);
        if (path) Print(*path);
        break;
      }
      case ui::PreviewCommand::kClose: return;
    }
  }
}

void TCYXPreviewWindow::Configure() {
  view_.SetBusy(true);
  info_ = VerdalPrintInfo{};
  Phase(0);  // a page the host made has no place in a sheet of logic pages
  RunPrintSettingsSheet(host_, parent_, *request_.record, *request_.store, *request_.lists);
  ProcessPrinter().landscape = request_.record->landscape != 0;
  Rebuild();
  Phase(2);
  LayOut();
}

void TCYXPreviewWindow::PrinterSetup() {
  print::PageSetup& printer = ProcessPrinter();
  TPropertySheet sheet("Drucker einrichten");
  sheet.AddPage(std::make_unique<TPrinterSetupPage>(printer));
  host_.RunSheet(parent_, sheet);
  request_.record->landscape = printer.landscape ? 1 : 0;
  view_.SetBusy(true);
  LayOut();
}

bool TCYXPreviewWindow::Print(const std::string& path) {
  const print::PageSetup setup = ProcessPrinter();
  std::unique_ptr<print::TCalyxPrintOut> printout = NewPrintout(false);
  std::unique_ptr<print::CairoSurface> info = print::OpenInfoContext(setup);
  printout->BeginPrinting(*info);
  std::string reason;
  std::unique_ptr<print::PdfPrinter> printer;
  if (printout->PageCount() > 0) {
    printer = print::PdfPrinter::Open(path, setup, reason);
    for (int32_t page = 1; printer != nullptr && page <= printout->PageCount(); ++page) {
      printer->StartPage();
      printout->PrintPage(page, *printer);
      if (!printer->EndPage()) break;
    }
    if (printer != nullptr && printer->Close(reason)) return true;
  } else {
    reason = "no pages";
  }
  platform::Trace("Printing to %s failed: %s", path.c_str(), reason.c_str());
  if (printout->PageCount() > 0)
    host_.MessageBox(parent_, ui::ApplicationName(), "Fehler beim Drucken: " + reason, ui::Buttons::kOk,
                     ui::Icon::kStop, ui::Answer::kOk);
  return false;
}

const std::string& TCYXPreviewWindow::StatusText() {
  view_.Measure();  // brings the current page up to date
  return view_.StatusText();
}

bool TCYXPreviewWindow::RenderPage(int32_t page, int32_t zoomIndex, const std::string& pngPath) {
  if (printout_ == nullptr || zoomIndex < 0 || zoomIndex >= static_cast<int32_t>(print::kZoomSteps.size()))
    return false;
  const print::RecordedPage* recorded = printout_->Recorded(page);
  if (recorded == nullptr) return false;
  return print::RenderPagePng(*recorded, printout_->PageWidth(), printout_->PageHeight(),
                              print::kZoomSteps[static_cast<size_t>(zoomIndex)].factor, kScreenDpi, pngPath);
}

void TCYXPreviewWindow::PlayPage(int32_t page, print::Surface& surface, float zoom) {
  const print::RecordedPage* recorded = printout_ != nullptr ? printout_->Recorded(page) : nullptr;
  if (recorded == nullptr) return;
  printout_->zoom = zoom;
  surface.Play(*recorded, zoom);
}

}  // namespace verdal::dialogs
