#pragma once
// Link fields lead from one database to another. The walk opens every database they lead to and
// records each chain of databases and field indexes, which notifications follow.
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
// chains. The top call passes field -1, no chain and depth 0.
void WalkLinks(TDBManager* db, std::vector<TDBRecursChecker>& chains, int32_t fieldIndex,
               TDBRecursChecker* chain, int32_t depth);

}  // namespace verdal::engine
