// The stored form of a type description, checked against bytes written out by hand.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "io/memfile.h"
#include "support/mem_bytes.h"
#include "model/data_type_io.h"

using namespace verdal;
using namespace verdal::model;

using test_support::Bytes;
using test_support::Contents;

TEST(TypeInfoStream, WritesTheDocumentedBytesAndReadsThemBack) {
  TDataTypeInfo t;
  t.version = 1;  // writing always writes the newest version
  t.flags = 1;
  t.dataType = 1;
  t.sqlType = -5;
  t.extendedType = 4;
  t.maxChars = 20;
  t.decimals = 3;
  t.minValue = 1;     // 1.0: mantissa 0x8000000000000000, exponent 0x3FFF
  t.maxValue = -2;    // -2.0: exponent 0x4000 with the sign bit
  t.hasMax = 1;
  t.isCounter = 1;
  t.counterValue = 0.5L;  // exponent 0x3FFE
  t.allowDuplicates = 0;
  t.format = "%d";
  t.initValue = "7";
  t.linkField = "F";
  t.hiddenInSort = 1;
  t.hostText2 = "sum";

  Bytes want;
  want.Le(4, 4);
  want.Le(1, 4);
  want.Le(1, 2);
  want.Le(static_cast<uint16_t>(-5), 2);
  want.Le(4, 4);
  want.Le(20, 4);
  want.Le(3, 2);
  want.Ext(0x8000000000000000ull, 0x3FFF);
  want.Ext(0x8000000000000000ull, 0xC000);
  for (int flag : {0, 1, 1}) want.Le(flag, 1);  // hasMin, hasMax, isCounter
  want.Ext(0, 0);                                // startValue 0
  want.Ext(0x8000000000000000ull, 0x3FFE);
  for (int flag : {0, 0, 1, 0, 0}) want.Le(flag, 1);  // hostFlag1, hostFlag2, allowEmpty, allowDuplicates, readOnly
  for (const char* s : {"%d", "7", "", "", "", "F"}) want.Str(s);
  for (int flag : {0, 1, 0}) want.Le(flag, 1);  // hiddenInLists, hiddenInSort, hiddenField
  want.Str("sum");

  TMemFile file(64);
  WriteTypeInfo(t, file);
  EXPECT_EQ(Contents(file), want.b);
  EXPECT_EQ(t.version, 4);

  file.Seek(0);
  TDataTypeInfo back;
  ReadTypeInfo(back, file);
  EXPECT_EQ(back.dataType, 1);
  EXPECT_EQ(back.sqlType, -5);
  EXPECT_EQ(back.maxValue, -2.0L);
  EXPECT_EQ(back.counterValue, 0.5L);
  EXPECT_EQ(back.allowDuplicates, 0);
  EXPECT_EQ(back.linkField, "F");
  EXPECT_EQ(back.hiddenInSort, 1);
  EXPECT_EQ(back.hostText2, "sum");
}

TEST(TypeInfoStream, OldVersionsStopEarlyAndShortRecordsThrow) {
  TDataTypeInfo t;
  t.hiddenInLists = t.hiddenInSort = t.hiddenField = 1;
  t.hostText2 = "x";
  TMemFile file(64);
  WriteTypeInfo(t, file);
  // Make it a version 1 record: no hidden flags and no second host text behind the link field.
  std::vector<uint8_t> bytes = Contents(file);
  bytes[0] = 1;
  bytes.resize(bytes.size() - 3 - 4 - 1);
  bytes.push_back(0xAB);  // what follows the record
  TMemFile old(64);
  old.Write(bytes.data(), static_cast<int32_t>(bytes.size()));
  old.Seek(0);  // the bytes are cut from a written record, not built by hand
  TDataTypeInfo back;
  ReadTypeInfo(back, old);
  EXPECT_EQ(back.version, 1);
  EXPECT_EQ(back.hiddenInLists, 0);
  EXPECT_EQ(back.hostText2, "");
  EXPECT_EQ(old.Tell(), static_cast<int32_t>(bytes.size()) - 1);

  TMemFile cut(64);
  cut.Write(bytes.data(), 30);
  cut.Seek(0);
  EXPECT_ANY_THROW(ReadTypeInfo(back, cut));
}
