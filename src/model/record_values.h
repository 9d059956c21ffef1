#pragma once
// The values of one data record, one per field position, held in a single block:
//
//   count, the end of each value (32-bit words), then the texts, each followed by a NUL
//
// A record thus costs one block instead of a string per value, and a walk that reads a few of its
// values touches a few neighbouring cache lines. A loaded record's block comes from the store's
// arena and is shared memory that this object does not own; the first change gives the record a
// block of its own.
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace verdal::model {

class TextArena;

class RecordValues {
 public:
  RecordValues() = default;
  RecordValues(const RecordValues& other);  // the copy owns its block
  RecordValues& operator=(const RecordValues& other);
  RecordValues(RecordValues&& other) noexcept : block_(other.block_), owned_(other.owned_) {
    other.block_ = nullptr;
  }
  RecordValues& operator=(RecordValues&& other) noexcept;
  ~RecordValues() { Release(); }

  size_t size() const { return block_ != nullptr ? block_[0] : 0; }
  bool empty() const { return size() == 0; }

  // The value at a position below size(). Its text is followed by a NUL, so data() serves as a C
  // string. Valid until the values change.
  std::string_view operator[](size_t i) const {
    const uint32_t start = i == 0 ? 0 : block_[i];
    return {Texts() + start, block_[i + 1] - start - 1};
  }

  // Replaces all values. With an arena the block comes from it and lives as long as the arena does.
  // Throws std::length_error if the texts do not fit one block (4 GiB).
  void Assign(const std::string_view* texts, size_t count, TextArena* arena = nullptr);
  // The same from texts already in block form: each followed by a NUL, `ends[i]` the offset just
  // past the NUL of text i, the last end no more than the texts' size.
  void AssignPacked(std::string_view texts, const uint32_t* ends, size_t count, TextArena* arena);
  void Set(size_t i, std::string_view text);
  void Resize(size_t count);  // values added are empty
  void PushBack(std::string_view text);
  void Erase(size_t i);
  void Clear();

  // Where the block starts, for asking for it ahead of a read; null when there are no values.
  const void* Block() const { return block_; }
  // How much of a block to ask for ahead: the ends and the first values, which is where filters
  // of a few fields find what they read.
  static constexpr size_t kLeadBytes = 256;

 private:
  const char* Texts() const { return reinterpret_cast<const char*>(block_ + 1 + block_[0]); }
  // Builds the values of `count` positions, each taken from `from(i)`, in place of the current
  // ones; `from` may read the current ones.
  template <class From>
  void Rebuild(size_t count, From&& from);
  void Release();

  uint32_t* block_ = nullptr;
  bool owned_ = true;
};

}  // namespace verdal::model
