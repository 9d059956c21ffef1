#include "print/print_rows.h"

#include <memory>
#include <string>
#include <vector>

#include "model/data_type_info.h"
#include "model/field_info.h"
#include "model/fields.h"
#include "model/node_store.h"
#include "model/number_text.h"
#include "model/place_walk.h"
#include "query/query_cache.h"

namespace verdal::print {

namespace {

// Running sums are kept for this many fields at most.
constexpr size_t kMaxRunningSums = 4096;

void SetMarks(model::NodeStore& store, bool mark) {
  store.categories.ForEach([&](int32_t, model::TDBCategoryRecord* c) { c->imported = mark; });
  store.data.ForEach([&](int32_t, model::TDBDataRecord* d) { d->imported = mark; });
  store.places.ForEach([&](int32_t, model::TDBCategoryData* p) { p->imported = mark; });
}

struct ComputedField {
  size_t position;     // of the computed field in a record's values
  model::TDBFieldInfo* field;
  model::TDBFieldInfo* source;  // running sum: the field summed; null for a numbering field
  size_t sourcePosition;
  long double sum = 0;
};

}  // namespace

void MarkAllRows(model::NodeStore& store) { SetMarks(store, true); }

void MarkFilteredRows(model::NodeStore& store, const char* filter, model::TLinkResolver* links) {
  SetMarks(store, false);
  std::unique_ptr<query::QX_QueryCache> query;
  if (filter != nullptr && *filter != '\0') query = std::make_unique<query::QX_QueryCache>(store, filter, links);
  std::vector<const model::TDBCategoryData*> places;  // the walk gives them const; the marks are ours
  model::CollectPlaces(store, model::NodeOf(store, &model::RootPlace()), places, model::kKindRecords, true, false,
                       query.get(), false);

  std::vector<ComputedField> computed;
  for (auto& field : store.fields) {
    if (field->position < 0) continue;
    const model::TDataTypeInfo& type = field->type;
    if (type.hiddenInSort) {
      computed.push_back({static_cast<size_t>(field->position), field.get(), nullptr, 0});
    } else if (type.hiddenField && !type.hostText2.empty() && computed.size() < kMaxRunningSums) {
      model::TDBFieldInfo* source = model::FieldByName(store, type.hostText2.c_str());
      if (source != nullptr && source->position >= 0)
        computed.push_back({static_cast<size_t>(field->position), field.get(), source,
                            static_cast<size_t>(source->position)});
    }
  }

  std::string text, normal;
  int64_t number = 0;
  for (const model::TDBCategoryData* place : places) {
    const_cast<model::TDBCategoryData*>(place)->imported = true;
    model::TDBDataRecord* record = model::DataOf(store, place);
    if (record == nullptr) continue;
    ++number;
    for (ComputedField& c : computed) {
      if (c.position >= record->values.size()) continue;
      if (c.source == nullptr) {
        text = std::to_string(number);
      } else {
        const std::string_view value =
            c.sourcePosition < record->values.size() ? record->values[c.sourcePosition] : std::string_view();
        model::FormatNumber(c.sum + model::ReadNumber(value), c.source->type.decimals, text);
      }
      c.field->type.ToInternal(text, normal, false, nullptr);
      record->values.Set(c.position, normal);
      if (c.source != nullptr) c.sum = model::ReadNumber(normal);
    }
  }
}

}  // namespace verdal::print
