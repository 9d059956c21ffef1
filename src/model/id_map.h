#pragma once
// Hash table from a 32-bit id to an owned object. The bucket count is fixed by the database's size
// class; each bucket is a singly linked list with the newest entry first, and a full walk goes
// through the buckets in ascending order, each from its head. That walk order is the order in
// which objects are written to the file, so it must not change.
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
    for (Entry* e = head; e != nullptr; e = e->next)
      if (e->id == id) return nullptr;
    if (arena != nullptr)
      head = new (arena->Allocate(sizeof(Entry))) Entry{std::move(object), id, true, head};
    else
      head = new Entry{std::move(object), id, false, head};
    ++count_;
    return &head->object;
  }

  // Negative ids are never stored; they are answered without touching the table.
  T* Find(int32_t id) const {
    if (id < 0) return nullptr;
    for (Entry* e = buckets_[Bucket(id)]; e != nullptr; e = e->next)
      if (e->id == id) return &e->object;
    return nullptr;
  }

  // Destroys the object under the id; false if there is none.
  bool Erase(int32_t id) {
    if (id < 0) return false;
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
  }

  // Visits (id, object) in table order. The visitor must not change the table.
  template <class Visit>
  void ForEach(Visit&& visit) const {
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

  std::vector<Entry*> buckets_;
  size_t count_ = 0;
};

}  // namespace verdal::model
