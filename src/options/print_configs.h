#pragma once
// TPrintConfigs: a database's print configurations (option kind 2), in stored order, and the name
// of the one selected last. As a TBaseConfigClass it is what the names page of the option sheet
// edits: names unique ignoring case, the comment is the record's description, the default is
// currentPrintConfig. Print configurations have no owners: all are visible whatever `owner` says.
// Its exchange file is the .prn file (options/print_file.h), not the settings file.
#include <cstdint>
#include <string>
#include <vector>

#include "options/base_config.h"
#include "options/print_data.h"

namespace verdal::options {

class TPrintConfigs : public TBaseConfigClass {
 public:
  std::vector<TPrintData> records;
  std::string currentPrintConfig;

  int32_t GetCount() const override { return static_cast<int32_t>(records.size()); }
  const char* GetName(int32_t index) const override;
  bool SetName(int32_t index, const std::string& name) override;
  const char* GetComment(int32_t index) const override;
  bool SetComment(int32_t index, const std::string& comment) override;
  // The stream form is that of the database file: currentPrintConfig, then WriteRecords' form.
  bool Read(TBaseFile& file) override;
  bool Write(TBaseFile& file) override;
  // A default record of that name; -1 for a name in use.
  int32_t Add(const std::string& name) override;
  // No test for a name in use: the dialog picks a free one first.
  int32_t Copy(int32_t index, const char* newName) override;
  bool Remove(int32_t index) override;
  const std::string& GetDefault() const override { return currentPrintConfig; }
  void SetDefault(const std::string& name) override { currentPrintConfig = name; }
  // "Druck-Einstellung (*.prn)|*.prn|" or the English one, by the system's language.
  const char* GetFileFilter() const override;
  SettingsResult ImportFile(const std::string& path) override;
  SettingsResult ExportFile(const std::string& path) override;

  // An int32 count and the records. ReadRecords replaces the records; false for a record of a
  // newer version, keeping those read before it. A short stream throws.
  bool ReadRecords(TBaseFile& file);
  void WriteRecords(TBaseFile& file);

  // The record at an index, or of a name ignoring case; null if none.
  TPrintData* At(int32_t index);
  const TPrintData* At(int32_t index) const;
  TPrintData* Find(const std::string& name);
  void Clear();
};

}  // namespace verdal::options
