#include "options/config_records.h"

#include "io/stream_io.h"
#include "options/base_config.h"

namespace verdal::options {

namespace {
constexpr const char* kSeparatorNames[kSeparatorCount] = {
    "Zeilenumbruch", "Tabulator", "Leerzeichen", "Semikolon", "Komma", "Kein Trennzeichen"};
constexpr int64_t kMinStringBytes = 4;
}  // namespace

const char* SeparatorName(int code) {
  return code >= 0 && code < kSeparatorCount ? kSeparatorNames[code] : nullptr;
}

void WriteNameList(const std::vector<std::string>& names, TBaseFile& f) {
  WriteInt32(static_cast<int32_t>(names.size()), f);
  for (const auto& name : names) WriteString(name, f);
}

void ReadNameList(std::vector<std::string>& names, TBaseFile& f) {
  const int32_t count = ReadInt32(f);
  if (!CountFits(f, count, kMinStringBytes)) throw TReadWriteException();
  names.assign(static_cast<size_t>(count), std::string());
  for (auto& name : names) ReadString(name, f);
}

void WritePart(const TDBFieldConfigData& r, TBaseFile& f) { WriteNameList(r.fields, f); }
void ReadPart(TDBFieldConfigData& r, TBaseFile& f) { ReadNameList(r.fields, f); }

void WritePart(const TClipBoardData& r, TBaseFile& f) {
  WriteUInt8(r.recordSeparator, f);
  WriteUInt8(r.fieldSeparator, f);
  WriteNameList(r.fields, f);
}
void ReadPart(TClipBoardData& r, TBaseFile& f) {
  r.recordSeparator = ReadUInt8(f);
  r.fieldSeparator = ReadUInt8(f);
  ReadNameList(r.fields, f);
}

void WritePart(const TFileExpData& r, TBaseFile& f) {
  WriteInt32(static_cast<int32_t>(r.definition.size()), f);
  if (!r.definition.empty()) f.Write(r.definition.data(), static_cast<int32_t>(r.definition.size()));
}
void ReadPart(TFileExpData& r, TBaseFile& f) {
  const int32_t length = ReadInt32(f);
  // A negative length is an empty definition, as a length of 0 is.
  if (length > 0 && !CountFits(f, length, 1)) throw TReadWriteException();
  r.definition.assign(static_cast<size_t>(length > 0 ? length : 0), 0);
  if (length > 0) f.Read(r.definition.data(), length);
}

void WritePart(const TEmailData& r, TBaseFile& f) {
  WriteNameList(r.fields, f);
  WriteString(r.subject, f);
  WriteString(r.message, f);
  WriteString(r.attachment, f);
  WriteInt32(r.flags, f);
}
void ReadPart(TEmailData& r, TBaseFile& f) {
  if (r.recordVersion >= 2) ReadNameList(r.fields, f);  // the first version had no address fields
  ReadString(r.subject, f);
  ReadString(r.message, f);
  ReadString(r.attachment, f);
  r.flags = ReadInt32(f);
}

void WritePart(const TReplaceData& r, TBaseFile& f) {
  WriteNameList(r.fields, f);
  WriteString(r.text, f);
  WriteInt32(r.spare, f);
}
void ReadPart(TReplaceData& r, TBaseFile& f) {
  ReadNameList(r.fields, f);
  ReadString(r.text, f);
  r.spare = ReadInt32(f);
}

template <class T>
void WriteRecord(const T& r, TBaseFile& f) {
  WriteUInt32(kEntryMark, f);
  WriteInt32(T::kVersion, f);
  WriteInt32(1, f);  // header version
  WriteInt32(r.owner, f);
  WriteString(r.name, f);
  WriteString(r.comment, f);
  WritePart(r, f);
}

template <class T>
bool ReadRecord(T& r, TBaseFile& f) {
  if (ReadUInt32(f) != kEntryMark) return false;
  r.recordVersion = ReadInt32(f);
  if (r.recordVersion > T::kVersion) return false;
  // Header versions from 2 on keep owner, name and comment elsewhere; none was ever written.
  if (ReadInt32(f) < 2) {
    r.owner = ReadInt32(f);
    ReadString(r.name, f);
    ReadString(r.comment, f);
  }
  r.headerVersion = 1;
  ReadPart(r, f);
  r.recordVersion = T::kVersion;
  return true;
}

#define VERDAL_RECORD_KIND(T)                           \
  template void WriteRecord<T>(const T&, TBaseFile&); \
  template bool ReadRecord<T>(T&, TBaseFile&);
VERDAL_RECORD_KIND(TDBFieldConfigData)
VERDAL_RECORD_KIND(TClipBoardData)
VERDAL_RECORD_KIND(TFileExpData)
VERDAL_RECORD_KIND(TEmailData)
VERDAL_RECORD_KIND(TReplaceData)
#undef VERDAL_RECORD_KIND

}  // namespace verdal::options
