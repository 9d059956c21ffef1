#include "export_definition.h"

#include <strings.h>

#include <fstream>
#include <iterator>
#include <string_view>

#include "definition_values.h"
#include "exchange/text_write_back.h"
#include "platform/file_system.h"
#include "platform/profile_file.h"

namespace verdal::sqlbridge {
namespace {

constexpr const char* kSection = "ODBC_EXPORT";

struct Key {
  const char* name;
  const char* fallback;
};
// Every key with its default, in the order a completed definition lists them.
constexpr Key kKeys[] = {
    {"EXPORT_FORMAT", ""},          {"DATASOURCE", ""},
    {"TXT_EXPORT_SEPTYPE", "1"},    {"TXT_EXPORT_USER_SEP", ";"},
    {"TXT_EXPORT_STRING_DELIM", "\""}, {"TXT_EXPORT_USECOLUMNS", "1"},
    {"TXT_EXPORT_CHARSET", "UTF-8"}, {"EXPORT_VALUES", ""},
    {"EXPORT_COLUMN_NAMES", "DISPLAY"}, {"EXPORT_FIELDS", ""},
    {"ODBC_CONNECT", ""},           {"ODBC_DSN", ""},
    {"ODBC_USER", ""},              {"ODBC_PASSWORD", ""},
    {"ODBC_TABLE", ""},             {"ODBC_TABLE_MODE", "CREATE"},
};

const char* Fallback(const char* key) {
  for (const Key& k : kKeys)
    if (strcasecmp(k.name, key) == 0) return k.fallback;
  return "";
}

bool Is(const std::string& value, const char* word) { return strcasecmp(value.c_str(), word) == 0; }

// The format a file's extension names, with its separator; false for none.
bool FormatOfName(const std::string& path, ExportFormat& format, char& separator) {
  const auto is = [&](const char* extension) { return platform::HasExtension(path.c_str(), extension); };
  separator = ';';
  if (is(".csv") || is(".txt") || is(".asc")) format = ExportFormat::kText;
  else if (is(".tsv") || is(".tab")) {
    format = ExportFormat::kText;
    separator = '\t';
  } else if (is(".xlsx")) format = ExportFormat::kXlsx;
  else if (is(".htm") || is(".html")) format = ExportFormat::kHtml;
  else return false;
  return true;
}

// Which of a pair of words a key holds: false (with the error) for neither.
bool Choice(const std::string& key, const std::string& value, const char* first, const char* second,
            bool& isSecond, std::string& error) {
  if (Is(value, first) || Is(value, second)) {
    isSecond = Is(value, second);
    return true;
  }
  error = key + " " + value + " is neither " + first + " nor " + second + ".";
  return false;
}

}  // namespace

bool ExportDefinitionForDataFile(const std::string& path, ExportDefinition& definition) {
  definition = ExportDefinition{};
  char separator = ';';
  if (!FormatOfName(path, definition.format, separator)) return false;
  definition.target = platform::NativePath(path.c_str());
  definition.text = {separator, '"'};
  definition.internalValues = definition.format == ExportFormat::kXlsx;
  return true;
}

bool LoadExportDefinition(const std::string& path, ExportDefinition& definition, std::string& error) {
  definition = ExportDefinition{};
  platform::ProfileFile profile;
  std::string native;
  if (!LoadDefinitionProfile(path, kSection, profile, native, error)) return false;
  auto text = [&](const char* key) { return profile.GetString(kSection, key, Fallback(key)); };

  const std::string format = text("EXPORT_FORMAT");
  const std::string dataSource = text("DATASOURCE");
  definition.target = dataSource.empty() ? std::string() : BesideDefinition(native, dataSource);
  definition.connect = text("ODBC_CONNECT");
  definition.dsn = text("ODBC_DSN");
  definition.user = text("ODBC_USER");
  definition.password = text("ODBC_PASSWORD");
  definition.table = text("ODBC_TABLE");
  const bool odbcNamed = !definition.connect.empty() || !definition.dsn.empty();
  char separator = exchange::SeparatorOfType(profile.GetInt(kSection, "TXT_EXPORT_SEPTYPE", 1),
                                             text("TXT_EXPORT_USER_SEP"));
  if (format.empty()) {
    // A file with a known extension first; else a connection.
    char byName = ';';
    if (FormatOfName(definition.target, definition.format, byName)) {
      if (byName == '\t') separator = byName;
    } else if (odbcNamed) {
      definition.format = ExportFormat::kOdbc;
    } else {
      error = "EXPORT_FORMAT is empty and neither DATASOURCE's extension nor a connection names a format.";
      return false;
    }
  } else if (Is(format, "CSV")) definition.format = ExportFormat::kText;
  else if (Is(format, "TSV")) {
    definition.format = ExportFormat::kText;
    separator = '\t';
  } else if (Is(format, "XLSX")) definition.format = ExportFormat::kXlsx;
  else if (Is(format, "HTML")) definition.format = ExportFormat::kHtml;
  else if (Is(format, "ODBC")) definition.format = ExportFormat::kOdbc;
  else {
    error = "EXPORT_FORMAT " + format + " is not CSV, TSV, XLSX, HTML or ODBC.";
    return false;
  }

  const std::string delimiter = text("TXT_EXPORT_STRING_DELIM");
  definition.text = {separator, delimiter.empty() || delimiter[0] == separator ? '\0' : delimiter[0]};
  // Reading takes blanks round a value off and ends a record at a line break: such characters
  // cannot enclose values, nor a line break part them.
  const std::string_view blanksAndBreaks = " \t\r\n";
  if (separator == '\r' || separator == '\n' ||
      (definition.text.delimiter != '\0' && blanksAndBreaks.find(definition.text.delimiter) != std::string_view::npos)) {
    error = "A separator or delimiter that is a blank or a line break cannot be read back.";
    return false;
  }
  definition.columnLine = profile.GetInt(kSection, "TXT_EXPORT_USECOLUMNS", 1) != 0;
  Charset charset = Charset::kAuto;
  const std::string charsetName = text("TXT_EXPORT_CHARSET");
  if (!ParseCharset(charsetName, charset)) {
    error = "TXT_EXPORT_CHARSET " + charsetName + " is not UTF-8 or CP1252.";
    return false;
  }
  definition.utf8 = charset != Charset::kCp1252;

  const std::string values = text("EXPORT_VALUES");
  if (values.empty())
    definition.internalValues = definition.format == ExportFormat::kXlsx || definition.format == ExportFormat::kOdbc;
  else if (!Choice("EXPORT_VALUES", values, "DISPLAY", "INTERNAL", definition.internalValues, error))
    return false;
  if (!Choice("EXPORT_COLUMN_NAMES", text("EXPORT_COLUMN_NAMES"), "DISPLAY", "INTERNAL",
              definition.internalNames, error))
    return false;
  definition.fields = SplitList(text("EXPORT_FIELDS"));

  if (definition.format != ExportFormat::kOdbc) {
    if (definition.target.empty()) {
      error = "DATASOURCE names no file to write.";
      return false;
    }
    return true;
  }
  const std::string mode = text("ODBC_TABLE_MODE");
  if (Is(mode, "CREATE")) definition.tableMode = TableMode::kCreate;
  else if (Is(mode, "APPEND")) definition.tableMode = TableMode::kAppend;
  else if (Is(mode, "REPLACE")) definition.tableMode = TableMode::kReplace;
  else {
    error = "ODBC_TABLE_MODE " + mode + " is not CREATE, APPEND or REPLACE.";
    return false;
  }
  if (!odbcNamed || definition.table.empty()) {
    error = "An ODBC export needs ODBC_CONNECT or ODBC_DSN, and ODBC_TABLE.";
    return false;
  }
  return true;
}

bool CompleteExportDefinition(const std::string& path, std::string& error) {
  const std::string native = platform::NativePath(path.c_str());
  platform::ProfileFile profile;
  if (platform::FileExists(native.c_str())) {
    std::string bytes;
    try {
      std::ifstream in(native, std::ios::binary);
      bytes.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
      if (!in.good() && !in.eof()) throw std::ios_base::failure("read");
    } catch (...) {  // a folder, a file without read permission
      error = "The export definition " + native + " cannot be read.";
      return false;
    }
    // Only a definition is written over: any other file (a data file named by mistake) stays.
    if (bytes.find_first_not_of(" \t\r\n") != std::string::npos) {
      profile.Parse(bytes);
      if (!profile.HasSection(kSection)) {
        error = "The file " + native + " is no export definition (it has no section ODBC_EXPORT).";
        return false;
      }
    }
  }
  for (const Key& k : kKeys) profile.SetString(kSection, k.name, profile.GetString(kSection, k.name, k.fallback));
  if (!profile.Save(native.c_str())) {
    error = "The export definition " + native + " cannot be written.";
    return false;
  }
  return true;
}

}  // namespace verdal::sqlbridge
