#pragma once
// TDruckDialog, "Seite einrichten" (IDD_DRUCKSEITE): the page of a print configuration: the two
// titles with their show flags, alignments and fonts, page number and date with theirs and the
// date's font, the four margins with two decimals, the separator line and landscape. Written when
// the sheet is closed with OK. Fonts are plain controls (dialogs/print_page_parts.h).
#include <cstdint>
#include <string>
#include <vector>

#include "dialogs/print_page_parts.h"
#include "dialogs/property_sheet.h"
#include "options/print_data.h"

namespace verdal::dialogs {

class TDruckDialog : public TPropertyPage {
 public:
  enum ControlId : int32_t {
    kTitle1 = 1,
    kShowTitle1,
    kTitle1Align,
    kTitle2,
    kShowTitle2,
    kTitle2Align,
    kShowPageNumber,
    kPageNumberAlign,
    kShowDate,
    kDateAlign,
    kLeftMargin,
    kRightMargin,
    kTopMargin,
    kBottomMargin,
    kSeparatorLine,
    kLandscape,
    kTitle1Font = 30,  // five ids each
    kTitle2Font = 40,
    kDateFont = 50,
  };

  explicit TDruckDialog(options::TPrintData& record);

  std::string Title() const override { return "Seite einrichten"; }
  std::vector<ui::Control> Controls() const override;
  std::string Text(int32_t control) const override;
  void SetText(int32_t control, const std::string& text) override;
  bool Apply() override;

 private:
  options::TPrintData& record_;
  options::TPrintData work_;
  FontControls title1Font_{kTitle1Font, "Titel 1"};
  FontControls title2Font_{kTitle2Font, "Titel 2"};
  FontControls dateFont_{kDateFont, "Datum/Seitenzahl"};
};

}  // namespace verdal::dialogs
