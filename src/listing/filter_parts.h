#pragma once
// Named filters of a database: each a list of rows (one condition on one field each), kept in
// the database file. The text forms of a row and a filter are in filter_text.h.
//
// Stored form, integers little-endian, strings in the stream encoding:
//   collection  version (1 byte), current filter (string), count (4 bytes), the filters
//   filter      version (1 byte), name (string), count of rows (4 bytes), the rows
//   row         version (1 byte), link (2), condition (2), wholeWord, caseSensitive, reserved
//               (1 each), beginsWith (1, from row version 2), wildcard (1, from row version 3),
//               then the strings openBracket, closeBracket, fieldName, value
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "io/base_file.h"

namespace verdal::listing {

// Conditions and links of a row.
enum FilterCondition : int16_t {
  kLess = 0,
  kLessEqual = 1,
  kEqual = 2,
  kNotEqual = 3,
  kGreater = 4,
  kGreaterEqual = 5,
};
enum FilterLink : int16_t { kLinkNone = 0, kLinkAnd = 1, kLinkOr = 2 };

struct TDBFilterParts {
  static constexpr uint8_t kCurrentVersion = 3;

  uint8_t rowVersion = 0;
  int16_t link = kLinkNone;
  std::string openBracket;
  std::string fieldName;  // empty: the node's title
  int16_t condition = kEqual;
  std::string value;
  std::string closeBracket;
  uint8_t wholeWord = 0;
  uint8_t caseSensitive = 0;
  uint8_t reserved = 0;
  uint8_t beginsWith = 0;
  uint8_t wildcard = 0;

  // Brings link and condition into their ranges, as every text of the row does.
  void Clamp();
};

struct TDBFilterPartsItem {
  static constexpr uint8_t kCurrentVersion = 1;

  uint8_t itemVersion = 0;
  std::vector<TDBFilterParts> rows;
  std::string name;
};

class TDBFilterCollection {
 public:
  static constexpr uint8_t kCurrentVersion = 1;

  uint8_t collectionVersion = 0;
  std::vector<std::unique_ptr<TDBFilterPartsItem>> filters;
  std::string currentFilter;  // the name chosen last in the dialog

  // The filter of that name, ignoring case; null if there is none.
  TDBFilterPartsItem* Find(const std::string& name) const;
  int32_t IndexOf(const std::string& name) const;
  void Clear();
  // Deep copy, for moving options from one database to another.
  void CopyFrom(const TDBFilterCollection& other);
};

void WriteFilterRow(const TDBFilterParts& row, TBaseFile& file);
void ReadFilterRow(TDBFilterParts& row, TBaseFile& file);

// Writes the newest versions.
void WriteFilters(const TDBFilterCollection& collection, TBaseFile& file);
// Replaces the collection by what the stream holds. A count that the bytes left cannot hold gives
// false before anything is allocated; a stream that ends early throws its read exception. On
// either the collection is left empty.
bool ReadFilters(TDBFilterCollection& collection, TBaseFile& file);

}  // namespace verdal::listing
