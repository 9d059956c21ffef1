#include "engine/export.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "engine/db_manager.h"
#include "engine/last_error.h"
#include "engine/settings.h"
#include "exchange/export_exchange.h"
#include "exchange/gateways.h"
#include "io/buffered_file_writer.h"
#include "model/place_walk.h"
#include "platform/temporary_file.h"

namespace verdal::engine {

using model::NodeStore;
using model::TDBCategoryData;

namespace {

// Category columns are counted in a table of this many depths; deeper places count as the last.
constexpr int32_t kDepthTable = 256;

// What a place is called in a category column: a record's title, a category's shown name.
std::string_view PlaceName(NodeStore& store, const TDBCategoryData& place) {
  if (place.isCategory) {
    const model::TDBCategoryRecord* category = store.categories.Find(place.categoryId);
    return category != nullptr ? std::string_view(category->ShownName()) : std::string_view();
  }
  const model::TDBDataRecord* data = model::DataOf(store, &place);
  return data != nullptr ? data->Title() : std::string_view();
}

int32_t DepthOf(const TDBCategoryData& place) {
  const int32_t depth = place.node != nullptr ? place.node->depth : 0;
  return std::clamp(depth, 0, kDepthTable - 1);
}

}  // namespace

std::vector<const TDBCategoryData*> ExportPlaces(TDBManager& db, const ExportRequest& request) {
  NodeStore& store = db.store;
  std::vector<const TDBCategoryData*> places;
  if (request.count > 0 && request.cursors != nullptr) {
    places.reserve(static_cast<size_t>(request.count));
    for (int32_t i = 0; i < request.count; ++i) {
      const TDBCategoryData* place = model::LookupPlace(store, request.cursors[i]);
      if (place != nullptr && !place->IsRootPlace()) places.push_back(place);
    }
    return places;
  }
  const int32_t kinds = (request.flags & exchange::kExportCategoryColumns) != 0
                            ? model::kKindRecords
                            : model::kKindBoth;
  model::CollectPlaces(store, &store.MainView().root, places, kinds, true, false, nullptr, false);
  return places;
}

namespace {

// The companion file: each place's categories from the top down, then the place itself.
void WritePaths(NodeStore& store, const std::vector<const TDBCategoryData*>& places,
                BufferedFileWriter& out) {
  std::vector<std::string_view> names;
  for (const TDBCategoryData* place : places) {
    names.clear();
    names.push_back(PlaceName(store, *place));
    for (const model::TDBNode* up = place->node != nullptr ? place->node->parent : nullptr;
         up != nullptr && up->place != nullptr && !up->place->IsRootPlace(); up = up->parent)
      names.push_back(PlaceName(store, *up->place));
    std::reverse(names.begin(), names.end());
    exchange::WriteExportPath(out, names);
  }
}

}  // namespace

// Two passes over the places, so that the header with the exact widths goes first and no row is
// held in memory.
void WriteExportExchange(TDBManager& db, const std::vector<const TDBCategoryData*>& places,
                         bool categories, const std::string& path) {
  NodeStore& store = db.store;
  const size_t fieldCount = store.fields.size();
  std::array<int32_t, kDepthTable> categoryWidths;
  categoryWidths.fill(1);
  std::vector<int32_t> fieldWidths(fieldCount, 1);
  int32_t deepest = 0;
  for (const TDBCategoryData* place : places) {
    const int32_t depth = DepthOf(*place);
    deepest = std::max(deepest, depth);
    categoryWidths[depth] = std::max(categoryWidths[depth], static_cast<int32_t>(PlaceName(store, *place).size()));
    for (size_t f = 0; f < fieldCount; ++f) {
      const auto value = model::FieldValueOf(store, place, static_cast<int32_t>(f));
      if (value) fieldWidths[f] = std::max(fieldWidths[f], static_cast<int32_t>(value->size()));
    }
  }

  exchange::ExportHeader header;
  header.rowCount = static_cast<int32_t>(places.size());
  if (categories) {
    for (int32_t n = 1; n <= deepest + 1; ++n)
      header.columns.push_back({exchange::CategoryColumnName(n), exchange::CategoryColumnName(n), 12,
                                categoryWidths[n - 1]});
  }
  for (size_t f = 0; f < fieldCount; ++f) {
    const model::TDBFieldInfo& field = *store.fields[f];
    const int16_t sqlType = field.type.sqlType != 0 ? field.type.sqlType : field.type.TypeToSql();
    header.columns.push_back({field.name, field.ShownName(), sqlType, fieldWidths[f]});
  }

  BufferedFileWriter out;
  // A file that cannot be made or written goes unnoticed here: the bridge finds it short or absent.
  if (!out.Open(path.c_str())) return;
  exchange::WriteExportHeader(out, header);
  std::string internal;
  std::string shown;
  for (const TDBCategoryData* place : places) {
    for (size_t f = 0; f < fieldCount; ++f) {
      model::TDBFieldInfo& field = *store.fields[f];
      const auto value = model::FieldValueOf(store, place, static_cast<int32_t>(f));
      if (field.type.KeepsTextAsIs()) {
        const std::string_view text = value ? *value : std::string_view();
        exchange::WriteExportValue(out, text, text);
        continue;
      }
      field.type.ToInternal(value ? *value : std::string_view(), internal, false, nullptr);
      field.type.CreateDisplayString(internal, shown, false, false, &db.links);
      exchange::WriteExportValue(out, internal, shown);
    }
  }
  out.Finish();

  if (categories) {
    BufferedFileWriter companion;
    if (!companion.Open((path + exchange::kPathsSuffix).c_str())) return;
    WritePaths(store, places, companion);
    companion.Finish();
  }
}

int32_t Export(TDBManager& db, const ExportRequest& request) {
  VerdalPathMapperFn mapper = request.mapper != nullptr ? request.mapper : Switches().pathMapper;
  const exchange::SqlBridge* bridge = exchange::LoadSqlBridge();
  if (bridge == nullptr) {
    SetLastError(VERDAL_ERR_BRIDGE_LOAD);
    return 0;
  }
  model::Renumber(db.store);
  const bool categories = (request.flags & exchange::kExportCategoryColumns) != 0;
  platform::ScopedTemporaryFile exchangeFile("tmp");
  {
    const std::vector<const TDBCategoryData*> places = ExportPlaces(db, request);
    if (!exchangeFile.path.empty()) WriteExportExchange(db, places, categories, exchangeFile.path);
  }
  const std::string companion = exchangeFile.path + exchange::kPathsSuffix;
  if (bridge->exportRows != nullptr) {
    bridge->exportRows(request.target, exchangeFile.path.c_str(), request.extra, mapper,
                       request.flags, request.args[0], request.args[1], request.args[2],
                       request.args[3]);
  }
  if (categories && !exchangeFile.path.empty()) unlink(companion.c_str());
  return 1;
}

}  // namespace verdal::engine
