#pragma once
// Profile files (".imp" import definitions, "Backup.Ini"): text in sections of "key=value" lines,
// read by the rules the format has always had. Section and key names match in any letter case, the
// first of two equal keys wins, lines starting with ';' are comments, blanks around names and
// values are dropped, and a value enclosed in a pair of double or single quotes loses them.
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace verdal::platform {

class ProfileFile {
 public:
  // Reads the file; false when it cannot be read (the profile is then empty).
  bool Load(const char* path);
  // Takes the text itself (for tests and fuzzers).
  void Parse(std::string_view text);
  // Writes every section back; false when the file cannot be written.
  bool Save(const char* path) const;

  bool HasSection(std::string_view section) const;
  std::string GetString(std::string_view section, std::string_view key,
                        std::string_view fallback = {}) const;
  // The leading decimal number of the value (an optional sign, then digits; nothing gives 0), or
  // the fallback when the key is missing.
  int32_t GetInt(std::string_view section, std::string_view key, int32_t fallback) const;
  // Replaces the first value of the key, or adds it at the end of its section (made if missing).
  void SetString(std::string_view section, std::string_view key, std::string_view value);

 private:
  struct Entry {
    std::string key;
    std::string value;
  };
  struct Section {
    std::string name;
    std::vector<Entry> entries;
  };
  const Section* FindSection(std::string_view name) const;
  const Entry* Find(std::string_view section, std::string_view key) const;
  std::vector<Section> sections_;
};

}  // namespace verdal::platform
