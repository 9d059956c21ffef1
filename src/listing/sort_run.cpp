#include "listing/sort_run.h"

#include <algorithm>
#include <cstring>
#include <deque>
#include <new>
#include <string>

#include "model/data_type_info.h"
#include "model/fields.h"
#include "model/place_walk.h"
#include "platform/collation.h"

namespace verdal::listing {

using model::TDBCategoryData;
using model::TDBNode;

namespace {

// How an entry is compared under one sort field. Numbers, yes/no, dates and times compare by the
// number their type forms; texts and links by a collation key of what they show, so that a
// comparison never converts or collates a value again.
enum class KeyKind : uint8_t { kNone, kNumber, kText };

struct SortColumn {
  KeyKind kind = KeyKind::kNone;
  bool ascending = true;
  bool stringSort = false;
  model::TDBFieldInfo* field = nullptr;
  int32_t fieldIndex = -1;
  int32_t slot = 0;  // index among the columns of its kind
};

struct SortEntry {
  int32_t cursor;
  TDBNode* node;  // null in a flat sort and a sort of a list
};

// A text's first-level key in the run's key bytes, and the text itself for entries whose keys are
// equal. Texts are the store's own (which no sort changes) or, for shown links, the run's.
struct TextRef {
  uint32_t offset, length;
  std::string_view text;
};

// The entries of one run with their keys. Reading back gives them in sorted order.
class SortIndex {
 public:
  SortIndex(model::NodeStore& store, const TListSortAndDisplayFieldInfo& definition,
            model::TLinkResolver* links)
      : store_(store), links_(links) {
    if (definition.sortCategories) {
      // Names only, with the first item's direction and kind of text order.
      SortColumn c;
      c.kind = KeyKind::kText;
      c.ascending = definition.items.front().ascending;
      c.stringSort = definition.items.front().stringSort;
      columns_.push_back(c);
      byName_ = true;
      texts_ = 1;
      return;
    }
    for (const auto& item : definition.items) {
      SortColumn c;
      c.fieldIndex = model::FieldIndexByName(store, item.fieldName.c_str());
      if (c.fieldIndex < 0) continue;  // a field deleted since: it does not count
      c.field = store.fields[static_cast<size_t>(c.fieldIndex)].get();
      c.ascending = item.ascending;
      c.stringSort = item.stringSort;
      switch (c.field->type.dataType) {
        case model::kTypeNumber: case model::kTypeYesNo: case model::kTypeDateTime:
        case model::kTypeDate: case model::kTypeTime:
          c.kind = KeyKind::kNumber;
          c.slot = numbers_++;
          break;
        case model::kTypeText: case model::kTypeLink:
          c.kind = KeyKind::kText;
          c.slot = texts_++;
          break;
        default: continue;  // binary values all compare equal
      }
      columns_.push_back(c);
    }
  }

  void Reserve(size_t count) {
    entries_.reserve(count);
    numberKeys_.reserve(count * static_cast<size_t>(numbers_));
    textKeys_.reserve(count * static_cast<size_t>(texts_));
    keyBytes_.reserve(count * static_cast<size_t>(texts_) * 24);  // a usual key; more grows
  }

  void Add(int32_t cursor, TDBNode* node, const TDBCategoryData* place) {
    entries_.push_back(SortEntry{cursor, node});
    if (byName_) {
      AddText(model::NodeName(store_, place), columns_.front().stringSort);
      return;
    }
    for (const SortColumn& c : columns_) {
      const std::optional<std::string_view> value = model::FieldValueOf(store_, place, c.fieldIndex);
      if (c.kind == KeyKind::kNumber) {
        long double key = 0;  // a missing value counts as 0
        if (value) c.field->type.Compare(*value, std::string_view(), false, c.stringSort, true, &key, links_);
        numberKeys_.push_back(key);
      } else if (c.field->type.dataType == model::kTypeLink && links_ != nullptr && value) {
        c.field->type.CreateDisplayString(*value, shown_.emplace_back(), true, false, links_);
        AddText(shown_.back(), c.stringSort);
      } else {
        AddText(value.value_or(std::string_view()), c.stringSort);
      }
    }
  }

  // The entries by position. Each new entry goes before every entry equal to it, so among equal
  // entries the later one comes first: their arrival decides, backwards, where the keys do not.
  // Each entry carries the start of its first key, so that most comparisons need nothing else.
  template <class Visit>
  void ForEachSorted(Visit&& visit) const {
    struct Item {
      uint64_t prefix;
      uint32_t index;
    };
    const size_t n = entries_.size();
    const size_t skip = CommonTextStart();
    std::vector<Item> order(n);
    for (size_t i = 0; i < n; ++i) {
      const auto index = static_cast<uint32_t>(i);
      order[i] = Item{columns_.empty() ? 0 : Prefix(index, skip), index};
    }
    std::sort(order.begin(), order.end(), [this](const Item& a, const Item& b) {
      if (a.prefix != b.prefix) return a.prefix < b.prefix;
      const int c = Compare(a.index, b.index);
      return c != 0 ? c < 0 : a.index > b.index;
    });
    for (const Item& item : order) visit(entries_[item.index]);
  }

 private:
  void AddText(std::string_view text, bool stringSort) {
    const size_t at = keyBytes_.size();
    platform::AppendPrimaryKey(text, stringSort, keyBytes_);
    if (keyBytes_.size() > UINT32_MAX) throw std::bad_alloc();
    textKeys_.push_back(TextRef{static_cast<uint32_t>(at), static_cast<uint32_t>(keyBytes_.size() - at), text});
  }

  // Keys decide where they differ; equal keys leave it to the collation, unless the texts are the
  // same, as most equal values are.
  static int CompareText(const std::string& bytes, const TextRef& a, const TextRef& b, bool stringSort) {
    const int r = std::memcmp(bytes.data() + a.offset, bytes.data() + b.offset, std::min(a.length, b.length));
    if (r != 0) return r < 0 ? -1 : 1;
    if (a.length != b.length) return a.length < b.length ? -1 : 1;
    if (a.text == b.text) return 0;
    return stringSort ? platform::CompareStringSort(a.text, b.text) : platform::CompareWordSort(a.text, b.text);
  }

  // A number that orders entries as the first key does, or puts them level where only the whole
  // keys can tell: never in the other order.
  // The bytes every first text key begins with ("Name 1", "Name 2", ...): prefixes start behind
  // them, or they would all be the same.
  size_t CommonTextStart() const {
    const SortColumn& c = columns_.empty() ? SortColumn() : columns_.front();
    if (c.kind != KeyKind::kText || entries_.empty()) return 0;
    const TextRef& first = textKeys_[c.slot];
    size_t common = first.length;
    for (size_t i = 1; i < entries_.size() && common > 0; ++i) {
      const TextRef& t = textKeys_[i * texts_ + c.slot];
      const char* a = keyBytes_.data() + first.offset;
      const char* b = keyBytes_.data() + t.offset;
      size_t k = 0;
      const size_t limit = std::min<size_t>(common, t.length);
      while (k < limit && a[k] == b[k]) ++k;
      common = k;
    }
    return common;
  }

  uint64_t Prefix(uint32_t index, size_t skip) const {
    const SortColumn& c = columns_.front();
    uint64_t prefix = 0;
    if (c.kind == KeyKind::kNumber) {
      double d = static_cast<double>(numberKeys_[index * numbers_ + c.slot]);  // rounding keeps the order
      if (d != d) {
        prefix = ~uint64_t{0};  // after every number, as Compare has it
      } else {
        if (d == 0) d = 0;  // -0 equals 0
        std::memcpy(&prefix, &d, sizeof prefix);
        prefix = (prefix >> 63) != 0 ? ~prefix : prefix | (uint64_t{1} << 63);
      }
    } else {
      const TextRef& t = textKeys_[index * texts_ + c.slot];
      const char* key = keyBytes_.data() + t.offset + skip;
      const size_t length = std::min<size_t>(t.length - skip, 8);
      for (size_t i = 0; i < 8; ++i) prefix = prefix << 8 | (i < length ? static_cast<uint8_t>(key[i]) : 0);
    }
    return c.ascending ? prefix : ~prefix;
  }

  // -1, 0 or 1: the order of two entries under every sort field in turn.
  int Compare(uint32_t a, uint32_t b) const {
    for (const SortColumn& c : columns_) {
      int r = 0;
      if (c.kind == KeyKind::kNumber) {
        const long double x = numberKeys_[a * numbers_ + c.slot], y = numberKeys_[b * numbers_ + c.slot];
        // Stored values never read as NaN; should a key ever be one, it sorts after every number,
        // so that the order stays total, which the sort relies on.
        r = x != x || y != y ? (x != x) - (y != y) : (x > y) - (x < y);
      } else {
        r = CompareText(keyBytes_, textKeys_[a * texts_ + c.slot], textKeys_[b * texts_ + c.slot], c.stringSort);
      }
      if (r != 0) return c.ascending ? r : -r;
    }
    return 0;
  }

  model::NodeStore& store_;
  model::TLinkResolver* links_;
  std::vector<SortColumn> columns_;
  int32_t numbers_ = 0, texts_ = 0;
  bool byName_ = false;
  std::vector<SortEntry> entries_;
  std::vector<long double> numberKeys_;
  std::vector<TextRef> textKeys_;
  std::string keyBytes_;
  std::deque<std::string> shown_;  // shown texts of links, which must stay where they are
};

TDBNode* StartNode(model::NodeStore& store, int32_t startCursor) {
  return model::NodeOf(store, model::LookupPlace(store, startCursor));
}

// The children that take part are sorted behind the ones that do not, which keep their order.
void SortChildren(model::NodeStore& store, TDBNode* node, const TListSortAndDisplayFieldInfo& definition,
                  model::TLinkResolver* links) {
  std::vector<TDBNode*>& children = *node->children;
  SortIndex index(store, definition, links);
  std::vector<TDBNode*> ordered;
  ordered.reserve(children.size());
  for (TDBNode* child : children) {
    if (child == nullptr) continue;
    if (child->isCategory == definition.sortCategories)
      index.Add(child->cursor, child, child->place);
    else
      ordered.push_back(child);
  }
  index.ForEachSorted([&](const SortEntry& e) { ordered.push_back(e.node); });
  children.swap(ordered);
}

}  // namespace

SortResult RunFlatSort(model::NodeStore& store, TListSortAndDisplayFieldInfo definition,
                       std::vector<int32_t>& out, model::TLinkResolver* links) {
  if (definition.items.empty()) return SortResult::kNoFields;
  TDBNode* start = StartNode(store, definition.startCursor);
  if (start == nullptr) return SortResult::kNoStart;
  std::vector<const TDBCategoryData*> list;
  model::CollectPlaces(store, start, list, model::kKindRecords, true, false, nullptr, false);
  SortIndex index(store, definition, links);
  index.Reserve(list.size());
  for (const TDBCategoryData* place : list) index.Add(place->cursor, nullptr, place);
  out.clear();
  out.reserve(list.size());
  index.ForEachSorted([&](const SortEntry& e) { out.push_back(e.cursor); });
  return SortResult::kSorted;
}

void SortList(model::NodeStore& store, TListSortAndDisplayFieldInfo definition, int32_t* cursors,
              int32_t count, model::TLinkResolver* links) {
  if (definition.items.empty() || cursors == nullptr || count < 2) return;
  SortIndex index(store, definition, links);
  index.Reserve(static_cast<size_t>(count));
  for (int32_t i = 0; i < count; ++i) index.Add(cursors[i], nullptr, model::LookupPlace(store, cursors[i]));
  int32_t i = 0;
  index.ForEachSorted([&](const SortEntry& e) { cursors[i++] = e.cursor; });
}

SortResult RunTreeSort(model::NodeStore& store, TListSortAndDisplayFieldInfo definition,
                       model::TLinkResolver* links) {
  if (definition.items.empty()) return SortResult::kNoFields;
  TDBNode* start = StartNode(store, definition.startCursor);
  if (start == nullptr) return SortResult::kNoStart;
  // Depth-first with a stack of our own: trees may be deeper than the call stack allows.
  std::vector<TDBNode*> pending{start};
  while (!pending.empty()) {
    TDBNode* node = pending.back();
    pending.pop_back();
    if (!node->children || node->children->empty()) continue;
    SortChildren(store, node, definition, links);
    if (!definition.recursive) break;
    const auto& children = *node->children;
    for (auto it = children.rbegin(); it != children.rend(); ++it) pending.push_back(*it);
  }
  model::RefreshPositions(store);
  model::FollowMainView(store);
  return SortResult::kSorted;
}

TListSortAndDisplayFieldInfo CategorySortDefinition(bool ascending, bool recursive, bool stringSort,
                                                    int32_t startCursor) {
  TListSortAndDisplayFieldInfo d;
  d.startCursor = startCursor;
  d.sortCategories = true;
  d.recursive = recursive;
  TListAndSortDisplayFieldInfoData item;
  item.ascending = ascending;
  item.stringSort = stringSort;
  d.items.push_back(item);
  return d;
}

}  // namespace verdal::listing
