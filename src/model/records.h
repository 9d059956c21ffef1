#pragma once
// The three stored objects of a database. A category has all three (its name, its values, its
// place); a record has a data record and a place. The place's id is the cursor that hosts see.
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "model/record_values.h"
#include "platform/clock.h"
#include "verdal.h"

namespace verdal::model {

struct TDBNode;

// A record title or category name as the engine stores it: cut to the longest it keeps, so that
// a host's name buffer of VERDAL_NAME_MAX + 1 bytes always has room.
inline std::string_view StoredName(std::string_view name) { return name.substr(0, VERDAL_NAME_MAX); }

// Every valid stored object carries this tag; the writer skips objects without it.
constexpr uint32_t kObjectTag = 0x3caddb;

struct TDBCategoryRecord {
  uint32_t tag = kObjectTag;
  int32_t id = -1;
  int32_t parentId = -2;  // -1 at top level
  int32_t reserved = 0;
  std::string displayName;
  std::string name;
  bool expanded = false;
  bool imported = false;  // not stored

  // The shown name falls back to the name while no display name is set.
  const std::string& ShownName() const { return displayName.empty() ? name : displayName; }
};

struct TDBDataRecord {
  // Ordered so that nothing is padded: a million records are a million of these.
  RecordValues values;  // indexed by field position; the block also holds identifier and title
  uint32_t tag = kObjectTag;
  int32_t id = -1;
  platform::LocalTime changed{};
  platform::LocalTime created{};
  uint32_t storedSize = 0;
  int32_t references = 1;
  int32_t externalRow = -1;
  uint8_t modified = 0;
  uint8_t format = 2;
  bool imported = false;   // not stored
  bool temporary = false;  // not stored until a value has been set

  // Both are followed by a NUL and valid until the record's texts change.
  std::string_view Title() const { return values.Title(); }
  std::string_view Identifier() const { return values.Identifier(); }
  void SetTitle(std::string_view title) { values.SetTitle(title); }
  void SetIdentifier(std::string_view identifier) { values.SetIdentifier(identifier); }
};

struct TDBCategoryData {
  // What a walk over many places reads comes first and together, so that it mostly lies in one
  // cache line: cursor, data, isCategory and temporary.
  uint32_t tag = kObjectTag;
  int32_t cursor = -1;
  // Its data record once looked up (DataOf). A place always dies before its data record, which
  // outlives every place that names it, so the pointer never dangles.
  mutable TDBDataRecord* data = nullptr;
  bool isCategory = false;
  bool temporary = false;   // not stored
  bool imported = false;    // not stored
  int32_t categoryId = -2;  // a category's own id; for a record its category's id, -1 at top level
  int32_t dataId = -1;
  int32_t position = -1;  // index among its parent's children at the last compaction, -1 appends
  int32_t special[3] = {-1, -1, -1};
  TDBNode* node = nullptr;  // its node in view 0

  bool IsRootPlace() const { return isCategory && categoryId == -2; }
};

}  // namespace verdal::model
