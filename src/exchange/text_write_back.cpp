#include "exchange/text_write_back.h"

#include <algorithm>
#include <fstream>
#include <map>
#include <strings.h>

#include "model/fields.h"
#include "model/number_text.h"
#include "model/place_walk.h"
#include "platform/collation.h"
#include "platform/cp1252.h"
#include "platform/file_system.h"
#include "platform/profile_file.h"

namespace verdal::exchange {

using namespace model;

namespace {

constexpr const char* kSection = "ODBC_IMPORT";

std::string_view Trim(std::string_view text) {
  const size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

// Splits at the separator; each part loses its blanks at both ends, and an empty last part goes.
std::vector<std::string> Split(std::string_view text, char separator) {
  std::vector<std::string> parts;
  size_t start = 0;
  while (true) {
    const size_t at = text.find(separator, start);
    parts.emplace_back(Trim(text.substr(start, at == std::string_view::npos ? std::string_view::npos : at - start)));
    if (at == std::string_view::npos) break;
    start = at + 1;
  }
  if (!parts.empty() && parts.back().empty()) parts.pop_back();
  return parts;
}

std::string_view StripEnds(std::string_view cell, char quote) {
  while (!cell.empty() && cell.front() == quote) cell.remove_prefix(1);
  while (!cell.empty() && cell.back() == quote) cell.remove_suffix(1);
  return cell;
}

bool IsTextKind(std::string path) {
  std::transform(path.begin(), path.end(), path.begin(), [](unsigned char c) { return std::tolower(c); });
  for (const char* kind : {".txt", ".csv", ".tab", ".asc"})
    if (path.find(kind) != std::string::npos) return true;
  return false;
}

}  // namespace

char SeparatorOfType(int32_t type, const std::string& userSeparator) {
  switch (type) {
    case 0: return '\t';
    case 2: return ',';
    case 3: return ' ';
    case 4: return userSeparator.empty() ? ';' : userSeparator.front();
    default: return ';';
  }
}

bool ReadImpDefinition(WriteBackSource& database, const std::string& path, std::string dataSource,
                       bool checkOnly) {
  platform::ProfileFile definition;
  if (!platform::FileExists(path.c_str()) || !definition.Load(path.c_str())) return false;
  if (definition.GetInt(kSection, "TXT_IMPORT_USE", 0) == 0) return false;
  const std::string named = definition.GetString(kSection, "DATASOURCE");
  if (!named.empty()) dataSource = named;
  if (dataSource.empty() || !platform::FileExists(dataSource.c_str()) || !IsTextKind(dataSource))
    return false;
  if (definition.GetInt(kSection, "IMPORT_TYPE", 0) != 3) return false;
  TextLayout layout;
  layout.hasColumnLine = definition.GetInt(kSection, "TXT_IMPORT_USECOLUMNS", 1) != 0;
  layout.separator = SeparatorOfType(definition.GetInt(kSection, "TXT_IMPORT_SEPTYPE", 59),
                                     definition.GetString(kSection, "TXT_IMPORT_USER_SEP", ";"));
  layout.delimiter = definition.GetString(kSection, "TXT_IMPORT_STRING_DELIM").substr(0, 1);
  if (definition.GetString(kSection, "IDENTFIELD").empty()) return false;
  const int32_t columns = definition.GetInt(kSection, "NUM_SRC_FIELDS", 0);
  for (int32_t i = 0; i < columns && i < 32767; ++i)
    layout.sourceFields.push_back(definition.GetString(kSection, "SRC_FIELD" + std::to_string(i)));
  // Where the definition names no columns, the file's column line does; with neither, every line
  // would be written empty, so the file is not written back at all.
  if (layout.sourceFields.empty() && layout.hasColumnLine) {
    std::ifstream in(platform::NativePath(dataSource.c_str()), std::ios::binary);
    std::string first;
    std::getline(in, first);
    if (!first.empty() && first.back() == '\r') first.pop_back();
    const char quote = layout.delimiter.empty() ? '\0' : layout.delimiter.front();
    for (const std::string& cell : Split(first, layout.separator))
      layout.sourceFields.emplace_back(quote != '\0' ? StripEnds(cell, quote) : std::string_view(cell));
  }
  if (layout.sourceFields.empty()) return false;
  if (checkOnly) return true;
  // The file keeps the character set it has: UTF-8 where it says so or where its bytes are.
  const std::string charset = definition.GetString(kSection, "TXT_IMPORT_CHARSET");
  std::string text;
  if (strcasecmp(charset.c_str(), "UTF-8") == 0) layout.utf8 = true;
  else if (charset.empty() && platform::ReadWholeFile(dataSource.c_str(), text))
    layout.utf8 = cp1252::IsUtf8(text) &&
                  std::any_of(text.begin(), text.end(), [](char c) { return (c & 0x80) != 0; });
  WriteBackTextSource(database, dataSource, layout);
  return true;
}

void WriteBackTextSource(WriteBackSource& database, const std::string& dataSource,
                         const TextLayout& layout) {
  std::string text;
  if (!platform::ReadWholeFile(dataSource.c_str(), text)) return;
  text.erase(std::remove(text.begin(), text.end(), '\r'), text.end());
  std::vector<std::string> lines = Split(text, '\n');
  NodeStore& store = database.store;

  int32_t identity = -1;
  for (size_t i = 0; i < layout.sourceFields.size(); ++i)
    if (platform::SameNameNoCase(layout.sourceFields[i], database.identityField)) {
      identity = static_cast<int32_t>(i);
      break;
    }
  std::map<int32_t, size_t> lineOfKey;
  if (identity >= 0) {
    for (size_t i = layout.hasColumnLine ? 1 : 0; i < lines.size(); ++i) {
      const std::vector<std::string> cells = Split(lines[i], layout.separator);
      if (static_cast<size_t>(identity) >= cells.size()) continue;
      const std::string_view cell = StripEnds(StripEnds(cells[static_cast<size_t>(identity)], '\''), '"');
      lineOfKey[ReadInteger(cell)] = i;
    }
  }

  std::vector<const TDBCategoryData*> places;
  CollectPlaces(store, &store.MainView().root, places, kKindRecords, true, false, nullptr, false);
  const std::string sep(1, layout.separator);
  std::string shown;
  std::string converted;
  for (const TDBCategoryData* place : places) {
    const TDBDataRecord* data = DataOf(store, place);
    const int32_t row = data != nullptr ? data->externalRow : -1;
    const auto hit = lineOfKey.find(row);
    std::vector<std::string> old;
    if (hit != lineOfKey.end()) old = Split(lines[hit->second], layout.separator);
    std::string line;
    for (size_t i = 0; i < layout.sourceFields.size(); ++i) {
      if (i > 0) line += sep;
      int32_t index = -1;
      TDBFieldInfo* field = FieldByName(store, layout.sourceFields[i].c_str(), &index);
      if (field == nullptr || data == nullptr) {
        if (i < old.size()) line += old[i];
        continue;
      }
      const std::string_view value = field->position >= 0 && static_cast<size_t>(field->position) < data->values.size()
                                         ? data->values[static_cast<size_t>(field->position)]
                                         : std::string_view();
      if (field->type.dataType == kTypeText) shown = layout.delimiter + std::string(value) + layout.delimiter;
      else field->type.CreateDisplayString(value, shown, false, false, database.links);
      if (layout.utf8) {
        cp1252::ToUtf8(shown, converted);
        line += converted;
      } else {
        line += shown;
      }
    }
    if (hit != lineOfKey.end()) lines[hit->second] = line;
    else lines.push_back(line);
  }
  for (int32_t row : database.deletedRows) {
    const auto hit = lineOfKey.find(row);
    if (hit != lineOfKey.end()) lines[hit->second].clear();
  }
  std::string out;
  for (const std::string& line : lines)
    if (!line.empty()) out += line + "\r\n";
  platform::WriteWholeFile(dataSource.c_str(), out.data(), out.size());
}

}  // namespace verdal::exchange
