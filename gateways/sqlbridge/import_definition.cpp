#include "import_definition.h"

#include <cstdio>

#include "definition_values.h"
#include "exchange/text_write_back.h"
#include "platform/file_system.h"
#include "platform/profile_file.h"

namespace verdal::sqlbridge {
namespace {

constexpr const char* kSection = "ODBC_IMPORT";

}  // namespace

bool IsDefinitionName(const std::string& path) { return platform::HasExtension(path.c_str(), ".imp"); }

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
  const auto is = [&](const char* extension) { return platform::HasExtension(path.c_str(), extension); };
  const bool tabbed = is(".tab") || is(".tsv");
  if (!tabbed && !is(".csv") && !is(".txt") && !is(".asc")) return false;
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
  std::string native;
  if (!LoadDefinitionProfile(path, kSection, profile, native, error)) return false;
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
        exchange::SeparatorOfType(number("TXT_IMPORT_SEPTYPE", 59), text("TXT_IMPORT_USER_SEP", ";"));
    const std::string delimiter = text("TXT_IMPORT_STRING_DELIM");
    definition.format.delimiter = delimiter.empty() ? '\0' : delimiter[0];
    const int32_t count = number("NUM_SRC_FIELDS", 0);
    for (int32_t i = 0; i < count && i < 32767; ++i)
      definition.sourceFields.push_back(text(("SRC_FIELD" + std::to_string(i)).c_str()));
    const std::string charset = text("TXT_IMPORT_CHARSET");
    if (!ParseCharset(charset, definition.charset)) {
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
