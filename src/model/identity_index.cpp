#include "model/identity_index.h"

#include <algorithm>

#include "model/id_map.h"
#include "model/node_store.h"

namespace verdal::model {

std::string_view TIdentityItem::Key() const {
  if (text != nullptr) return text;
  const TDBDataRecord* record = owner->data.Find(recordNumber);
  return record != nullptr ? std::string_view(record->Identifier().data()) : std::string_view();
}

uint32_t IdentityHash(std::string_view text) {
  constexpr uint32_t kFactor = 6293815;
  uint32_t sum = 0, multiplier = kFactor, position = 1;
  for (char c : text) {
    const auto byte = static_cast<uint32_t>(static_cast<int32_t>(static_cast<signed char>(c)));
    sum += multiplier * position * byte;
    ++position;
    multiplier *= kFactor;
  }
  return sum;
}

TIdentityIndex::TIdentityIndex(const NodeStore& owner, uint32_t bucketCount)
    : owner_(owner), heads_(std::max(bucketCount, 1u), -1) {}

void TIdentityIndex::Clear() {
  std::fill(heads_.begin(), heads_.end(), -1);
  std::vector<Entry>().swap(entries_);
}

void TIdentityIndex::Build() {
  Clear();
  entries_.reserve(owner_.data.Count());
  owner_.data.ForEach([&](int32_t id, const TDBDataRecord*) {
    const TIdentityItem item{id, &owner_, nullptr};
    int32_t& head = heads_[BucketOf(item.Key())];
    entries_.push_back(Entry{item, head});
    head = static_cast<int32_t>(entries_.size() - 1);
  });
}

std::optional<int32_t> TIdentityIndex::Find(const char* text) const {
  const TIdentityItem probe{-1, &owner_, text != nullptr ? text : ""};
  const std::string_view key = probe.Key();
  for (int32_t at = heads_[BucketOf(key)]; at >= 0; at = entries_[static_cast<size_t>(at)].next) {
    const TIdentityItem& item = entries_[static_cast<size_t>(at)].item;
    if (item.Key() == key) return item.recordNumber;
  }
  return std::nullopt;
}

namespace {

TIdentityIndex& IndexOf(NodeStore& store) {
  if (!store.identities) {
    // Sized by the size class, as the id maps are, but never grown afterwards: a database that
    // holds more records than its class expects gets a bucket for each of them from the start.
    const auto records = static_cast<uint32_t>(std::min<size_t>(store.data.Count(), UINT32_MAX));
    store.identities = std::make_unique<TIdentityIndex>(
        store, std::max(BucketCountForSizeClass(store.sizeClass), records));
  }
  return *store.identities;
}

}  // namespace

void BuildIdentities(NodeStore& store) { IndexOf(store).Build(); }

void ClearIdentities(NodeStore& store) {
  if (store.identities) store.identities->Clear();
}

std::optional<int32_t> FindIdentity(NodeStore& store, const char* text) {
  if (!store.identities) BuildIdentities(store);
  return store.identities->Find(text);
}

}  // namespace verdal::model
