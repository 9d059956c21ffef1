#pragma once
// Finds a data record by its identity text (the GUID each one carries). A hash table whose
// entries name records by data id and read the identity from the record at every comparison: an
// identity changed since the last build is compared by its new text, but its entry stays in the
// bucket of the old one. Nothing keeps the table current; a host builds it when it wants it right.
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace verdal::model {

class NodeStore;

// One entry, or the probe a search compares entries with.
struct TIdentityItem {
  int32_t recordNumber = -1;  // the data id in owner's data map; -1 in a probe
  const NodeStore* owner = nullptr;
  const char* text = nullptr;  // null in a stored entry; the searched text in a probe

  // The text when one is held, else the identity of the record, empty once the record is gone.
  // It ends at its first NUL, as the text a host reads and hands back does.
  std::string_view Key() const;
};

// The hash of a key: over its bytes as signed numbers, modulo 2^32.
uint32_t IdentityHash(std::string_view text);

class TIdentityIndex {
 public:
  // The bucket count is fixed here, for good (at least 1).
  TIdentityIndex(const NodeStore& owner, uint32_t bucketCount);

  // Drops every entry; the buckets stay.
  void Clear();
  // Empties the table and enters every data record of the owner in its full-walk order, so that
  // of two records with the same identity the one met last is found.
  void Build();
  // The data id of the first entry in the text's bucket whose key equals it exactly; none if no
  // key does. A null text is the empty one.
  std::optional<int32_t> Find(const char* text) const;

 private:
  // Entries lie in one array and link by index: a build makes one allocation, not one per record.
  struct Entry {
    TIdentityItem item;
    int32_t next;  // the entry entered before it in its bucket, -1 at the end
  };

  size_t BucketOf(std::string_view key) const { return IdentityHash(key) % heads_.size(); }

  const NodeStore& owner_;
  std::vector<int32_t> heads_;  // per bucket the entry entered last, -1 for none
  std::vector<Entry> entries_;
};

// The operations on a store's index as the interface offers them.
// Builds the index anew, making it first if the store has none.
void BuildIdentities(NodeStore& store);
// Empties the index, if there is one.
void ClearIdentities(NodeStore& store);
// Searches the index as it stands; a store without one gets one built first.
std::optional<int32_t> FindIdentity(NodeStore& store, const char* text);

}  // namespace verdal::model
