// The field list: positions apart from indexes, removal, and the repair of a damaged file.
#include <gtest/gtest.h>

#include <vector>

#include "model/fields.h"
#include "store_builder.h"

using namespace verdal::model;
using verdal::model::test_support::StoreBuilder;

namespace {

TDBFieldInfo Named(const char* name) {
  TDBFieldInfo f;
  f.name = name;
  f.type.initValue = name;
  return f;
}

std::vector<int16_t> Positions(const NodeStore& s) {
  std::vector<int16_t> out;
  for (const auto& f : s.fields) out.push_back(f->position);
  return out;
}

}  // namespace

TEST(FieldList, RemovingAFieldTakesItsValueFromEveryRecord) {
  StoreBuilder b;
  for (const char* n : {"A", "B", "C"}) AddFieldInfo(b.store, Named(n), -1);
  int32_t r = b.Record(-1);
  b.Attach(false);
  MoveField(b.store, 2, 0);  // C A B, positions 2 0 1
  EXPECT_EQ(Positions(b.store), (std::vector<int16_t>{2, 0, 1}));
  RemoveField(b.store, 1);  // A goes: position 0
  EXPECT_EQ(Positions(b.store), (std::vector<int16_t>{1, 0}));
  EXPECT_EQ(*FieldValue(b.store, r, 0), "C");
  EXPECT_EQ(*FieldValue(b.store, r, 1), "B");
  EXPECT_EQ(b.store.data.Find(b.place(r)->dataId)->values.size(), 2u);
  RemoveField(b.store, 0);
  RemoveField(b.store, 0);
  EXPECT_TRUE(b.store.data.Find(b.place(r)->dataId)->values.empty());
  EXPECT_EQ(FieldIndexByName(b.store, "B"), -1);
}

TEST(FieldList, PositionsOutsideTheListTakeTheLowestFreeOnes) {
  StoreBuilder b;
  for (const char* n : {"A", "B", "C", "D"}) AddFieldInfo(b.store, Named(n), -1);
  b.store.fields[0]->position = 0;
  b.store.fields[1]->position = 7;   // damaged
  b.store.fields[2]->position = -1;  // stays: unreachable
  b.store.fields[3]->position = 9;   // damaged
  RepairFieldPositions(b.store);
  EXPECT_EQ(Positions(b.store), (std::vector<int16_t>{0, 1, -1, 2}));
  // Lookup by position passes over a field whose position the record does not have.
  TDBDataRecord shortRecord;
  shortRecord.values.Resize(2);
  EXPECT_EQ(FieldIndexByName(b.store, "d", true, &shortRecord), -1);
  EXPECT_EQ(FieldIndexByName(b.store, "d", true, nullptr), 2);
  EXPECT_EQ(FieldIndexByName(b.store, "b", false), 1);
}
