// The exports to XLSX and HTML, read back by Python's openpyxl and html.parser
// (tests/support/xlsx_cells.py, html_cells.py).
#include <gtest/gtest.h>

#include "bridge_export.h"
#include "bridge_test_support.h"
#include "exchange/export_exchange.h"
#include "export_test_support.h"

namespace verdal::sqlbridge {
namespace {

using testing::ScriptLines;
using testing::WriteText;
constexpr int32_t kCategories = exchange::kExportCategoryColumns;

using FileExportTest = testing::ExportFixture;

TEST_F(FileExportTest, XlsxCellsAreTypedAndRowsOutlinedByDepth) {
  ASSERT_EQ(Export(folder_ / "book.xlsx", kCategories), 1);
  EXPECT_EQ(ScriptLines("xlsx_cells.py", folder_ / "book.xlsx"),
            (std::vector<std::string>{
                "sheets 1 summaryBelow False",
                "0 s:\"Region\" bold | s:\"City\" bold | s:\"Name\" bold | s:\"Price\" bold | s:\"Qty\" bold | "
                "s:\"Day\" bold | s:\"At\" bold | s:\"Stamp\" bold | s:\"OK\" bold",
                "2 s:\"Nord\" | s:\"Kiel\" | s:\"Anna; \\\"A\\\"\" | n:1.5 @0.00 | n:3 | "
                "d:\"2024-02-29T00:00:00\" @yyyy-mm-dd | d:\"13:05:09\" @hh:mm:ss | "
                "d:\"2024-03-01T08:09:10.250000\" @yyyy-mm-dd hh:mm:ss | b:true",
                "1 s:\"S\\u00fcd\" | - | s:\" Bert\\nZeile 2 \" | n:-2.25 @0.00 | n:12345678901 | - | - | - | b:false",
                "0 - | - | s:\"\\u20ac & <b>'x'</b>\" | - | - | - | - | - | -"}));
  // Display texts are all strings; without the flag there is no outline (and no row of empty cells).
  WriteText(folder_ / "d.exp", "[ODBC_EXPORT]\nDATASOURCE=shown.xlsx\nEXPORT_VALUES=DISPLAY\nEXPORT_FIELDS=price,day\n");
  ASSERT_EQ(Export(folder_ / "d.exp", exchange::kExportDefinitionFile), 1);
  const std::vector<std::string> shown = ScriptLines("xlsx_cells.py", folder_ / "shown.xlsx");
  ASSERT_EQ(shown.size(), 4u);
  EXPECT_EQ(shown[0], "sheets 1 summaryBelow True");
  EXPECT_EQ(shown[2], "0 - | - | s:\"1,50\" | s:\"29.02.2024\"");
}

TEST_F(FileExportTest, XlsxValuesWithoutTheirFormAreText) {
  testing::ExportTable t;
  t.columns = {{"n", "N", 8, 5}, {"d", "D", 9, 5}, {"t", "T", 11, 5}, {"b", "B", -7, 1}};
  t.rows = {{"1e5", "", "31.12.1899.0.0.0.0", "", "1.1.2024.25.0.0.0", "", "2", ""}};
  t.Write(exchange_);
  ASSERT_EQ(Export(folder_ / "odd.xlsx", 0), 1);
  EXPECT_EQ(ScriptLines("xlsx_cells.py", folder_ / "odd.xlsx")[2],
            "0 s:\"1e5\" | s:\"1899-12-31\" | s:\"2024-01-01 25:00:00\" | s:\"2\"");
}

TEST_F(FileExportTest, HtmlIsEscapedAndReadsBackCellByCell) {
  ASSERT_EQ(Export(folder_ / "Price list.html", kCategories), 1);
  const std::string raw = testing::FileText(folder_ / "Price list.html");
  EXPECT_EQ(raw.find("<b>"), std::string::npos);
  EXPECT_NE(raw.find("&lt;b&gt;&#39;x&#39;&lt;/b&gt;"), std::string::npos);
  EXPECT_EQ(ScriptLines("html_cells.py", folder_ / "Price list.html"),
            (std::vector<std::string>{
                "doctype=\"DOCTYPE html\" charset=\"utf-8\" title=\"Price list\" table=1 thead=1 tbody=1",
                "th \"Region\" | \"City\" | \"Name\" | \"Price\" | \"Qty\" | \"Day\" | \"At\" | \"Stamp\" | \"OK\"",
                "td \"Nord\" | \"Kiel\" | \"Anna; \\\"A\\\"\" | \"1,50\" | \"3\" | \"29.02.2024\" | \"13:05:09\" | "
                "\"01.03.2024 08:09:10\" | \"Ja\"",
                "td \"S\\u00fcd\" | \"\" | \" Bert\\nZeile 2 \" | \"-2,25\" | \"12345678901\" | \"\" | \"\" | \"\" | \"Nein\"",
                "td \"\" | \"\" | \"\\u20ac & <b>'x'</b>\" | \"\" | \"\" | \"\" | \"\" | \"\" | \"\""}));
}

}  // namespace
}  // namespace verdal::sqlbridge
