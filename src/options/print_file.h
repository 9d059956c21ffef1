#pragma once
// The exchange file of print configurations, .prn: the magic 0x00678A3A, an int32 count and that
// many TPrintData. The names page of kind 2 exports all configurations into one and imports one
// with these merge rules: a wrong magic or any read failure takes nothing over; so does a record
// whose kind is not the dialog's, even after good ones; otherwise each record replaces the
// configuration of its name (ignoring case) or is added.
#include <cstdint>
#include <string>
#include <vector>

#include "options/print_configs.h"

namespace verdal::options {

constexpr uint32_t kPrintFileMagic = 0x00678A3A;

// Written beside the name and renamed onto it, so a failed write leaves the old file.
SettingsResult SavePrintFile(TPrintConfigs& configs, const std::string& path);
// The file's bytes: what SavePrintFile writes.
std::vector<uint8_t> PrintFileBytes(TPrintConfigs& configs);

// kCannotOpen, kWrongFile (wrong magic, damaged, newer version), kWrongKind, or kOk. Only kOk
// changes the configurations; the last record added becomes currentPrintConfig, as the names page
// selects it.
SettingsResult ImportPrintFile(TPrintConfigs& configs, const std::string& path, uint8_t kind);
SettingsResult ImportPrint(TPrintConfigs& configs, const void* data, int32_t size, uint8_t kind);

}  // namespace verdal::options
