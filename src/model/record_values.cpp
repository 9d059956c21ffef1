#include "model/record_values.h"

#include <cstring>
#include <limits>
#include <new>
#include <stdexcept>
#include <vector>

namespace verdal::model {

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
    count_ = other.count_;
    pooled_ = other.pooled_;
    other.block_ = nullptr;
    other.count_ = 0;
    other.pooled_ = false;
  }
  return *this;
}

void RecordValues::Release() {
  if (!pooled_) {
    ::operator delete(block_);
  } else if constexpr (memory::PageArena::kRedZone != 0) {
    // Only sanitizer builds learn the size, to have later use of the block reported.
    size_t bytes = (kLeadTexts + count_) * kSlotBytes;
    for (size_t t = 0; t < kLeadTexts + count_; ++t)
      if (Slot(t)[0] == kLong) bytes += Text(t).size() + 1;
    memory::PageArena::Abandon(block_, bytes);
  }
  pooled_ = false;
  block_ = nullptr;
  count_ = 0;
}

template <class From>
void RecordValues::Rebuild(std::string_view identifier, std::string_view title, size_t count,
                           From&& from, memory::PageArena* arena) {
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

  // Offsets and lengths in the tail are 32-bit; the sizes are checked before anything is allocated.
  constexpr uint64_t kMax = std::numeric_limits<uint32_t>::max();
  uint64_t tailBytes = 0;
  for (size_t t = 0; t < texts; ++t)
    if (views[t].size() > kShortest) tailBytes += uint64_t{views[t].size()} + 1;
  if (tailBytes > kMax || texts > kMax) throw std::length_error("record texts exceed 4 GiB");
  const size_t slotBytes = texts * kSlotBytes;
  const size_t total = slotBytes + static_cast<size_t>(tailBytes);
  auto* block = static_cast<uint8_t*>(arena != nullptr ? arena->Allocate(total) : ::operator new(total));
  char* tail = reinterpret_cast<char*>(block + slotBytes);
  uint32_t used = 0;
  for (size_t t = 0; t < texts; ++t) {
    uint8_t* slot = block + t * kSlotBytes;
    const std::string_view text = views[t];
    if (text.size() <= kShortest) {
      slot[0] = static_cast<uint8_t>(text.size());
      if (!text.empty()) std::memcpy(slot + 1, text.data(), text.size());
      slot[1 + text.size()] = '\0';
      continue;
    }
    const uint32_t where[2] = {used, static_cast<uint32_t>(text.size())};
    slot[0] = kLong;
    std::memcpy(slot + 4, where, sizeof where);
    std::memcpy(tail + used, text.data(), text.size());
    tail[used + text.size()] = '\0';
    used += static_cast<uint32_t>(text.size() + 1);
  }
  // The old block goes only now: the texts may have come from it.
  Release();
  block_ = block;
  count_ = static_cast<uint32_t>(count);
  pooled_ = arena != nullptr;
}

void RecordValues::Assign(std::string_view identifier, std::string_view title,
                          const std::string_view* values, size_t count, memory::PageArena* arena) {
  Rebuild(identifier, title, count, [&](size_t i) { return values[i]; }, arena);
}

bool RecordValues::WriteInSlot(size_t t, std::string_view text) {
  uint8_t* slot = static_cast<uint8_t*>(block_) + t * kSlotBytes;
  if (slot[0] == kLong || text.size() > kShortest) return false;
  // The text may come from this very slot.
  if (!text.empty()) std::memmove(slot + 1, text.data(), text.size());
  slot[1 + text.size()] = '\0';
  slot[0] = static_cast<uint8_t>(text.size());
  return true;
}

void RecordValues::Set(size_t i, std::string_view value) {
  if (i < count_ && WriteInSlot(kLeadTexts + i, value)) return;
  Rebuild(Identifier(), Title(), size(), [&](size_t k) { return k == i ? value : (*this)[k]; });
}

void RecordValues::SetIdentifier(std::string_view identifier) {
  Rebuild(identifier, Title(), size(), [&](size_t k) { return (*this)[k]; });
}

void RecordValues::SetTitle(std::string_view title) {
  if (block_ != nullptr && WriteInSlot(1, title)) return;
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
