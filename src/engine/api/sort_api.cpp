// Exported sort functions: the tree in place by a sort definition or by category names, and all
// records below a node as one sorted array. No sort marks the database changed: the new order is
// saved with the next save.
#include <cstdlib>

#include "dialogs/sort_categories_dialog.h"
#include "engine/api/api_frame.h"
#include "engine/notify.h"
#include "listing/sort_run.h"
#include "ui/host.h"
#include "verdal.h"

using namespace verdal;
using api::Judge;
using engine::TDBManager;
using listing::SortResult;

namespace {

// A tree sort rebuilds the views, whose nodes an outer call on the database (a tree walk whose
// callback asked for the sort) may still be holding: refused there, as a load is.
bool MaySortTree(TDBManager& db) {
  if (!engine::InNestedCall(db)) return true;
  engine::SetLastError(VERDAL_ERR_TARGET);
  return false;
}

}  // namespace

extern "C" {

VERDAL_API int32_t VERDAL_SortFlat(VerdalHandle handle, const char* name, int32_t* countOut,
                                   int32_t** arrayOut) {
  return api::QuietlyWithDatabase(handle, -1, [&](TDBManager& db) -> int32_t {
    const listing::TListSortAndDisplayFieldInfo* definition =
        name != nullptr ? db.lists.FindDefinition(name, listing::DefinitionKind::kSort) : nullptr;
    if (definition == nullptr) return -2;
    std::vector<int32_t> sorted;
    const SortResult result = listing::RunFlatSort(db.store, *definition, sorted, &db.links);
    if (result == SortResult::kNoStart) return 0;
    if (result == SortResult::kNoFields || countOut == nullptr || arrayOut == nullptr) return 1;
    // One slot more than the count, left unset; malloc, as every array the engine hands out.
    auto* array = static_cast<int32_t*>(std::malloc((sorted.size() + 1) * sizeof(int32_t)));
    if (array == nullptr) return 0;
    std::copy(sorted.begin(), sorted.end(), array);
    *countOut = static_cast<int32_t>(sorted.size());
    *arrayOut = array;
    return 1;
  });
}

VERDAL_API int32_t VERDAL_Sort(VerdalHandle handle, const char* name) {
  return api::WithDatabase("VERDAL_Sort", handle, 0, Judge::kResult, [&](TDBManager& db) -> int32_t {
    const listing::TListSortAndDisplayFieldInfo* definition =
        name != nullptr ? db.lists.FindDefinition(name, listing::DefinitionKind::kSort) : nullptr;
    if (definition == nullptr) {
      engine::SetLastError(VERDAL_ERR_INPUT);
      return 0;
    }
    const bool notify = definition->notifyControls;
    if (!MaySortTree(db)) return 0;
    if (listing::RunTreeSort(db.store, *definition, &db.links) == SortResult::kNoStart) return 0;
    if (notify) engine::NotifyChange(&db, db.store.currentCursor, VERDAL_NOTIFY_SHAPE_CHANGED, 0, 0, 1);
    return 1;
  });
}

VERDAL_API int32_t VERDAL_SortCategories(VerdalHandle handle, int32_t ascending, int32_t recursive,
                                         int32_t stringSort, int32_t startCursor,
                                         int32_t useDialog, VerdalWindow parentWindow) {
  return api::WithDatabase("VERDAL_SortCategories", handle, 0, Judge::kResult,
                           [&](TDBManager& db) -> int32_t {
    if (!MaySortTree(db)) return 0;
    listing::TListSortAndDisplayFieldInfo definition =
        listing::CategorySortDefinition(ascending != 0, recursive != 0, stringSort != 0, startCursor);
    if (useDialog != 0) {
      dialogs::TDbSortDlg dialog;
      if (!ui::CurrentHost().RunSheet(parentWindow, dialog)) return 0;
      const dialogs::SortCategoriesChoices& c = dialog.Choices();
      definition = listing::CategorySortDefinition(c.ascending, c.wholeDatabase || c.childrenAndSubgroups,
                                                   c.punctuation, c.wholeDatabase ? -2 : startCursor);
    }
    return listing::RunTreeSort(db.store, definition, &db.links) == SortResult::kNoStart ? 0 : 1;
  });
}

}  // extern "C"
