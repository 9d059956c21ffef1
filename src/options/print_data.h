#pragma once
// Print configurations: TPrintData, one named configuration of a table printout, with its columns
// (TPrintItem) and fonts (TPrintFont). A database holds any number of them in TPrintConfigs, which
// is also the option kind 2 collection that the names page of the option sheet edits. Every member
// starts at the value a new configuration has, so a record read from an older version keeps those
// for what that version does not store.
#include <cstdint>
#include <string>
#include <vector>

#include "io/base_file.h"

namespace verdal::options {

// The font record of the font choice dialog, as stored (82 bytes). Members the original kept only
// in memory (error word, device context, style pointer) have no place here.
struct TPrintFont {
  int32_t dialogFlags = 0x30103;
  int32_t lfHeight = 0;
  int32_t lfWidth = 0;
  int32_t lfEscapement = 0;
  int32_t lfOrientation = 0;
  int32_t lfWeight = 0;
  uint8_t lfItalic = 0;
  uint8_t lfUnderline = 0;
  uint8_t lfStrikeOut = 0;
  uint8_t lfCharSet = 0;
  uint8_t lfOutPrecision = 11;
  uint8_t lfClipPrecision = 0;
  uint8_t lfQuality = 6;
  uint8_t lfPitchAndFamily = 0;
  char lfFaceName[32] = "Arial";
  int32_t pointSize = 100;  // tenths of a point
  int32_t colour = 0;       // a Windows colour value, 0x00BBGGRR
  int16_t fontType = 0x6000;
  int32_t sizeMin = 0;
  int32_t sizeMax = 0;

  // A font of `points` with the defaults above; lfHeight as the screen would give it.
  static TPrintFont OfPoints(int32_t points, int32_t weight = 0);
  std::string FaceName() const;  // up to the first zero byte
  void SetFaceName(const std::string& face);
  bool operator==(const TPrintFont&) const = default;
};

struct TPrintItem {
  static constexpr int32_t kCurrentVersion = 4;
  int32_t version = kCurrentVersion;
  std::string fieldName;
  std::string title;
  std::string heading;  // text over this column and the next
  TPrintFont font = TPrintFont::OfPoints(10);  // stored and edited; the table does not use it
  double width = 40.0;   // mm
  double height = 40.0;  // mm
  uint8_t autoWidth = 1;
  uint8_t autoHeight = 1;
  int16_t alignment = 255;  // 255 the data type's default, 0 left, 1 right, 2 centred
  uint8_t total = 0;
  uint8_t subtotals = 0;
  uint8_t maxWidth = 0;   // with autoWidth: width is the upper limit
  uint8_t maxHeight = 0;  // with autoHeight: height is the upper limit
  uint8_t centred = 0;
  bool operator==(const TPrintItem&) const = default;
};

// Bits of TPrintData::flags.
constexpr int32_t kPrintSingleLine = 0x80;
constexpr int32_t kPrintNoPictures = 0x800;
constexpr int32_t kPrintFitWidth = 0x1000;
constexpr int32_t kPrintIgnoreText = 0x2000;

// Alignments of titles, page number and date, and of columns.
constexpr int16_t kAlignLeft = 0;
constexpr int16_t kAlignRight = 1;
constexpr int16_t kAlignCentre = 2;
constexpr int16_t kAlignByType = 255;

struct TPrintData {
  static constexpr int32_t kCurrentVersion = 5;
  static constexpr uint8_t kTable = 2;  // the only kind that draws a body

  int32_t version = kCurrentVersion;
  int32_t flags = 0;
  uint8_t kind = kTable;
  std::string title1;
  std::string title2;
  std::string name;
  TPrintFont columnTitleFont = TPrintFont::OfPoints(10, 700);
  TPrintFont cellFont = TPrintFont::OfPoints(10);
  TPrintFont dateFont = TPrintFont::OfPoints(8);
  TPrintFont title1Font = TPrintFont::OfPoints(10);
  TPrintFont title2Font = TPrintFont::OfPoints(12, 700);
  int32_t lineColour = 0;
  double leftMargin = 10.0;  // mm, as are all lengths here
  double rightMargin = 10.0;
  double topMargin = 10.0;
  double bottomMargin = 10.0;
  double sheetCellWidth = 70.0;
  double sheetCellHeight = 42.0;
  double sheetWidth = 210.0;
  double sheetHeight = 302.0;
  double sheetReserved1 = 0.0;
  double sheetReserved2 = 0.0;
  double sheetVerticalMargin = 0.0;
  double sheetHorizontalMargin = 0.0;
  double sheetReserved3 = 0.0;
  double sheetReserved4 = 0.0;
  int16_t sheetColumns = 3;
  int16_t sheetRows = 7;
  int16_t title1Align = kAlignCentre;
  int16_t title2Align = kAlignCentre;
  int16_t pageNumberAlign = kAlignCentre;
  uint8_t showTitle1 = 1;
  uint8_t showTitle2 = 1;
  uint8_t showPageNumber = 1;
  uint8_t reservedByte1 = 0;
  double lineThickness = 0.1;
  double freeSpace = 0.1;
  int16_t dateAlign = kAlignLeft;
  uint8_t reservedByte2 = 0;
  uint8_t showDate = 1;
  uint8_t separatorLine = 0;
  uint8_t landscape = 0;     // from version 2
  std::string description;   // from version 3
  std::string ignoreText;    // from version 4
  std::string sortName;      // from version 5
  std::vector<TPrintItem> items;
  bool operator==(const TPrintData&) const = default;
};

// MulDiv of the platform: a * b / c rounded half away from zero; 0 for c == 0.
int32_t MulDiv(int32_t a, int32_t b, int32_t c);

// The stream forms. Every short read or write throws what the stream throws. A reader resets the
// object to its defaults first and refuses (false) a version newer than it knows, so a newer file
// is never misread; what was read before the refusal is left in the object. A writer sets the
// version to the current one.
constexpr int32_t kPrintFontBytes = 82;
void WritePrintFont(const TPrintFont& font, TBaseFile& f);
void ReadPrintFont(TPrintFont& font, TBaseFile& f);
void WritePrintItem(TPrintItem& item, TBaseFile& f);
bool ReadPrintItem(TPrintItem& item, TBaseFile& f);
void WritePrintData(TPrintData& data, TBaseFile& f);
bool ReadPrintData(TPrintData& data, TBaseFile& f);

// The least bytes a stored item and a stored record take (version 1, empty strings, no items),
// to check a stored count against the bytes left.
constexpr int64_t kMinPrintItemBytes = 4 + 4 + 4 + kPrintFontBytes + 8 + 8 + 1 + 1 + 2 + 1 + 1;
constexpr int64_t kMinPrintDataBytes =
    4 + 4 + 1 + 3 * 4 + 5 * kPrintFontBytes + 4 + 4 * 8 + 10 * 8 + 2 * 2 + 3 * 2 + 4 + 2 * 8 + 2 + 3 + 4;

}  // namespace verdal::options
