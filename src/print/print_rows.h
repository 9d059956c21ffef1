#pragma once
// Marks the places a printout takes as rows, with the mark that printing uses (`imported`).
// Without explicit cursors the records a filter accepts are marked, and two kinds of computed field
// are filled on the way: a numbering field gets each record's position, and a running-sum field
// the sum so far of the field it names.
#include <cstdint>

namespace verdal::model {
class NodeStore;
class TLinkResolver;
}  // namespace verdal::model

namespace verdal::print {

// Every category, record and place marked: the host named its rows itself.
void MarkAllRows(model::NodeStore& store);

// The records below the root that `filter` (null or empty: all) accepts, depth-first.
void MarkFilteredRows(model::NodeStore& store, const char* filter, model::TLinkResolver* links);

}  // namespace verdal::print
