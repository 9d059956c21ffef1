#include "options/print_configs.h"

#include "io/stream_io.h"
#include "options/print_file.h"
#include "platform/language.h"

namespace verdal::options {

TPrintData* TPrintConfigs::At(int32_t index) {
  return index >= 0 && index < GetCount() ? &records[static_cast<size_t>(index)] : nullptr;
}

const TPrintData* TPrintConfigs::At(int32_t index) const {
  return index >= 0 && index < GetCount() ? &records[static_cast<size_t>(index)] : nullptr;
}

TPrintData* TPrintConfigs::Find(const std::string& name) { return At(IndexOf(name)); }

const char* TPrintConfigs::GetName(int32_t index) const {
  const TPrintData* r = At(index);
  return r != nullptr ? r->name.c_str() : nullptr;
}

bool TPrintConfigs::SetName(int32_t index, const std::string& name) {
  TPrintData* r = At(index);
  if (r != nullptr) r->name = name;
  return r != nullptr;
}

const char* TPrintConfigs::GetComment(int32_t index) const {
  const TPrintData* r = At(index);
  return r != nullptr ? r->description.c_str() : nullptr;
}

bool TPrintConfigs::SetComment(int32_t index, const std::string& comment) {
  TPrintData* r = At(index);
  if (r != nullptr) r->description = comment;
  return r != nullptr;
}

bool TPrintConfigs::Read(TBaseFile& file) {
  records.clear();
  ReadString(currentPrintConfig, file);
  return ReadRecords(file);
}

bool TPrintConfigs::Write(TBaseFile& file) {
  WriteString(currentPrintConfig, file);
  WriteRecords(file);
  return true;
}

bool TPrintConfigs::ReadRecords(TBaseFile& file) {
  records.clear();
  const int32_t count = ReadInt32(file);
  const int64_t left = BytesLeft(file);
  if (count < 0 || (left >= 0 && int64_t{count} * kMinPrintDataBytes > left)) throw TReadWriteException();
  for (int32_t i = 0; i < count; ++i) {
    TPrintData r;
    if (!ReadPrintData(r, file)) return false;
    records.push_back(std::move(r));
  }
  return true;
}

void TPrintConfigs::WriteRecords(TBaseFile& file) {
  WriteInt32(static_cast<int32_t>(records.size()), file);
  for (TPrintData& r : records) WritePrintData(r, file);
}

int32_t TPrintConfigs::Add(const std::string& name) {
  if (IndexOf(name) >= 0) return -1;
  TPrintData r;
  r.name = name;
  records.push_back(std::move(r));
  return GetCount() - 1;
}

int32_t TPrintConfigs::Copy(int32_t index, const char* newName) {
  const TPrintData* source = At(index);
  if (source == nullptr) return -1;
  TPrintData copy = *source;
  if (newName != nullptr) copy.name = newName;
  records.push_back(std::move(copy));
  return GetCount() - 1;
}

bool TPrintConfigs::Remove(int32_t index) {
  if (At(index) == nullptr) return false;
  records.erase(records.begin() + index);
  return true;
}

const char* TPrintConfigs::GetFileFilter() const {
  return platform::IsGerman() ? "Druck-Einstellung (*.prn)|*.prn|" : "Print-Configuration (*.prn)|*.prn|";
}

SettingsResult TPrintConfigs::ImportFile(const std::string& path) {
  return ImportPrintFile(*this, path, TPrintData::kTable);
}

SettingsResult TPrintConfigs::ExportFile(const std::string& path) { return SavePrintFile(*this, path); }

void TPrintConfigs::Clear() {
  records.clear();
  currentPrintConfig.clear();
}

}  // namespace verdal::options
