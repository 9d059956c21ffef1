#include "print/print_out.h"

#include <algorithm>
#include <cstdio>

#include "model/field_info.h"
#include "model/fields.h"
#include "model/node_store.h"
#include "model/number_text.h"
#include "model/place_walk.h"
#include "print/text_wrap.h"

namespace verdal::print {

using options::TPrintData;
using options::TPrintItem;

namespace {

constexpr float kUnitsPerMm = 10.0f;
constexpr float kPixelsPerUnitPerDpi = 0.003937f;

int32_t Rounded(float value) { return static_cast<int32_t>(value + 0.5f); }
int32_t Cut(float value) { return static_cast<int32_t>(value); }
int32_t MmToUnits(double mm) { return Rounded(static_cast<float>(mm) * kUnitsPerMm); }
int32_t MmCut(double mm) { return Cut(static_cast<float>(mm) * kUnitsPerMm); }

class MarkedPlaces : public model::PlaceFilter {
 public:
  bool Accepts(const model::TDBCategoryData& place) override { return place.imported; }
};

}  // namespace

FontSpec FontOf(const options::TPrintFont& font) {
  FontSpec out;
  out.face = font.FaceName();
  out.height = Rounded(static_cast<float>(font.pointSize < 0 ? -font.pointSize : font.pointSize) * 0.351f);
  out.weight = font.lfWeight != 0 ? font.lfWeight : 400;
  out.italic = font.lfItalic != 0;
  out.underline = font.lfUnderline != 0;
  out.strikeOut = font.lfStrikeOut != 0;
  return out;
}

TCalyxPrintOut::TCalyxPrintOut(model::NodeStore& store, const TPrintData& data, const int32_t* ids,
                               int32_t count, int32_t styleField, bool recordPages,
                               PrintEnvironment environment)
    : store_(store), data_(data), styleField_(styleField), recordPages_(recordPages), env_(std::move(environment)) {
  // Pens and padding: the line thickness, at least 0.4 mm doubled for bold frames, at least 0.2 mm
  // for the lines under text.
  const float line = static_cast<float>(data_.lineThickness) * kUnitsPerMm;
  cellPad_ = penWidth_ = Rounded(line);
  thickPen_ = Rounded(std::max(static_cast<float>(data_.lineThickness) * 2.0f, 0.4f) * kUnitsPerMm);
  thinPen_ = Rounded(std::max(static_cast<float>(data_.lineThickness), 0.2f) * kUnitsPerMm);
  freeSpace_ = MmToUnits(data_.freeSpace);
  titleFont_ = FontOf(data_.columnTitleFont);
  fieldFont_ = FontOf(data_.cellFont);
  boldFieldFont_ = fieldFont_;
  boldFieldFont_.weight = 700;

  std::vector<int32_t> cursors;
  if (ids == nullptr) {
    MarkedPlaces marked;
    model::CollectPlaces(store_, model::NodeOf(store_, &model::RootPlace()), cursors, model::kKindRecords,
                         true, false, &marked, false);
  } else {
    for (int32_t i = 0; i < count; ++i) {
      const model::TDBCategoryData* place = model::LookupPlace(store_, ids[i]);
      if (place != nullptr && ids[i] >= 0 && place->imported) cursors.push_back(ids[i]);
    }
  }
  for (const int32_t cursor : cursors) rows_.push_back({cursor, realRows_++});
  if (data_.kind == TPrintData::kTable &&
      std::any_of(data_.items.begin(), data_.items.end(), [](const TPrintItem& i) { return i.total != 0; })) {
    rows_.push_back({kTotalRow, realRows_});
    subtotals_ = std::any_of(data_.items.begin(), data_.items.end(), [](const TPrintItem& i) { return i.subtotals != 0; });
  }
}

TCalyxPrintOut::~TCalyxPrintOut() = default;

std::vector<int32_t> TCalyxPrintOut::RowCursors() const {
  std::vector<int32_t> out;
  for (const Row& row : rows_) out.push_back(row.cursor);
  return out;
}

int32_t TCalyxPrintOut::PageCount() const {
  return static_cast<int32_t>(pageFiles_.empty() ? pages_.size() : pageFiles_.size());
}

const RecordedPage* TCalyxPrintOut::Recorded(int32_t page) const {
  if (page < 1 || static_cast<size_t>(page) > pageFiles_.size()) return nullptr;
  return pageFiles_[static_cast<size_t>(page - 1)].get();
}

DialogInfo TCalyxPrintOut::GetDialogInfo(Surface& info) {
  RunLayout(info);
  DialogInfo result;
  result.maxPage = PageCount();
  return result;
}

bool TCalyxPrintOut::Stop() {
  if (!env_.stopRequested || !env_.stopRequested()) return false;
  aborted_ = true;
  return true;
}

// ---- Columns and sums, bound at each pass.

void TCalyxPrintOut::BindColumns() {
  columns_.clear();
  for (const TPrintItem& item : data_.items) {
    Column column{&item, nullptr, -1, options::kAlignLeft, item.autoWidth ? freeSpace_ : 0};
    column.field = model::FieldByName(store_, item.fieldName.c_str(), &column.fieldIndex);
    if (column.field == nullptr) column.fieldIndex = -1;
    int16_t align = item.alignment;
    if (column.field == nullptr) {
      align = options::kAlignLeft;
    } else if (align == options::kAlignByType) {
      const int cls = column.field->type.DisplayClass(env_.links);
      align = cls == model::kDisplayNumber ? options::kAlignRight
              : cls == model::kDisplayFixed ? options::kAlignCentre
                                            : options::kAlignLeft;
    }
    if (item.centred) align = options::kAlignCentre;
    column.alignment = align;
    columns_.push_back(column);
  }
}

// Running sums over the real rows, so that any subtotal is one lookup: rows never change their
// order, and pseudo rows add nothing.
void TCalyxPrintOut::ComputeSums() {
  prefixSums_.assign(columns_.size(), {});
  for (size_t c = 0; c < columns_.size(); ++c) {
    const Column& column = columns_[c];
    if (!column.item->total || column.field == nullptr || !IsSummable(*column.field)) continue;
    std::vector<long double>& sums = prefixSums_[c];
    sums.reserve(static_cast<size_t>(realRows_) + 1);
    sums.push_back(0);
    for (const Row& row : rows_) {
      if (row.cursor < 0) continue;
      const std::optional<std::string_view> value = model::FieldValue(store_, row.cursor, column.fieldIndex);
      sums.push_back(sums.back() + (value ? model::ReadNumber(*value) : 0));
    }
  }
}

void TCalyxPrintOut::CellText(size_t row, size_t column, std::string& out) {
  out.clear();
  const Column& col = columns_[column];
  const Row& r = rows_[row];
  if (r.cursor == kTotalRow || r.cursor == kSubtotalRow) {
    if (col.item->total && col.field != nullptr) {
      const std::vector<long double>& sums = prefixSums_[column];
      if (sums.empty()) return;  // a type that is not added up
      const size_t upTo = r.cursor == kTotalRow ? sums.size() - 1 : static_cast<size_t>(r.realBefore);
      ShowSum(*col.field, sums[std::min(upTo, sums.size() - 1)], env_.thousands, env_.links, out);
    } else if (column == 0) {
      out = r.cursor == kTotalRow ? "Summe" : "Zwischensumme";
    }
    return;
  }
  if (col.field == nullptr) return;
  const std::optional<std::string_view> value = model::FieldValue(store_, r.cursor, col.fieldIndex);
  ShowValue(*col.field, value ? *value : std::string_view(), env_.thousands, env_.links, out);
  if ((data_.flags & options::kPrintIgnoreText) != 0 && out == data_.ignoreText) out.clear();
}

// The style field holds "field,flags" pairs separated by ";"; the first pair naming the column's
// field gives its flags.
int32_t TCalyxPrintOut::CellStyle(size_t row, size_t column) {
  if (styleField_ < 0 || columns_[column].field == nullptr || rows_[row].cursor < 0) return 0;
  if (static_cast<size_t>(styleField_) >= store_.fields.size()) return 0;
  const std::optional<std::string_view> value = model::FieldValue(store_, rows_[row].cursor, styleField_);
  if (!value) return 0;
  std::string_view rest = *value;
  while (!rest.empty()) {
    const size_t end = rest.find(';');
    const std::string_view pair = rest.substr(0, end);
    const size_t comma = pair.find(',');
    if (comma != std::string_view::npos && pair.find(',', comma + 1) == std::string_view::npos &&
        model::ReadInteger(pair.substr(0, comma)) == columns_[column].fieldIndex)
      return model::ReadInteger(pair.substr(comma + 1));
    if (end == std::string_view::npos) break;
    rest.remove_prefix(end + 1);
  }
  return 0;
}

const std::vector<std::string>& TCalyxPrintOut::Wrap(Surface& surface, const std::string& text, float width) {
  WrapText(text, width, surface.Advances(), lines_);
  return lines_;
}

int32_t TCalyxPrintOut::LineHeight(Surface& surface) {
  const TextMetrics m = surface.Metrics();
  return m.height + m.externalLeading;
}

// ---- The layout pass.

void TCalyxPrintOut::RunLayout(Surface& info) {
  MeasurePage(info);
  BindColumns();
  ComputeSums();
  pageFiles_.clear();
  pages_.clear();
  firstRow_ = 0;
  part_ = 1;
  pageCounter_ = 1;
  finished_ = false;
  aborted_ = false;
  if (data_.items.empty() || rows_.empty()) {
    finished_ = true;
    return;
  }
  if (data_.kind == 1) data_.kind = 4;
  if (data_.kind == 4) {
    marginLeft_ = std::max(0.0f, static_cast<float>(data_.sheetHorizontalMargin) * kUnitsPerMm - offLeft_);
    marginRight_ = std::max(0.0f, static_cast<float>(data_.sheetHorizontalMargin) * kUnitsPerMm - offRight_);
    marginTop_ = std::max(0.0f, static_cast<float>(data_.sheetVerticalMargin) * kUnitsPerMm - offTop_);
    marginBottom_ = std::max(0.0f, static_cast<float>(data_.sheetVerticalMargin) * kUnitsPerMm - offBottom_);
  }
  if (data_.kind == TPrintData::kTable && !widthsDone_) {
    LayOutColumns(info);
    widthsDone_ = true;
  }
  // Every page places a row at least, or moves on to the next part, so the loop ends.
  while (!finished_) {
    if (recordPages_) {
      std::unique_ptr<Surface> recording = info.NewRecording(Rounded(printWidth_), Rounded(printHeight_));
      OnePage(*recording, true, true);
      pageFiles_.push_back(info.EndRecording(std::move(recording)));
    } else {
      OnePage(info, true, false);
    }
    if (data_.kind != TPrintData::kTable) finished_ = true;  // the other kinds have no body to fill pages
  }
  finished_ = false;
  firstRow_ = 0;
}

void TCalyxPrintOut::MeasurePage(Surface& info) {
  const DeviceCaps caps = info.Caps();
  const float pixelsX = static_cast<float>(caps.logPixelsX) * kPixelsPerUnitPerDpi;
  const float pixelsY = static_cast<float>(caps.logPixelsY) * kPixelsPerUnitPerDpi;
  pageWidth_ = static_cast<float>(caps.physicalWidth) / pixelsX;
  pageHeight_ = static_cast<float>(caps.physicalHeight) / pixelsY;
  offLeft_ = static_cast<float>(caps.physicalOffsetX) / pixelsX;
  offTop_ = static_cast<float>(caps.physicalOffsetY) / pixelsY;
  const float printableW = std::min(static_cast<float>(caps.horzSizeMm) * kUnitsPerMm - 1.0f / pixelsX, 32750.0f);
  const float printableH = std::min(static_cast<float>(caps.vertSizeMm) * kUnitsPerMm - 1.0f / pixelsY, 32750.0f);
  offRight_ = pageWidth_ - printableW - offLeft_;
  offBottom_ = pageHeight_ - printableH - offTop_;
  printWidth_ = pageWidth_ - offLeft_ - offRight_;
  printHeight_ = pageHeight_ - offTop_ - offBottom_;
  marginLeft_ = std::max(0.0f, static_cast<float>(data_.leftMargin) * kUnitsPerMm - offLeft_);
  marginTop_ = std::max(0.0f, static_cast<float>(data_.topMargin) * kUnitsPerMm - offTop_);
  marginRight_ = std::max(0.0f, static_cast<float>(data_.rightMargin) * kUnitsPerMm - offRight_);
  marginBottom_ = std::max(0.0f, static_cast<float>(data_.bottomMargin) * kUnitsPerMm - offBottom_);

  title1Height_ = title2Height_ = title1TextHeight_ = footerHeight_ = 0;
  if (data_.kind != 4) {
    if (data_.showTitle1 && !data_.title1.empty()) {
      info.SelectFont(FontOf(data_.title1Font));
      const float h = static_cast<float>(info.Metrics().height);
      title1Height_ = static_cast<float>(Rounded(h * 1.3f));
      title1TextHeight_ = static_cast<float>(Rounded(h));
    }
    if (data_.showTitle2 && !data_.title2.empty()) {
      info.SelectFont(FontOf(data_.title2Font));
      title2Height_ = static_cast<float>(Rounded(static_cast<float>(info.Metrics().height) * 1.3f));
    }
    if (data_.showPageNumber || data_.showDate) {
      info.SelectFont(FontOf(data_.dateFont));
      footerHeight_ = static_cast<float>(Rounded(static_cast<float>(info.Metrics().height) * 1.3f));
    }
  }
  bodyHeight_ = std::max(1, Rounded(printHeight_ - (footerHeight_ + title1Height_ + title2Height_ + marginTop_ + marginBottom_)));
  bodyWidth_ = std::max(1, Rounded(printWidth_ - marginLeft_ - marginRight_));
  bodyLeft_ = Rounded(marginLeft_);
  bodyTop_ = Rounded(title1Height_ + title2Height_ + marginTop_);
}

void TCalyxPrintOut::LayOutColumns(Surface& info) {
  const size_t n = columns_.size();
  hasHeadings_ = std::any_of(data_.items.begin(), data_.items.end(), [](const TPrintItem& i) { return !i.heading.empty(); });
  info.SelectFont(titleFont_);
  titleRowHeight_ = 0;
  for (const Column& column : columns_) {
    int32_t h = info.Metrics().height + 2 * cellPad_;
    if (column.item->maxHeight) h = std::min(h, MmCut(column.item->height));
    titleRowHeight_ = std::max(titleRowHeight_, h);
  }
  headerHeight_ = hasHeadings_ ? Cut(static_cast<float>(titleRowHeight_) * 2.5f) : titleRowHeight_;

  const int32_t pad = 2 * cellPad_ + 2 * freeSpace_;
  auto limited = [&](const Column& column, int32_t width) {
    return column.item->maxWidth ? std::min(width, MmCut(column.item->width)) : width;
  };
  columnWidths_.assign(n, 0);
  bool anyAuto = false;
  for (size_t c = 0; c < n; ++c) {
    const TPrintItem& item = *columns_[c].item;
    if (!item.autoWidth) {
      columnWidths_[c] = MmCut(item.width);
      continue;
    }
    anyAuto = true;
    columnWidths_[c] = limited(columns_[c], info.TextWidth(item.title) + pad);
    if (hasHeadings_ && !item.heading.empty())
      columnWidths_[c] = std::max(columnWidths_[c], limited(columns_[c], info.TextWidth(item.heading) + pad) / 2);
  }
  if (anyAuto) {
    if (subtotals_ && columns_[0].item->autoWidth) {
      info.SelectFont(boldFieldFont_);
      columnWidths_[0] = std::max(columnWidths_[0], limited(columns_[0], info.TextWidth("Zwischensumme") + pad));
    }
    const bool singleLine = (data_.flags & options::kPrintSingleLine) != 0;
    for (size_t r = 0; r < rows_.size() && !Stop(); ++r) {
      for (size_t c = 0; c < n; ++c) {
        const Column& column = columns_[c];
        if (!column.item->autoWidth) continue;
        CellText(r, c, text_);
        info.SelectFont(IsPseudo(r) || (CellStyle(r, c) & kStyleBold) != 0 ? boldFieldFont_ : fieldFont_);
        const float width = column.item->maxWidth
                                ? static_cast<float>(MmCut(column.item->width) - 2 * cellPad_ - 2 * freeSpace_)
                                : static_cast<float>(bodyWidth_);
        for (const std::string& line : Wrap(info, text_, width)) {
          columnWidths_[c] = std::max(columnWidths_[c], limited(column, info.TextWidth(line) + pad));
          if (singleLine) break;
        }
      }
    }
  }
  // Neighbours under one heading share the wider width; a raise may carry on to the right.
  for (size_t c = 0; c + 1 < n; ++c)
    if (!columns_[c].item->heading.empty())
      columnWidths_[c] = columnWidths_[c + 1] = std::max(columnWidths_[c], columnWidths_[c + 1]);
  SplitParts();
}

void TCalyxPrintOut::SplitParts() {
  const size_t n = columnWidths_.size();
  partStarts_.assign(1, 0);
  partCount_ = 1;
  multiPart_ = false;
  int32_t running = 0, partial = 0;
  size_t partFirst = 0;
  for (size_t c = 0; c < n; ++c) {
    running += columnWidths_[c];
    if (running > bodyWidth_ && c != 0) {
      ++partCount_;
      multiPart_ = true;
      partStarts_.push_back(static_cast<int32_t>(c));
      FitPart(partFirst, c, partial);
      partFirst = c;
      running = partial = columnWidths_[c];
      if (c + 1 == n && running <= bodyWidth_) FitPart(c, n, partial);
    } else if (c + 1 == n && running <= bodyWidth_) {
      partial += columnWidths_[c];
      FitPart(partFirst, n, partial);
    } else {
      partial += columnWidths_[c];
    }
  }
}

// Fitting to the page width spreads what the part leaves free over its columns of automatic
// width, in whole units; the remainder stays free at the right.
void TCalyxPrintOut::FitPart(size_t first, size_t end, int32_t partial) {
  if ((data_.flags & options::kPrintFitWidth) == 0) return;
  int32_t autos = 0;
  for (size_t c = first; c < end; ++c) autos += columns_[c].item->autoWidth ? 1 : 0;
  if (autos == 0) return;
  const int32_t share = (bodyWidth_ - partial) / autos;
  for (size_t c = first; c < end; ++c)
    if (columns_[c].item->autoWidth) columnWidths_[c] += share;
}

size_t TCalyxPrintOut::PartEnd(int32_t part) const {
  return part < partCount_ ? static_cast<size_t>(partStarts_[static_cast<size_t>(part)]) : columns_.size();
}

// ---- One page.

void TCalyxPrintOut::PrintPage(int32_t page, Surface& target) {
  if (!HasPage(page)) return;
  if (!pageFiles_.empty()) {
    target.SetOrigin(0, 0);
    if (const RecordedPage* recorded = Recorded(page)) target.Play(*recorded, 1.0f);
    return;
  }
  BindColumns();
  const TSeitenInfo& info = pages_[static_cast<size_t>(page - 1)];
  firstRow_ = info.firstRow;
  part_ = info.part;
  pageCounter_ = info.pageNumber;
  OnePage(target, false, true);
}

void TCalyxPrintOut::PlaceText(Surface& surface, const options::TPrintFont& font, const std::string& text,
                               int16_t align, int32_t y) {
  surface.SelectFont(FontOf(font));
  surface.SetTextColour(font.colour);
  int32_t x = 0;
  if (align == options::kAlignRight) x = bodyWidth_ - surface.TextWidth(text);
  else if (align == options::kAlignCentre) x = Rounded(static_cast<float>(bodyWidth_) / 2.0f - static_cast<float>(surface.TextWidth(text)) / 2.0f);
  surface.TextOut(x, y, nullptr, text);
}

void TCalyxPrintOut::DrawPageTexts(Surface& surface, bool draw) {
  // The page number counts on every page that shows one, drawn or only laid out.
  const int32_t number = pageCounter_;
  if (data_.showPageNumber) ++pageCounter_;
  if (!draw) return;
  surface.SetOrigin(Rounded(marginLeft_), 0);
  if (data_.showTitle1 && !data_.title1.empty())
    PlaceText(surface, data_.title1Font, data_.title1, data_.title1Align, Rounded(marginTop_));
  auto rule = [&](float y) {
    surface.MoveTo(0, Rounded(y));
    surface.LineTo(bodyWidth_, Rounded(y));
  };
  if (data_.separatorLine && title1Height_ > 0 && title2Height_ > 0)
    rule(static_cast<float>(penWidth_) + marginTop_ + title1TextHeight_);
  if (data_.showTitle2 && !data_.title2.empty())
    PlaceText(surface, data_.title2Font, data_.title2, data_.title2Align, Rounded(marginTop_ + title1Height_));
  const int32_t footerY = Rounded(printHeight_ - marginBottom_ - footerHeight_);
  char text[64];
  if (data_.showPageNumber) {
    if (data_.separatorLine) rule(printHeight_ - (static_cast<float>(penWidth_) + marginBottom_ + footerHeight_));
    if (multiPart_) std::snprintf(text, sizeof text, "Seite: %d.%d", number, part_);
    else std::snprintf(text, sizeof text, "Seite: %d", number);
    PlaceText(surface, data_.dateFont, text, data_.pageNumberAlign, footerY);
  }
  if (data_.showDate) {
    std::snprintf(text, sizeof text, "Datum: %02d.%02d.%0d", env_.day, env_.month, env_.year);
    PlaceText(surface, data_.dateFont, text, data_.dateAlign, footerY);
  }
}

void TCalyxPrintOut::OnePage(Surface& surface, bool layoutPass, bool draw) {
  surface.SetOrigin(0, 0);
  surface.SelectPen(penWidth_, data_.lineColour);
  if (data_.kind != 4) DrawPageTexts(surface, draw);
  if (layoutPass && !recordPages_) pages_.push_back({pageCounter_ - 1, firstRow_, part_});
  surface.SetOrigin(bodyLeft_, bodyTop_);
  if (data_.kind == TPrintData::kTable) LayOutRows(surface, layoutPass, draw);
  surface.SetOrigin(0, 0);
}

int32_t TCalyxPrintOut::RowHeight(Surface& surface, size_t row) {
  const bool pseudo = IsPseudo(row);
  const bool singleLine = (data_.flags & options::kPrintSingleLine) != 0;
  surface.SelectFont(pseudo ? boldFieldFont_ : fieldFont_);
  int32_t height = LineHeight(surface);
  for (size_t c = 0; c < columns_.size(); ++c) {
    const Column& column = columns_[c];
    if (column.field != nullptr && column.field->type.extendedType == 0x80) {
      if (!column.item->autoHeight) height = MmToUnits(column.item->height);
      continue;
    }
    CellText(row, c, text_);
    const bool bold = pseudo || (CellStyle(row, c) & kStyleBold) != 0;
    surface.SelectFont(bold ? boldFieldFont_ : fieldFont_);
    const int32_t lineHeight = LineHeight(surface);
    const float width = static_cast<float>(columnWidths_[c] - 2 * cellPad_ - 2 * column.freeSpace);
    const size_t lines = singleLine ? 1 : Wrap(surface, text_, width).size();
    height = std::max(height, static_cast<int32_t>(lines) * lineHeight);
  }
  surface.SelectFont(pseudo ? boldFieldFont_ : fieldFont_);
  return height;
}

void TCalyxPrintOut::LayOutRows(Surface& surface, bool layoutPass, bool draw) {
  const size_t firstColumn = static_cast<size_t>(partStarts_[static_cast<size_t>(part_ - 1)]);
  const size_t endColumn = PartEnd(part_);
  if (static_cast<size_t>(firstRow_) < rows_.size() && draw) DrawTitles(surface, firstColumn, endColumn);
  int32_t y = headerHeight_ + 2 * cellPad_;
  const int32_t pageFirst = firstRow_;
  bool stopped = false;
  while (static_cast<size_t>(firstRow_) < rows_.size()) {
    if (Stop()) {
      stopped = true;
      break;
    }
    const size_t r = static_cast<size_t>(firstRow_);
    int32_t height = RowHeight(surface, r);
    const int32_t limit = Cut(static_cast<float>(bodyHeight_ - (headerHeight_ + 4 * cellPad_)) - 1.0f);
    height = std::max(0, std::min(height, limit));
    const int32_t next = y + height + 2 * cellPad_;
    // The last row of a page is a subtotal whenever the next record would leave no room for one.
    // Not on a page's first row, which would only push the record on and on.
    if (layoutPass && subtotals_ && next <= bodyHeight_ && next + LineHeight(surface) > bodyHeight_ &&
        rows_[r].cursor != kSubtotalRow && firstRow_ > pageFirst) {
      rows_.insert(rows_.begin() + static_cast<std::ptrdiff_t>(r), Row{kSubtotalRow, rows_[r].realBefore});
      if (draw) DrawRow(surface, r, y, height, firstColumn, endColumn);
      ++firstRow_;
      return;
    }
    if (next > bodyHeight_ && firstRow_ > pageFirst) return;
    if (draw) DrawRow(surface, r, y, height, firstColumn, endColumn);
    y = next;
    ++firstRow_;
  }
  if (!stopped && part_ < partCount_) {
    ++part_;
    firstRow_ = 0;
    pageCounter_ = 1;
  } else {
    finished_ = true;
  }
}

void TCalyxPrintOut::DrawTitles(Surface& surface, size_t firstColumn, size_t endColumn) {
  surface.SelectFont(titleFont_);
  surface.SetTextColour(data_.columnTitleFont.colour);
  const int32_t bottom = headerHeight_ + 2 * cellPad_;
  int32_t x = 0;
  for (size_t c = firstColumn; c < endColumn; ++c) {
    const Column& column = columns_[c];
    const int32_t width = std::min(columnWidths_[c], bodyWidth_);
    if (x + width > bodyWidth_) break;
    const Rect cell{x, 0, x + width, bottom};
    const Rect inner{cell.left + cellPad_, cell.top + cellPad_, cell.right - cellPad_, cell.bottom - cellPad_};
    auto place = [&](const std::string& text, const Rect& box, int32_t top) {
      const int32_t w = surface.TextWidth(text);
      int32_t tx = box.left + column.freeSpace;
      if (column.alignment == options::kAlignRight) tx = box.right - column.freeSpace - w;
      else if (column.alignment == options::kAlignCentre) tx = box.left + (box.right - box.left - w) / 2;
      surface.TextOut(tx, top, &box, text);
    };
    if (!hasHeadings_) {
      place(column.item->title, inner, inner.top);
    } else {
      place(column.item->title, inner, inner.bottom - titleRowHeight_);
      if (!column.item->heading.empty()) {
        Rect wide = inner;
        if (c + 1 < columns_.size()) wide.right += columnWidths_[c + 1];
        place(column.item->heading, wide, inner.top);
      }
    }
    if (penWidth_ > 0) {
      surface.SelectPen(penWidth_, data_.lineColour);
      if (!hasHeadings_) {
        surface.MoveTo(cell.left, cell.top);
        surface.LineTo(cell.right, cell.top);
        surface.LineTo(cell.right, cell.bottom);
        surface.LineTo(cell.left, cell.bottom);
        surface.LineTo(cell.left, cell.top);
      } else {
        const int32_t middle = (cell.top + cell.bottom) / 2;
        surface.MoveTo(cell.left, cell.top);
        surface.LineTo(cell.right, cell.top);
        surface.MoveTo(cell.left, cell.bottom);
        surface.LineTo(cell.right, cell.bottom);
        const bool leftHalf = c != 0 && !columns_[c - 1].item->heading.empty();
        const bool rightHalf = c + 1 < columns_.size() && !column.item->heading.empty();
        surface.MoveTo(cell.left, leftHalf ? middle : cell.top);
        surface.LineTo(cell.left, cell.bottom);
        surface.MoveTo(cell.right, rightHalf ? middle : cell.top);
        surface.LineTo(cell.right, cell.bottom);
      }
    }
    x += width;
  }
}

void TCalyxPrintOut::DrawRow(Surface& surface, size_t row, int32_t y, int32_t height, size_t firstColumn,
                             size_t endColumn) {
  const bool pseudo = IsPseudo(row);
  const bool singleLine = (data_.flags & options::kPrintSingleLine) != 0;
  int32_t x = 0;
  for (size_t c = firstColumn; c < endColumn; ++c) {
    const Column& column = columns_[c];
    const int32_t width = std::min(columnWidths_[c], bodyWidth_);
    if (x + width > bodyWidth_) break;
    const Rect cell{x, y, x + width, y + height + 2 * cellPad_};
    x += width;
    const int32_t style = CellStyle(row, c);
    const bool picture = column.field != nullptr && column.field->type.extendedType == 0x80;
    int32_t widest = 0, textLeft = cell.left, underline = cell.top;
    bool anyText = false;
    if (!picture) {
      const Rect inner{cell.left + cellPad_, cell.top + cellPad_, cell.right - cellPad_, cell.bottom - cellPad_};
      surface.SelectFont(pseudo || (style & kStyleBold) != 0 ? boldFieldFont_ : fieldFont_);
      surface.SetTextColour(data_.cellFont.colour);
      const int32_t lineHeight = LineHeight(surface);
      CellText(row, c, text_);
      anyText = !text_.empty();
      int32_t ty = inner.top;
      bool first = true;
      for (const std::string& line : Wrap(surface, text_, static_cast<float>(inner.right - inner.left - 2 * column.freeSpace))) {
        const int32_t w = surface.TextWidth(line);
        int32_t tx = inner.left + column.freeSpace;
        if (column.alignment == options::kAlignRight) tx = inner.right - column.freeSpace - w;
        else if (column.alignment == options::kAlignCentre) tx = inner.left + (inner.right - inner.left - w) / 2;
        surface.TextOut(tx, ty, &cell, line);
        if (first || w > widest) {
          widest = w;
          textLeft = tx;
        }
        first = false;
        ty += lineHeight;
        underline = ty;
        if (singleLine) break;
      }
    }
    if (penWidth_ > 0 || pseudo) {
      surface.SelectPen(pseudo || (style & kStyleBold) != 0 ? thickPen_ : penWidth_, data_.lineColour);
      surface.MoveTo(cell.left, cell.top);
      surface.LineTo(cell.right, cell.top);
      surface.LineTo(cell.right, cell.bottom);
      surface.LineTo(cell.left, cell.bottom);
      surface.LineTo(cell.left, cell.top);
    } else if ((style & kStyleOverline) != 0 && !pseudo) {
      surface.SelectPen(thinPen_, data_.lineColour);
      surface.MoveTo(textLeft, cell.top);
      surface.LineTo(textLeft + widest, cell.top);
    }
    if ((style & (kStyleUnderline | kStyleDoubleUnderline)) != 0 && anyText) {
      surface.SelectPen(thinPen_, data_.lineColour);
      surface.MoveTo(textLeft, underline);
      surface.LineTo(textLeft + widest, underline);
      if ((style & kStyleDoubleUnderline) != 0) {
        const int32_t below = underline + Rounded(static_cast<float>(thinPen_) * 1.5f);
        surface.MoveTo(textLeft, below);
        surface.LineTo(textLeft + widest, below);
      }
    }
  }
}

}  // namespace verdal::print
