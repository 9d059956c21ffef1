#include "options/print_data.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "io/stream_io.h"

namespace verdal::options {

namespace {

// The screen's vertical dots per inch that lfHeight is worked out for.
constexpr int32_t kScreenDpi = 96;

// A stored count of objects of at least minBytes each: a negative count, or one the bytes left
// cannot hold, is a damaged stream and throws as a short read would, before anything is made.
void CheckCount(TBaseFile& f, int32_t count, int64_t minBytes) {
  const int64_t left = BytesLeft(f);
  if (count < 0 || (left >= 0 && int64_t{count} * minBytes > left)) throw TReadWriteException();
}

}  // namespace

int32_t MulDiv(int32_t a, int32_t b, int32_t c) {
  if (c == 0) return 0;
  const int64_t product = int64_t{a} * b;
  const int64_t magnitude = (std::llabs(product) + std::llabs(int64_t{c}) / 2) / std::llabs(int64_t{c});
  return static_cast<int32_t>((product < 0) != (c < 0) ? -magnitude : magnitude);
}

TPrintFont TPrintFont::OfPoints(int32_t points, int32_t weight) {
  TPrintFont font;
  font.lfHeight = -MulDiv(points, kScreenDpi, 72);
  font.lfWeight = weight;
  font.pointSize = points * 10;
  return font;
}

std::string TPrintFont::FaceName() const { return std::string(lfFaceName, ::strnlen(lfFaceName, sizeof lfFaceName)); }

// Cut to 31 bytes, so the stored name keeps a terminator; the rest is zero-filled.
void TPrintFont::SetFaceName(const std::string& face) {
  std::memset(lfFaceName, 0, sizeof lfFaceName);
  std::memcpy(lfFaceName, face.data(), std::min(face.size(), sizeof lfFaceName - 1));
}

void WritePrintFont(const TPrintFont& font, TBaseFile& f) {
  WriteInt32(font.dialogFlags, f);
  for (int32_t v : {font.lfHeight, font.lfWidth, font.lfEscapement, font.lfOrientation, font.lfWeight})
    WriteInt32(v, f);
  for (uint8_t b : {font.lfItalic, font.lfUnderline, font.lfStrikeOut, font.lfCharSet, font.lfOutPrecision,
                    font.lfClipPrecision, font.lfQuality, font.lfPitchAndFamily})
    WriteUInt8(b, f);
  WriteChars(font.lfFaceName, sizeof font.lfFaceName, f);
  WriteInt32(font.pointSize, f);
  WriteInt32(font.colour, f);
  WriteInt16(font.fontType, f);
  WriteInt32(font.sizeMin, f);
  WriteInt32(font.sizeMax, f);
}

void ReadPrintFont(TPrintFont& font, TBaseFile& f) {
  font.dialogFlags = ReadInt32(f);
  for (int32_t* v : {&font.lfHeight, &font.lfWidth, &font.lfEscapement, &font.lfOrientation, &font.lfWeight})
    *v = ReadInt32(f);
  for (uint8_t* b : {&font.lfItalic, &font.lfUnderline, &font.lfStrikeOut, &font.lfCharSet, &font.lfOutPrecision,
                     &font.lfClipPrecision, &font.lfQuality, &font.lfPitchAndFamily})
    *b = ReadUInt8(f);
  ReadChars(font.lfFaceName, sizeof font.lfFaceName, f);
  font.pointSize = ReadInt32(f);
  font.colour = ReadInt32(f);
  font.fontType = ReadInt16(f);
  font.sizeMin = ReadInt32(f);
  font.sizeMax = ReadInt32(f);
}

void WritePrintItem(TPrintItem& item, TBaseFile& f) {
  item.version = TPrintItem::kCurrentVersion;
  WriteInt32(item.version, f);
  WriteString(item.fieldName, f);
  WriteString(item.title, f);
  WriteString(item.heading, f);
  WritePrintFont(item.font, f);
  WriteDouble(item.width, f);
  WriteDouble(item.height, f);
  WriteUInt8(item.autoWidth, f);
  WriteUInt8(item.autoHeight, f);
  WriteInt16(item.alignment, f);
  WriteUInt8(item.total, f);
  WriteUInt8(item.subtotals, f);
  WriteUInt8(item.maxWidth, f);
  WriteUInt8(item.maxHeight, f);
  WriteUInt8(item.centred, f);
}

bool ReadPrintItem(TPrintItem& item, TBaseFile& f) {
  item = TPrintItem{};
  item.version = ReadInt32(f);
  if (item.version > TPrintItem::kCurrentVersion) return false;
  const int32_t v = item.version;
  ReadString(item.fieldName, f);
  ReadString(item.title, f);
  if (v >= 2) ReadString(item.heading, f);
  ReadPrintFont(item.font, f);
  item.width = ReadDouble(f);
  item.height = ReadDouble(f);
  item.autoWidth = ReadUInt8(f);
  item.autoHeight = ReadUInt8(f);
  item.alignment = ReadInt16(f);
  item.total = ReadUInt8(f);
  item.subtotals = ReadUInt8(f);
  if (v >= 3) {
    item.maxWidth = ReadUInt8(f);
    item.maxHeight = ReadUInt8(f);
  }
  if (v >= 4) item.centred = ReadUInt8(f);
  return true;
}

void WritePrintData(TPrintData& d, TBaseFile& f) {
  d.version = TPrintData::kCurrentVersion;
  WriteInt32(d.version, f);
  WriteInt32(d.flags, f);
  WriteUInt8(d.kind, f);
  WriteString(d.title1, f);
  WriteString(d.title2, f);
  WriteString(d.name, f);
  for (const TPrintFont* font : {&d.columnTitleFont, &d.cellFont, &d.dateFont, &d.title1Font, &d.title2Font})
    WritePrintFont(*font, f);
  WriteInt32(d.lineColour, f);
  for (double v : {d.leftMargin, d.rightMargin, d.topMargin, d.bottomMargin, d.sheetCellWidth, d.sheetCellHeight,
                   d.sheetWidth, d.sheetHeight, d.sheetReserved1, d.sheetReserved2, d.sheetVerticalMargin,
                   d.sheetHorizontalMargin, d.sheetReserved3, d.sheetReserved4})
    WriteDouble(v, f);
  for (int16_t v : {d.sheetColumns, d.sheetRows, d.title1Align, d.title2Align, d.pageNumberAlign}) WriteInt16(v, f);
  for (uint8_t b : {d.showTitle1, d.showTitle2, d.showPageNumber, d.reservedByte1}) WriteUInt8(b, f);
  WriteDouble(d.lineThickness, f);
  WriteDouble(d.freeSpace, f);
  WriteInt16(d.dateAlign, f);
  for (uint8_t b : {d.reservedByte2, d.showDate, d.separatorLine, d.landscape}) WriteUInt8(b, f);
  WriteString(d.description, f);
  WriteString(d.ignoreText, f);
  WriteString(d.sortName, f);
  WriteInt32(static_cast<int32_t>(d.items.size()), f);
  for (TPrintItem& item : d.items) WritePrintItem(item, f);
}

bool ReadPrintData(TPrintData& d, TBaseFile& f) {
  d = TPrintData{};
  d.version = ReadInt32(f);
  if (d.version > TPrintData::kCurrentVersion) return false;
  const int32_t v = d.version;
  d.flags = ReadInt32(f);
  d.kind = ReadUInt8(f);
  ReadString(d.title1, f);
  ReadString(d.title2, f);
  ReadString(d.name, f);
  for (TPrintFont* font : {&d.columnTitleFont, &d.cellFont, &d.dateFont, &d.title1Font, &d.title2Font})
    ReadPrintFont(*font, f);
  d.lineColour = ReadInt32(f);
  for (double* p : {&d.leftMargin, &d.rightMargin, &d.topMargin, &d.bottomMargin, &d.sheetCellWidth,
                    &d.sheetCellHeight, &d.sheetWidth, &d.sheetHeight, &d.sheetReserved1, &d.sheetReserved2,
                    &d.sheetVerticalMargin, &d.sheetHorizontalMargin, &d.sheetReserved3, &d.sheetReserved4})
    *p = ReadDouble(f);
  for (int16_t* p : {&d.sheetColumns, &d.sheetRows, &d.title1Align, &d.title2Align, &d.pageNumberAlign})
    *p = ReadInt16(f);
  for (uint8_t* p : {&d.showTitle1, &d.showTitle2, &d.showPageNumber, &d.reservedByte1}) *p = ReadUInt8(f);
  d.lineThickness = ReadDouble(f);
  d.freeSpace = ReadDouble(f);
  d.dateAlign = ReadInt16(f);
  for (uint8_t* p : {&d.reservedByte2, &d.showDate, &d.separatorLine}) *p = ReadUInt8(f);
  if (v >= 2) d.landscape = ReadUInt8(f);
  if (v >= 3) ReadString(d.description, f);
  if (v >= 4) ReadString(d.ignoreText, f);
  if (v >= 5) ReadString(d.sortName, f);
  const int32_t count = ReadInt32(f);
  CheckCount(f, count, kMinPrintItemBytes);
  d.items.reserve(static_cast<size_t>(count));
  for (int32_t i = 0; i < count; ++i) {
    TPrintItem item;
    if (!ReadPrintItem(item, f)) return false;
    d.items.push_back(std::move(item));
  }
  return true;
}

}  // namespace verdal::options
