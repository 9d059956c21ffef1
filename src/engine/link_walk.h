#pragma once
// Link fields lead from one database to another. The walk opens every database they lead to and
// records each chain of databases and field indexes, which notifications and link values follow.
#include <cstdint>
#include <vector>

namespace verdal::engine {

class TDBManager;

struct TDBRecursChecker {
  std::vector<uint32_t> handles;
  std::vector<int32_t> fields;
  bool cut = false;  // the chain was cut short: a database missing, a field missing, or a cycle
  // Every database came from the pool under the name its link gives, without a look at the disk:
  // walking the chain again gives the same chain until the pool or a field list changes.
  bool fromPool = true;
};

// Tells the walk that the pool or the resolve-locally switch changed: chains kept from earlier
// walks no longer hold.
void LinksChanged();
// Changes with every LinksChanged.
uint64_t LinksEpoch();

// Walks the link fields of db (all, or only fieldIndex when it is not -1), appending chains to
// chains. The top call passes field -1, no chain and depth 0. A chain starts at a link field of
// db and ends at the first field that is no link. It may not come back to a database it has
// visited, except that its first link may lead into db itself. The last error is left as it was.
void WalkLinks(TDBManager* db, std::vector<TDBRecursChecker>& chains, int32_t fieldIndex,
               TDBRecursChecker* chain, int32_t depth);

// The database that the link field at fieldIndex of db leads to, taken from the pool or opened
// (never created); null if it cannot be. Where local resolution applies and the database's folder
// holds a file of that name, the field is pointed at that file from now on.
// diskTouched, where given, is set when the answer needed the disk (a look for the file beside
// db, an open) or pointed the field elsewhere.
TDBManager* OpenLinkedDatabase(TDBManager& db, int32_t fieldIndex, bool* diskTouched = nullptr);

}  // namespace verdal::engine
