#include "options/base_config.h"

#include "options/settings_file.h"
#include "platform/collation.h"

namespace verdal::options {

int32_t TBaseConfigClass::IndexOf(const std::string& name) const {
  const int32_t count = GetCount();
  for (int32_t i = 0; i < count; ++i) {
    const char* entry = GetName(i);
    if (entry != nullptr && platform::SameNameNoCase(entry, name)) return i;
  }
  return -1;
}

SettingsResult TBaseConfigClass::ImportFile(const std::string& path) { return LoadSettingsFile(*this, path); }

SettingsResult TBaseConfigClass::ExportFile(const std::string& path) { return SaveSettingsFile(*this, path); }

std::string TrimTrailingBlanks(const std::string& text) {
  size_t end = text.find_last_not_of(' ');
  return end == std::string::npos ? std::string() : text.substr(0, end + 1);
}

}  // namespace verdal::options
