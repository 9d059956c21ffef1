// Exported functions on the tree of a view.
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

#include "engine/api/api_frame.h"
#include "engine/category_tree.h"
#include "engine/handle_table.h"
#include "engine/pool_manager.h"
#include "model/cursor.h"
#include "query/query_cache.h"
#include "verdal.h"

using namespace verdal;
using api::Judge;
using engine::TDBManager;

extern "C" {

VERDAL_API int32_t VERDAL_BuildCategoryTree(VerdalHandle handle, intptr_t seed, VerdalTreeFn callback,
                                            intptr_t user, int32_t viewIndex, int32_t startCursor) {
  try {
    if (!engine::Pool().Find(handle)) return -1;
    TDBManager& db = *engine::Handles().Lookup(handle);
    engine::DatabaseCall call(db);  // the walk calls the host
    return engine::BuildCategoryTree(db, seed, callback, user, viewIndex, startCursor);
  } catch (...) {
    return -1;
  }
}

VERDAL_API int32_t VERDAL_GetCategoryInfo(VerdalHandle handle, int32_t cursor, TDBCategoryQuery* query) {
  return api::WithDatabase("VERDAL_GetCategoryInfo", handle, 0, Judge::kResult, [&](TDBManager& db) {
    if (query == nullptr) {
      engine::SetLastError(VERDAL_ERR_TARGET);
      return 0;
    }
    return engine::GetCategoryInfo(db, cursor, *query);
  });
}

VERDAL_API int32_t VERDAL_GetCategoryChildList(VerdalHandle handle, int32_t cursor, int32_t viewIndex,
                                               int32_t reverse, int32_t recurse,
                                               int32_t onlyExpanded, int32_t* count,
                                               int32_t** cursors, int32_t kinds,
                                               const char* filter, int32_t includeStart) {
  return api::WithDatabase("VERDAL_GetCategoryChildList", handle, 0, Judge::kResult,
                           [&](TDBManager& db) -> int32_t {
    if (count == nullptr) {  // only asks whether the cursor is good
      int32_t resolved = model::ResolveCursor(db.store, cursor);
      if (resolved != -1 && model::LookupPlace(db.store, resolved) != nullptr) return 1;
      engine::SetLastError(VERDAL_ERR_CURSOR);
      return 0;
    }
    std::unique_ptr<query::QX_QueryCache> query;
    if (filter != nullptr && *filter != '\0') query = std::make_unique<query::QX_QueryCache>(db.store, filter, &db.links);
    std::vector<int32_t> list;
    if (!engine::CollectChildren(db, cursor, viewIndex, recurse != 0, onlyExpanded != 0, kinds,
                                 query.get(), includeStart != 0, list))
      return 0;
    if (query != nullptr && query->lastError != nullptr) {
      engine::SetLastError(VERDAL_ERR_QUERY);
      return 0;
    }
    if (reverse != 0) std::reverse(list.begin(), list.end());
    *count = static_cast<int32_t>(list.size());
    if (cursors != nullptr) {
      // One entry more than the count; malloc, so that every engine array goes back one way.
      auto* array = static_cast<int32_t*>(std::malloc((list.size() + 1) * sizeof(int32_t)));
      if (array == nullptr) {
        engine::SetLastError(VERDAL_ERR_INTERNAL);
        return 0;
      }
      if (!list.empty()) std::memcpy(array, list.data(), list.size() * sizeof(int32_t));
      array[list.size()] = -1;
      *cursors = array;
    }
    return 1;
  });
}

VERDAL_API void VERDAL_GetCategoryDeleteChildList(int32_t* cursors) { std::free(cursors); }

VERDAL_API int32_t VERDAL_SetCategoryInfo(VerdalHandle handle, int32_t cursor, const char* name,
                                          const int32_t* expanded, const int32_t* newParent,
                                          const int32_t* position, int32_t mode,
                                          int32_t* positionOut, int32_t checkOnly,
                                          int32_t viewIndex) {
  return api::WithDatabase("VERDAL_SetCategoryInfo", handle, 0, Judge::kResult, [&](TDBManager& db) {
    return engine::SetCategoryInfo(db, cursor, name, expanded, newParent, position, mode,
                                   positionOut, checkOnly != 0, viewIndex);
  });
}

VERDAL_API int32_t VERDAL_HasCategories(VerdalHandle handle) {
  return api::WithDatabase("VERDAL_HasCategories", handle, 0, Judge::kLastError, [&](TDBManager& db) {
    return db.store.categories.Count() > 0 ? 1 : 0;
  });
}

}  // extern "C"
