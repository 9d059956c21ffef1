#include "listing/filter_parts.h"

#include <algorithm>

#include "io/stream_io.h"
#include "platform/collation.h"

namespace verdal::listing {

namespace {

// The fewest bytes a stored row and filter take: fixed part and four (or one) empty strings.
constexpr int64_t kMinRowBytes = 1 + 2 + 2 + 3 + 4 * 4;
constexpr int64_t kMinFilterBytes = 1 + 4 + 4;

bool ReadItem(TDBFilterPartsItem& item, TBaseFile& f) {
  item.itemVersion = ReadUInt8(f);
  ReadString(item.name, f);
  const int32_t count = ReadInt32(f);
  if (!CountFits(f, count, kMinRowBytes)) return false;
  item.rows.resize(static_cast<size_t>(count));
  for (TDBFilterParts& row : item.rows) ReadFilterRow(row, f);
  return true;
}

}  // namespace

void TDBFilterParts::Clamp() {
  link = std::clamp<int16_t>(link, kLinkNone, kLinkOr);
  condition = std::clamp<int16_t>(condition, kLess, kGreaterEqual);
}

TDBFilterPartsItem* TDBFilterCollection::Find(const std::string& name) const {
  const int32_t i = IndexOf(name);
  return i >= 0 ? filters[static_cast<size_t>(i)].get() : nullptr;
}

int32_t TDBFilterCollection::IndexOf(const std::string& name) const {
  for (size_t i = 0; i < filters.size(); ++i)
    if (platform::SameNameNoCase(filters[i]->name, name)) return static_cast<int32_t>(i);
  return -1;
}

void TDBFilterCollection::Clear() {
  filters.clear();
  currentFilter.clear();
}

void TDBFilterCollection::CopyFrom(const TDBFilterCollection& other) {
  if (&other == this) return;
  collectionVersion = other.collectionVersion;
  currentFilter = other.currentFilter;
  filters.clear();
  for (const auto& item : other.filters) filters.push_back(std::make_unique<TDBFilterPartsItem>(*item));
}

void WriteFilterRow(const TDBFilterParts& row, TBaseFile& f) {
  WriteUInt8(TDBFilterParts::kCurrentVersion, f);
  WriteInt16(row.link, f);
  WriteInt16(row.condition, f);
  WriteUInt8(row.wholeWord, f);
  WriteUInt8(row.caseSensitive, f);
  WriteUInt8(row.reserved, f);
  WriteUInt8(row.beginsWith, f);
  WriteUInt8(row.wildcard, f);
  WriteString(row.openBracket, f);
  WriteString(row.closeBracket, f);
  WriteString(row.fieldName, f);
  WriteString(row.value, f);
}

void ReadFilterRow(TDBFilterParts& row, TBaseFile& f) {
  row.rowVersion = ReadUInt8(f);
  row.link = ReadInt16(f);
  row.condition = ReadInt16(f);
  row.wholeWord = ReadUInt8(f);
  row.caseSensitive = ReadUInt8(f);
  row.reserved = ReadUInt8(f);
  row.beginsWith = row.rowVersion > 1 ? ReadUInt8(f) : 0;
  row.wildcard = row.rowVersion > 2 ? ReadUInt8(f) : 0;
  ReadString(row.openBracket, f);
  ReadString(row.closeBracket, f);
  ReadString(row.fieldName, f);
  ReadString(row.value, f);
}

void WriteFilters(const TDBFilterCollection& collection, TBaseFile& f) {
  WriteUInt8(TDBFilterCollection::kCurrentVersion, f);
  WriteString(collection.currentFilter, f);
  WriteInt32(static_cast<int32_t>(collection.filters.size()), f);
  for (const auto& item : collection.filters) {
    WriteUInt8(TDBFilterPartsItem::kCurrentVersion, f);
    WriteString(item->name, f);
    WriteInt32(static_cast<int32_t>(item->rows.size()), f);
    for (const TDBFilterParts& row : item->rows) WriteFilterRow(row, f);
  }
}

bool ReadFilters(TDBFilterCollection& collection, TBaseFile& f) {
  collection.Clear();
  TDBFilterCollection read;
  read.collectionVersion = ReadUInt8(f);
  ReadString(read.currentFilter, f);
  const int32_t count = ReadInt32(f);
  if (!CountFits(f, count, kMinFilterBytes)) return false;
  read.filters.reserve(static_cast<size_t>(count));
  for (int32_t i = 0; i < count; ++i) {
    auto item = std::make_unique<TDBFilterPartsItem>();
    if (!ReadItem(*item, f)) return false;
    read.filters.push_back(std::move(item));
  }
  collection.collectionVersion = read.collectionVersion;
  collection.currentFilter = std::move(read.currentFilter);
  collection.filters = std::move(read.filters);
  return true;
}

}  // namespace verdal::listing
