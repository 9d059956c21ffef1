#pragma once
// Sorting by a sort definition: the tree itself (each node's children take a new stored order that
// every view shows), all records below a node as one flat list, or a given list of cursors.
//
// Each run works on its own copy of the definition. Among entries equal under every sort field,
// the one taken last comes first: a run of equal entries comes out reversed, and sorting twice
// turns it round again. Children that do not take part (categories in a sort of records, records
// in a sort of categories) stand first under their node, in their old order.
#include <cstdint>
#include <vector>

#include "listing/list_display.h"
#include "model/node_store.h"

namespace verdal::model {
class TLinkResolver;
}

namespace verdal::listing {

enum class SortResult { kSorted, kNoFields, kNoStart };

// The records at every depth below the definition's start, sorted; the start itself and the
// categories are not in the list. kNoFields leaves `out` untouched.
SortResult RunFlatSort(model::NodeStore& store, TListSortAndDisplayFieldInfo definition,
                       std::vector<int32_t>& out, model::TLinkResolver* links);

// Sorts the cursors in place; the start is not looked at. Nothing happens without sort fields.
void SortList(model::NodeStore& store, TListSortAndDisplayFieldInfo definition, int32_t* cursors,
              int32_t count, model::TLinkResolver* links);

// Sorts the start node's children, and with `recursive` those of every node below, then rebuilds
// every view in the new order.
SortResult RunTreeSort(model::NodeStore& store, TListSortAndDisplayFieldInfo definition,
                       model::TLinkResolver* links);

// The definition a sort of categories by name uses: no name, one item without a field.
TListSortAndDisplayFieldInfo CategorySortDefinition(bool ascending, bool recursive, bool stringSort,
                                                    int32_t startCursor);

}  // namespace verdal::listing
