#pragma once
// Settings files: one option kind's whole collection in a file of its own (.clip, .view, .export,
// .email, .replace, .sort), to carry options from one database to another.
#include <string>

#include "options/base_config.h"

namespace verdal::options {

// The file magic number and the collection. Written beside the name and renamed onto it, so a
// failed write leaves the old file.
SettingsResult SaveSettingsFile(TBaseConfigClass& collection, const std::string& path);

// Replaces the whole collection, every owner's entries and the default, by the file's. A file
// that is not a settings file, is damaged or of a newer version leaves the collection as it was.
SettingsResult LoadSettingsFile(TBaseConfigClass& collection, const std::string& path);

// The same two on bytes in memory, for what is not a file.
SettingsResult LoadSettings(TBaseConfigClass& collection, const void* data, int32_t size);

}  // namespace verdal::options
