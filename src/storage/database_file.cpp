#include "storage/database_file.h"

#include <algorithm>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "io/memfile.h"
#include "io/read_ahead_file.h"
#include "io/stream_io.h"
#include "model/cursor.h"
#include "model/data_type_io.h"
#include "model/fields.h"
#include "platform/guid.h"
#include "platform/trace.h"
#include "listing/filter_parts.h"

namespace verdal::storage {

using namespace model;

namespace {

// The smallest number of bytes each kind of stored object takes, to check a stored count against
// the bytes left before anything is made for it.
constexpr int64_t kMinFieldBytes = 4 + 4 + 4 + 4 + 2 + 1 + 1 + 4 + 4;
constexpr int64_t kMinCategoryBytes = 4 + 4 + 4 + 4 + 1 + 4 + 4;
constexpr int64_t kMinDataBytes = 4 + 1 + 4 + 4 + 4 + 16 + 16 + 1 + 4 + 4 + 4;
constexpr int64_t kMinPlaceBytes = 4 + 4 + 4 + 4 + 1 + 4 + 2 + 12;

// The versions from which each section of the body is present.
constexpr int16_t kCountersSince = 2;
constexpr int16_t kPrintOptionsSince = 3;
constexpr int16_t kDefaultPrintSince = 4;
constexpr int16_t kFiltersSince = 5;
constexpr int16_t kFirstContainerSince = 6;  // five containers, one version after another

// A local time is eight little-endian 16-bit values, moved as one block of 16 bytes.
template <class File>
void WriteTime(const platform::LocalTime& t, File& f) {
  uint8_t bytes[16];
  const uint16_t values[8] = {t.year, t.month, t.dayOfWeek, t.day, t.hour, t.minute, t.second, t.millisecond};
  for (int i = 0; i < 8; ++i) {
    bytes[2 * i] = static_cast<uint8_t>(values[i]);
    bytes[2 * i + 1] = static_cast<uint8_t>(values[i] >> 8);
  }
  f.Write(bytes, sizeof bytes);
}

template <class File>
platform::LocalTime ReadTime(File& f) {
  uint8_t bytes[16];
  if (f.Read(bytes, sizeof bytes) != sizeof bytes) throw TReadWriteException();
  uint16_t v[8];
  for (int i = 0; i < 8; ++i) v[i] = static_cast<uint16_t>(bytes[2 * i] | (bytes[2 * i + 1] << 8));
  return platform::LocalTime{v[0], v[1], v[2], v[3], v[4], v[5], v[6], v[7]};
}

// Writes a count of 0, lets write() put the objects and count them, then patches the count.
template <class File, class Write>
void CountedSection(File& f, Write&& write) {
  int32_t countAt = f.Tell();
  WriteInt32(0, f);
  int32_t count = write();
  int32_t end = f.Tell();
  f.Seek(countAt);
  WriteInt32(count, f);
  f.Seek(end);
}

// ---- Definitions: list display and sort, print options, filters, the option containers.

void WriteDefinitions(StoredDatabase& db, TBaseFile& f) {
  db.lists.Write(f);
  WriteString(db.prints.currentPrintConfig, f);
  db.prints.WriteRecords(f);
  listing::WriteFilters(db.filters, f);
  for (int i = 0; i < options::OptionContainers::kCount; ++i) db.options.InOrder(i)->Write(f);
}

template <class File>
bool ReadDefinitions(StoredDatabase& db, File& f) {
  int16_t v = db.version;
  if (!db.lists.Read(f)) return false;
  db.prints.Clear();  // older files have none
  if (v >= kDefaultPrintSince) ReadString(db.prints.currentPrintConfig, f);
  if (v >= kPrintOptionsSince && !db.prints.ReadRecords(f)) return false;
  if (v < kFiltersSince) db.filters.Clear();  // older files have none
  else if (!listing::ReadFilters(db.filters, f)) return false;
  // Each container is present from its own version on; an absent one stays empty.
  db.options.Clear();
  for (int i = 0; i < options::OptionContainers::kCount; ++i)
    if (v >= kFirstContainerSince + i && !db.options.InOrder(i)->Read(f)) return false;
  return true;
}

// ---- Fields, categories, data records, places.

void WriteField(TDBFieldInfo& field, TBaseFile& f) {
  WriteUInt32(kSectionMark, f);
  WriteInt32(field.reserved1, f);
  WriteInt32(field.reserved2, f);
  WriteString(field.name, f);
  WriteInt16(field.position, f);
  WriteUInt8(field.reservedByte1, f);
  WriteUInt8(field.reservedByte2, f);
  WriteTypeInfo(field.type, f);
  WriteString(field.displayName, f);
}

template <class File>
bool ReadField(TDBFieldInfo& field, File& f) {
  if (ReadUInt32(f) != kSectionMark) return false;
  field.reserved1 = ReadInt32(f);
  field.reserved2 = ReadInt32(f);
  ReadString(field.name, f);
  field.position = ReadInt16(f);
  field.reservedByte1 = ReadUInt8(f);
  field.reservedByte2 = ReadUInt8(f);
  ReadTypeInfo(field.type, f);
  ReadString(field.displayName, f);
  return true;
}

template <class File>
void WriteCategory(const TDBCategoryRecord& c, File& f) {
  WriteUInt32(kSectionMark, f);
  WriteInt32(c.id, f);
  WriteInt32(c.parentId, f);
  WriteInt32(c.reserved, f);
  WriteBool(c.expanded, f);
  WriteString(c.displayName, f);
  WriteString(c.name, f);
}

template <class File>
bool ReadCategory(TDBCategoryRecord& c, File& f) {
  if (ReadUInt32(f) != kSectionMark) return false;
  c.id = ReadInt32(f);
  c.parentId = ReadInt32(f);
  c.reserved = ReadInt32(f);
  c.expanded = ReadBool(f);
  ReadString(c.displayName, f);
  ReadString(c.name, f);
  return true;
}

template <class File>
void WriteData(TDBDataRecord& d, File& f) {
  WriteUInt32(kDataRecordMark, f);
  d.format = 2;
  WriteUInt8(d.format, f);
  int32_t sizeAt = f.Tell();
  WriteUInt32(0, f);
  WriteInt32(d.id, f);
  WriteInt32(d.references, f);
  WriteTime(d.changed, f);
  WriteTime(d.created, f);
  WriteUInt8(d.modified, f);
  WriteString(d.Identifier(), f);
  WriteString(d.Title(), f);
  WriteInt32(static_cast<int32_t>(d.values.size()), f);
  for (size_t i = 0; i < d.values.size(); ++i) WriteString(d.values[i], f);
  int32_t end = f.Tell();
  d.storedSize = static_cast<uint32_t>(end - sizeAt);
  f.Seek(sizeAt);
  WriteUInt32(d.storedSize, f);
  f.Seek(end);
}

// The texts of one record (identifier, title, values) on their way from the stream into its
// block. A window that can keep bytes lends them: each text is then where the window holds it,
// found by its offset from the kept start. Other streams copy them into strings, which keep their
// storage from record to record.
template <class File>
constexpr bool kLendsTexts = std::is_same_v<File, TReadAheadFile>;

struct TextScratch {
  static constexpr size_t kOwn = SIZE_MAX;  // the text is own[i], not lent
  std::vector<std::pair<size_t, size_t>> spans;  // of lent texts: offset and length
  std::vector<std::string> own;
  size_t count = 0;  // of texts read for the current record
  std::vector<std::string_view> views;  // the values as the block takes them
  std::deque<std::string> defaults;     // values a record lacked (a deque keeps their addresses)

  std::string& NextOwn() {
    Grow();
    spans[count].first = kOwn;
    return own[count++];
  }
  template <class File>
  void Read(File& f) {
    if constexpr (kLendsTexts<File>) {
      const std::string_view text = ReadStringView(f);
      Grow();
      spans[count++] = {static_cast<size_t>(text.data() - f.Kept()), text.size()};
    } else {
      ReadString(NextOwn(), f);
    }
  }
  template <class File>
  std::string_view Text(size_t i, File& f) const {
    if constexpr (kLendsTexts<File>)
      if (spans[i].first != kOwn) return {f.Kept() + spans[i].first, spans[i].second};
    return own[i];
  }

 private:
  void Grow() {
    if (count == spans.size()) {
      spans.emplace_back();
      own.emplace_back();
    }
  }
};

// Keeps the window's bytes from the start of a record until its texts are in their block.
template <class File>
struct KeepRecord {
  explicit KeepRecord(File& f) : f(f) {
    if constexpr (kLendsTexts<File>) f.Keep();
  }
  ~KeepRecord() {
    if constexpr (kLendsTexts<File>) f.Unkeep();
  }
  File& f;
};

template <class File>
bool ReadValues(TextScratch& s, File& f) {
  int32_t count = ReadInt32(f);
  if (!CountFits(f, count, 4)) return false;
  for (int32_t i = 0; i < count; ++i) s.Read(f);
  return true;
}

// Both forms: the current one behind the data record mark, and the old one behind the section
// mark, which has no identifier and gets a fresh one.
template <class File>
bool ReadData(TDBDataRecord& d, TextScratch& texts, File& f) {
  texts.count = 0;
  uint32_t mark = ReadUInt32(f);
  if (mark == kDataRecordMark) {
    d.format = ReadUInt8(f);
    d.storedSize = ReadUInt32(f);
    d.id = ReadInt32(f);
    d.references = ReadInt32(f);
    d.changed = ReadTime(f);
    d.created = ReadTime(f);
    d.modified = ReadUInt8(f);
    texts.Read(f);  // identifier
    texts.Read(f);  // title
    return ReadValues(texts, f);
  }
  if (mark != kSectionMark) return false;
  d.format = 0;
  d.storedSize = ReadUInt32(f);
  d.id = ReadInt32(f);
  d.references = ReadInt32(f);
  d.changed = ReadTime(f);
  d.created = ReadTime(f);
  ReadInt32(f);
  ReadInt32(f);
  d.modified = ReadUInt8(f);
  texts.NextOwn() = platform::NewGuidText();
  texts.Read(f);  // title
  return ReadValues(texts, f);
}

template <class File>
void WritePlace(const TDBCategoryData& p, File& f) {
  WriteUInt32(kSectionMark, f);
  WriteInt32(p.cursor, f);
  WriteInt32(p.categoryId, f);
  WriteInt32(p.dataId, f);
  WriteBool(p.isCategory, f);
  WriteInt32(p.position, f);
  WriteInt16(3, f);
  for (int32_t w : p.special) WriteInt32(w, f);
}

template <class File>
bool ReadPlace(TDBCategoryData& p, File& f) {
  if (ReadUInt32(f) != kSectionMark) return false;
  p.cursor = ReadInt32(f);
  p.categoryId = ReadInt32(f);
  p.dataId = ReadInt32(f);
  p.isCategory = ReadBool(f);
  p.position = ReadInt32(f);
  ReadInt16(f);  // the count of special words: always three follow
  for (int32_t& w : p.special) w = ReadInt32(f);
  return true;
}

// A record gets exactly one value per field: extra values go, missing ones come from the fields
// at the indexes they lack, as for a field added to a database with records.
template <class File>
void TakeTexts(NodeStore& store, TextScratch& s, File& f, TDBDataRecord& d, memory::PageArena& arena) {
  constexpr size_t kLead = RecordValues::kLeadTexts;
  const size_t fields = store.fields.size();
  s.views.clear();
  for (size_t i = kLead; i < s.count && s.views.size() < fields; ++i) s.views.push_back(s.Text(i, f));
  s.defaults.clear();
  while (s.views.size() < fields)
    s.views.push_back(s.defaults.emplace_back(store.fields[s.views.size()]->type.NewRecordValue()));
  d.values.Assign(s.Text(0, f), s.Text(1, f), s.views.data(), s.views.size(), &arena);
}

// Inserts a loaded object and answers where it lives; a second object under an id already taken
// is dropped with a trace, and the answer is null.
template <class T>
T* InsertLoaded(TDBIdMap<T>& map, T&& object, int32_t id, const char* what, memory::PageArena& arena) {
  T* stored = map.Insert(id, std::move(object), &arena);
  if (stored == nullptr) platform::Trace("ReadBody: dropped a second %s with id %d", what, id);
  return stored;
}

template <class File>
bool WriteBodyTo(StoredDatabase& db, File& f) {
  NodeStore& store = db.store;
  // Tree order travels in the places' positions; inserts since the last compaction left them
  // behind the tree.
  RefreshPositions(store);
  WriteInt32(store.nextCategoryId, f);
  WriteInt32(store.nextDataId, f);
  WriteInt32(store.nextCursor, f);
  WriteInt16(static_cast<int16_t>(store.fields.size()), f);
  for (auto& field : store.fields) WriteField(*field, f);
  WriteDefinitions(db, f);
  CountedSection(f, [&] {
    int32_t n = 0;
    store.categories.ForEach([&](int32_t, TDBCategoryRecord* c) {
      if (c->tag != kObjectTag) return;
      WriteCategory(*c, f);
      ++n;
    });
    return n;
  });
  CountedSection(f, [&] {
    int32_t n = 0;
    store.data.ForEach([&](int32_t, TDBDataRecord* d) {
      if (d->tag != kObjectTag || d->temporary) return;
      WriteData(*d, f);
      ++n;
    });
    return n;
  });
  CountedSection(f, [&] {
    int32_t n = 0;
    store.places.ForEach([&](int32_t, TDBCategoryData* p) {
      if (p->tag != kObjectTag || p->temporary) return;
      WritePlace(*p, f);
      ++n;
    });
    return n;
  });
  WriteUInt32(kSectionMark, f);
  return true;
}

// The objects of a load come from the store's arena. Loaded, a body takes about two to three times
// its size; four times is reserved, which costs nothing until used. A large load has its pages
// mapped ahead.
memory::PageArena& LoadArena(NodeStore& store, int64_t bodyBytes) {
  if (store.arena == nullptr) {
    constexpr int64_t kStep = int64_t{8} << 20;
    const int64_t body = std::max<int64_t>(bodyBytes, 0);
    store.arena = std::make_unique<memory::PageArena>(static_cast<size_t>(4 * body + (int64_t{64} << 10)),
                                                       static_cast<size_t>(kStep), body >= kStep);
  }
  return *store.arena;
}

template <class File>
bool ReadBodyFrom(StoredDatabase& db, File& f) {
  NodeStore& store = db.store;
  if (db.version >= kCountersSince) {
    store.nextCategoryId = ReadInt32(f);
    store.nextDataId = ReadInt32(f);
    store.nextCursor = ReadInt32(f);
  }
  int16_t fieldCount = ReadInt16(f);
  if (!CountFits(f, fieldCount, kMinFieldBytes)) return false;
  store.fields.clear();
  store.fieldNames.Invalidate();
  for (int16_t i = 0; i < fieldCount; ++i) {
    auto field = std::make_unique<TDBFieldInfo>();
    if (!ReadField(*field, f)) return false;
    store.fields.push_back(std::move(field));
  }
  RepairFieldPositions(store);
  if (!ReadDefinitions(db, f)) return false;

  memory::PageArena& arena = LoadArena(store, BytesLeft(f));
  struct StopAhead {
    memory::PageArena& arena;
    ~StopAhead() { arena.StopMappingAhead(); }
  } stopAhead{arena};
  int32_t highestCategory = -1, highestData = -1, highestCursor = -1;
  int32_t count = ReadInt32(f);
  if (!CountFits(f, count, kMinCategoryBytes)) return false;
  for (int32_t i = 0; i < count; ++i) {
    TDBCategoryRecord c;
    if (!ReadCategory(c, f)) return false;
    const int32_t id = c.id;
    highestCategory = std::max(highestCategory, id);
    InsertLoaded(store.categories, std::move(c), id, "category", arena);
  }
  count = ReadInt32(f);
  if (!CountFits(f, count, kMinDataBytes)) return false;
  TextScratch texts;
  for (int32_t i = 0; i < count; ++i) {
    TDBDataRecord d;
    KeepRecord<File> keep(f);
    if (!ReadData(d, texts, f)) return false;
    TakeTexts(store, texts, f, d, arena);
    const int32_t id = d.id;
    highestData = std::max(highestData, id);
    InsertLoaded(store.data, std::move(d), id, "data record", arena);
  }
  count = ReadInt32(f);
  if (!CountFits(f, count, kMinPlaceBytes)) return false;
  std::vector<TDBCategoryData*> list;
  list.reserve(static_cast<size_t>(count));
  for (int32_t i = 0; i < count; ++i) {
    TDBCategoryData p;
    if (!ReadPlace(p, f)) return false;
    int32_t cursor = p.cursor;
    if (cursor < 0) {  // a negative cursor could never be named
      platform::Trace("ReadBody: dropped a place with cursor %d", cursor);
      continue;
    }
    highestCursor = std::max(highestCursor, cursor);
    if (TDBCategoryData* stored = InsertLoaded(store.places, std::move(p), cursor, "place", arena))
      list.push_back(stored);
  }
  // Categories whose parent is gone stand at the top level.
  store.categories.ForEach([&](int32_t, TDBCategoryRecord* c) {
    if (c->parentId != -1 && store.categories.Find(c->parentId) == nullptr) c->parentId = -1;
  });
  if (ReadUInt32(f) != kSectionMark) return false;

  // Ids go on above everything loaded, whatever counters an old or damaged file held.
  store.nextCategoryId = std::max(store.nextCategoryId, CounterAbove(highestCategory));
  store.nextDataId = std::max(store.nextDataId, CounterAbove(highestData));
  store.nextCursor = std::max(store.nextCursor, CounterAbove(highestCursor));

  for (auto& view : store.views) view->root.expanded = store.rootExpanded;
  AttachPlaces(store, list, false, &arena);
  Renumber(store);
  if (LookupPlace(store, store.currentCursor) == nullptr)
    store.currentCursor = ResolveCursor(store, VERDAL_CURSOR_FIRST);
  return true;
}

}  // namespace

// A save into memory, as nearly every save is, writes with the memory stream's inline writes.
bool WriteBody(StoredDatabase& db, TBaseFile& f) {
  if (auto* memory = dynamic_cast<TMemFile*>(&f)) return WriteBodyTo(db, *memory);
  return WriteBodyTo(db, f);
}

// A body in memory or streaming through a window, as every load has it, is read with inline reads.
bool ReadBody(StoredDatabase& db, TBaseFile& f) {
  if (auto* memory = dynamic_cast<TMemFile*>(&f)) return ReadBodyFrom(db, *memory);
  if (auto* window = dynamic_cast<TReadAheadFile*>(&f)) return ReadBodyFrom(db, *window);
  return ReadBodyFrom(db, f);
}

}  // namespace verdal::storage
