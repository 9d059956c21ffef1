#include "engine/linked_table.h"

#include <cstdio>
#include <cstring>
#include <vector>

#include "engine/db_manager.h"
#include "exchange/gateways.h"
#include "model/fields.h"
#include "platform/collation.h"
#include "ui/host.h"

namespace verdal::engine {

using namespace model;

namespace {

constexpr int32_t kErrorTextSize = 1024;

// The gateway's words, with the engine's text as the title. Shown only over a window.
void Show(VerdalWindow parent, const char* title, const char* text) {
  if (parent == nullptr) return;
  ui::CurrentHost().MessageBox(parent, title, text, ui::Buttons::kOk, ui::Icon::kInformation,
                               ui::Answer::kOk);
}

// The short type word the gateways turn a stored value into a server literal by.
const char* SqlTypeWord(const TDBFieldInfo& field, bool mySql) {
  switch (field.type.dataType) {
    case kTypeText: return "text";
    case kTypeDateTime: return mySql ? "datetime" : "date";
    case kTypeDate: return "date";
    case kTypeTime: return mySql ? "time" : "date";
    default: return "";
  }
}

std::string_view StoredValueOf(const TDBDataRecord& record, const TDBFieldInfo& field) {
  if (field.position < 0 || static_cast<size_t>(field.position) >= record.values.size()) return {};
  return record.values[static_cast<size_t>(field.position)];
}

// One column's present value on the server; false where the gateway cannot tell.
bool ReadBack(TDBManager& db, const TDBFieldInfo& field, int32_t rowKey, std::string& out) {
  const SqlLink& link = db.sqlLink;
  const char* value = nullptr;
  int32_t ok = 0;
  if (link.serverKind) {
    const exchange::MySqlGate* gate = exchange::LoadMySqlGate();
    if (gate == nullptr || gate->getValue == nullptr) return false;
    ok = gate->getValue(static_cast<int32_t>(link.connection), link.databaseName.c_str(),
                        link.tableName.c_str(), field.name.c_str(), link.keyColumn.c_str(), rowKey, &value);
  } else {
    const exchange::SqlBridge* bridge = exchange::LoadSqlBridge();
    if (bridge == nullptr || bridge->getValue == nullptr) return false;
    ok = bridge->getValue(static_cast<int32_t>(link.connection), link.tableName.c_str(),
                          field.name.c_str(), link.keyColumn.c_str(), rowKey, &value);
  }
  if (ok == 0 || value == nullptr) return false;
  out = value;  // the gateway's text lives only until its next call
  return true;
}

}  // namespace

bool IsLinkedToTable(const TDBManager& db) { return db.sqlLink.connection != 0; }

bool InsertLinkedRow(TDBManager& db, TDBDataRecord& record, VerdalWindow parent) {
  SqlLink& link = db.sqlLink;
  NodeStore& store = db.store;
  if (IsLinkedToTable(db)) {
    int32_t first = -1, last = -1;
    for (size_t i = 0; i < store.fields.size(); ++i)
      if (!platform::SameNameNoCase(store.fields[i]->name, link.keyColumn)) {
        if (first < 0) first = static_cast<int32_t>(i);
        last = static_cast<int32_t>(i);
      }
    if (first < 0) return false;
    const exchange::SqlBridge* bridge = link.serverKind ? nullptr : exchange::LoadSqlBridge();
    const exchange::MySqlGate* gate = link.serverKind ? exchange::LoadMySqlGate() : nullptr;
    const auto connection = static_cast<int32_t>(link.connection);
    int32_t newKey = -1;
    for (int32_t i = first; i <= last; ++i) {
      const TDBFieldInfo& field = *store.fields[static_cast<size_t>(i)];
      if (platform::SameNameNoCase(field.name, link.keyColumn)) continue;
      const std::string value(StoredValueOf(record, field));
      char errorText[kErrorTextSize] = {};
      int32_t ok = 0;
      if (gate != nullptr && gate->addNew != nullptr)
        ok = gate->addNew(connection, link.databaseName.c_str(), link.tableName.c_str(), link.keyColumn.c_str(),
                          SqlTypeWord(field, true), value.c_str(), field.name.c_str(), i == first, i == last,
                          errorText, kErrorTextSize, &newKey);
      else if (bridge != nullptr && bridge->addNew != nullptr)
        ok = bridge->addNew(connection, link.tableName.c_str(), link.keyColumn.c_str(), SqlTypeWord(field, false),
                            value.c_str(), field.name.c_str(), i == first, i == last, errorText,
                            kErrorTextSize, &newKey);
      errorText[kErrorTextSize - 1] = '\0';
      if (ok == 0) {
        Show(parent, "Fehler beim Einf\xFCgen des Datensatzes:", errorText);
        return false;
      }
      if (errorText[0] != '\0') Show(parent, "Warnung beim Einf\xFCgen des Datensatzes:", errorText);
    }
    record.externalRow = newKey;
    // The key field shows the server's key, which its own counter need not have foreseen.
    if (TDBFieldInfo* key = FieldByName(store, link.keyColumn.c_str());
        key != nullptr && key->position >= 0 && static_cast<size_t>(key->position) < record.values.size()) {
      record.values.Set(static_cast<size_t>(key->position), std::to_string(newKey));
      if (newKey > key->type.counterValue) key->type.counterValue = newKey;
    }
    // Columns the server fills (its counters, its defaults) are known at once.
    std::string filled;
    for (const auto& field : store.fields) {
      const int16_t type = field->type.dataType;
      if (platform::SameNameNoCase(field->name, link.keyColumn) || type == kTypeText || type == kTypeYesNo ||
          type == kTypeDateTime || type == kTypeDate || type == kTypeTime || !StoredValueOf(record, *field).empty() ||
          field->position < 0 || static_cast<size_t>(field->position) >= record.values.size())
        continue;
      if (!ReadBack(db, *field, newKey, filled)) continue;
      field->type.ToInternal(filled, filled, false, nullptr);
      record.values.Set(static_cast<size_t>(field->position), filled);
    }
  }
  if (db.importLink.writeBack) {
    if (TDBFieldInfo* key = FieldByName(store, link.keyColumn.c_str()))
      record.externalRow = static_cast<int32_t>(key->type.counterValue);
  }
  return true;
}

bool UpdateLinkedField(TDBManager& db, const TDBDataRecord& record, int32_t fieldIndex,
                       const std::string& value, VerdalWindow parent) {
  const SqlLink& link = db.sqlLink;
  if (!IsLinkedToTable(db)) return true;
  if (record.externalRow < 0) return false;
  const TDBFieldInfo& field = *db.store.fields[static_cast<size_t>(fieldIndex)];
  const auto connection = static_cast<int32_t>(link.connection);
  const char* word = SqlTypeWord(field, link.serverKind);
  char errorText[kErrorTextSize] = {};
  int32_t ok = 0;
  if (link.serverKind) {
    const exchange::MySqlGate* gate = exchange::LoadMySqlGate();
    if (gate != nullptr && gate->update != nullptr)
      ok = gate->update(connection, link.databaseName.c_str(), link.tableName.c_str(), link.keyColumn.c_str(),
                        record.externalRow, word, value.c_str(), field.name.c_str(), 1, 1, errorText,
                        kErrorTextSize);
  } else {
    const exchange::SqlBridge* bridge = exchange::LoadSqlBridge();
    if (bridge != nullptr && bridge->update != nullptr)
      ok = bridge->update(connection, link.tableName.c_str(), link.keyColumn.c_str(), record.externalRow, word,
                          value.c_str(), field.name.c_str(), 1, 1, errorText, kErrorTextSize);
  }
  errorText[kErrorTextSize - 1] = '\0';
  if (ok == 0) {
    Show(parent, "Fehler beim \xC4ndern des Datenfeldes:", errorText);
    return false;
  }
  std::string stored;
  if (std::strcmp(word, "text") == 0 && ReadBack(db, field, record.externalRow, stored) &&
      stored.size() < value.size()) {
    char message[2048];
    std::snprintf(message, sizeof message,
                  "Es konnten nur %d von %d Zeichen geschrieben werden, erh\xF6hen Sie evtl. die "
                  "Feldlänge des Datenfeldes oder wandeln Sie es in ein MEMO-Feld um!",
                  static_cast<int>(stored.size()), static_cast<int>(value.size()));
    Show(parent, "Warnung beim \xC4ndern des Datenfeldinhalts!", message);
  }
  return true;
}

bool DeleteLinkedRow(TDBManager& db, const TDBDataRecord& record, VerdalWindow parent) {
  const SqlLink& link = db.sqlLink;
  if (IsLinkedToTable(db)) {
    if (record.externalRow < 0) return false;
    const auto connection = static_cast<int32_t>(link.connection);
    char errorText[kErrorTextSize] = {};
    int32_t ok = 0;
    if (link.serverKind) {
      const exchange::MySqlGate* gate = exchange::LoadMySqlGate();
      if (gate != nullptr && gate->remove != nullptr)
        ok = gate->remove(connection, link.databaseName.c_str(), link.tableName.c_str(), link.keyColumn.c_str(),
                          record.externalRow, errorText, kErrorTextSize);
    } else {
      const exchange::SqlBridge* bridge = exchange::LoadSqlBridge();
      if (bridge != nullptr && bridge->remove != nullptr)
        ok = bridge->remove(connection, link.tableName.c_str(), link.keyColumn.c_str(), record.externalRow,
                            errorText, kErrorTextSize);
    }
    errorText[kErrorTextSize - 1] = '\0';
    if (ok == 0) {
      Show(parent, "Fehler beim L\xF6schen des Datensatzes:", errorText);
      return false;
    }
  }
  if (db.importLink.writeBack) db.importLink.deletedRows.push_back(record.externalRow);
  return true;
}

void CloseLinkedTable(TDBManager& db) {
  SqlLink& link = db.sqlLink;
  if (link.connection == 0) return;
  const auto connection = static_cast<int32_t>(link.connection);
  if (link.serverKind) {
    const exchange::MySqlGate* gate = exchange::LoadMySqlGate();
    if (gate != nullptr && gate->closeConnection != nullptr) gate->closeConnection(connection);
  } else {
    const exchange::SqlBridge* bridge = exchange::LoadSqlBridge();
    if (bridge != nullptr && bridge->closeConnection != nullptr) bridge->closeConnection(connection);
  }
  link.connection = 0;
}

int32_t ExecuteSql(TDBManager& db, intptr_t a1, intptr_t a2, intptr_t a3, intptr_t a4, intptr_t a5,
                   intptr_t a6) {
  if (!IsLinkedToTable(db) || !db.sqlLink.serverKind) return 0;
  const exchange::MySqlGate* gate = exchange::LoadMySqlGate();
  if (gate == nullptr || gate->executeSql == nullptr) return 0;
  return gate->executeSql(static_cast<int32_t>(db.sqlLink.connection), a1, a2, a3, a4, a5, a6);
}

}  // namespace verdal::engine
