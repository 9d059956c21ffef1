#include "model/view_set.h"

#include <memory>
#include <string>
#include <vector>

namespace verdal::model {

int32_t CreateView(NodeStore& store, const char* name, int32_t mode) {
  if (mode < kModeCategories || mode > kModeBoth) return -1;
  if (name == nullptr || *name == '\0') {
    TDBNodeManagerItem& main = store.MainView();
    if (main.mode != mode) {
      main.mode = mode;
      main.SetDepths();
      main.Number();
    }
    return 0;
  }
  int32_t index = store.FindView(name);
  if (index >= 0) {
    TDBNodeManagerItem& view = *store.View(index);
    view.Number();
    view.SetDepths();
    return index;
  }
  RefreshPositions(store);
  store.views.push_back(std::make_unique<TDBNodeManagerItem>(name, mode, store.MainView().root.expanded));
  index = static_cast<int32_t>(store.views.size() - 1);
  std::vector<TDBCategoryData*> all;
  all.reserve(store.places.Count());
  store.places.ForEach([&](int32_t, TDBCategoryData* place) { all.push_back(place); });
  AttachPlacesToView(store, index, all, false);
  store.views.back()->Renumber(false);
  return index;
}

}  // namespace verdal::model
