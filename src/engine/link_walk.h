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
};

// Walks the link fields of db (all, or only fieldIndex when it is not -1), appending chains to
// chains. The top call passes field -1, no chain and depth 0. A chain starts at a link field of
// db and ends at the first field that is no link. It may not come back to a database it has
// visited, except that its first link may lead into db itself. The last error is left as it was.
void WalkLinks(TDBManager* db, std::vector<TDBRecursChecker>& chains, int32_t fieldIndex,
               TDBRecursChecker* chain, int32_t depth);

// The database that the link field at fieldIndex of db leads to, taken from the pool or opened
// (never created); null if it cannot be. Where local resolution applies and the database's folder
// holds a file of that name, the field is pointed at that file from now on.
TDBManager* OpenLinkedDatabase(TDBManager& db, int32_t fieldIndex);

}  // namespace verdal::engine
