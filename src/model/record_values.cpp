#include "model/record_values.h"

#include <cstring>
#include <limits>
#include <new>
#include <stdexcept>
#include <vector>

#include "model/text_arena.h"

namespace verdal::model {

RecordValues::RecordValues(const RecordValues& other) {
  Rebuild(other.size(), [&](size_t i) { return other[i]; });
}

RecordValues& RecordValues::operator=(const RecordValues& other) {
  if (this != &other) Rebuild(other.size(), [&](size_t i) { return other[i]; });
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

void RecordValues::Assign(const std::string_view* texts, size_t count, TextArena* arena) {
  if (count == 0) {
    Release();
    return;
  }
  // Every end must fit a 32-bit word; the sum is checked before anything is allocated.
  constexpr uint64_t kMaxTexts = std::numeric_limits<uint32_t>::max();
  uint64_t textBytes = 0;
  for (size_t i = 0; i < count; ++i) textBytes += uint64_t{texts[i].size()} + 1;
  if (textBytes > kMaxTexts) throw std::length_error("record values exceed 4 GiB");
  const size_t headerBytes = (1 + count) * sizeof(uint32_t);
  const size_t total = headerBytes + static_cast<size_t>(textBytes);
  auto* block = static_cast<uint32_t*>(arena != nullptr ? arena->Allocate(total) : ::operator new(total));
  block[0] = static_cast<uint32_t>(count);
  char* out = reinterpret_cast<char*>(block + 1 + count);
  uint32_t end = 0;
  for (size_t i = 0; i < count; ++i) {
    const size_t n = texts[i].size();
    if (n > 0) std::memcpy(out + end, texts[i].data(), n);
    out[end + n] = '\0';
    end += static_cast<uint32_t>(n + 1);
    block[1 + i] = end;
  }
  // The old block goes only now: the texts may have come from it.
  Release();
  block_ = block;
  owned_ = arena == nullptr;
}

void RecordValues::AssignPacked(std::string_view texts, const uint32_t* ends, size_t count,
                                TextArena* arena) {
  if (count == 0) {
    Release();
    return;
  }
  const size_t textBytes = ends[count - 1];
  if (textBytes > texts.size() || count > std::numeric_limits<uint32_t>::max())
    throw std::length_error("record values do not match their ends");
  const size_t headerBytes = (1 + count) * sizeof(uint32_t);
  const size_t total = headerBytes + textBytes;
  auto* block = static_cast<uint32_t*>(arena != nullptr ? arena->Allocate(total) : ::operator new(total));
  block[0] = static_cast<uint32_t>(count);
  std::memcpy(block + 1, ends, count * sizeof(uint32_t));
  std::memcpy(block + 1 + count, texts.data(), textBytes);
  Release();
  block_ = block;
  owned_ = arena == nullptr;
}

template <class From>
void RecordValues::Rebuild(size_t count, From&& from) {
  // Records have tens of fields, rarely more: their views fit on the stack.
  constexpr size_t kOnStack = 64;
  std::string_view onStack[kOnStack];
  std::vector<std::string_view> onHeap;
  std::string_view* views = onStack;
  if (count > kOnStack) {
    onHeap.resize(count);
    views = onHeap.data();
  }
  for (size_t i = 0; i < count; ++i) views[i] = from(i);
  Assign(views, count);
}

void RecordValues::Set(size_t i, std::string_view text) {
  Rebuild(size(), [&](size_t k) { return k == i ? text : (*this)[k]; });
}

void RecordValues::Resize(size_t count) {
  const size_t had = size();
  if (count == had) return;
  Rebuild(count, [&](size_t k) { return k < had ? (*this)[k] : std::string_view(); });
}

void RecordValues::PushBack(std::string_view text) {
  const size_t had = size();
  Rebuild(had + 1, [&](size_t k) { return k < had ? (*this)[k] : text; });
}

void RecordValues::Erase(size_t i) {
  if (i >= size()) return;
  Rebuild(size() - 1, [&](size_t k) { return (*this)[k < i ? k : k + 1]; });
}

void RecordValues::Clear() { Release(); }

}  // namespace verdal::model
