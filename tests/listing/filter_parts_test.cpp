// The stored form of the filter collection: bytes as the format gives them, rows of older
// versions, and damaged input.
#include "listing/filter_parts.h"

#include <gtest/gtest.h>

#include "engine/db_manager.h"
#include "storage/database_file.h"
#include "support/mem_bytes.h"

using namespace verdal;
using test_support::Bytes;

namespace {

// Two rows and an empty filter, as objects and as their bytes.
listing::TDBFilterCollection Sample() {
  listing::TDBFilterCollection c;
  c.currentFilter = "Kiel";
  auto a = std::make_unique<listing::TDBFilterPartsItem>();
  a->name = "Kiel";
  a->rows.resize(2);
  a->rows[0] = {0, 0, "(", "Ort", 2, "Kiel", "", 0, 1, 0, 0, 1};
  a->rows[1] = {0, 2, "", "Preis", 0, "10", ")", 1, 0, 0, 1, 0};
  c.filters.push_back(std::move(a));
  c.filters.push_back(std::make_unique<listing::TDBFilterPartsItem>());
  c.filters.back()->name = "leer";
  return c;
}

Bytes SampleBytes() {
  Bytes b;
  b.U8(1).Str("Kiel").I32(2).U8(1).Str("Kiel").I32(2);
  b.U8(3).I16(0).I16(2).U8(0).U8(1).U8(0).U8(0).U8(1).Str("(").Str("").Str("Ort").Str("Kiel");
  b.U8(3).I16(2).I16(0).U8(1).U8(0).U8(0).U8(1).U8(0).Str("").Str(")").Str("Preis").Str("10");
  return b.U8(1).Str("leer").I32(0);
}

std::vector<uint8_t> Written(const listing::TDBFilterCollection& c) {
  TMemFile f(64);
  listing::WriteFilters(c, f);
  return test_support::Contents(f);
}

// Reads bytes; a stream that ends early counts as a refusal.
bool Read(listing::TDBFilterCollection& c, const Bytes& b) {
  auto in = test_support::FileOf(b);
  try {
    return listing::ReadFilters(c, *in) && in->Tell() == in->GetLength();
  } catch (...) {
    return false;
  }
}

}  // namespace

TEST(FilterStore, DocumentedBytesBothWays) {
  EXPECT_EQ(Written(Sample()), SampleBytes().b);
  listing::TDBFilterCollection c;
  ASSERT_TRUE(Read(c, SampleBytes()));
  EXPECT_EQ(Written(c), SampleBytes().b);
  EXPECT_EQ(c.currentFilter, "Kiel");
  EXPECT_EQ(c.filters[0]->rows[0].rowVersion, 3);
  EXPECT_EQ(c.Find("KIEL"), c.filters[0].get());
  EXPECT_EQ(c.Find("Kie"), nullptr);
}

TEST(FilterStore, OlderRowsLackTheirNewerFlags) {
  Bytes b;
  b.U8(1).Str("").I32(1).U8(1).Str("alt").I32(2);
  b.U8(1).I16(1).I16(3).U8(1).U8(1).U8(0).Str("").Str("").Str("A").Str("x");         // no flags
  b.U8(2).I16(0).I16(4).U8(0).U8(0).U8(0).U8(1).Str("").Str("").Str("B").Str("y");  // no wildcard
  listing::TDBFilterCollection c;
  ASSERT_TRUE(Read(c, b));
  listing::TDBFilterCollection want;
  want.collectionVersion = 1;
  want.filters.push_back(std::make_unique<listing::TDBFilterPartsItem>());
  want.filters[0]->name = "alt";
  want.filters[0]->rows = {{1, 1, "", "A", 3, "x", "", 1, 1, 0, 0, 0}, {2, 0, "", "B", 4, "y", "", 0, 0, 0, 1, 0}};
  EXPECT_EQ(Written(c), Written(want));
}

TEST(FilterStore, DamageFailsCleanlyAndLeavesNothing) {
  std::vector<Bytes> damaged = {
      Bytes().U8(1).Str("").I32(-1),
      Bytes().U8(1).Str("").I32(0x7FFFFFFF),
      Bytes().U8(1).Str("").I32(1).U8(1).Str("f").I32(100000000),
  };
  const Bytes whole = SampleBytes();
  for (size_t n = 0; n < whole.b.size(); ++n) {
    damaged.emplace_back();
    damaged.back().b.assign(whole.b.begin(), whole.b.begin() + static_cast<std::ptrdiff_t>(n));
  }
  for (const Bytes& b : damaged) {
    listing::TDBFilterCollection c = Sample();
    EXPECT_FALSE(Read(c, b)) << b.b.size();
    EXPECT_TRUE(c.filters.empty());
  }
}

TEST(FilterStore, TravelsWithTheDatabaseBody) {
  engine::TDBManager db(0), back(0);
  db.filters.CopyFrom(Sample());
  TMemFile f(1024);
  ASSERT_TRUE(storage::WriteBody(db, f));
  f.Seek(0);
  back.version = storage::kFileVersion;
  ASSERT_TRUE(storage::ReadBody(back, f));
  EXPECT_EQ(Written(back.filters), SampleBytes().b);
}
