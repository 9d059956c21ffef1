// The stored form of the filter collection: bytes as the format gives them, rows of older
// versions, damaged counts, and a round trip through a whole database body.
#include "views/filter_parts.h"

#include <gtest/gtest.h>

#include "BASE_SOURCE/memfile.h"
#include "engine/db_manager.h"
#include "model/database_file.h"
#include "support/mem_bytes.h"

using namespace verdal;
using test_support::Bytes;
using views::TDBFilterCollection;
using views::TDBFilterParts;
using views::TDBFilterPartsItem;

namespace {

TDBFilterParts Row(int16_t link, const char* open, const char* field, int16_t condition,
                   const char* value, const char* close, uint8_t whole, uint8_t cs, uint8_t begins,
                   uint8_t wild) {
  TDBFilterParts r;
  r.link = link;
  r.openBracket = open;
  r.fieldName = field;
  r.condition = condition;
  r.value = value;
  r.closeBracket = close;
  r.wholeWord = whole;
  r.caseSensitive = cs;
  r.beginsWith = begins;
  r.wildcard = wild;
  return r;
}

TDBFilterCollection Sample() {
  TDBFilterCollection c;
  c.currentFilter = "Kiel";
  auto a = std::make_unique<TDBFilterPartsItem>();
  a->name = "Kiel";
  a->rows.push_back(Row(0, "(", "Ort", 2, "Kiel", "", 0, 1, 0, 1));
  a->rows.push_back(Row(2, "", "Preis", 0, "10", ")", 1, 0, 1, 0));
  c.filters.push_back(std::move(a));
  auto b = std::make_unique<TDBFilterPartsItem>();
  b->name = "leer";
  c.filters.push_back(std::move(b));
  return c;
}

Bytes SampleBytes() {
  Bytes b;
  b.U8(1).Str("Kiel").I32(2);
  b.U8(1).Str("Kiel").I32(2);
  b.U8(3).I16(0).I16(2).U8(0).U8(1).U8(0).U8(0).U8(1).Str("(").Str("").Str("Ort").Str("Kiel");
  b.U8(3).I16(2).I16(0).U8(1).U8(0).U8(0).U8(1).U8(0).Str("").Str(")").Str("Preis").Str("10");
  b.U8(1).Str("leer").I32(0);
  return b;
}

void ExpectSame(const TDBFilterParts& a, const TDBFilterParts& b) {
  EXPECT_EQ(a.link, b.link);
  EXPECT_EQ(a.openBracket, b.openBracket);
  EXPECT_EQ(a.fieldName, b.fieldName);
  EXPECT_EQ(a.condition, b.condition);
  EXPECT_EQ(a.value, b.value);
  EXPECT_EQ(a.closeBracket, b.closeBracket);
  EXPECT_EQ(a.wholeWord, b.wholeWord);
  EXPECT_EQ(a.caseSensitive, b.caseSensitive);
  EXPECT_EQ(a.reserved, b.reserved);
  EXPECT_EQ(a.beginsWith, b.beginsWith);
  EXPECT_EQ(a.wildcard, b.wildcard);
}

void ExpectSample(const TDBFilterCollection& c) {
  TDBFilterCollection want = Sample();
  EXPECT_EQ(c.currentFilter, "Kiel");
  ASSERT_EQ(c.filters.size(), 2u);
  EXPECT_EQ(c.filters[0]->name, "Kiel");
  EXPECT_EQ(c.filters[1]->name, "leer");
  EXPECT_TRUE(c.filters[1]->rows.empty());
  ASSERT_EQ(c.filters[0]->rows.size(), 2u);
  for (size_t i = 0; i < 2; ++i) ExpectSame(c.filters[0]->rows[i], want.filters[0]->rows[i]);
  EXPECT_EQ(c.filters[0]->rows[0].rowVersion, 3);
}

}  // namespace

TEST(FilterStore, WritesTheDocumentedBytesAndReadsThemBack) {
  TMemFile f(64);
  views::WriteFilters(Sample(), f);
  EXPECT_EQ(test_support::Contents(f), SampleBytes().b);

  TDBFilterCollection c;
  auto in = test_support::FileOf(SampleBytes());
  ASSERT_TRUE(views::ReadFilters(c, *in));
  ExpectSample(c);
  EXPECT_EQ(in->Tell(), in->GetLength());
  EXPECT_EQ(c.Find("KIEL"), c.filters[0].get());
  EXPECT_EQ(c.Find("Kie"), nullptr);
}

TEST(FilterStore, OlderRowsLackTheirNewerFlags) {
  // Version 1 has neither beginsWith nor wildcard, version 2 no wildcard.
  Bytes b;
  b.U8(1).Str("").I32(1).U8(1).Str("alt").I32(2);
  b.U8(1).I16(1).I16(3).U8(1).U8(1).U8(0).Str("").Str("").Str("A").Str("x");
  b.U8(2).I16(0).I16(4).U8(0).U8(0).U8(0).U8(1).Str("").Str("").Str("B").Str("y");
  TDBFilterCollection c;
  auto in = test_support::FileOf(b);
  ASSERT_TRUE(views::ReadFilters(c, *in));
  ASSERT_EQ(c.filters.size(), 1u);
  const auto& rows = c.filters[0]->rows;
  ASSERT_EQ(rows.size(), 2u);
  ExpectSame(rows[0], Row(1, "", "A", 3, "x", "", 1, 1, 0, 0));
  ExpectSame(rows[1], Row(0, "", "B", 4, "y", "", 0, 0, 1, 0));
  EXPECT_EQ(in->Tell(), in->GetLength());
}

TEST(FilterStore, DamageFailsCleanlyAndLeavesNothing) {
  const std::vector<Bytes> damaged = {
      Bytes().U8(1).Str("").I32(-1),
      Bytes().U8(1).Str("").I32(0x7FFFFFFF),
      Bytes().U8(1).Str("").I32(1).U8(1).Str("f").I32(100000000),
      Bytes().U8(1).Str("").I32(1).U8(1).Str("f").I32(-5),
  };
  for (const Bytes& b : damaged) {
    TDBFilterCollection c = Sample();
    auto in = test_support::FileOf(b);
    EXPECT_FALSE(views::ReadFilters(c, *in));
    EXPECT_TRUE(c.filters.empty());
  }
  // Cut anywhere: a refused count or the stream's read exception, and no filter kept.
  const Bytes whole = SampleBytes();
  for (size_t n = 0; n < whole.b.size(); ++n) {
    Bytes part;
    part.b.assign(whole.b.begin(), whole.b.begin() + static_cast<std::ptrdiff_t>(n));
    TDBFilterCollection c = Sample();
    auto in = test_support::FileOf(part);
    bool read = true;
    try {
      read = views::ReadFilters(c, *in);
    } catch (...) {  // either exception of a short stream
      read = false;
    }
    EXPECT_FALSE(read) << n;
    EXPECT_TRUE(c.filters.empty());
  }
}

TEST(FilterStore, TravelsWithTheDatabaseBody) {
  engine::TDBManager db(0);
  db.filters.CopyFrom(Sample());
  TMemFile f(1024);
  ASSERT_TRUE(model::WriteBody(db, f));
  f.Seek(0);
  engine::TDBManager back(0);
  back.version = model::kFileVersion;
  ASSERT_TRUE(model::ReadBody(back, f));
  ExpectSample(back.filters);

  // A body without filters replaces those the database had.
  back.filters.CopyFrom(Sample());
  engine::TDBManager empty(0);
  TMemFile g(1024);
  ASSERT_TRUE(model::WriteBody(empty, g));
  g.Seek(0);
  back.version = model::kFileVersion;
  ASSERT_TRUE(model::ReadBody(back, g));
  EXPECT_TRUE(back.filters.filters.empty());
}
