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

// How MoveNode places a node: into a category target, beside the target, or into any target.
enum MoveMode : int32_t { kMoveInto = 1, kMoveBeside = 2 };

// Moves a node of the main tree under target (null: the root) at position (-1 appends) in every
// view that holds both. 1, or: 0 the node has no place, -2 a record as target of kMoveInto, -3 the
// target is the node or below it, -5 no parent where one is needed, -6 the node is not in its
// parent's list, -7 it could not be inserted and stands where it stood. With checkOnly nothing
// moves. position receives the index the node took.
int32_t MoveNode(NodeStore& store, TDBNode* node, TDBNode* target, int32_t mode, int32_t& position,
                 bool checkOnly);

// A record's title, or a category's display name (and with both its name too). False for a cursor
// without a place or object.
bool SetNodeText(NodeStore& store, int32_t cursor, const char* text, bool both);

}  // namespace verdal::model
