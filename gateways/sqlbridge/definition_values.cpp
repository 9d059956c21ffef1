#include "definition_values.h"

#include <strings.h>

#include "platform/file_system.h"

namespace verdal::sqlbridge {

bool LoadDefinitionProfile(const std::string& path, const char* section, platform::ProfileFile& profile,
                           std::string& native, std::string& error) {
  native = platform::NativePath(path.c_str());
  try {
    if (profile.Load(native.c_str()) && profile.HasSection(section)) return true;
  } catch (...) {  // a folder: the stream refuses to read it
  }
  error = "The definition " + native + " cannot be read or has no section " + section + ".";
  return false;
}

std::vector<std::string> SplitList(const std::string& text) {
  std::vector<std::string> parts;
  size_t start = 0;
  while (start <= text.size()) {
    size_t end = text.find(',', start);
    if (end == std::string::npos) end = text.size();
    std::string part = text.substr(start, end - start);
    const size_t first = part.find_first_not_of(" \t");
    if (first != std::string::npos)
      parts.push_back(part.substr(first, part.find_last_not_of(" \t") - first + 1));
    start = end + 1;
  }
  return parts;
}

std::string BesideDefinition(const std::string& definitionPath, const std::string& name) {
  std::string path = platform::NativePath(name.c_str());
  if (path.empty() || path[0] == '/') return path;
  const size_t slash = definitionPath.rfind('/');
  return slash == std::string::npos ? path : definitionPath.substr(0, slash + 1) + path;
}

bool ParseCharset(const std::string& text, Charset& charset) {
  if (text.empty()) charset = Charset::kAuto;
  else if (strcasecmp(text.c_str(), "UTF-8") == 0 || strcasecmp(text.c_str(), "UTF8") == 0)
    charset = Charset::kUtf8;
  else if (strcasecmp(text.c_str(), "CP1252") == 0 || strcasecmp(text.c_str(), "WINDOWS-1252") == 0)
    charset = Charset::kCp1252;
  else
    return false;
  return true;
}

}  // namespace verdal::sqlbridge
