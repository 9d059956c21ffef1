#include "model/data_type_io.h"

#include "io/stream_io.h"

namespace verdal::model {

void ReadTypeInfo(TDataTypeInfo& t, TBaseFile& f) {
  t.version = ReadInt32(f);
  t.flags = ReadUInt32(f);
  t.dataType = ReadInt16(f);
  t.sqlType = ReadInt16(f);
  t.extendedType = ReadUInt32(f);
  t.maxChars = ReadInt32(f);
  t.decimals = ReadInt16(f);
  t.minValue = ReadExtended(f);
  t.maxValue = ReadExtended(f);
  t.hasMin = ReadUInt8(f);
  t.hasMax = ReadUInt8(f);
  t.isCounter = ReadUInt8(f);
  t.startValue = ReadExtended(f);
  t.counterValue = ReadExtended(f);
  t.hostFlag1 = ReadUInt8(f);
  t.hostFlag2 = ReadUInt8(f);
  t.allowEmpty = ReadUInt8(f);
  t.allowDuplicates = ReadUInt8(f);
  t.readOnly = ReadUInt8(f);
  ReadString(t.format, f);
  ReadString(t.initValue, f);
  ReadString(t.hostText1, f);
  ReadString(t.errorText, f);
  ReadString(t.linkDatabase, f);
  ReadString(t.linkField, f);
  if (t.version > 1) t.hiddenInLists = ReadUInt8(f);
  if (t.version > 2) t.hiddenInSort = ReadUInt8(f);
  if (t.version > 3) {
    t.hiddenField = ReadUInt8(f);
    ReadString(t.hostText2, f);
  }
}

void WriteTypeInfo(TDataTypeInfo& t, TBaseFile& f) {
  t.version = TDataTypeInfo::kCurrentVersion;
  WriteInt32(t.version, f);
  WriteUInt32(t.flags, f);
  WriteInt16(t.dataType, f);
  WriteInt16(t.sqlType, f);
  WriteUInt32(t.extendedType, f);
  WriteInt32(t.maxChars, f);
  WriteInt16(t.decimals, f);
  WriteExtended(t.minValue, f);
  WriteExtended(t.maxValue, f);
  WriteUInt8(t.hasMin, f);
  WriteUInt8(t.hasMax, f);
  WriteUInt8(t.isCounter, f);
  WriteExtended(t.startValue, f);
  WriteExtended(t.counterValue, f);
  WriteUInt8(t.hostFlag1, f);
  WriteUInt8(t.hostFlag2, f);
  WriteUInt8(t.allowEmpty, f);
  WriteUInt8(t.allowDuplicates, f);
  WriteUInt8(t.readOnly, f);
  WriteString(t.format, f);
  WriteString(t.initValue, f);
  WriteString(t.hostText1, f);
  WriteString(t.errorText, f);
  WriteString(t.linkDatabase, f);
  WriteString(t.linkField, f);
  WriteUInt8(t.hiddenInLists, f);
  WriteUInt8(t.hiddenInSort, f);
  WriteUInt8(t.hiddenField, f);
  WriteString(t.hostText2, f);
}

}  // namespace verdal::model
