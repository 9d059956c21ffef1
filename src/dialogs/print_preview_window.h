#pragma once
// TCYXPreviewWindow: the modal print preview every printed table goes through. It keeps the
// recorded pages of a printout and the view over them (zoom, scrolling, pages side by side), runs
// the commands configure, print and printer set-up, and calls the host's print callback at its
// phases. The host shows it (ui::Host::ShowPrintPreview) and answers with a command; a host that
// shows no previews gets the table printed once to the default PDF path.
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "options/print_data.h"
#include "print/pdf_printer.h"
#include "print/preview_view.h"
#include "print/print_out.h"
#include "ui/host.h"
#include "verdal.h"

namespace verdal::listing {
class TListAndSortDisplayFieldInfoMananger;
}

namespace verdal::dialogs {

// The printer of this process, as the printer set-up leaves it for the next preview.
print::PageSetup& ProcessPrinter();

struct PreviewRequest {
  model::NodeStore* store = nullptr;
  listing::TListAndSortDisplayFieldInfoMananger* lists = nullptr;  // for the sort choice of the settings
  options::TPrintData* record = nullptr;  // the working copy; the commands change it
  print::PrintEnvironment environment;
  VerdalPrintFn callback = nullptr;
  std::vector<int32_t> ids;  // explicit rows
  bool explicitRows = false;
  int32_t styleField = -1;
  std::string pdfPath;  // where a print goes without asking
  // Chooses the rows anew with a filter text (the callback's phase 1); null marks every place,
  // for rows the host names itself.
  std::function<void(const char* filter)> reselect;
};

class TCYXPreviewWindow : public ui::PrintPreview, private print::PreviewPages {
 public:
  TCYXPreviewWindow(ui::Host& host, VerdalWindow parent, PreviewRequest request);
  ~TCYXPreviewWindow() override;

  // Sets up, then runs the host's commands until it closes.
  void Open();

  // The commands.
  void Configure();
  // The table again, without recording, to a PDF file; false with the reason told to the user.
  bool Print(const std::string& path);
  void PrinterSetup();

  print::TPreviewView& View() { return view_; }
  print::TCalyxPrintOut* Printout() { return printout_.get(); }

  // ui::PrintPreview
  int32_t PageCount() const override { return printout_ != nullptr ? printout_->PageCount() : 0; }
  const std::string& StatusText() override;
  bool RenderPage(int32_t page, int32_t zoomIndex, const std::string& pngPath) override;

 private:
  // print::PreviewPages
  float PageWidth() const override { return printout_->PageWidth(); }
  float PageHeight() const override { return printout_->PageHeight(); }
  float MarginLeft() const override { return printout_->OffLeft(); }
  float MarginTop() const override { return printout_->OffTop(); }
  void PlayPage(int32_t page, print::Surface& surface, float zoom) override;

  bool Phase(int32_t phase);
  // Phase 1, a new printout with recorded pages, phase 3.
  void Rebuild();
  void LayOut();
  std::unique_ptr<print::TCalyxPrintOut> NewPrintout(bool recordPages);

  ui::Host& host_;
  VerdalWindow parent_;
  PreviewRequest request_;
  VerdalPrintInfo info_{};
  print::TPreviewView view_;
  std::unique_ptr<print::TCalyxPrintOut> printout_;
};

}  // namespace verdal::dialogs
