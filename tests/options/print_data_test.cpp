// Print configurations: the byte form of record, column and font, old versions, the .prn file and
// its merge rules, and the database file's print section.
#include <gtest/gtest.h>

#include <bit>
#include <fstream>

#include "api/temp_folder.h"
#include "engine/db_manager.h"
#include "io/memfile.h"
#include "options/print_configs.h"
#include "options/print_file.h"
#include "storage/database_file.h"
#include "support/mem_bytes.h"

using namespace verdal;
using options::TPrintData;
using options::TPrintFont;
using options::TPrintItem;
using test_support::Bytes;
using test_support::Contents;

namespace {

Bytes& Dbl(Bytes& b, double v) { return b.Le(std::bit_cast<uint64_t>(v), 8); }

// A font record in its stored order.
void Font(Bytes& b, int32_t height, int32_t weight, const char* face, int32_t tenths, uint8_t italic = 0) {
  b.I32(0x30103).I32(height).I32(0).I32(0).I32(0).I32(weight);
  b.U8(italic).U8(0).U8(0).U8(0).U8(11).U8(0).U8(6).U8(0);
  std::string name(face);
  name.resize(32, '\0');
  for (char c : name) b.U8(static_cast<uint8_t>(c));
  b.I32(tenths).I32(0).I16(0x6000).I32(0).I32(0);
}

// An item of `version`: what later versions add is left out.
Bytes Item(int32_t version) {
  Bytes b;
  b.I32(version).Str("Betrag").Str("Summe in EUR");
  if (version >= 2) b.Str("Kasse");
  Font(b, -13, 0, "Arial", 100);
  Dbl(b, 25.5);
  Dbl(b, 12.25);
  b.U8(0).U8(1).I16(1).U8(1).U8(1);
  if (version >= 3) b.U8(0).U8(1);
  if (version >= 4) b.U8(1);
  return b;
}

Bytes Record(int32_t version, uint8_t kind = 2, const char* name = "Liste", const Bytes& item = Item(4)) {
  Bytes b;
  b.I32(version).I32(0x1080).U8(kind).Str("Kunden").Str("").Str(name);
  Font(b, -13, 700, "Arial", 100);
  Font(b, -13, 0, "Courier New", 100, 1);
  Font(b, -11, 0, "Arial", 80);
  Font(b, -13, 0, "Arial", 100);
  Font(b, -16, 700, "Arial", 120);
  b.I32(0x0000FF);
  for (double v : {12.0, 10.0, 15.5, 10.0, 70.0, 42.0, 210.0, 302.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0}) Dbl(b, v);
  b.I16(3).I16(7).I16(0).I16(2).I16(1);
  b.U8(1).U8(0).U8(1).U8(0);
  Dbl(b, 0.3);
  Dbl(b, 0.1);
  b.I16(1).U8(0).U8(1).U8(1);
  if (version >= 2) b.U8(1);
  if (version >= 3) b.Str("f\xFCr die Kasse");
  if (version >= 4) b.Str("0");
  if (version >= 5) b.Str("Nach Datum");
  b.I32(1).Append(item);
  return b;
}

std::vector<uint8_t> Written(TPrintData& d) {
  TMemFile f(256);
  options::WritePrintData(d, f);
  return Contents(f);
}

Bytes PrnOf(std::initializer_list<Bytes> records) {
  Bytes b;
  b.I32(0x00678A3A).I32(static_cast<int32_t>(records.size()));
  for (const Bytes& r : records) b.Append(r);
  return b;
}

}  // namespace

TEST(PrintData, DefaultFontsAreThoseOfTheScreen) {
  EXPECT_EQ(TPrintFont::OfPoints(10).lfHeight, -13);
  EXPECT_EQ(TPrintFont::OfPoints(8).lfHeight, -11);
  EXPECT_EQ(TPrintFont::OfPoints(12, 700).lfHeight, -16);
  EXPECT_EQ(options::MulDiv(3, 1, 2), 2);    // half away from zero
  EXPECT_EQ(options::MulDiv(-3, 1, 2), -2);
  TPrintFont f;
  f.SetFaceName(std::string(40, 'x'));
  EXPECT_EQ(f.FaceName(), std::string(31, 'x'));
  TMemFile m(128);
  options::WritePrintFont(TPrintFont::OfPoints(9, 700), m);
  EXPECT_EQ(m.GetLength(), 82);
}

TEST(PrintData, ARecordWithAColumnReadsAndWritesBackByteForByte) {
  const Bytes bytes = Record(5);
  auto f = test_support::FileOf(bytes);
  TPrintData d;
  ASSERT_TRUE(options::ReadPrintData(d, *f));
  EXPECT_EQ(f->Tell(), static_cast<int32_t>(bytes.b.size()));
  EXPECT_EQ(d.name, "Liste");
  EXPECT_EQ(d.cellFont.FaceName(), "Courier New");
  EXPECT_EQ(d.cellFont.lfItalic, 1);
  EXPECT_EQ(d.topMargin, 15.5);
  EXPECT_EQ(d.landscape, 1);
  EXPECT_EQ(d.sortName, "Nach Datum");
  ASSERT_EQ(d.items.size(), 1u);
  EXPECT_EQ(d.items[0].heading, "Kasse");
  EXPECT_EQ(d.items[0].height, 12.25);
  EXPECT_EQ(d.items[0].centred, 1);
  EXPECT_EQ(Written(d), bytes.b);
}

TEST(PrintData, VersionOneRecordAndItemKeepTheLaterDefaultsAndWriteBackAsCurrent) {
  auto f = test_support::FileOf(Record(1, 2, "Alt", Item(1)));
  TPrintData d;
  d.description = "stale";
  ASSERT_TRUE(options::ReadPrintData(d, *f));
  EXPECT_EQ(d.landscape, 0);
  EXPECT_EQ(d.description, "");
  EXPECT_EQ(d.ignoreText, "");
  EXPECT_EQ(d.sortName, "");
  ASSERT_EQ(d.items.size(), 1u);
  const TPrintItem& item = d.items[0];
  EXPECT_EQ(item.heading, "");
  EXPECT_EQ(item.maxWidth, 0);
  EXPECT_EQ(item.maxHeight, 0);
  EXPECT_EQ(item.centred, 0);
  // Written back as version 5 with a version 4 item: the defaults fill what version 1 lacked.
  Bytes want;
  {
    Bytes item4;
    item4.I32(4).Str("Betrag").Str("Summe in EUR").Str("");
    Font(item4, -13, 0, "Arial", 100);
    Dbl(item4, 25.5);
    Dbl(item4, 12.25);
    item4.U8(0).U8(1).I16(1).U8(1).U8(1).U8(0).U8(0).U8(0);
    Bytes r = Record(1, 2, "Alt", item4);
    // Version 1 form plus landscape 0 and three empty strings before the item count.
    const size_t itemsAt = r.b.size() - item4.b.size() - 4;
    want.b.assign(r.b.begin(), r.b.begin() + static_cast<long>(itemsAt));
    want.b[0] = 5;
    want.U8(0).Str("").Str("").Str("").I32(1).Append(item4);
  }
  EXPECT_EQ(Written(d), want.b);
  EXPECT_EQ(d.version, 5);
  EXPECT_EQ(d.items[0].version, 4);
}

TEST(PrintData, NewerVersionsAndDamagedCountsAreRefused) {
  TPrintData d;
  auto newer = test_support::FileOf(Record(6));
  EXPECT_FALSE(options::ReadPrintData(d, *newer));
  Bytes item5 = Item(4);
  item5.b[0] = 5;
  auto newerItem = test_support::FileOf(Record(5, 2, "x", item5));
  EXPECT_FALSE(options::ReadPrintData(d, *newerItem));
  Bytes huge = Record(5);
  huge.b.resize(huge.b.size() - Item(4).b.size());
  huge.b[huge.b.size() - 1] = 0x7F;
  auto damaged = test_support::FileOf(huge);
  EXPECT_ANY_THROW(options::ReadPrintData(d, *damaged));
}

TEST(PrintFile, RoundTripAndRefusals) {
  TempFolder dir;
  options::TPrintConfigs configs;
  configs.Add("Eins");
  configs.Add("Zwei");
  configs.records[1].items.push_back({});
  configs.records[1].items[0].fieldName = "Ort";
  const std::string path = dir / "druck.prn";
  ASSERT_EQ(options::SavePrintFile(configs, path), options::SettingsResult::kOk);
  options::TPrintConfigs read;
  ASSERT_EQ(options::ImportPrintFile(read, path, 2), options::SettingsResult::kOk);
  EXPECT_EQ(read.records, configs.records);
  EXPECT_EQ(options::PrintFileBytes(read), options::PrintFileBytes(configs));
  EXPECT_EQ(options::PrintFileBytes(configs)[0], 0x3A);

  // A record of a newer version, a wrong magic, a cut file: nothing is taken over.
  const options::TPrintConfigs before = read;
  for (Bytes bad : {PrnOf({Record(5, 2, "Neu"), Record(6, 2, "Neuer")}), Bytes().I32(0x040B664B).I32(0),
                    PrnOf({Record(5)})}) {
    if (bad.b.size() > 100 && bad.b[4] == 1) bad.b.resize(bad.b.size() - 3);
    EXPECT_EQ(options::ImportPrint(read, bad.b.data(), static_cast<int32_t>(bad.b.size()), 2),
              options::SettingsResult::kWrongFile);
    EXPECT_EQ(read.records, before.records);
  }
}

TEST(PrintFile, AnotherKindTakesNothingEvenAfterGoodRecords) {
  options::TPrintConfigs configs;
  configs.Add("Liste");
  const std::vector<TPrintData> before = configs.records;
  const Bytes file = PrnOf({Record(5, 2, "Neu"), Record(5, 3, "Etiketten")});
  EXPECT_EQ(options::ImportPrint(configs, file.b.data(), static_cast<int32_t>(file.b.size()), 2),
            options::SettingsResult::kWrongKind);
  EXPECT_EQ(configs.records, before);
}

TEST(PrintFile, ANameOfOtherCaseIsReplacedAndNewOnesAdded) {
  options::TPrintConfigs configs;
  configs.Add("liste");
  configs.Add("Andere");
  const Bytes file = PrnOf({Record(5, 2, "LISTE"), Record(5, 2, "Neu")});
  EXPECT_EQ(options::ImportPrint(configs, file.b.data(), static_cast<int32_t>(file.b.size()), 2),
            options::SettingsResult::kOk);
  ASSERT_EQ(configs.GetCount(), 3);
  EXPECT_EQ(configs.records[0].name, "LISTE");
  EXPECT_EQ(configs.records[0].title1, "Kunden");
  EXPECT_EQ(configs.records[1].name, "Andere");
  EXPECT_EQ(configs.records[2].name, "Neu");
  EXPECT_EQ(configs.currentPrintConfig, "Neu");
  EXPECT_EQ(configs.IndexOf("neu"), 2);
}

TEST(PrintFile, TheDatabaseBodyKeepsPrintConfigurations) {
  engine::TDBManager db(0);
  db.prints.Add("Liste");
  db.prints.records[0].items.push_back({});
  db.prints.records[0].items[0].fieldName = "Ort";
  db.prints.currentPrintConfig = "Liste";
  TMemFile f(1024);
  ASSERT_TRUE(storage::WriteBody(db, f));
  f.SeekToBegin();
  engine::TDBManager back(0);
  ASSERT_TRUE(storage::ReadBody(back, f));
  EXPECT_EQ(back.prints.records, db.prints.records);
  EXPECT_EQ(back.prints.currentPrintConfig, "Liste");
  back.ClearDefinitions();
  EXPECT_EQ(back.prints.GetCount(), 0);
}
