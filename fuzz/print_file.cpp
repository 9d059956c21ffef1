// Arbitrary bytes as a .prn file, as one print configuration record and as the print section of a
// database body. An import that is refused must leave the configurations writing the same bytes
// as before; whatever any read leaves behind must write bytes that read again and write the same.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "io/memfile.h"
#include "options/print_configs.h"
#include "options/print_file.h"

using namespace verdal;

namespace {

std::vector<uint8_t> Section(options::TPrintConfigs& c) {
  TMemFile f(256);
  c.Write(f);
  return std::vector<uint8_t>(f.Data(), f.Data() + f.GetLength());
}

std::vector<uint8_t> Record(options::TPrintData& d) {
  TMemFile f(256);
  options::WritePrintData(d, f);
  return std::vector<uint8_t>(f.Data(), f.Data() + f.GetLength());
}

template <class Read>
bool ReadFrom(const uint8_t* data, size_t size, Read&& read) {
  TMemFile f(static_cast<int32_t>(size) + 1);
  if (size > 0) f.Write(data, static_cast<int32_t>(size));
  f.Seek(0);
  try {
    return read(f);
  } catch (...) {
    return false;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size > (1u << 20)) return 0;
  const int32_t n = static_cast<int32_t>(size);

  // A .prn imported over two configurations.
  options::TPrintConfigs held;
  held.Add("Eins");
  held.Add("zwei");
  held.records[1].items.emplace_back();
  held.currentPrintConfig = "Eins";
  const std::vector<uint8_t> before = Section(held);
  if (options::ImportPrint(held, data, n, 2) == options::SettingsResult::kOk) {
    const std::vector<uint8_t> file = options::PrintFileBytes(held);
    options::TPrintConfigs back;
    if (options::ImportPrint(back, file.data(), static_cast<int32_t>(file.size()), 2) !=
            options::SettingsResult::kOk ||
        options::PrintFileBytes(back) != file)
      std::abort();
  } else if (Section(held) != before) {
    std::abort();
  }

  // One record.
  options::TPrintData record;
  if (ReadFrom(data, size, [&](TBaseFile& f) { return options::ReadPrintData(record, f); })) {
    const std::vector<uint8_t> once = Record(record);
    options::TPrintData again;
    if (!ReadFrom(once.data(), once.size(), [&](TBaseFile& f) { return options::ReadPrintData(again, f); }) ||
        Record(again) != once)
      std::abort();
  }

  // The database body's section: the default name, the count and the records.
  options::TPrintConfigs section;
  ReadFrom(data, size, [&](TBaseFile& f) { return section.Read(f); });
  const std::vector<uint8_t> once = Section(section);
  options::TPrintConfigs again;
  if (!ReadFrom(once.data(), once.size(), [&](TBaseFile& f) { return again.Read(f); }) || Section(again) != once)
    std::abort();
  return 0;
}
