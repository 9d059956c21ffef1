#pragma once
// The exported link operations: where a chain ends, what a field may take, keeping a link in step
// when its record is replaced, and whether a link's record exists.
#include <cstdint>
#include <string>
#include <vector>

#include "verdal.h"

namespace verdal::engine {

class TDBManager;

// Fills info (emptied first; may be null) with the end of the link field's chain. Codes 2, 3, 7.
bool GetCrossInfo(TDBManager& db, int32_t fieldIndex, TCrossInfo* info);

struct CrossCandidates {
  std::vector<int32_t> ids;
  std::vector<std::string> texts;
};

// The places a field may take as value, with their shown texts. Codes 2, 5, 7, 13.
bool GetCrossData(TDBManager& db, int32_t fieldIndex, TCrossInfo* info, int32_t node,
                  const char* filter, bool withCategories, CrossCandidates& out);

// Replaces the first oldNode held by a link of referring to target's field. Codes 2, 5.
bool UpdateCrossValue(TDBManager& target, TDBManager& referring, int32_t targetField,
                      int32_t oldNode, int32_t newNode);

// Whether the link value at node names a place of target. Codes 2, 5.
int32_t ExistsReferenceEntry(TDBManager& referring, TDBManager& target, int32_t node,
                             int32_t fieldIndex);

}  // namespace verdal::engine
