#include "model/record_values.h"

#include <cstring>
#include <limits>
#include <new>
#include <stdexcept>
#include <vector>

#include "model/text_arena.h"

namespace verdal::model {

namespace {

uint32_t* NewBlock(size_t bytes, TextArena* arena) {
  return static_cast<uint32_t*>(arena != nullptr ? arena->Allocate(bytes) : ::operator new(bytes));
}

}  // namespace

RecordValues::RecordValues(const RecordValues& other) {
  if (other.block_ != nullptr)
    Rebuild(other.Identifier(), other.Title(), other.size(), [&](size_t i) { return other[i]; });
}

RecordValues& RecordValues::operator=(const RecordValues& other) {
  if (this == &other) return *this;
  if (other.block_ == nullptr) {
    Release();
    return *this;
  }
  Rebuild(other.Identifier(), other.Title(), other.size(), [&](size_t i) { return other[i]; });
  return *this;
}

RecordValues& RecordValues::operator=(RecordValues&& other) noexcept {
  if (this != &other) {
    Release();
    block_ = other.block_;
    owned_ = other.owned_;
    other.block_ = nullptr;
  }
  return *this;
}

void RecordValues::Release() {
  if (owned_ && block_ != nullptr) ::operator delete(block_);
  block_ = nullptr;
  owned_ = true;
}

template <class From>
void RecordValues::Rebuild(std::string_view identifier, std::string_view title, size_t count,
                           From&& from, TextArena* arena) {
  const size_t texts = kLeadTexts + count;
  // Records have tens of fields, rarely more: their views fit on the stack.
  constexpr size_t kOnStack = 64;
  std::string_view onStack[kOnStack];
  std::vector<std::string_view> onHeap;
  std::string_view* views = onStack;
  if (texts > kOnStack) {
    onHeap.resize(texts);
    views = onHeap.data();
  }
  views[0] = identifier;
  views[1] = title;
  for (size_t i = 0; i < count; ++i) views[kLeadTexts + i] = from(i);

  // Every end must fit a 32-bit word; the sum is checked before anything is allocated.
  constexpr uint64_t kMaxTexts = std::numeric_limits<uint32_t>::max();
  uint64_t textBytes = 0;
  for (size_t t = 0; t < texts; ++t) textBytes += uint64_t{views[t].size()} + 1;
  if (textBytes > kMaxTexts) throw std::length_error("record texts exceed 4 GiB");
  uint32_t* block = NewBlock((1 + texts) * sizeof(uint32_t) + static_cast<size_t>(textBytes), arena);
  block[0] = static_cast<uint32_t>(count);
  char* out = reinterpret_cast<char*>(block + 1 + texts);
  uint32_t end = 0;
  for (size_t t = 0; t < texts; ++t) {
    const size_t n = views[t].size();
    if (n > 0) std::memcpy(out + end, views[t].data(), n);
    out[end + n] = '\0';
    end += static_cast<uint32_t>(n + 1);
    block[1 + t] = end;
  }
  // The old block goes only now: the texts may have come from it.
  Release();
  block_ = block;
  owned_ = arena == nullptr;
}

void RecordValues::Assign(std::string_view identifier, std::string_view title,
                          const std::string_view* values, size_t count, TextArena* arena) {
  Rebuild(identifier, title, count, [&](size_t i) { return values[i]; }, arena);
}

void RecordValues::AssignPacked(std::string_view texts, const uint32_t* ends, size_t count,
                                TextArena* arena) {
  const size_t all = kLeadTexts + count;
  const size_t textBytes = ends[all - 1];
  if (textBytes > texts.size() || count > std::numeric_limits<uint32_t>::max())
    throw std::length_error("record texts do not match their ends");
  uint32_t* block = NewBlock((1 + all) * sizeof(uint32_t) + textBytes, arena);
  block[0] = static_cast<uint32_t>(count);
  std::memcpy(block + 1, ends, all * sizeof(uint32_t));
  std::memcpy(block + 1 + all, texts.data(), textBytes);
  Release();
  block_ = block;
  owned_ = arena == nullptr;
}

void RecordValues::Set(size_t i, std::string_view value) {
  Rebuild(Identifier(), Title(), size(), [&](size_t k) { return k == i ? value : (*this)[k]; });
}

void RecordValues::SetIdentifier(std::string_view identifier) {
  Rebuild(identifier, Title(), size(), [&](size_t k) { return (*this)[k]; });
}

void RecordValues::SetTitle(std::string_view title) {
  Rebuild(Identifier(), title, size(), [&](size_t k) { return (*this)[k]; });
}

void RecordValues::Resize(size_t count) {
  const size_t had = size();
  if (count == had && block_ != nullptr) return;
  Rebuild(Identifier(), Title(), count, [&](size_t k) { return k < had ? (*this)[k] : std::string_view(); });
}

void RecordValues::PushBack(std::string_view value) {
  const size_t had = size();
  Rebuild(Identifier(), Title(), had + 1, [&](size_t k) { return k < had ? (*this)[k] : value; });
}

void RecordValues::Erase(size_t i) {
  if (i >= size()) return;
  Rebuild(Identifier(), Title(), size() - 1, [&](size_t k) { return (*this)[k < i ? k : k + 1]; });
}

void RecordValues::Clear() { Resize(0); }

}  // namespace verdal::model
