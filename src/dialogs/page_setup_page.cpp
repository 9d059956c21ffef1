#include "dialogs/page_setup_page.h"

namespace verdal::dialogs {

namespace {

const char* Flag(bool on) { return on ? "1" : "0"; }

std::string AlignmentName(int16_t value) {
  const std::vector<std::string>& names = PageAlignmentNames();
  return value >= 0 && static_cast<size_t>(value) < names.size() ? names[static_cast<size_t>(value)] : "";
}

}  // namespace

TDruckDialog::TDruckDialog(options::TPrintData& record) : record_(record), work_(record) {}

std::vector<ui::Control> TDruckDialog::Controls() const {
  using ui::ControlKind;
  const std::vector<std::string>& aligns = PageAlignmentNames();
  std::vector<ui::Control> c{
      {kTitle1, 0, ControlKind::kEdit, "Titel 1:"},
      {kShowTitle1, 0, ControlKind::kCheckBox, "Titel 1 anzeigen"},
      {kTitle1Align, 0, ControlKind::kChoice, "Titel 1 Ausrichtung:", 0, aligns},
      {kTitle2, 0, ControlKind::kEdit, "Titel 2:"},
      {kShowTitle2, 0, ControlKind::kCheckBox, "Titel 2 anzeigen"},
      {kTitle2Align, 0, ControlKind::kChoice, "Titel 2 Ausrichtung:", 0, aligns},
      {kShowPageNumber, 0, ControlKind::kCheckBox, "Seitenzahl anzeigen"},
      {kPageNumberAlign, 0, ControlKind::kChoice, "Seitenzahl Ausrichtung:", 0, aligns},
      {kShowDate, 0, ControlKind::kCheckBox, "Datum anzeigen"},
      {kDateAlign, 0, ControlKind::kChoice, "Datum Ausrichtung:", 0, aligns},
      {kLeftMargin, 0, ControlKind::kEdit, "Rand links (mm):"},
      {kRightMargin, 0, ControlKind::kEdit, "Rand rechts (mm):"},
      {kTopMargin, 0, ControlKind::kEdit, "Rand oben (mm):"},
      {kBottomMargin, 0, ControlKind::kEdit, "Rand unten (mm):"},
      {kSeparatorLine, 0, ControlKind::kCheckBox, "Trennlinie"},
      {kLandscape, 0, ControlKind::kCheckBox, "Querformat"},
  };
  title1Font_.Add(c);
  title2Font_.Add(c);
  dateFont_.Add(c);
  return c;
}

std::string TDruckDialog::Text(int32_t control) const {
  std::string out;
  if (title1Font_.Text(work_.title1Font, control, out) || title2Font_.Text(work_.title2Font, control, out) ||
      dateFont_.Text(work_.dateFont, control, out))
    return out;
  switch (control) {
    case kTitle1: return work_.title1;
    case kShowTitle1: return Flag(work_.showTitle1);
    case kTitle1Align: return AlignmentName(work_.title1Align);
    case kTitle2: return work_.title2;
    case kShowTitle2: return Flag(work_.showTitle2);
    case kTitle2Align: return AlignmentName(work_.title2Align);
    case kShowPageNumber: return Flag(work_.showPageNumber);
    case kPageNumberAlign: return AlignmentName(work_.pageNumberAlign);
    case kShowDate: return Flag(work_.showDate);
    case kDateAlign: return AlignmentName(work_.dateAlign);
    case kLeftMargin: return TwoDecimals(work_.leftMargin);
    case kRightMargin: return TwoDecimals(work_.rightMargin);
    case kTopMargin: return TwoDecimals(work_.topMargin);
    case kBottomMargin: return TwoDecimals(work_.bottomMargin);
    case kSeparatorLine: return Flag(work_.separatorLine);
    case kLandscape: return Flag(work_.landscape);
    default: return {};
  }
}

void TDruckDialog::SetText(int32_t control, const std::string& text) {
  if (title1Font_.SetText(work_.title1Font, control, text) || title2Font_.SetText(work_.title2Font, control, text) ||
      dateFont_.SetText(work_.dateFont, control, text))
    return;
  const uint8_t on = text == "1" ? 1 : 0;
  auto align = [&text](int16_t& to) {
    const int32_t index = ui::ItemIndex(PageAlignmentNames(), text);
    if (index >= 0) to = static_cast<int16_t>(index);
  };
  auto margin = [&text](double& to) {
    double value = 0;
    if (ParseNumber(text, value) && value >= 0) to = value;
  };
  switch (control) {
    case kTitle1: work_.title1 = text; break;
    case kShowTitle1: work_.showTitle1 = on; break;
    case kTitle1Align: align(work_.title1Align); break;
    case kTitle2: work_.title2 = text; break;
    case kShowTitle2: work_.showTitle2 = on; break;
    case kTitle2Align: align(work_.title2Align); break;
    case kShowPageNumber: work_.showPageNumber = on; break;
    case kPageNumberAlign: align(work_.pageNumberAlign); break;
    case kShowDate: work_.showDate = on; break;
    case kDateAlign: align(work_.dateAlign); break;
    case kLeftMargin: margin(work_.leftMargin); break;
    case kRightMargin: margin(work_.rightMargin); break;
    case kTopMargin: margin(work_.topMargin); break;
    case kBottomMargin: margin(work_.bottomMargin); break;
    case kSeparatorLine: work_.separatorLine = on; break;
    case kLandscape: work_.landscape = on; break;
    default: break;
  }
}

bool TDruckDialog::Apply() {
  options::TPrintData& r = record_;
  const options::TPrintData& w = work_;
  r.title1 = w.title1;
  r.title2 = w.title2;
  r.showTitle1 = w.showTitle1;
  r.showTitle2 = w.showTitle2;
  r.title1Align = w.title1Align;
  r.title2Align = w.title2Align;
  r.title1Font = w.title1Font;
  r.title2Font = w.title2Font;
  r.dateFont = w.dateFont;
  r.showPageNumber = w.showPageNumber;
  r.pageNumberAlign = w.pageNumberAlign;
  r.showDate = w.showDate;
  r.dateAlign = w.dateAlign;
  r.leftMargin = w.leftMargin;
  r.rightMargin = w.rightMargin;
  r.topMargin = w.topMargin;
  r.bottomMargin = w.bottomMargin;
  r.separatorLine = w.separatorLine;
  r.landscape = w.landscape;
  return true;
}

}  // namespace verdal::dialogs
