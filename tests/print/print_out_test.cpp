// The table layout by numbers, on a surface whose metrics the test fixes: 10 units a character
// ('i' a third), lines as tall as the font (35 units for 10 points), A4 at one dot a unit. With the
// default record, padding and pens are 1 unit, a row 37 units. The printable area ends one dot
// short of the page, and that dot counts against the right and bottom margins: the body is
// 1900 x 2734 units.
#include "print/print_out.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "api/field_helpers.h"
#include "engine/db_manager.h"
#include "print/fixed_surface.h"
#include "print/print_rows.h"
#include "print/text_wrap.h"
#include "verdal.h"

namespace {

using namespace verdal;
using print::testing::FixedSurface;

TEST(TextWrap, BreaksAsUsersOfPrintedTablesKnowIt) {
  float tens[256];
  for (float& a : tens) a = 10;
  struct Case {
    const char* text;
    float width;
    std::vector<std::string> lines;
  } cases[] = {
      {"abc def", 45, {"abc", "def"}},
      {"abcdefgh", 30, {"abcdefgh"}},          // an overlong word stays whole
      {"ab   ", 100, {"ab"}},                  // trailing blanks go
      {"   ", 100, {""}},                       // a paragraph of blanks is one empty line
      {"", 100, {""}},
      {"  ab cd", 100, {"ab cd"}},             // leading blanks go
      {"abcd ef", 35, {"abc", "d", "ef"}},     // the width ran out on the blank: one character before
      {"a\r\nb\n", 100, {"a", "b"}},           // a last empty paragraph does not count
      {"a\n\nb", 100, {"a", "", "b"}},
      {"ab cd ef", 55, {"ab cd", "ef"}},
      {"a b", 5, {"a", "b"}},                  // every line takes something
  };
  std::vector<std::string> lines;
  for (const Case& c : cases) {
    print::WrapText(c.text, c.width, tens, lines);
    EXPECT_EQ(lines, c.lines) << '"' << c.text << "\" in " << c.width;
  }
}

TEST(CellText, ThousandsBetweenGroupsOfTheWholePart) {
  const struct {
    const char* in;
    char decimal;
    const char* out;
  } cases[] = {{"1234567,89", ',', "1.234.567,89"}, {"-1234.5", '.', "-1,234.5"}, {"123", ',', "123"},
               {"1000", '.', "1,000"}, {"-100,00", ',', "-100,00"}};
  for (const auto& c : cases) {
    std::string s = c.in;
    print::InsertThousands(s, c.decimal);
    EXPECT_EQ(s, c.out);
  }
}

class PrintOutTest : public ::testing::Test {
 protected:
  void SetUp() override {
    handle = OpenMemoryDatabase();
    AddField(handle, "Name", 0);
    AddField(handle, "Amount", 1);
    AddField(handle, "Day", 5);
    AddField(handle, "Style", 0);
    db = engine::AcceptHandle(handle);
  }
  void TearDown() override { VERDAL_CloseDB(handle); }

  int32_t Add(const std::string& name, const std::string& amount, const std::string& style = "") {
    const int32_t cursor = VERDAL_AddRecord(handle, VERDAL_CURSOR_ROOT, name.c_str(), 0, nullptr, -1, 0, nullptr);
    VERDAL_SetData(handle, 1, amount.c_str(), cursor, 0, nullptr, nullptr);
    VERDAL_SetData(handle, 2, "1.2.2003", cursor, 0, nullptr, nullptr);
    if (!style.empty()) VERDAL_SetData(handle, 3, style.c_str(), cursor, 0, nullptr, nullptr);
    VERDAL_SetData(handle, 0, name.c_str(), cursor, 0, nullptr, nullptr);
    return cursor;
  }
  static options::TPrintItem Item(const char* field, double width = 0) {
    options::TPrintItem item;
    item.fieldName = item.title = field;
    if (width > 0) {
      item.autoWidth = 0;
      item.width = width;
    }
    return item;
  }
  // Lays out with the records marked as a print without a filter marks them.
  std::unique_ptr<print::TCalyxPrintOut> LayOut(const options::TPrintData& data, int32_t styleField = -1,
                                                bool record = false) {
    print::MarkFilteredRows(db->store, nullptr, nullptr);
    print::PrintEnvironment env;
    env.day = 24, env.month = 11, env.year = 2026;
    auto out = std::make_unique<print::TCalyxPrintOut>(db->store, data, nullptr, 0, styleField, record, env);
    out->BeginPrinting(surface);
    return out;
  }
  std::vector<std::string> PageTexts(print::TCalyxPrintOut& out, int32_t page) {
    FixedSurface target;
    out.PrintPage(page, target);
    return target.Texts();
  }

  VerdalHandle handle = 0;
  engine::TDBManager* db = nullptr;
  FixedSurface surface;
  options::TPrintData data;
};

bool Has(const std::vector<std::string>& texts, const std::string& text) {
  return std::find(texts.begin(), texts.end(), text) != texts.end();
}

TEST_F(PrintOutTest, WidthsPartsAndFitting) {
  Add("Miriam", "1");
  Add("a name of forty characters and some more", "2");
  data.items = {Item("Name"), Item("Amount"), Item("Day", 80)};
  auto out = LayOut(data);
  EXPECT_EQ(out->BodyWidth(), 1900);
  EXPECT_EQ(out->BodyHeight(), 2734);
  // Automatic widths: the widest line plus padding and free space (4 units); fixed: its millimetres.
  EXPECT_EQ(out->ColumnWidths(), (std::vector<int32_t>{404, 64, 800}));
  EXPECT_EQ(out->PartStarts(), (std::vector<int32_t>{0}));

  data.flags = options::kPrintFitWidth;  // the free 632 units go to the two automatic columns
  out = LayOut(data);
  EXPECT_EQ(out->ColumnWidths(), (std::vector<int32_t>{404 + 316, 64 + 316, 800}));

  // Three columns that exceed the page by the third: two parts, each numbered from page 1.
  data.flags = 0;
  data.items = {Item("Name", 80), Item("Amount", 80), Item("Day", 80)};
  out = LayOut(data);
  EXPECT_EQ(out->PartStarts(), (std::vector<int32_t>{0, 2}));
  ASSERT_EQ(out->PageCount(), 2);
  EXPECT_TRUE(Has(PageTexts(*out, 1), "Seite: 1.1"));
  EXPECT_TRUE(Has(PageTexts(*out, 2), "Seite: 1.2"));
  EXPECT_TRUE(Has(PageTexts(*out, 2), "01.02.2003"));
  EXPECT_FALSE(Has(PageTexts(*out, 2), "Miriam"));

  // One column wider than the page is a part of its own, cut to the body width.
  data.items = {Item("Name", 300), Item("Amount", 30)};
  out = LayOut(data);
  EXPECT_EQ(out->PartStarts(), (std::vector<int32_t>{0, 1}));
  FixedSurface page;
  out->PrintPage(1, page);
  int cut = 0;
  for (const auto& d : page.drawn) cut += d.text == "Miriam" && d.clip.right - d.clip.left == 1900;
  EXPECT_EQ(cut, 1);
}

TEST_F(PrintOutTest, SubtotalsAreRunningTotalsAtEveryPageEnd) {
  for (int i = 1; i <= 200; ++i) Add("r" + std::to_string(i), std::to_string(i));
  data.items = {Item("Name"), Item("Amount"), Item("Day")};
  data.items[1].total = data.items[1].subtotals = 1;
  data.items[2].total = 1;  // a date is not summed
  auto out = LayOut(data);
  // 71 records and their subtotal fill a page; the total comes after the last record.
  ASSERT_EQ(out->PageCount(), 3);
  const std::vector<int32_t> rows = out->RowCursors();
  ASSERT_EQ(rows.size(), 200u + 2 + 1);
  EXPECT_EQ(rows[71], print::kSubtotalRow);
  EXPECT_EQ(rows[143], print::kSubtotalRow);
  EXPECT_EQ(rows.back(), print::kTotalRow);
  const auto page1 = PageTexts(*out, 1), page2 = PageTexts(*out, 2), page3 = PageTexts(*out, 3);
  EXPECT_TRUE(Has(page1, "Zwischensumme"));
  // The sums of 1..71 and of 1..142, in the number's shown form.
  const auto shown = [](int n) { return std::to_string(n * (n + 1) / 2); };
  auto hasNumber = [](const std::vector<std::string>& texts, const std::string& whole) {
    for (const auto& t : texts)
      if (t.rfind(whole, 0) == 0 && t.size() == whole.size() + 3) return true;
    return false;
  };
  EXPECT_TRUE(hasNumber(page1, shown(71)));
  EXPECT_TRUE(hasNumber(page2, shown(142)));
  EXPECT_TRUE(Has(page3, "Summe"));
  EXPECT_TRUE(hasNumber(page3, shown(200)));
  // A later pass keeps the subtotal rows and breaks at the same rows.
  out->BeginPrinting(surface);
  EXPECT_EQ(out->RowCursors(), rows);
  EXPECT_EQ(out->PageCount(), 3);

  // Subtotals asked for without any total column: none.
  data.items[1].total = data.items[2].total = 0;
  out = LayOut(data);
  EXPECT_EQ(out->RowCursors().size(), 200u);
}

TEST_F(PrintOutTest, CellTextRules) {
  Add("0", "0");
  Add("two\nlines", "5", "1,3;0,9;1,1");  // Amount bold and underlined, Name bold and doubly
  data.items = {Item("Name"), Item("Amount")};
  data.items[1].total = 1;
  data.flags = options::kPrintIgnoreText;
  data.ignoreText = "0";
  auto out = LayOut(data, 3);
  auto texts = PageTexts(*out, 1);
  EXPECT_FALSE(Has(texts, "0")) << "the ignore text prints empty";
  EXPECT_TRUE(Has(texts, "two") && Has(texts, "lines"));
  FixedSurface page;
  out->PrintPage(1, page);
  int underlines = 0, boldFives = 0;
  for (const auto& d : page.drawn) {
    if (d.text.rfind("5", 0) == 0 && d.weight == 700) ++boldFives;  // the cell and the total
    if (d.text.empty() && d.y == d.y2 && d.weight == 2) ++underlines;  // thin pen: 0.2 mm
  }
  EXPECT_EQ(boldFives, 2);
  EXPECT_EQ(underlines, 3);

  // Single-line output: only the first line counts for the row.
  data.flags = options::kPrintSingleLine;
  out = LayOut(data);
  texts = PageTexts(*out, 1);
  EXPECT_TRUE(Has(texts, "two"));
  EXPECT_FALSE(Has(texts, "lines"));
}

TEST_F(PrintOutTest, PagesOfEmptyListsTitlesAndHiddenNumbers) {
  data.items = {Item("Name")};
  EXPECT_EQ(LayOut(data)->PageCount(), 0) << "no rows, no total: no pages";
  data.items[0].total = 1;  // a total column, though text sums to nothing: the total row's page
  EXPECT_EQ(LayOut(data)->PageCount(), 1);
  data.items[0].total = 0;
  Add("one", "1");
  EXPECT_EQ(LayOut(data)->PageCount(), 1);

  for (int i = 0; i < 100; ++i) Add("r", "1");
  data.title1 = "Umsatz";
  data.title2 = "November";
  data.showPageNumber = 0;
  auto out = LayOut(data);
  ASSERT_EQ(out->PageCount(), 2);
  for (const print::TSeitenInfo& page : out->Pages()) EXPECT_EQ(page.pageNumber, 0);
  FixedSurface page;
  out->PrintPage(2, page);
  EXPECT_EQ(page.Texts()[0], "Umsatz");
  EXPECT_EQ(page.drawn[0].y, 100);       // at the top margin, centred in the body
  EXPECT_EQ(page.drawn[0].x, 100 + (1900 - 60) / 2);
  EXPECT_EQ(page.drawn[1].y, 100 + 46);  // under title 1: its 35 units times 1.3
  EXPECT_TRUE(Has(page.Texts(), "Datum: 24.11.2026"));
  for (const auto& t : page.Texts()) EXPECT_EQ(t.find("Seite"), std::string::npos);
}

}  // namespace
