#include "listing/list_display.h"

#include "io/stream_io.h"
#include "platform/collation.h"

namespace verdal::listing {

using options::kCollectionMark;
using options::kEntryMark;

namespace {

// The least a stored item and definition take, to test a count before anything is made for it.
constexpr int64_t kMinItemBytes = 4 + 4 + 4 + 4 + 4 + 4 + 4 + 4;
constexpr int64_t kMinDefinitionBytes = 4 + 4 + 4 + 1 + 4 + 1 + 1 + 4 + 4 + 4;

void WriteItem(const TListAndSortDisplayFieldInfoData& item, TBaseFile& f) {
  WriteUInt32(kEntryMark, f);
  WriteInt32(2, f);
  WriteInt32(item.itemReserved, f);
  WriteUInt8(item.alignment, f);
  WriteBool(item.ascending, f);
  WriteBool(item.stringSort, f);
  WriteBool(item.readOnly, f);
  WriteInt32(item.width, f);
  WriteString(item.fieldName, f);
  WriteString(item.displayName, f);
  WriteInt32(0, f);
}

bool ReadItem(TListAndSortDisplayFieldInfoData& item, TBaseFile& f) {
  if (ReadUInt32(f) != kEntryMark) return false;
  ReadInt32(f);  // every item version holds every field
  item.itemVersion = 2;
  item.itemReserved = ReadInt32(f);
  item.alignment = ReadUInt8(f);
  item.ascending = ReadBool(f);
  item.stringSort = ReadBool(f);
  item.readOnly = ReadBool(f);
  item.width = ReadInt32(f);
  ReadString(item.fieldName, f);
  ReadString(item.displayName, f);
  ReadInt32(f);
  return true;
}

void WriteDefinition(const TListSortAndDisplayFieldInfo& d, TBaseFile& f) {
  WriteUInt32(kEntryMark, f);
  WriteInt32(4, f);
  WriteInt32(d.reserved, f);
  WriteUInt8(d.kind, f);
  WriteInt32(d.startCursor, f);
  WriteBool(d.sortCategories, f);
  WriteBool(d.recursive, f);
  WriteBool(d.ignoreCategories, f);
  WriteString(d.name, f);
  WriteString(d.description, f);
  WriteBool(d.notifyControls, f);
  WriteInt32(static_cast<int32_t>(d.items.size()), f);
  for (const auto& item : d.items) WriteItem(item, f);
  WriteInt32(0, f);
}

// Fields an older version lacks keep their initial values.
bool ReadDefinition(TListSortAndDisplayFieldInfo& d, TBaseFile& f) {
  if (ReadUInt32(f) != kEntryMark) return false;
  const int32_t version = ReadInt32(f);
  d.reserved = ReadInt32(f);
  d.kind = ReadUInt8(f);
  d.startCursor = ReadInt32(f);
  d.sortCategories = ReadBool(f);
  d.recursive = ReadBool(f);
  if (version > 1) d.ignoreCategories = ReadBool(f);
  ReadString(d.name, f);
  if (version > 2) ReadString(d.description, f);
  if (version > 3) d.notifyControls = ReadBool(f);
  d.version = 4;
  const int32_t count = ReadInt32(f);
  if (!CountFits(f, count, kMinItemBytes)) return false;
  d.items.reserve(static_cast<size_t>(count));
  for (int32_t i = 0; i < count; ++i) {
    TListAndSortDisplayFieldInfoData item;
    if (!ReadItem(item, f)) return false;
    d.items.push_back(std::move(item));
  }
  ReadInt32(f);
  return true;
}

}  // namespace

TListSortAndDisplayFieldInfo* TListAndSortDisplayFieldInfoMananger::At(int32_t index) const {
  if (index < 0) return nullptr;
  const uint8_t kind = SelectedKind();
  for (const auto& d : definitions)
    if (d->kind == kind && index-- == 0) return d.get();
  return nullptr;
}

int32_t TListAndSortDisplayFieldInfoMananger::VisibleIndexOf(const TListSortAndDisplayFieldInfo* definition) const {
  int32_t index = 0;
  for (const auto& d : definitions) {
    if (d.get() == definition) return index;
    if (d->kind == definition->kind) ++index;
  }
  return -1;
}

int32_t TListAndSortDisplayFieldInfoMananger::GetCount() const {
  int32_t n = 0;
  const uint8_t kind = SelectedKind();
  for (const auto& d : definitions) n += d->kind == kind;
  return n;
}

const char* TListAndSortDisplayFieldInfoMananger::GetName(int32_t index) const {
  const auto* d = At(index);
  return d != nullptr ? d->name.c_str() : nullptr;
}

bool TListAndSortDisplayFieldInfoMananger::SetName(int32_t index, const std::string& name) {
  auto* d = At(index);
  if (d != nullptr) d->name = name;
  return d != nullptr;
}

const char* TListAndSortDisplayFieldInfoMananger::GetComment(int32_t index) const {
  const auto* d = At(index);
  return d != nullptr ? d->description.c_str() : nullptr;
}

bool TListAndSortDisplayFieldInfoMananger::SetComment(int32_t index, const std::string& comment) {
  auto* d = At(index);
  if (d != nullptr) d->description = comment;
  return d != nullptr;
}

bool TListAndSortDisplayFieldInfoMananger::Write(TBaseFile& f) {
  WriteUInt32(kCollectionMark, f);
  WriteInt32(1, f);
  managerVersion = 1;
  WriteString(defaultName, f);
  WriteInt32(static_cast<int32_t>(definitions.size()), f);
  for (const auto& d : definitions) WriteDefinition(*d, f);
  return true;
}

bool TListAndSortDisplayFieldInfoMananger::Read(TBaseFile& f) {
  definitions.clear();
  const uint32_t mark = ReadUInt32(f);
  if (mark == kCollectionMark) {
    managerVersion = ReadInt32(f);
    ReadString(defaultName, f);
  } else if (mark == kEntryMark) {  // the older form: the count follows at once
    defaultName.clear();
  } else {
    return false;
  }
  const int32_t count = ReadInt32(f);
  if (!CountFits(f, count, kMinDefinitionBytes)) return false;
  for (int32_t i = 0; i < count; ++i) {
    auto d = std::make_unique<TListSortAndDisplayFieldInfo>();
    if (!ReadDefinition(*d, f)) return false;
    definitions.push_back(std::move(d));
  }
  return true;
}

TListSortAndDisplayFieldInfo* TListAndSortDisplayFieldInfoMananger::FindDefinition(const std::string& name,
                                                                                  DefinitionKind kind) const {
  for (const auto& d : definitions)
    if (d->kind == static_cast<uint8_t>(kind) && platform::SameNameNoCase(d->name, name)) return d.get();
  return nullptr;
}

int32_t TListAndSortDisplayFieldInfoMananger::Append(std::unique_ptr<TListSortAndDisplayFieldInfo> definition) {
  definition->name = options::TrimTrailingBlanks(definition->name);
  if (definition->name.empty()) return -1;
  const auto kind = static_cast<DefinitionKind>(definition->kind);
  if (const auto* existing = FindDefinition(definition->name, kind)) return VisibleIndexOf(existing);
  definitions.push_back(std::move(definition));
  return VisibleIndexOf(definitions.back().get());
}

int32_t TListAndSortDisplayFieldInfoMananger::Add(const std::string& name) {
  auto d = std::make_unique<TListSortAndDisplayFieldInfo>();
  d->kind = SelectedKind();
  d->name = name;
  return Append(std::move(d));
}

int32_t TListAndSortDisplayFieldInfoMananger::Copy(int32_t index, const char* newName) {
  const auto* source = At(index);
  if (source == nullptr) return -1;
  auto d = std::make_unique<TListSortAndDisplayFieldInfo>(*source);
  d->kind = SelectedKind();
  if (newName != nullptr) d->name = newName;
  return Append(std::move(d));
}

bool TListAndSortDisplayFieldInfoMananger::Remove(int32_t index) {
  const auto* d = At(index);
  if (d == nullptr) return false;
  for (auto it = definitions.begin(); it != definitions.end(); ++it)
    if (it->get() == d) {
      definitions.erase(it);
      break;
    }
  return true;
}

const char* TListAndSortDisplayFieldInfoMananger::GetFileFilter() const {
  return owner == 0 ? "Ansichts-Einstellung (*.view)|*.view|" : "Sortier-Einstellung (*.sort)|*.sort|";
}

void TListAndSortDisplayFieldInfoMananger::CopyFrom(const TListAndSortDisplayFieldInfoMananger& other) {
  if (&other == this) return;
  definitions.clear();
  for (const auto& d : other.definitions)
    definitions.push_back(std::make_unique<TListSortAndDisplayFieldInfo>(*d));
  managerVersion = other.managerVersion;
  defaultName = other.defaultName;
}

void TListAndSortDisplayFieldInfoMananger::Clear() {
  definitions.clear();
  defaultName.clear();
}

}  // namespace verdal::listing
