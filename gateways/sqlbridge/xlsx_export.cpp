#include "xlsx_export.h"

#include <sql.h>
#include <xlsxwriter.h>

#include <algorithm>
#include <charconv>

#include "platform/cp1252.h"
#include "target_file.h"

namespace verdal::sqlbridge {
namespace {

constexpr size_t kMaxCellText = 32767;  // what a cell of a worksheet holds
constexpr int kMaxDecimals = 15;        // the digits of a double
constexpr double kMaxColumnWidth = 60;

class SheetWriter {
 public:
  explicit SheetWriter(lxw_workbook* book) : book_(book) {
    sheet_ = workbook_add_worksheet(book, nullptr);
    bold_ = Format(nullptr);
    format_set_bold(bold_);
    date_ = Format("yyyy-mm-dd");
    time_ = Format("hh:mm:ss");
    stamp_ = Format("yyyy-mm-dd hh:mm:ss");
  }

  lxw_worksheet* Sheet() const { return sheet_; }

  // A line break inside a cell is LF in a workbook, as Excel makes it.
  void Text(lxw_row_t row, lxw_col_t column, std::string_view text, lxw_format* format = nullptr) {
    cp1252::ToUtf8(text.substr(0, kMaxCellText), utf8_);
    if (utf8_.find('\r') != std::string::npos) {
      size_t kept = 0;
      for (size_t i = 0; i < utf8_.size(); ++i) {
        if (utf8_[i] == '\r' && i + 1 < utf8_.size() && utf8_[i + 1] == '\n') continue;
        utf8_[kept++] = utf8_[i] == '\r' ? '\n' : utf8_[i];
      }
      utf8_.resize(kept);
    }
    worksheet_write_string(sheet_, row, column, utf8_.c_str(), format);
  }

  void Header(lxw_row_t row, lxw_col_t column, std::string_view text) { Text(row, column, text, bold_); }

  // A value of the kind, typed where it has the kind's internal form, else as text.
  void Value(lxw_row_t row, lxw_col_t column, ValueKind kind, const std::string& value) {
    if (value.empty()) return;  // an empty cell
    switch (kind) {
      case ValueKind::kInteger: case ValueKind::kDecimal: case ValueKind::kFloat: {
        int integerDigits = 0, decimals = 0;
        double number = 0;
        const char* end = value.data() + value.size();
        if (ReadDecimalShape(value, integerDigits, decimals) &&
            std::from_chars(value.data(), end, number).ptr == end) {
          worksheet_write_number(sheet_, row, column, number, NumberFormat(decimals));
          return;
        }
        break;
      }
      case ValueKind::kYesNo:
        if (value == "1" || value == "0") {
          worksheet_write_boolean(sheet_, row, column, value == "1", nullptr);
          return;
        }
        break;
      case ValueKind::kDate: case ValueKind::kTime: case ValueKind::kTimestamp:
        if (DateTime(row, column, kind, value)) return;
        break;
      case ValueKind::kText:
        break;
    }
    Text(row, column, value);
  }

 private:
  lxw_format* Format(const char* numberFormat) {
    lxw_format* format = workbook_add_format(book_);
    if (numberFormat != nullptr) format_set_num_format(format, numberFormat);
    return format;
  }

  // "0.00" for two decimals; General for none.
  lxw_format* NumberFormat(int decimals) {
    decimals = std::min(decimals, kMaxDecimals);
    if (decimals == 0) return nullptr;
    lxw_format*& format = numbers_[static_cast<size_t>(decimals)];
    if (format == nullptr) format = Format(("0." + std::string(static_cast<size_t>(decimals), '0')).c_str());
    return format;
  }

  // Excel counts days from 1900: a moment outside its range, or not a moment at all, is written
  // as ISO text instead.
  bool DateTime(lxw_row_t row, lxw_col_t column, ValueKind kind, const std::string& value) {
    int32_t v[7];
    if (!ReadSeven(value, v)) return false;
    const bool hasDate = kind != ValueKind::kTime, hasTime = kind != ValueKind::kDate;
    const bool dateOk = v[2] >= 1900 && v[2] <= 9999 && v[1] >= 1 && v[1] <= 12 && v[0] >= 1 && v[0] <= 31;
    const bool timeOk = v[3] >= 0 && v[3] < 24 && v[4] >= 0 && v[4] < 60 && v[5] >= 0 && v[5] < 60 &&
                        v[6] >= 0 && v[6] < 1000;
    if ((hasDate && !dateOk) || (hasTime && !timeOk)) {
      const SQLSMALLINT type = kind == ValueKind::kDate   ? SQL_TYPE_DATE
                               : kind == ValueKind::kTime ? SQL_TYPE_TIME
                                                          : SQL_TYPE_TIMESTAMP;
      std::string iso;
      SevenToIso(value, type, iso, true);
      Text(row, column, iso);
      return true;
    }
    // A time alone has the date 0.0.0, which the library takes as the day Excel counts from.
    lxw_datetime moment = {hasDate ? v[2] : 0, hasDate ? v[1] : 0, hasDate ? v[0] : 0,
                           hasTime ? v[3] : 0, hasTime ? v[4] : 0,
                           hasTime ? v[5] + v[6] / 1000.0 : 0};
    worksheet_write_datetime(sheet_, row, column, &moment,
                             kind == ValueKind::kDate ? date_ : kind == ValueKind::kTime ? time_ : stamp_);
    return true;
  }

  lxw_workbook* book_;
  lxw_worksheet* sheet_;
  lxw_format *bold_, *date_, *time_, *stamp_;
  lxw_format* numbers_[kMaxDecimals + 1] = {};
  std::string utf8_;
};

}  // namespace

bool WriteXlsxExport(ExportSource& source, const ExportDefinition& definition, std::string& error) {
  const std::vector<OutputColumn>& columns = source.Columns();
  if (columns.size() > LXW_COL_MAX) {
    error = "A worksheet holds no more than 16384 columns.";
    return false;
  }
  TargetFile out;
  out.Claim(definition.target);
  // Rows go to the file as they are written: a large export does not grow in memory.
  lxw_workbook_options options = {};
  options.constant_memory = LXW_TRUE;
  lxw_workbook* book = workbook_new_opt(out.PartialPath().c_str(), &options);
  if (book == nullptr) {
    error = "The workbook " + definition.target + " cannot be made.";
    return false;
  }
  SheetWriter sheet(book);
  if (source.HasPaths()) worksheet_outline_settings(sheet.Sheet(), LXW_TRUE, LXW_FALSE, LXW_TRUE, LXW_FALSE);
  for (size_t i = 0; i < columns.size(); ++i) {
    const auto column = static_cast<lxw_col_t>(i);
    const double width = std::clamp<double>(std::max<double>(columns[i].width, static_cast<double>(columns[i].name.size())), 4, kMaxColumnWidth);
    worksheet_set_column(sheet.Sheet(), column, column, width, nullptr);
    sheet.Header(0, column, columns[i].name);
  }
  lxw_row_t row = 0;
  const bool rows = ForEachRow(
      source,
      [&] {
        if (++row >= LXW_ROW_MAX) {
          error = "A worksheet holds no more than 1048575 rows below its column names.";
          return false;
        }
        const int32_t depth = std::min(source.Depth(), 7);
        if (depth > 0) {
          lxw_row_col_options level = {LXW_FALSE, static_cast<uint8_t>(depth), LXW_FALSE};
          worksheet_set_row_opt(sheet.Sheet(), row, LXW_DEF_ROW_HEIGHT, nullptr, &level);
        }
        for (size_t i = 0; i < columns.size(); ++i)
          sheet.Value(row, static_cast<lxw_col_t>(i), columns[i].kind, source.Text(i));
        return true;
      },
      error);
  const lxw_error closed = workbook_close(book);
  if (!rows) return false;
  if (closed == LXW_NO_ERROR) return out.Commit(error);
  error = "The workbook " + definition.target + " cannot be written: " + lxw_strerror(closed);
  return false;
}

}  // namespace verdal::sqlbridge
