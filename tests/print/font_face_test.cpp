// Fonts resolve by name to the metric-compatible Liberation fonts, with the fonts' own advances
// and metrics; measuring on the information context agrees with them.
#include "print/font_face.h"

#include <gtest/gtest.h>

#include "print/pdf_printer.h"

using namespace verdal::print;

namespace {

FontSpec Font(const char* face, int32_t height, int32_t weight = 400, bool italic = false) {
  FontSpec font;
  font.face = face;
  font.height = height;
  font.weight = weight;
  font.italic = italic;
  return font;
}

}  // namespace

TEST(FontFace, ResolvesNamesToLiberationWithTheirOwnAdvances) {
  struct Case { const char* face; const char* family; float advanceM; };  // 'M' in 2048ths of the em
  for (const Case& c : {Case{"Arial", "Liberation Sans", 1706}, Case{"Times New Roman", "Liberation Serif", 1821},
                        Case{"Courier New", "Liberation Mono", 1229}}) {
    const FontFace& font = FontFace::For(Font(c.face, 2048));
    EXPECT_EQ(font.Family(), c.family) << c.face;
    EXPECT_NEAR(font.Advances()['M'], c.advanceM, 1e-3) << c.face;
    EXPECT_EQ(&font, &FontFace::For(Font(c.face, 2048)));  // cached
    EXPECT_NE(font.Glyphs()[0xE4], 0u) << c.face;           // ä
    EXPECT_NE(font.Glyphs()[0x80], 0u) << c.face;           // €
    for (uint8_t none : {0x00, 0x09, 0x81, 0x9D}) {          // controls and unassigned bytes
      EXPECT_EQ(font.Glyphs()[none], 0u);
      EXPECT_EQ(font.Advances()[none], 0.f);
    }
  }
  // Every character of the monospaced font has one advance: 1229/2048 em.
  const float* mono = FontFace::For(Font("Courier New", 35)).Advances();
  for (int b = 0x20; b < 256; ++b)
    if (mono[b] != 0) {
      EXPECT_NEAR(mono[b], 1229.0 * 35 / 2048, 1e-4) << b;
    }
  EXPECT_EQ(FontFace::For(Font("Arial", 35, 700)).Family(), "Liberation Sans");
  EXPECT_EQ(FontFace::For(Font("Arial", 35, 400, true)).Family(), "Liberation Sans");
}

TEST(FontFace, MetricsAndWidthsInLogicalUnits) {
  // Liberation Sans: ascender 1854, descender 434, line gap 67 in 2048ths, as Arial.
  TextMetrics m = FontFace::For(Font("Arial", 2048)).Metrics();
  EXPECT_EQ(m.ascent, 1854);
  EXPECT_EQ(m.descent, 434);
  EXPECT_EQ(m.height, 2288);
  EXPECT_EQ(m.internalLeading, 240);
  EXPECT_EQ(m.externalLeading, 67);
  m = FontFace::For(Font("Arial", 35)).Metrics();
  EXPECT_EQ(m.ascent, 32);  // 31.68
  EXPECT_EQ(m.descent, 7);  // 7.42
  EXPECT_EQ(m.internalLeading, 4);

  auto info = OpenInfoContext(PageSetup{});
  info->SelectFont(Font("Arial", 35));
  EXPECT_EQ(info->TextWidth("MMMM"), 117);  // 4 x 1706 x 35 / 2048 = 116.6
  EXPECT_EQ(info->TextWidth(""), 0);
  const int32_t regular = info->TextWidth("Stra\xDF" "e 12, M\xFCnchen");
  info->SelectFont(Font("Arial", 35, 700));
  EXPECT_GT(info->TextWidth("Stra\xDF" "e 12, M\xFCnchen"), regular);
}
