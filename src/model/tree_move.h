#pragma once
// Moving a place to another parent in every view at once.
#include <cstdint>
#include <vector>

#include "model/node_store.h"

namespace verdal::model {

// The node of a place in each view, null where a view lacks it. Take them before detaching: a
// record's node outside the main view is found only while it stands in its category.
std::vector<TDBNode*> NodesInViews(NodeStore& store, const TDBCategoryData* place);

// Puts each view's node under the target's node of that view at position (-1 appends). A view
// that lacks either node is passed over. Gives the index in the main view, -1 if it failed there.
int32_t AddToViews(NodeStore& store, const TDBCategoryData* target, const std::vector<TDBNode*>& nodes,
                   int32_t position, bool live);

// Makes the stored objects agree with the new parent: a record's category id, or a category's
// parent id, becomes the parent's category id (-1 for the root).
void SetStoredParent(NodeStore& store, TDBCategoryData* place, const TDBCategoryData* parent);

// True if node is below ancestor or is ancestor itself.
bool IsBelowOrSelf(const TDBNode* node, const TDBNode* ancestor);

}  // namespace verdal::model
