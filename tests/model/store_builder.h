#pragma once
// Builds stores directly from stored objects, as a load would, for tests of the tree code.
#include <memory>
#include <string>
#include <vector>

#include "model/node_store.h"

namespace verdal::model::test_support {

struct Built {
  int32_t cursor;
  int32_t categoryId;
};

class StoreBuilder {
 public:
  explicit StoreBuilder(int32_t sizeClass = 0) : store(sizeClass) {}

  // A category record, its data record and its place; nothing is attached yet.
  Built Category(int32_t parentCategoryId, const std::string& name, int32_t position = -1,
                 bool expanded = true) {
    TDBCategoryRecord rec;
    rec.id = store.nextCategoryId++;
    rec.parentId = parentCategoryId;
    rec.name = name;
    rec.expanded = expanded;
    int32_t id = rec.id;
    store.categories.Insert(id, std::move(rec));
    return {Place(id, true, position), id};
  }

  // A record's data record and place under a category id (-1 at top level).
  int32_t Record(int32_t categoryId, int32_t position = -1) {
    return Place(categoryId, false, position);
  }

  TDBCategoryData* place(int32_t cursor) { return store.places.Find(cursor); }

  // Attaches what was made since the last call.
  void Attach(bool live) {
    std::vector<TDBCategoryData*> list;
    for (int32_t c : pending_) list.push_back(store.places.Find(c));
    pending_.clear();
    AttachPlaces(store, list, live);
    if (!live) Renumber(store);
  }

  // The cursors of the children of a node of a view, in order, nulls as -100.
  std::vector<int32_t> Children(const TDBNode* node) const {
    std::vector<int32_t> out;
    if (node != nullptr && node->children)
      for (const TDBNode* c : *node->children) out.push_back(c != nullptr ? c->cursor : -100);
    return out;
  }

  NodeStore store;

 private:
  int32_t Place(int32_t categoryId, bool isCategory, int32_t position) {
    TDBDataRecord* data = CreateDataRecord(store, "", -1);
    TDBCategoryData place;
    place.cursor = store.nextCursor++;
    place.categoryId = categoryId;
    place.dataId = data->id;
    place.isCategory = isCategory;
    place.position = position;
    int32_t cursor = place.cursor;
    store.places.Insert(cursor, std::move(place));
    pending_.push_back(cursor);
    return cursor;
  }

  std::vector<int32_t> pending_;
};

}  // namespace verdal::model::test_support
