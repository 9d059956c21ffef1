#pragma once
// Hash table from a 32-bit id to an owned object. The bucket count is fixed by the database's size
// class; each bucket is a singly linked list with the newest entry first, and a full walk goes
// through the buckets in ascending order, each from its head. That walk order is the order in
// which objects are written to the file, so it must not change.
//
// Objects live inside their entries, which come from slabs the table owns: a load of a million
// records makes a few dozen allocations instead of two million, and objects made one after the
// other lie side by side. An object keeps its address until it is erased.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <utility>
#include <vector>

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
  // untouched, if the id is present already.
  T* Insert(int32_t id, T&& object) {
    Slot*& head = buckets_[Bucket(id)];
    for (Slot* e = head; e != nullptr; e = e->next)
      if (e->id == id) return nullptr;
    Slot* slot = TakeSlot();
    T* stored = new (slot->bytes) T(std::move(object));
    slot->id = id;
    slot->live = true;
    slot->next = head;
    head = slot;
    ++count_;
    return stored;
  }

  // Negative ids are never stored; they are answered without touching the table.
  T* Find(int32_t id) const {
    if (id < 0) return nullptr;
    for (Slot* e = buckets_[Bucket(id)]; e != nullptr; e = e->next)
      if (e->id == id) return e->Object();
    return nullptr;
  }

  // Destroys the object under the id; false if there is none.
  bool Erase(int32_t id) {
    if (id < 0) return false;
    for (Slot** link = &buckets_[Bucket(id)]; *link != nullptr; link = &(*link)->next) {
      Slot* e = *link;
      if (e->id != id) continue;
      *link = e->next;
      e->Object()->~T();
      e->live = false;
      e->nextFree = free_;
      free_ = e;
      --count_;
      return true;
    }
    return false;
  }

  // Goes through the slabs in memory order rather than the buckets, which would visit a large
  // table's objects in scattered order.
  void Clear() {
    for (size_t s = 0; s < slabs_.size(); ++s) {
      const size_t used = s + 1 < slabs_.size() ? SlabSize(s) : slabUsed_;
      for (size_t i = 0; i < used; ++i)
        if (slabs_[s][i].live) slabs_[s][i].Object()->~T();
    }
    std::fill(buckets_.begin(), buckets_.end(), nullptr);
    slabs_.clear();
    free_ = nullptr;
    slabUsed_ = slabSize_ = 0;
    count_ = 0;
  }

  // Visits (id, object) in table order. The visitor must not change the table.
  template <class Visit>
  void ForEach(Visit&& visit) const {
    for (Slot* head : buckets_)
      for (Slot* e = head; e != nullptr; e = e->next) visit(e->id, e->Object());
  }

 private:
  // One entry: the object's storage (a free slot holds the link to the next free one there),
  // its id, whether it holds an object, and the next entry of its bucket.
  struct Slot {
    union {
      Slot* nextFree;
      alignas(T) std::byte bytes[sizeof(T)];
    };
    int32_t id;
    bool live;
    Slot* next;
    T* Object() { return std::launder(reinterpret_cast<T*>(bytes)); }
  };
  // Slabs double from a small first one, so a tiny database stays small and a large one needs
  // few of them.
  static constexpr size_t kFirstSlab = 16;
  static constexpr size_t kLargestSlab = size_t{1} << 16;

  size_t Bucket(int32_t id) const { return static_cast<uint32_t>(id) % buckets_.size(); }

  static size_t SlabSize(size_t index) { return std::min(kFirstSlab << std::min<size_t>(index, 12), kLargestSlab); }

  Slot* TakeSlot() {
    if (free_ != nullptr) {
      Slot* s = free_;
      free_ = s->nextFree;
      return s;
    }
    if (slabUsed_ == slabSize_) {
      slabSize_ = SlabSize(slabs_.size());
      slabs_.emplace_back(new Slot[slabSize_]);  // left uninitialised: each slot is built on taking
      slabUsed_ = 0;
    }
    return &slabs_.back()[slabUsed_++];
  }

  std::vector<Slot*> buckets_;
  size_t count_ = 0;
  std::vector<std::unique_ptr<Slot[]>> slabs_;
  Slot* free_ = nullptr;
  size_t slabUsed_ = 0;
  size_t slabSize_ = 0;
};

}  // namespace verdal::model
