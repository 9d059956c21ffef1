#pragma once
// Hash table from a 32-bit id to an owned object. The bucket count is fixed by the database's size
// class; each bucket is a singly linked list with the newest entry first, and a full walk goes
// through the buckets in ascending order, each from its head. That walk order is the order in
// which objects are written to the file, so it must not change.
//
// The bucket count is chosen for the size the host expects, and a host may add far more than
// that. Once the buckets hold more than kChainLimit entries on average, lookups, inserts and
// erasures go through an index beside them, which grows with the count; the chains, and so the
// walk order, stay as they are. A map within its size class never builds it and costs nothing
// more.
//
// Objects live inside their entries and keep their addresses until they are erased.
#include <cstddef>
#include <cstdint>
#include <new>
#include <utility>
#include <vector>

#include "memory/page_arena.h"

namespace verdal::model {

uint32_t BucketCountForSizeClass(int32_t sizeClass);

template <class T>
class TDBIdMap {
 public:
  explicit TDBIdMap(int32_t sizeClass) : buckets_(BucketCountForSizeClass(sizeClass), nullptr) {}
  ~TDBIdMap() { Clear(); }
  TDBIdMap(const TDBIdMap&) = delete;
  TDBIdMap& operator=(const TDBIdMap&) = delete;

  uint32_t BucketCount() const { return static_cast<uint32_t>(buckets_.size()); }
  size_t Count() const { return count_; }

  // Moves the object in under the id and answers where it now lives; null, with the object left
  // untouched, if the id is present already. With an arena, the entry is cut from it (a load).
  T* Insert(int32_t id, T&& object, memory::PageArena* arena = nullptr) {
    Entry*& head = buckets_[Bucket(id)];
    size_t slot = 0, headSlot = 0;
    if (Indexed()) {
      if (4 * (count_ + 1) > 3 * index_.size()) Reindex(2 * index_.size());
      slot = Probe(id);
      if (index_[slot] != nullptr) return nullptr;
      // Slots are found through the entries their links point at: find the old head's before
      // its link changes.
      if (head != nullptr) headSlot = Probe(head->id);
    } else {
      for (Entry* e = head; e != nullptr; e = e->next)
        if (e->id == id) return nullptr;
    }
    if (arena != nullptr)
      head = new (arena->Allocate(sizeof(Entry))) Entry{std::move(object), id, true, head};
    else
      head = new Entry{std::move(object), id, false, head};
    ++count_;
    if (Indexed()) {
      index_[slot] = &head;
      if (head->next != nullptr) index_[headSlot] = &head->next;
    } else if (count_ > kChainLimit * buckets_.size()) {
      Reindex(2 * count_);
    }
    return &head->object;
  }

  // Negative ids are never stored; they are answered without touching the table.
  T* Find(int32_t id) const {
    if (id < 0) return nullptr;
    if (Indexed()) {
      Entry** link = index_[Probe(id)];
      return link != nullptr ? &(*link)->object : nullptr;
    }
    for (Entry* e = buckets_[Bucket(id)]; e != nullptr; e = e->next)
      if (e->id == id) return &e->object;
    return nullptr;
  }

  // Destroys the object under the id; false if there is none.
  bool Erase(int32_t id) {
    if (id < 0) return false;
    if (Indexed()) {
      const size_t slot = Probe(id);
      Entry** link = index_[slot];
      if (link == nullptr) return false;
      Entry* e = *link;
      Entry* after = e->next;
      const size_t afterSlot = after != nullptr ? Probe(after->id) : 0;
      *link = after;
      if (after != nullptr) index_[afterSlot] = link;
      Unindex(slot);
      Destroy(e);
      --count_;
      return true;
    }
    for (Entry** link = &buckets_[Bucket(id)]; *link != nullptr; link = &(*link)->next) {
      Entry* e = *link;
      if (e->id != id) continue;
      *link = e->next;
      Destroy(e);
      --count_;
      return true;
    }
    return false;
  }

  void Clear() {
    for (Entry*& head : buckets_) {
      while (head != nullptr) {
        Entry* e = head;
        head = e->next;
        Destroy(e);
      }
    }
    count_ = 0;
    std::vector<Entry**>().swap(index_);
  }

  // Visits (id, object) in table order. The visitor must not change the table.
  template <class Visit>
  void ForEach(Visit&& visit) const {
    for (Entry* head : buckets_)
      for (Entry* e = head; e != nullptr; e = e->next) visit(e->id, &e->object);
  }
  template <class Visit>
  void ForEach(Visit&& visit) {
    for (Entry* head : buckets_)
      for (Entry* e = head; e != nullptr; e = e->next) visit(e->id, &e->object);
  }

 private:
  // The object and its links in one allocation, made when its object is made: the pieces of one
  // record (its data record and texts) are made one after the other and so lie side by side,
  // whether they come from the heap or, at a load, in order from its arena. A walk in tree order
  // meets records in scattered order and needs that from memory far more than density.
  struct Entry {
    T object;
    int32_t id;
    bool pooled;  // cut from an arena, which owns its memory
    Entry* next;
  };

  static void Destroy(Entry* e) {
    if (e->pooled) {
      e->~Entry();
      memory::PageArena::Abandon(e, sizeof(Entry));
    } else {
      delete e;
    }
  }

  size_t Bucket(int32_t id) const { return static_cast<uint32_t>(id) % buckets_.size(); }

  static constexpr size_t kChainLimit = 8;

  // The index: open addressing with linear probing over a power-of-two table, at most three
  // quarters full. A slot holds the link that points at an entry (its bucket's head or the next
  // member of the entry before it), so that an entry can be unlinked without walking its chain.
  bool Indexed() const { return !index_.empty(); }

  size_t Home(int32_t id) const {
    // Ids are mostly consecutive: a multiplicative hash spreads them over the whole table.
    return static_cast<size_t>((static_cast<uint64_t>(static_cast<uint32_t>(id)) * 0x9E3779B97F4A7C15ull) >>
                               indexShift_);
  }

  // The slot of the id, or the empty slot where it would go.
  size_t Probe(int32_t id) const {
    const size_t mask = index_.size() - 1;
    size_t i = Home(id);
    while (index_[i] != nullptr && (*index_[i])->id != id) i = (i + 1) & mask;
    return i;
  }

  // Empties a slot, moving later members of its probe run back so that none is cut off.
  void Unindex(size_t hole) {
    const size_t mask = index_.size() - 1;
    for (size_t j = (hole + 1) & mask; index_[j] != nullptr; j = (j + 1) & mask) {
      const size_t home = Home((*index_[j])->id);
      // Stays where it is if its home lies cyclically in (hole, j].
      const bool stays = hole <= j ? (hole < home && home <= j) : (hole < home || home <= j);
      if (stays) continue;
      index_[hole] = index_[j];
      hole = j;
    }
    index_[hole] = nullptr;
  }

  void Reindex(size_t wanted) {
    size_t size = 16;
    int shift = 60;
    while (size < wanted) size *= 2, --shift;
    index_.assign(size, nullptr);
    indexShift_ = shift;
    for (Entry*& head : buckets_)
      for (Entry** link = &head; *link != nullptr; link = &(*link)->next) index_[Probe((*link)->id)] = link;
  }

  std::vector<Entry*> buckets_;
  size_t count_ = 0;
  std::vector<Entry**> index_;
  int indexShift_ = 60;
};

}  // namespace verdal::model
