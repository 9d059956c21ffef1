#pragma once
// Hash table from a 32-bit id to an owned object. The bucket count is fixed by the database's size
// class; each bucket is a singly linked list with the newest entry first, and a full walk goes
// through the buckets in ascending order, each from its head. That walk order is the order in
// which objects are written to the file, so it must not change.
#include <cstdint>
#include <memory>
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

  // Takes the object over unless the id is present already; then nothing changes and the object
  // stays with the caller.
  bool Insert(int32_t id, std::unique_ptr<T>& object) {
    Entry*& head = buckets_[Bucket(id)];
    for (Entry* e = head; e != nullptr; e = e->next)
      if (e->id == id) return false;
    head = new Entry{object.release(), id, head};
    ++count_;
    return true;
  }

  // Negative ids are never stored; they are answered without touching the table.
  T* Find(int32_t id) const {
    if (id < 0) return nullptr;
    for (Entry* e = buckets_[Bucket(id)]; e != nullptr; e = e->next)
      if (e->id == id) return e->object;
    return nullptr;
  }

  // Takes the object out of the table and hands it back.
  std::unique_ptr<T> Remove(int32_t id) {
    if (id < 0) return nullptr;
    for (Entry** link = &buckets_[Bucket(id)]; *link != nullptr; link = &(*link)->next) {
      Entry* e = *link;
      if (e->id != id) continue;
      *link = e->next;
      std::unique_ptr<T> object(e->object);
      delete e;
      --count_;
      return object;
    }
    return nullptr;
  }

  bool Erase(int32_t id) { return Remove(id) != nullptr; }

  void Clear() {
    for (Entry*& head : buckets_) {
      while (head != nullptr) {
        Entry* e = head;
        head = e->next;
        delete e->object;
        delete e;
      }
    }
    count_ = 0;
  }

  // Visits (id, object) in table order. The visitor must not change the table.
  template <class Visit>
  void ForEach(Visit&& visit) const {
    for (Entry* head : buckets_)
      for (Entry* e = head; e != nullptr; e = e->next) visit(e->id, e->object);
  }

 private:
  struct Entry {
    T* object;
    int32_t id;
    Entry* next;
  };

  size_t Bucket(int32_t id) const { return static_cast<uint32_t>(id) % buckets_.size(); }

  std::vector<Entry*> buckets_;
  size_t count_ = 0;
};

}  // namespace verdal::model
