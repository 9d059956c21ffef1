#pragma once
// The tree of a view as a host shows and edits it: one walk that calls back for each visible node,
// the facts of one node, lists of children, and changing a node's name, open state and parent.
#include <cstdint>
#include <vector>

#include "verdal.h"

namespace verdal::model {
class PlaceFilter;
}

namespace verdal::engine {

class TDBManager;

// 1; -3 for a bad view, -2 for a start node the view does not hold. The last error is left alone.
int32_t BuildCategoryTree(TDBManager& db, intptr_t seed, VerdalTreeFn callback, intptr_t user,
                          int32_t viewIndex, int32_t startCursor);

// 1, or 0 with code 5 (no place) or 12 (a view fact asked of a node the view does not hold).
int32_t GetCategoryInfo(TDBManager& db, int32_t cursor, TDBCategoryQuery& query);

// The places below a node of a view, in walk order. False with code 5 or 12.
bool CollectChildren(TDBManager& db, int32_t cursor, int32_t viewIndex, bool recurse,
                     bool onlyExpanded, int32_t kinds, model::PlaceFilter* filter, bool includeStart,
                     std::vector<int32_t>& out);

// Name, open state and parent of a node, in that order; 1, or 0 with the code set.
int32_t SetCategoryInfo(TDBManager& db, int32_t cursor, const char* name, const int32_t* expanded,
                        const int32_t* newParent, const int32_t* position, int32_t mode,
                        int32_t* positionOut, bool checkOnly, int32_t viewIndex);

}  // namespace verdal::engine
