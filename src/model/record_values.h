#pragma once
// The texts of one data record, held in a single block: its identifier, its title, then one value
// per field position.
//
//   count of values, the end of each text (32-bit words), then the texts, each followed by a NUL
//
// A record thus costs one block instead of a string per text, and a walk that reads a few of its
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
  // Texts ahead of the values in a block: the identifier, then the title.
  static constexpr size_t kLeadTexts = 2;

  RecordValues() = default;
  RecordValues(const RecordValues& other);  // the copy owns its block
  RecordValues& operator=(const RecordValues& other);
  RecordValues(RecordValues&& other) noexcept : block_(other.block_), owned_(other.owned_) {
    other.block_ = nullptr;
  }
  RecordValues& operator=(RecordValues&& other) noexcept;
  ~RecordValues() { Release(); }

  // The count of values; the identifier and title are not counted.
  size_t size() const { return block_ != nullptr ? block_[0] : 0; }
  bool empty() const { return size() == 0; }

  // The value at a position below size(). Every text is followed by a NUL, so data() serves as a
  // C string. Valid until the texts change.
  std::string_view operator[](size_t i) const { return Text(kLeadTexts + i); }
  std::string_view Identifier() const { return block_ != nullptr ? Text(0) : std::string_view(""); }
  std::string_view Title() const { return block_ != nullptr ? Text(1) : std::string_view(""); }

  // Replaces everything. With an arena the block comes from it and lives as long as the arena
  // does. Throws std::length_error if the texts do not fit one block (4 GiB).
  void Assign(std::string_view identifier, std::string_view title, const std::string_view* values,
              size_t count, TextArena* arena = nullptr);
  // The same from texts already in block form, identifier and title first: each followed by a
  // NUL, `ends[i]` the offset just past the NUL of text i, kLeadTexts + count ends in all.
  void AssignPacked(std::string_view texts, const uint32_t* ends, size_t count, TextArena* arena);
  void Set(size_t i, std::string_view value);
  void SetIdentifier(std::string_view identifier);
  void SetTitle(std::string_view title);
  void Resize(size_t count);  // values added are empty
  void PushBack(std::string_view value);
  void Erase(size_t i);
  void Clear();  // the values only

  // Where the block starts, for asking for it ahead of a read; null when there are no texts.
  const void* Block() const { return block_; }
  // How much of a block to ask for ahead: the ends and the first texts, which is where filters of
  // a few fields find what they read.
  static constexpr size_t kLeadBytes = 256;

 private:
  std::string_view Text(size_t t) const {
    const char* texts = reinterpret_cast<const char*>(block_ + 1 + kLeadTexts + block_[0]);
    const uint32_t start = t == 0 ? 0 : block_[t];
    return {texts + start, block_[t + 1] - start - 1};
  }
  // Builds a block of the identifier, the title and `count` values, value i taken from `from(i)`,
  // in place of the current one; the texts may come from the current block.
  template <class From>
  void Rebuild(std::string_view identifier, std::string_view title, size_t count, From&& from,
               TextArena* arena = nullptr);
  void Release();

  uint32_t* block_ = nullptr;
  bool owned_ = true;
};

}  // namespace verdal::model
