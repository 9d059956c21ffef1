// The body of the database file: bytes as the format tables give them, round trips, old forms and
// damaged input.
#include <gtest/gtest.h>

#include <vector>

#include "io/memfile.h"
#include "io/read_ahead_file.h"
#include "engine/db_manager.h"
#include "engine/navigation.h"
#include "engine/record_ops.h"
#include "engine/values.h"
#include "model/cursor.h"
#include "storage/database_file.h"
#include "model/fields.h"
#include "support/mem_bytes.h"

using namespace verdal;
using storage::kDataRecordMark;
using storage::kSectionMark;
using test_support::Bytes;
using test_support::Contents;

namespace {

// The sections of definitions as a body of the current version writes them when they are empty.
Bytes EmptyDefinitions() {
  Bytes d;
  d.Le(kDataRecordMark, 4).I32(1).Str("").I32(0);  // list display and sort definitions
  d.Str("");                                       // default print option
  d.I32(0);                                        // print options
  d.U8(1).Str("").I32(0);                          // filters
  for (int i = 0; i < 5; ++i) d.Le(kDataRecordMark, 4).I32(1).Str("").I32(0);  // containers
  return d;
}

std::vector<uint8_t> WriteBodyOf(engine::TDBManager& db) {
  TMemFile f(1024);
  EXPECT_TRUE(storage::WriteBody(db, f));
  return Contents(f);
}

bool ReadBodyInto(engine::TDBManager& db, const Bytes& bytes) {
  auto f = test_support::FileOf(bytes);
  return storage::ReadBody(db, *f);
}

model::TDBFieldInfo TextField(const char* name) {
  model::TDBFieldInfo f;
  f.name = name;
  return f;
}

}  // namespace

TEST(DatabaseBody, AnEmptyDatabaseWritesCountersSectionsAndZeroCounts) {
  engine::TDBManager db(0);
  Bytes want;
  want.I32(0).I32(0).I32(0).I16(0).Append(EmptyDefinitions()).I32(0).I32(0).I32(0).Le(kSectionMark, 4);
  EXPECT_EQ(WriteBodyOf(db), want.b);
  engine::TDBManager back(0);
  EXPECT_TRUE(ReadBodyInto(back, want));
  EXPECT_EQ(back.store.places.Count(), 0u);
}

TEST(DatabaseBody, RoundTripKeepsTreeValuesAndCountersButNoTemporaryRecord) {
  engine::TDBManager db(1);
  model::AddFieldInfo(db.store, TextField("Name"), -1);
  int32_t a = engine::AddCategory(db, -1, "A");
  int32_t b = engine::AddCategory(db, a, "B");
  int32_t r1 = engine::AddRecord(db, b, "r1", false, "eins", 0, nullptr);
  int32_t r2 = engine::AddRecord(db, a, "r2", false, "zwei", 0, nullptr);
  int32_t r0 = engine::AddRecord(db, a, "r0", false, "null", 0, nullptr);
  engine::MoveChild(db, r0, r2, 3);  // before r2: positions must carry tree order
  int32_t temp = engine::AddRecord(db, -1, "t", true, "weg", 0, nullptr);
  db.store.currentCursor = r1;
  TMemFile f(256);
  storage::WriteBody(db, f);

  engine::TDBManager back(1);
  back.store.currentCursor = r1;  // the header before the body carries it
  f.Seek(0);
  ASSERT_TRUE(storage::ReadBody(back, f));
  EXPECT_EQ(*model::FieldValue(back.store, r1, 0), "eins");
  EXPECT_EQ(back.store.places.Find(temp), nullptr);
  EXPECT_EQ(back.store.currentCursor, r1);
  std::vector<int32_t> order;
  for (int32_t c = model::ResolveCursor(back.store, VERDAL_CURSOR_FIRST); c >= 0;
       c = model::StepCursor(back.store, c, 1, false, true))
    order.push_back(c);
  EXPECT_EQ(order, (std::vector<int32_t>{a, b, r1, r0, r2}));
  // The temporary record's ids are not given out again.
  EXPECT_EQ(engine::AddRecord(back, -1, "n", false, nullptr, -1, nullptr), temp + 1);
  EXPECT_EQ(back.store.data.Find(back.store.places.Find(r1)->dataId)->Identifier(),
            db.store.data.Find(db.store.places.Find(r1)->dataId)->Identifier());

  // The same body streamed through a window of a few bytes, so that every text crosses a refill.
  engine::TDBManager streamed(1);
  f.Seek(0);
  TReadAheadFile window(f, f.GetLength(), 5);
  ASSERT_TRUE(storage::ReadBody(streamed, window));
  for (int32_t cursor : {r0, r1, r2}) {
    const model::TDBDataRecord* want = model::DataOf(back.store, back.store.places.Find(cursor));
    const model::TDBDataRecord* got = model::DataOf(streamed.store, streamed.store.places.Find(cursor));
    ASSERT_NE(got, nullptr);
    EXPECT_EQ(got->Title(), want->Title());
    EXPECT_EQ(got->Identifier(), want->Identifier());
    EXPECT_EQ(*model::FieldValue(streamed.store, cursor, 0), *model::FieldValue(back.store, cursor, 0));
  }
}

TEST(DatabaseBody, AVersionThreeFileWithOldFormRecordsIsRepairedAsItLoads) {
  Bytes body;
  body.I32(0).I32(0).I32(0);  // damaged counters: ids must go on above what is loaded
  body.I16(2);
  for (const char* name : {"A", "B"}) {
    body.Le(kSectionMark, 4).I32(1).I32(0).Str(name).I16(name[0] == 'A' ? 0 : 7).U8(0).U8(1);
    body.I32(1).Le(0, 4).I16(1).I16(0).Le(0, 4).I32(-1).I16(2);  // version 1 number field
    body.Ext(0, 0).Ext(0, 0).U8(0).U8(0).U8(0).Ext(0, 0).Ext(0, 0).U8(0).U8(0).U8(1).U8(1).U8(0);
    body.Str("").Str("5").Str("").Str("").Str("").Str("");
    body.Str("");
  }
  body.Le(kSectionMark, 4).I32(0);  // old list definitions: count at once
  body.I32(0);                      // print options (version 3 has no default print name)
  body.I32(2);                      // categories: one whose parent is gone
  body.Le(kSectionMark, 4).I32(4).I32(-1).I32(0).U8(1).Str("").Str("Oben");
  body.Le(kSectionMark, 4).I32(5).I32(99).I32(0).U8(0).Str("").Str("Waise");
  body.I32(2);                      // data records of the old form, with 3 and 1 values
  for (int id : {8, 9}) {
    body.Le(kSectionMark, 4).I32(0).I32(id).I32(1);
    for (int i = 0; i < 16; ++i) body.U8(0);
    for (int i = 0; i < 16; ++i) body.U8(0);
    body.I32(0).I32(0).U8(0).Str("alt");
    if (id == 8)
      body.I32(3).Str("1.00").Str("2.00").Str("3.00");
    else
      body.I32(1).Str("4.00");
  }
  body.I32(2);
  body.Le(kSectionMark, 4).I32(10).I32(4).I32(8).U8(1).I32(0).I16(3).I32(-1).I32(-1).I32(-1);
  body.Le(kSectionMark, 4).I32(11).I32(5).I32(9).U8(1).I32(0).I16(0).I32(-1).I32(-1).I32(-1);
  body.Le(kSectionMark, 4);

  engine::TDBManager db(0);
  db.version = 3;
  ASSERT_TRUE(ReadBodyInto(db, body));
  model::NodeStore& s = db.store;
  EXPECT_EQ(s.fields[1]->position, 1);  // position 7 of two fields repaired
  auto texts = [](const model::RecordValues& v) {
    std::vector<std::string> out;
    for (size_t i = 0; i < v.size(); ++i) out.emplace_back(v[i]);
    return out;
  };
  EXPECT_EQ(texts(s.data.Find(8)->values), (std::vector<std::string>{"1.00", "2.00"}));
  EXPECT_EQ(texts(s.data.Find(9)->values), (std::vector<std::string>{"4.00", "5.00"}));  // default added
  EXPECT_EQ(s.data.Find(9)->format, 0);
  EXPECT_EQ(s.data.Find(9)->Identifier().size(), 36u);
  EXPECT_EQ(s.categories.Find(5)->parentId, -1);
  EXPECT_EQ(s.places.Find(11)->node->parent, &s.MainView().root);  // the orphan category at the top
  EXPECT_EQ(s.MainView().root.FirstChild()->cursor, 11);  // equal positions: the later one first
  EXPECT_EQ(s.nextCursor, 12);
  EXPECT_EQ(s.nextDataId, 10);
  EXPECT_EQ(s.nextCategoryId, 6);
  EXPECT_EQ(s.currentCursor, -2);  // the root names a place; an old file stores no current cursor
}

TEST(DatabaseBody, DamageEndsTheLoadWithoutHugeAllocations) {
  engine::TDBManager empty(0);
  std::vector<uint8_t> good = WriteBodyOf(empty);
  auto load = [](std::vector<uint8_t> bytes) {
    Bytes b;
    b.b = std::move(bytes);
    engine::TDBManager db(0);
    try {
      return ReadBodyInto(db, b);
    } catch (...) {
      return false;  // a short stream throws; the envelope turns that into a failed load
    }
  };
  EXPECT_TRUE(load(good));
  std::vector<uint8_t> bad = good;
  bad[bad.size() - 1] ^= 0xFF;  // end mark
  EXPECT_FALSE(load(bad));
  const size_t placeCount = good.size() - 8;  // the last count, before the end mark
  bad = good;
  bad.at(placeCount + 3) = 0xFF;  // negative
  EXPECT_FALSE(load(bad));
  bad = good;
  bad.at(placeCount + 3) = 0x7F;  // near two billion
  EXPECT_FALSE(load(bad));
  bad = good;
  bad[13] = 0x7F;  // field count 0x7F00
  EXPECT_FALSE(load(bad));
  bad = good;
  bad.resize(bad.size() - 3);
  EXPECT_FALSE(load(bad));
  // A count of print configurations that the bytes left cannot hold.
  bad = good;
  bad[14 + 16 + 4 + 3] = 0x7F;  // after the empty list definitions and default print name
  EXPECT_FALSE(load(bad));
}

TEST(DatabaseBody, AVersionSevenFileHoldsOnlyTheClipboardAndViewContainers) {
  Bytes body;
  body.I32(0).I32(0).I32(0).I16(0);
  body.Le(kDataRecordMark, 4).I32(1).Str("").I32(0).Str("").I32(0).U8(1).Str("").I32(0);  // lists to filters
  for (const char* name : {"Kopie", "Ansicht"}) {
    body.Le(kDataRecordMark, 4).I32(1).Str(name).I32(1);
    body.Le(kSectionMark, 4).I32(2).I32(1).I32(-1).Str(name).Str("");
    if (name[0] == 'K') body.U8(1).U8(3);  // the clipboard's separators
    body.I32(1).Str("Name");
  }
  body.I32(0).I32(0).I32(0).Le(kSectionMark, 4);  // no export, e-mail or replacement before these
  engine::TDBManager db(0);
  db.version = 7;
  db.options.exports.Add("alt");
  ASSERT_TRUE(ReadBodyInto(db, body));
  EXPECT_STREQ(db.options.clipboard.GetName(0), "Kopie");
  EXPECT_EQ(db.options.clipboard.records.at(0).fieldSeparator, 3);
  EXPECT_EQ(db.options.fieldViews.records.at(0).fields, std::vector<std::string>{"Name"});
  EXPECT_EQ(db.options.fieldViews.defaultName, "Ansicht");
  EXPECT_TRUE(db.options.exports.records.empty());
  EXPECT_TRUE(db.options.emails.records.empty());
  EXPECT_TRUE(db.options.replacements.records.empty());
}
