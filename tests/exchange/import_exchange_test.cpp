#include "exchange/import_exchange.h"

#include <gtest/gtest.h>

#include "io/memfile.h"
#include "support/byte_builder.h"

using namespace verdal;
using verdal::test_support::Bytes;

namespace {

Bytes Header(int32_t rows, int16_t columns, int16_t pathColumns, int16_t mode) {
  Bytes b;
  b.I32(rows).I32(5).I16(0).Str("db").Str("t").Str("id").I16(columns).I16(pathColumns).Str("").I16(mode);
  for (int16_t i = 0; i < columns; ++i) b.Str("c" + std::to_string(i)).I16(12).I16(-1);
  return b;
}

bool Accepted(const Bytes& bytes) {
  TMemFile f(static_cast<int32_t>(bytes.b.size()) + 1);
  f.Write(bytes.b.data(), static_cast<int32_t>(bytes.b.size()));
  return exchange::CheckImportExchange(f);
}

}  // namespace

// The reader takes exactly what a bridge writes and refuses a file that is short, long or whose
// counts cannot be right, before anything is built from it.
TEST(ImportExchange, WholeFileCheck) {
  Bytes good = Header(2, 2, 1, 3);
  good.Str("A").Str("x").Str("7").Str("B").Str("y").Str("-9");
  EXPECT_TRUE(Accepted(good));
  Bytes cut = good;
  cut.b.resize(cut.b.size() - 1);  // not pop_back, which GCC 12 wrongly takes for an access before the start
  Bytes longer = good;
  longer.U8(0);
  Bytes badKey = Header(1, 1, 0, 3);
  badKey.Str("A").Str("7x");
  const Bytes refused[] = {cut, longer, badKey, Header(-1, 1, 0, 0), Header(0, 1, 2, 0),
                           Header(0, 1, 0, 4), Header(3, 0, 0, 0), Header(1, 2, 0, 0)};
  for (const Bytes& b : refused) EXPECT_FALSE(Accepted(b));
  EXPECT_TRUE(Accepted(Header(0, 3, 0, 0)));  // no rows is an import of fields alone

  TMemFile f(256);
  f.Write(good.b.data(), static_cast<int32_t>(good.b.size()));
  f.SeekToBegin();
  exchange::ImportHeader header;
  exchange::ReadImportHeader(f, header);
  EXPECT_EQ(header.connection, 5);
  EXPECT_EQ(header.identityField, "id");
  std::vector<std::string> cells;
  int32_t key = 0;
  exchange::ReadImportRow(f, header, cells, key);
  exchange::ReadImportRow(f, header, cells, key);
  EXPECT_EQ(cells, (std::vector<std::string>{"B", "y"}));
  EXPECT_EQ(key, -9);
}
