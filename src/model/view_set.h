#pragma once
#include <cstdint>

#include "model/node_store.h"

namespace verdal::model {

// Without a name: sets the mode of the main view and renumbers it if that changed; gives 0.
// With a name: the view of that name (case-insensitively) is renumbered and keeps its mode, or a
// new view is built over all places. Gives the view index, -1 for a mode outside 1 to 3.
int32_t CreateView(NodeStore& store, const char* name, int32_t mode);

}  // namespace verdal::model
