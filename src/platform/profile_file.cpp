#include "platform/profile_file.h"

#include <strings.h>

#include <sstream>

#include "platform/file_system.h"

namespace verdal::platform {
namespace {

std::string_view Trim(std::string_view text) {
  const char* blanks = " \t\r\n";
  const size_t first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

bool SameName(std::string_view a, std::string_view b) {
  return a.size() == b.size() && (a.empty() || strncasecmp(a.data(), b.data(), a.size()) == 0);
}

std::string_view Unquote(std::string_view value) {
  if (value.size() >= 2 && (value.front() == '"' || value.front() == '\'') && value.back() == value.front())
    return value.substr(1, value.size() - 2);
  return value;
}

}  // namespace

bool ProfileFile::Load(const char* path) {
  sections_.clear();
  std::string text;
  if (!ReadWholeFile(path, text)) return false;
  Parse(text);
  return true;
}

void ProfileFile::Parse(std::string_view text) {
  sections_.clear();
  Section* current = nullptr;
  while (!text.empty()) {
    const size_t end = text.find('\n');
    std::string_view line = Trim(text.substr(0, end));
    text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
    if (line.empty() || line.front() == ';') continue;
    if (line.front() == '[') {
      const size_t close = line.find(']');
      std::string_view name = Trim(line.substr(1, close == std::string_view::npos ? line.size() - 1 : close - 1));
      current = nullptr;
      for (Section& s : sections_)
        if (SameName(s.name, name)) current = &s;
      if (current == nullptr) {
        sections_.push_back({std::string(name), {}});
        current = &sections_.back();
      }
      continue;
    }
    const size_t equals = line.find('=');
    if (current == nullptr || equals == std::string_view::npos) continue;
    current->entries.push_back({std::string(Trim(line.substr(0, equals))),
                                std::string(Unquote(Trim(line.substr(equals + 1))))});
  }
}

bool ProfileFile::Save(const char* path) const {
  std::ostringstream out;
  for (const Section& s : sections_) {
    out << '[' << s.name << "]\r\n";
    for (const Entry& e : s.entries) {
      // A value that reading would change (blanks at its ends, or a pair of quotes around it) is
      // enclosed in quotes, which reading takes off again.
      const bool enclose = Trim(e.value).size() != e.value.size() || Unquote(e.value).size() != e.value.size();
      out << e.key << '=' << (enclose ? "\"" : "") << e.value << (enclose ? "\"" : "") << "\r\n";
    }
  }
  const std::string text = out.str();
  return WriteWholeFile(path, text.data(), text.size());
}

const ProfileFile::Section* ProfileFile::FindSection(std::string_view name) const {
  for (const Section& s : sections_)
    if (SameName(s.name, name)) return &s;
  return nullptr;
}

bool ProfileFile::HasSection(std::string_view section) const { return FindSection(section) != nullptr; }

const ProfileFile::Entry* ProfileFile::Find(std::string_view section, std::string_view key) const {
  const Section* s = FindSection(section);
  if (s == nullptr) return nullptr;
  for (const Entry& e : s->entries)
    if (SameName(e.key, key)) return &e;
  return nullptr;
}

std::string ProfileFile::GetString(std::string_view section, std::string_view key,
                                   std::string_view fallback) const {
  const Entry* e = Find(section, key);
  return std::string(e != nullptr ? std::string_view(e->value) : fallback);
}

int32_t ProfileFile::GetInt(std::string_view section, std::string_view key, int32_t fallback) const {
  const Entry* e = Find(section, key);
  if (e == nullptr) return fallback;
  std::string_view v = e->value;
  bool negative = !v.empty() && v.front() == '-';
  if (!v.empty() && (v.front() == '-' || v.front() == '+')) v.remove_prefix(1);
  uint32_t value = 0;
  for (char c : v) {
    if (c < '0' || c > '9') break;
    value = value * 10 + static_cast<uint32_t>(c - '0');  // wraps as the system's reader did
  }
  return static_cast<int32_t>(negative ? 0u - value : value);
}

void ProfileFile::SetString(std::string_view section, std::string_view key, std::string_view value) {
  Section* s = const_cast<Section*>(FindSection(section));
  if (s == nullptr) {
    sections_.push_back({std::string(section), {}});
    s = &sections_.back();
  }
  for (Entry& e : s->entries)
    if (SameName(e.key, key)) {
      e.value = value;
      return;
    }
  s->entries.push_back({std::string(key), std::string(value)});
}

}  // namespace verdal::platform
