#include "options/print_file.h"

#include "io/fileex.h"
#include "io/memfile.h"
#include "io/stream_io.h"
#include "platform/file_system.h"

namespace verdal::options {

namespace {

// The records of a .prn stream, all or nothing; the first record of another kind ends the reading.
SettingsResult ReadPrintRecords(TBaseFile& file, uint8_t kind, std::vector<TPrintData>& out) {
  try {
    if (ReadUInt32(file) != kPrintFileMagic) return SettingsResult::kWrongFile;
    const int32_t count = ReadInt32(file);
    const int64_t left = BytesLeft(file);
    if (count < 0 || (left >= 0 && int64_t{count} * kMinPrintDataBytes > left)) return SettingsResult::kWrongFile;
    std::vector<TPrintData> read;
    for (int32_t i = 0; i < count; ++i) {
      TPrintData r;
      if (!ReadPrintData(r, file)) return SettingsResult::kWrongFile;
      if (r.kind != kind) return SettingsResult::kWrongKind;
      read.push_back(std::move(r));
    }
    out = std::move(read);
    return SettingsResult::kOk;
  } catch (...) {
    return SettingsResult::kWrongFile;
  }
}

SettingsResult Merge(TPrintConfigs& configs, TBaseFile& file, uint8_t kind) {
  std::vector<TPrintData> read;
  const SettingsResult result = ReadPrintRecords(file, kind, read);
  if (result != SettingsResult::kOk) return result;
  for (TPrintData& r : read) {
    TPrintData* existing = configs.Find(r.name);
    if (existing != nullptr) {
      *existing = std::move(r);
    } else {
      configs.currentPrintConfig = r.name;
      configs.records.push_back(std::move(r));
    }
  }
  return SettingsResult::kOk;
}

}  // namespace

std::vector<uint8_t> PrintFileBytes(TPrintConfigs& configs) {
  TMemFile bytes(4096);
  WriteUInt32(kPrintFileMagic, bytes);
  configs.WriteRecords(bytes);
  return {bytes.Data(), bytes.Data() + bytes.GetLength()};
}

SettingsResult SavePrintFile(TPrintConfigs& configs, const std::string& path) {
  try {
    const std::vector<uint8_t> bytes = PrintFileBytes(configs);
    return platform::WriteWholeFile(path.c_str(), bytes.data(), bytes.size()) ? SettingsResult::kOk
                                                                              : SettingsResult::kCannotWrite;
  } catch (...) {
    return SettingsResult::kCannotWrite;
  }
}

SettingsResult ImportPrintFile(TPrintConfigs& configs, const std::string& path, uint8_t kind) {
  TFileEx file;
  if (!file.Open(path.c_str(), TFileEx::kRead)) return SettingsResult::kCannotOpen;
  return Merge(configs, file, kind);
}

SettingsResult ImportPrint(TPrintConfigs& configs, const void* data, int32_t size, uint8_t kind) {
  TMemFile bytes(size > 0 ? size : 1);
  if (size > 0) bytes.Write(data, size);
  bytes.SeekToBegin();
  return Merge(configs, bytes, kind);
}

}  // namespace verdal::options
