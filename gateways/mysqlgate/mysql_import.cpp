#include "mysql_import.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "connection_table.h"
#include "exchange/import_exchange.h"
#include "mysql_statement.h"
#include "mysql_values.h"
#include "platform/cp1252.h"
#include "platform/profile_file.h"

namespace verdal::mysqlgate {
namespace {

constexpr const char* kSection = "ODBC_IMPORT";
constexpr int32_t kFlagConfigureOnly = 0x400;
constexpr size_t kMappedPathSize = 260;

bool SameName(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i) {
    if (cp1252::ToUpper(a[i]) != cp1252::ToUpper(b[i])) return false;
  }
  return true;
}

std::string Trimmed(std::string_view s) {
  const size_t first = s.find_first_not_of(" \t");
  if (first == std::string_view::npos) return {};
  return std::string(s.substr(first, s.find_last_not_of(" \t") - first + 1));
}

// One column of the exchange file: where it comes from in the result and its name there.
struct Pick {
  size_t source;
  std::string name;
};

// The columns to write: those names1 chooses (renamed to names2), or all; the path columns first,
// in the order the definition lists them.
std::vector<Pick> PickColumns(const std::vector<ResultColumn>& columns, const ImportDefinition& def,
                              int32_t fieldCount, const char* const* names1,
                              const char* const* names2, int16_t& pathCount) {
  std::vector<Pick> picks;
  if (fieldCount > 0 && names1 != nullptr) {
    for (int32_t i = 0; i < fieldCount; ++i) {
      if (names1[i] == nullptr) continue;
      for (size_t c = 0; c < columns.size(); ++c) {
        if (!SameName(columns[c].name, names1[i])) continue;
        const bool renamed = names2 != nullptr && names2[i] != nullptr && *names2[i] != 0;
        picks.push_back({c, renamed ? names2[i] : columns[c].name});
        break;
      }
    }
  } else {
    for (size_t c = 0; c < columns.size(); ++c) picks.push_back({c, columns[c].name});
  }
  pathCount = 0;
  for (const std::string& path : def.pathColumns) {
    for (size_t p = static_cast<size_t>(pathCount); p < picks.size(); ++p) {
      if (!SameName(picks[p].name, path) && !SameName(columns[picks[p].source].name, path))
        continue;
      Pick moved = picks[p];
      picks.erase(picks.begin() + static_cast<std::ptrdiff_t>(p));
      picks.insert(picks.begin() + pathCount, std::move(moved));
      ++pathCount;
      break;
    }
  }
  return picks;
}

}  // namespace

bool ReadImportDefinition(const char* path, ImportDefinition& out, std::string& error) {
  platform::ProfileFile profile;
  if (path == nullptr || !profile.Load(path)) {
    error = std::string("cannot read the definition ") + (path != nullptr ? path : "(none)");
    return false;
  }
  if (!profile.HasSection(kSection)) {
    error = "the definition has no section ODBC_IMPORT";
    return false;
  }
  out.server.host = profile.GetString(kSection, "MYSQL_HOST");
  out.server.port = profile.GetInt(kSection, "MYSQL_PORT", 0);
  out.server.socket = profile.GetString(kSection, "MYSQL_SOCKET");
  out.server.user = profile.GetString(kSection, "MYSQL_USER");
  out.server.password = profile.GetString(kSection, "MYSQL_PASSWORD");
  out.server.database = profile.GetString(kSection, "MYSQL_DATABASE");
  out.table = profile.GetString(kSection, "ODBC_TABLE");
  out.identityField = profile.GetString(kSection, "IDENTFIELD");
  out.freeColumn = profile.GetString(kSection, "FREE_COLUMN");
  const int32_t mode = profile.GetInt(kSection, "IMPORT_TYPE", 0);
  out.pathColumns.clear();
  const std::string paths = profile.GetString(kSection, "PATH_COLUMNS");
  for (size_t start = 0; start <= paths.size();) {
    size_t comma = paths.find(',', start);
    if (comma == std::string::npos) comma = paths.size();
    std::string name = Trimmed(std::string_view(paths).substr(start, comma - start));
    if (!name.empty()) out.pathColumns.push_back(std::move(name));
    start = comma + 1;
  }
  if (out.table.empty()) {
    error = "the definition names no table (ODBC_TABLE)";
    return false;
  }
  if (mode < exchange::kModeReplace || mode > exchange::kModeLinked) {
    error = "IMPORT_TYPE must be 0 to 3";
    return false;
  }
  out.mode = static_cast<int16_t>(mode);
  if (out.mode == exchange::kModeLinked && out.identityField.empty()) {
    error = "a linked import (IMPORT_TYPE=3) needs the key column in IDENTFIELD";
    return false;
  }
  return true;
}

int32_t ImportTable(const char* definition, const char* exchangePath, VerdalPathMapperFn mapper,
                    int32_t flags, int32_t fieldCount, const char* const* names1,
                    const char* const* names2, std::string& error) {
  if (definition == nullptr || exchangePath == nullptr) {
    error = "no definition or no exchange file";
    return 0;
  }
  std::string path = definition;
  if (mapper != nullptr && path.size() < kMappedPathSize) {
    char mapped[kMappedPathSize] = {};
    std::memcpy(mapped, path.data(), path.size());
    mapper(mapped);
    path = mapped;
  }
  ImportDefinition def;
  if (!ReadImportDefinition(path.c_str(), def, error)) return 0;
  // There is nothing to configure interactively here; the definition file is all there is.
  if (flags & kFlagConfigureOnly) return 1;

  auto connection = std::make_shared<MySqlConnection>();
  if (!connection->Open(def.server)) {
    error = connection->Error();
    return 0;
  }
  int32_t id = 0;
  bool written = false;
  auto fail = [&](std::string words) {
    error = std::move(words);
    if (written) std::remove(exchangePath);
    if (id != 0) ConnectionTable::Instance().Remove(id);
    return 0;
  };

  MySqlStatement select(connection->Handle());
  if (!select.Prepare("SELECT * FROM " +
                      QualifiedTable(def.server.database.c_str(), def.table.c_str())) ||
      !select.Execute({})) {
    return fail(select.Error());
  }
  const std::vector<ResultColumn>& columns = select.Columns();
  exchange::ImportHeader header;
  int16_t pathCount = 0;
  const std::vector<Pick> picks = PickColumns(columns, def, fieldCount, names1, names2, pathCount);
  size_t identity = columns.size();
  if (def.mode == exchange::kModeLinked) {
    for (size_t c = 0; c < columns.size() && identity == columns.size(); ++c) {
      if (SameName(columns[c].name, def.identityField)) identity = c;
    }
    if (identity == columns.size()) return fail("the table has no column " + def.identityField);
    id = ConnectionTable::Instance().Add(connection);
    if (id == 0) return fail("no more connection ids");
  }
  header.connection = id;
  header.backEnd = 1;
  header.databaseName = def.server.database;
  header.tableName = def.table;
  header.identityField = def.identityField;
  header.pathColumns = pathCount;
  header.freeColumn = def.freeColumn;
  header.mode = def.mode;
  for (const Pick& p : picks) {
    header.columns.push_back({p.name, columns[p.source].sqlType, columns[p.source].decimals});
  }

  exchange::ImportExchangeWriter writer;
  written = true;
  if (!writer.Open(exchangePath, header)) {
    writer.Finish();
    return fail(std::string("cannot write ") + exchangePath);
  }
  Cells cells;
  std::vector<std::string> row(picks.size());
  while (select.Fetch(cells)) {
    for (size_t i = 0; i < picks.size(); ++i) row[i] = cells[picks[i].source].value_or("");
    int32_t key = -1;
    if (identity < cells.size() && cells[identity]) key = std::atoi(cells[identity]->c_str());
    writer.WriteRow(row, key);
  }
  const std::string fetchError = select.Error();
  if (!writer.Finish()) return fail(std::string("cannot write ") + exchangePath);
  if (!fetchError.empty()) return fail(fetchError);
  return 1;  // in mode 3 the table keeps the connection; otherwise it closes with `connection`
}

}  // namespace verdal::mysqlgate
