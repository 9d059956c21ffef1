#include "options/settings_file.h"

#include "io/fileex.h"
#include "io/memfile.h"
#include "io/stream_io.h"
#include "platform/file_system.h"

namespace verdal::options {

namespace {

// Reads the file's form from the stream; on any failure the collection gets back what it held.
SettingsResult ReadInto(TBaseConfigClass& collection, TBaseFile& file) {
  TMemFile before(1024);
  collection.Write(before);
  bool ok = false;
  try {
    ok = ReadUInt32(file) == kSettingsFileMagic && collection.Read(file);
  } catch (...) {
    ok = false;
  }
  if (ok) return SettingsResult::kOk;
  before.SeekToBegin();
  collection.Read(before);
  return SettingsResult::kWrongFile;
}

}  // namespace

SettingsResult SaveSettingsFile(TBaseConfigClass& collection, const std::string& path) {
  try {
    TMemFile bytes(4096);
    WriteUInt32(kSettingsFileMagic, bytes);
    collection.Write(bytes);
    return platform::WriteWholeFile(path.c_str(), bytes.Data(), static_cast<size_t>(bytes.GetLength()))
               ? SettingsResult::kOk
               : SettingsResult::kCannotWrite;
  } catch (...) {
    return SettingsResult::kCannotWrite;
  }
}

SettingsResult LoadSettingsFile(TBaseConfigClass& collection, const std::string& path) {
  TFileEx file;
  if (!file.Open(path.c_str(), TFileEx::kRead)) return SettingsResult::kCannotOpen;
  return ReadInto(collection, file);
}

SettingsResult LoadSettings(TBaseConfigClass& collection, const void* data, int32_t size) {
  TMemFile bytes(size > 0 ? size : 1);
  if (size > 0) bytes.Write(data, size);
  bytes.SeekToBegin();
  return ReadInto(collection, bytes);
}

}  // namespace verdal::options
