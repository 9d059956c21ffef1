#include "engine/import.h"

#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "engine/db_manager.h"
#include "engine/last_error.h"
#include "engine/linked_table.h"
#include "engine/notify.h"
#include "engine/settings.h"
#include "exchange/gateways.h"
#include "exchange/import_builder.h"
#include "exchange/import_exchange.h"
#include "exchange/text_write_back.h"
#include "io/fileex.h"
#include "io/read_ahead_file.h"
#include "model/node.h"
#include "model/place_walk.h"
#include "platform/file_system.h"
#include "platform/temporary_file.h"

namespace verdal::engine {

using namespace model;

namespace {

// The exchange file of one call, removed however the call ends.
void ClearImportedMarks(NodeStore& store) {
  store.categories.ForEach([](int32_t, TDBCategoryRecord* r) { r->imported = false; });
  store.data.ForEach([](int32_t, TDBDataRecord* r) { r->imported = false; });
  store.places.ForEach([](int32_t, TDBCategoryData* p) { p->imported = false; });
}

// The cursors of the records this import made, depth-first, into a new array for the host.
void HandOutImported(NodeStore& store, int32_t* outCount, int32_t** outCursors) {
  std::vector<const TDBCategoryData*> places;
  CollectPlaces(store, &store.MainView().root, places, kKindRecords, true, false, nullptr, false);
  std::vector<int32_t> cursors;
  for (const TDBCategoryData* p : places)
    if (p->imported) cursors.push_back(p->cursor);
  *outCount = static_cast<int32_t>(cursors.size());
  if (cursors.empty() || outCursors == nullptr) return;
  auto* array = static_cast<int32_t*>(std::malloc(cursors.size() * sizeof(int32_t)));
  if (array == nullptr) throw std::bad_alloc();
  std::memcpy(array, cursors.data(), cursors.size() * sizeof(int32_t));
  *outCursors = array;
}

// Both name lists are the database's field names when the host names no source and no columns.
struct FieldNameLists {
  std::vector<std::string> names;
  std::vector<const char*> pointers;
};

}  // namespace

int32_t Import(TDBManager& db, const ImportRequest& request) {
  NodeStore& store = db.store;
  const int32_t flags = request.flags | exchange::kImportAlways;
  VerdalPathMapperFn mapper = request.mapper != nullptr ? request.mapper : Switches().pathMapper;
  ClearImportedMarks(store);

  const exchange::SqlBridge* bridge = exchange::LoadSqlBridge();
  if (bridge == nullptr || bridge->import == nullptr) {
    SetLastError(VERDAL_ERR_BRIDGE_LOAD);
    return 0;
  }
  int32_t fieldCount = request.fieldCount;
  const char* const* names1 = request.names1;
  const char* const* names2 = request.names2;
  FieldNameLists own;
  if (request.input == nullptr && fieldCount == 0) {
    for (const auto& field : store.fields) own.names.push_back(field->name);
    for (const std::string& name : own.names) own.pointers.push_back(name.c_str());
    fieldCount = static_cast<int32_t>(own.pointers.size());
    names1 = names2 = own.pointers.data();
  }
  platform::ScopedTemporaryFile exchangeFile("verdal");
  if (exchangeFile.path.empty()) {
    SetLastError(VERDAL_ERR_EXCHANGE_MISSING);
    return 0;
  }
  const int32_t bridged = bridge->import(request.input, exchangeFile.path.c_str(), request.extra, mapper,
                                         request.option, flags, fieldCount, names1, names2,
                                         request.reserved);
  if (bridged == 0 || (flags & exchange::kImportConfigureOnly) != 0) {
    if (bridged != 0) return 1;
    SetLastError(VERDAL_ERR_IMPORT);
    return 0;
  }

  if (!platform::FileExists(exchangeFile.path.c_str())) {
    SetLastError(VERDAL_ERR_EXCHANGE_MISSING);
    return 0;
  }
  TFileEx file;
  // The whole file is checked before the database is touched: a file cut short or damaged is
  // refused and the database stays as it was.
  if (!file.Open(exchangeFile.path.c_str(), TFileEx::kRead) || file.GetLength() <= 0 ||
      !exchange::CheckImportExchange(file)) {
    SetLastError(VERDAL_ERR_EXCHANGE_OPEN);
    return 0;
  }
  TReadAheadFile in(file, file.GetLength());
  exchange::ImportHeader header;
  exchange::ReadImportHeader(in, header);

  if (exchange::ImportBuilder::NamesRepeat(header)) {
    SetLastError(VERDAL_ERR_IMPORT);
    return 0;
  }
  const bool replaces = header.mode == exchange::kModeReplace || header.mode == exchange::kModeLinked;
  if (replaces) {
    ClearStore(store, false);
    if (header.mode == exchange::kModeLinked) {
      db.importLink.writeBack = false;
      CloseLinkedTable(db);
    }
    store.nextCategoryId = store.nextDataId = store.nextCursor = 0;
  }
  struct Building {
    TDBManager& db;
    explicit Building(TDBManager& d) : db(d) { db.importing = true; }
    ~Building() { db.importing = false; }
  } building(db);
  exchange::ImportBuilder builder(store, header, flags, request.progress);
  // Matching columns to the fields there are (modes 1 and 2) makes nothing, so a column that
  // matches none leaves the database as it was.
  if (!builder.PrepareColumns()) return 0;
  if (request.progress != nullptr) request.progress(0);
  if (header.mode == exchange::kModeAdd) builder.EnterExistingCategories();
  std::vector<std::string> cells;
  int32_t rowKey = -1;
  for (int32_t row = 0; row < header.rowCount; ++row) {
    exchange::ReadImportRow(in, header, cells, rowKey);
    builder.AddRow(cells, rowKey, row);
  }
  builder.Finish();
  if (request.progress != nullptr) request.progress(0);
  file.Close();
  db.MarkDirty();

  if (header.mode == exchange::kModeLinked) {
    db.sqlLink.connection = header.connection;
    db.sqlLink.serverKind = header.backEnd != 0;
    db.sqlLink.databaseName = header.databaseName;
    db.sqlLink.tableName = header.tableName;
    db.sqlLink.keyColumn = header.identityField;
    db.importLink.fileName = request.input != nullptr ? request.input : "";
    exchange::WriteBackSource source{store, &db.links, db.sqlLink.keyColumn, db.importLink.deletedRows};
    db.importLink.writeBack = ReadImpDefinition(source, db.importLink.fileName, {}, true);
  }
  if (request.outCount != nullptr) HandOutImported(store, request.outCount, request.outCursors);
  TDBNode* first = store.MainView().root.FirstChild();
  store.currentCursor = first != nullptr ? first->cursor : -1;
  NotifyChange(&db, -2, VERDAL_NOTIFY_SHAPE_CHANGED, -10, 0, 0);
  NotifyChange(&db, store.currentCursor, VERDAL_NOTIFY_CURRENT_CHANGED, -10, 0, 0);
  return 1;
}

bool RefusedWhileImporting(TDBManager& db) {
  if (!db.importing) return false;
  SetLastError(VERDAL_ERR_TARGET);
  return true;
}

void WriteBackImportSource(TDBManager& db) {
  const std::string& definition = db.importLink.fileName;
  if (!db.importLink.writeBack || definition.empty() || !platform::FileExists(definition.c_str())) return;
  exchange::WriteBackSource source{db.store, &db.links, db.sqlLink.keyColumn, db.importLink.deletedRows};
  ReadImpDefinition(source, definition, {}, false);
}

}  // namespace verdal::engine
