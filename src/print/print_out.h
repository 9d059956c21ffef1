#pragma once
// TCalyxPrintOut: a database's records as a printed table. One row per record, one column per
// configured field, in horizontal parts where the columns are wider than the page, with titles,
// page numbers, the date, totals and running subtotals. It lays out on a measuring surface and
// draws the same way on a printer or into recorded pages; every length is in logical units of
// 0.1 mm, so that the numbers agree on every device.
//
// The printout holds cursors, not places: between passes the host may change the database (its
// callbacks run there), so every pass looks its records and fields up anew.
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "options/print_data.h"
#include "print/cell_text.h"
#include "print/surface.h"

namespace verdal::model {
class NodeStore;
class TLinkResolver;
struct TDBFieldInfo;
}  // namespace verdal::model

namespace verdal::print {

// One page of a layout pass: the number printed on it (0 while page numbers are hidden), the
// row it starts with and its horizontal part (from 1).
struct TSeitenInfo {
  int32_t pageNumber = 0;
  int32_t firstRow = 0;
  int32_t part = 1;
};

// Rows the printout makes itself.
constexpr int32_t kTotalRow = -10;
constexpr int32_t kSubtotalRow = -11;

// Cell style flags, read per cell from the style field.
constexpr int32_t kStyleBold = 1;
constexpr int32_t kStyleUnderline = 2;
constexpr int32_t kStyleOverline = 4;
constexpr int32_t kStyleDoubleUnderline = 8;

struct PrintEnvironment {
  model::TLinkResolver* links = nullptr;
  ThousandsRule thousands;
  // Asked once per row while measuring and laying out; true stops, keeping the pages so far.
  std::function<bool()> stopRequested;
  int32_t day = 1, month = 1, year = 2000;  // the date the pages show
};

struct DialogInfo {
  int32_t minPage = 1;
  int32_t maxPage = 0;
  int32_t fromPage = 0;
  int32_t toPage = 0;
};

class TCalyxPrintOut {
 public:
  // Rows: with `ids`, each listed cursor that exists and is marked (imported), in that order;
  // without, every marked record depth-first.
  TCalyxPrintOut(model::NodeStore& store, const options::TPrintData& data, const int32_t* ids,
                 int32_t count, int32_t styleField, bool recordPages, PrintEnvironment environment);
  ~TCalyxPrintOut();
  TCalyxPrintOut(const TCalyxPrintOut&) = delete;
  TCalyxPrintOut& operator=(const TCalyxPrintOut&) = delete;

  // Both run a layout pass on the measuring surface.
  DialogInfo GetDialogInfo(Surface& info);
  void BeginPrinting(Surface& info) { RunLayout(info); }

  int32_t PageCount() const;
  bool HasPage(int32_t page) const { return page >= 1 && page <= PageCount(); }
  // Page `page` (from 1) on a printer: laid out again from its page record, or its recording
  // played.
  void PrintPage(int32_t page, Surface& target);
  // The recorded page, null for a number outside them or without recording.
  const RecordedPage* Recorded(int32_t page) const;

  // Results of the last pass, for the preview and for inspection.
  float PageWidth() const { return pageWidth_; }
  float PageHeight() const { return pageHeight_; }
  float OffLeft() const { return offLeft_; }
  float OffTop() const { return offTop_; }
  float PrintWidth() const { return printWidth_; }
  float PrintHeight() const { return printHeight_; }
  int32_t BodyWidth() const { return bodyWidth_; }
  int32_t BodyHeight() const { return bodyHeight_; }
  int32_t HeaderHeight() const { return headerHeight_; }
  const std::vector<int32_t>& ColumnWidths() const { return columnWidths_; }
  const std::vector<int32_t>& PartStarts() const { return partStarts_; }
  const std::vector<TSeitenInfo>& Pages() const { return pages_; }
  // The cursors of the rows, pseudo rows included.
  std::vector<int32_t> RowCursors() const;
  bool Aborted() const { return aborted_; }
  const options::TPrintData& Data() const { return data_; }

  float zoom = 1.0f;  // the factor a recorded page is played at

 private:
  struct Row {
    int32_t cursor;
    int32_t realBefore;  // real rows ahead of this one: what a sum in it adds up
  };
  struct Column {
    const options::TPrintItem* item;
    model::TDBFieldInfo* field;  // null where the field is gone
    int32_t fieldIndex;
    int16_t alignment;
    int32_t freeSpace;  // only columns with automatic width keep space to their lines
  };

  void RunLayout(Surface& info);
  void MeasurePage(Surface& info);
  void BindColumns();
  void ComputeSums();
  void LayOutColumns(Surface& info);
  void SplitParts();
  void FitPart(size_t first, size_t last, int32_t partial);
  void OnePage(Surface& surface, bool layoutPass, bool draw);
  void DrawPageTexts(Surface& surface, bool draw);
  void LayOutRows(Surface& surface, bool layoutPass, bool draw);
  void DrawTitles(Surface& surface, size_t firstColumn, size_t endColumn);
  void DrawRow(Surface& surface, size_t row, int32_t y, int32_t height, size_t firstColumn, size_t endColumn);
  int32_t RowHeight(Surface& surface, size_t row);
  void CellText(size_t row, size_t column, std::string& out);
  int32_t CellStyle(size_t row, size_t column);
  bool IsPseudo(size_t row) const { return rows_[row].cursor == kTotalRow || rows_[row].cursor == kSubtotalRow; }
  const std::vector<std::string>& Wrap(Surface& surface, const std::string& text, float width);
  int32_t LineHeight(Surface& surface);
  void PlaceText(Surface& surface, const options::TPrintFont& font, const std::string& text, int16_t align, int32_t y);
  size_t PartEnd(int32_t part) const;
  bool Stop();

  model::NodeStore& store_;
  options::TPrintData data_;
  std::vector<Row> rows_;
  std::vector<Column> columns_;
  int32_t styleField_;
  bool recordPages_;
  PrintEnvironment env_;
  int32_t realRows_ = 0;
  std::vector<std::vector<long double>> prefixSums_;  // per column: sums of the first n real rows

  float pageWidth_ = 0, pageHeight_ = 0;
  float offLeft_ = 0, offTop_ = 0, offRight_ = 0, offBottom_ = 0;
  float printWidth_ = 0, printHeight_ = 0;
  float marginLeft_ = 0, marginTop_ = 0, marginRight_ = 0, marginBottom_ = 0;
  float footerHeight_ = 0, title1Height_ = 0, title2Height_ = 0, title1TextHeight_ = 0;
  int32_t bodyWidth_ = 1, bodyHeight_ = 1, bodyLeft_ = 0, bodyTop_ = 0;

  std::vector<int32_t> columnWidths_;
  int32_t titleRowHeight_ = 0, headerHeight_ = 0;
  bool hasHeadings_ = false;
  std::vector<int32_t> partStarts_;
  int32_t partCount_ = 1;
  bool multiPart_ = false;

  int32_t cellPad_, penWidth_, thickPen_, thinPen_, freeSpace_;
  FontSpec titleFont_, fieldFont_, boldFieldFont_;

  int32_t firstRow_ = 0;
  int32_t part_ = 1;
  int32_t pageCounter_ = 1;
  bool finished_ = false, widthsDone_ = false, subtotals_ = false;
  bool aborted_ = false;

  std::vector<TSeitenInfo> pages_;
  std::vector<std::unique_ptr<RecordedPage>> pageFiles_;

  std::vector<std::string> lines_;  // the last wrap's lines
  std::string text_;
};

// The font a print font record stands for, its height in logical units.
FontSpec FontOf(const options::TPrintFont& font);

}  // namespace verdal::print
