#include "import_definition.h"

#include <strings.h>

#include <cstdio>

#include "platform/file_system.h"
#include "platform/profile_file.h"

namespace verdal::sqlbridge {
namespace {

constexpr const char* kSection = "ODBC_IMPORT";

bool EndsWith(const std::string& text, const char* suffix) {
  const size_t n = std::char_traits<char>::length(suffix);
  return text.size() >= n && strcasecmp(text.c_str() + text.size() - n, suffix) == 0;
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

char SeparatorOfType(int32_t type, const std::string& userSeparator) {
  switch (type) {
    case 0: return '\t';
    case 2: return ',';
    case 3: return ' ';
    case 4: return userSeparator.empty() ? ';' : userSeparator[0];
    default: return ';';
  }
}

// A relative DATASOURCE lies beside the definition.
std::string BesideDefinition(const std::string& definitionPath, const std::string& name) {
  std::string path = platform::NativePath(name.c_str());
  if (path.empty() || path[0] == '/') return path;
  const size_t slash = definitionPath.rfind('/');
  return slash == std::string::npos ? path : definitionPath.substr(0, slash + 1) + path;
}

}  // namespace

bool IsDefinitionName(const std::string& path) { return EndsWith(path, ".imp"); }

char GuessSeparator(const std::string& path) {
  FILE* file = std::fopen(platform::NativePath(path.c_str()).c_str(), "rb");
  if (file == nullptr) return ';';
  size_t semicolons = 0, commas = 0, tabs = 0;
  for (int c; (c = std::fgetc(file)) != EOF && c != '\n' && c != '\r';) {
    semicolons += c == ';';
    commas += c == ',';
    tabs += c == '\t';
  }
  std::fclose(file);
  if (tabs > semicolons && tabs > commas) return '\t';
  if (commas > semicolons) return ',';
  return ';';
}

bool DefinitionForDataFile(const std::string& path, int32_t mode, ImportDefinition& definition) {
  const bool tabbed = EndsWith(path, ".tab") || EndsWith(path, ".tsv");
  if (!tabbed && !EndsWith(path, ".csv") && !EndsWith(path, ".txt") && !EndsWith(path, ".asc"))
    return false;
  definition = ImportDefinition{};
  definition.kind = ImportDefinition::Kind::kText;
  definition.mode = mode;
  definition.dataSource = platform::NativePath(path.c_str());
  definition.format.separator = tabbed ? '\t' : GuessSeparator(definition.dataSource);
  definition.format.delimiter = '"';
  return true;
}

bool LoadDefinition(const std::string& path, ImportDefinition& definition, std::string& error) {
  definition = ImportDefinition{};
  platform::ProfileFile profile;
  const std::string native = platform::NativePath(path.c_str());
  if (!profile.Load(native.c_str()) || !profile.HasSection(kSection)) {
    error = "The import definition " + native + " cannot be read or has no section ODBC_IMPORT.";
    return false;
  }
  auto text = [&](const char* key, const char* fallback = "") {
    return profile.GetString(kSection, key, fallback);
  };
  auto number = [&](const char* key, int32_t fallback) {
    return profile.GetInt(kSection, key, fallback);
  };

  definition.mode = number("IMPORT_TYPE", 0);
  definition.identityField = text("IDENTFIELD");
  definition.pathColumns = SplitList(text("PATH_COLUMNS"));
  definition.freeColumn = text("FREE_COLUMN");
  if (definition.mode < 0 || definition.mode > 3) {
    error = "IMPORT_TYPE must be 0 to 3.";
    return false;
  }

  if (!text("MYSQL_HOST").empty() || !text("MYSQL_SOCKET").empty()) {
    definition.kind = ImportDefinition::Kind::kMySql;
    return true;
  }

  if (number("TXT_IMPORT_USE", 0) != 0) {
    definition.kind = ImportDefinition::Kind::kText;
    definition.dataSource = BesideDefinition(native, text("DATASOURCE"));
    definition.columnLine = number("TXT_IMPORT_USECOLUMNS", 1) != 0;
    definition.format.separator =
        SeparatorOfType(number("TXT_IMPORT_SEPTYPE", 59), text("TXT_IMPORT_USER_SEP", ";"));
    const std::string delimiter = text("TXT_IMPORT_STRING_DELIM");
    definition.format.delimiter = delimiter.empty() ? '\0' : delimiter[0];
    const int32_t count = number("NUM_SRC_FIELDS", 0);
    for (int32_t i = 0; i < count && i < 32767; ++i)
      definition.sourceFields.push_back(text(("SRC_FIELD" + std::to_string(i)).c_str()));
    const std::string charset = text("TXT_IMPORT_CHARSET");
    if (strcasecmp(charset.c_str(), "UTF-8") == 0 || strcasecmp(charset.c_str(), "UTF8") == 0)
      definition.charset = Charset::kUtf8;
    else if (strcasecmp(charset.c_str(), "CP1252") == 0 ||
             strcasecmp(charset.c_str(), "WINDOWS-1252") == 0)
      definition.charset = Charset::kCp1252;
    else if (!charset.empty()) {
      error = "TXT_IMPORT_CHARSET " + charset + " is not UTF-8 or CP1252.";
      return false;
    }
    if (definition.dataSource.empty()) {
      error = "DATASOURCE names no text file.";
      return false;
    }
    if (definition.mode == 3 && definition.identityField.empty()) {
      error = "A linked text import (IMPORT_TYPE 3) needs IDENTFIELD.";
      return false;
    }
    if (!definition.columnLine && definition.sourceFields.empty()) {
      error = "Without a column line the definition needs NUM_SRC_FIELDS and SRC_FIELD0...";
      return false;
    }
    return true;
  }

  definition.kind = ImportDefinition::Kind::kOdbc;
  definition.connect = text("ODBC_CONNECT");
  definition.dsn = text("ODBC_DSN");
  definition.user = text("ODBC_USER");
  definition.password = text("ODBC_PASSWORD");
  definition.table = text("ODBC_TABLE");
  definition.query = text("ODBC_QUERY");
  if (definition.connect.empty() && definition.dsn.empty()) {
    error = "The definition has neither ODBC_CONNECT nor ODBC_DSN nor a text source.";
    return false;
  }
  if (definition.table.empty() == definition.query.empty()) {
    error = "The definition needs ODBC_TABLE or ODBC_QUERY, not both.";
    return false;
  }
  if (definition.mode == 3 && definition.table.empty()) {
    error = "A linked import (IMPORT_TYPE 3) needs ODBC_TABLE.";
    return false;
  }
  if (definition.mode == 3 && definition.identityField.empty()) {
    error = "A linked import (IMPORT_TYPE 3) needs IDENTFIELD.";
    return false;
  }
  return true;
}

}  // namespace verdal::sqlbridge
