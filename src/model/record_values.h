#pragma once
// The texts of one data record, held in a single block: its identifier, its title, then one value
// per field position. Each text has a slot of 16 bytes at a fixed place; a short text lies in its
// slot, a longer one in the block's tail, which its slot points to:
//
//   slot, short text (up to 14 bytes):  length, the text, NUL
//   slot, long text:                    kLong, 3 unused, offset in the tail, length (32 bits each)
//   tail:                               the long texts, each followed by a NUL
//
// A record thus costs one block instead of a string per text, and reading a value of usual size
// touches one cache line whose place is known without reading anything first, which walks that
// ask for values ahead of time depend on.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "memory/page_arena.h"

namespace verdal::model {

class RecordValues {
 public:
  // Texts ahead of the values in a block: the identifier, then the title.
  static constexpr size_t kLeadTexts = 2;
  static constexpr size_t kSlotBytes = 16;

  RecordValues() = default;
  RecordValues(const RecordValues& other);
  RecordValues& operator=(const RecordValues& other);
  RecordValues(RecordValues&& other) noexcept
      : block_(other.block_), count_(other.count_), pooled_(other.pooled_) {
    other.block_ = nullptr;
    other.count_ = 0;
    other.pooled_ = false;
  }
  RecordValues& operator=(RecordValues&& other) noexcept;
  ~RecordValues() { Release(); }

  // The count of values; the identifier and title are not counted.
  size_t size() const { return count_; }
  bool empty() const { return count_ == 0; }

  // The value at a position below size(). Every text is followed by a NUL, so data() serves as a
  // C string. Valid until the texts change.
  std::string_view operator[](size_t i) const { return Text(kLeadTexts + i); }
  std::string_view Identifier() const { return block_ != nullptr ? Text(0) : std::string_view(""); }
  std::string_view Title() const { return block_ != nullptr ? Text(1) : std::string_view(""); }

  // Replaces everything. Throws std::length_error if the texts do not fit one block (4 GiB). With
  // an arena, the block is cut from it (a load); blocks of later changes come from the heap.
  void Assign(std::string_view identifier, std::string_view title, const std::string_view* values,
              size_t count, memory::PageArena* arena = nullptr);
  void Set(size_t i, std::string_view value);
  void SetIdentifier(std::string_view identifier);
  void SetTitle(std::string_view title);
  void Resize(size_t count);  // values added are empty
  void PushBack(std::string_view value);
  void Erase(size_t i);
  void Clear();  // the values only

  // For asking for texts ahead of a read: the slot of a value, which holds the value itself unless
  // it is long, and that of the title. Null when there are no texts.
  const void* SlotOfValue(size_t i) const { return Slot(kLeadTexts + i); }
  const void* SlotOfTitle() const { return Slot(1); }

 private:
  static constexpr uint8_t kLong = 0xff;
  static constexpr size_t kShortest = kSlotBytes - 2;  // the longest text a slot holds

  const uint8_t* Slot(size_t t) const {
    return block_ != nullptr ? reinterpret_cast<const uint8_t*>(block_) + t * kSlotBytes : nullptr;
  }
  std::string_view Text(size_t t) const {
    const uint8_t* slot = Slot(t);
    if (slot[0] != kLong) return {reinterpret_cast<const char*>(slot) + 1, slot[0]};
    uint32_t where[2];
    std::memcpy(where, slot + 4, sizeof where);
    return {Tail() + where[0], where[1]};
  }
  const char* Tail() const { return reinterpret_cast<const char*>(block_) + (kLeadTexts + count_) * kSlotBytes; }
  // Puts a short text over a short one in its slot; false where either is long, which takes a new
  // block.
  bool WriteInSlot(size_t t, std::string_view text);
  // Builds a block of the identifier, the title and `count` values, value i taken from `from(i)`,
  // in place of the current one; the texts may come from the current block.
  template <class From>
  void Rebuild(std::string_view identifier, std::string_view title, size_t count, From&& from,
               memory::PageArena* arena = nullptr);
  void Release();

  void* block_ = nullptr;
  uint32_t count_ = 0;
  bool pooled_ = false;  // the block belongs to an arena and is never freed here
};

}  // namespace verdal::model
