#pragma once
// List display and sort definitions: which fields form a host's columns (how wide, how aligned,
// under which heading) or which fields a sort uses (ascending or not, from which start). One
// record serves both, told apart by its kind; one manager holds the definitions of both kinds.
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "io/base_file.h"
#include "options/base_config.h"

namespace verdal::listing {

// One column or sort field.
struct TListAndSortDisplayFieldInfoData {
  static constexpr uint8_t kAlignFromType = 0xFF;  // the field's data type decides
  int32_t itemVersion = 2;
  uint8_t alignment = kAlignFromType;  // 0 left, 1 right, 2 centred
  bool ascending = true;
  bool stringSort = false;  // punctuation sorts as symbols
  bool readOnly = false;
  int32_t width = 100;  // in units the host decides
  std::string fieldName;
  std::string displayName;  // the heading; empty for the field's name
  int32_t itemReserved = 0;
  int32_t fieldIndex = -1;  // set by each sort, not stored
};

enum class DefinitionKind : uint8_t { kListDisplay = 0, kSort = 1 };

// One definition.
struct TListSortAndDisplayFieldInfo {
  std::vector<TListAndSortDisplayFieldInfoData> items;
  int32_t version = 4;
  std::string name;  // unique within its kind, ignoring case
  uint8_t kind = 0;
  int32_t startCursor = -2;
  bool sortCategories = false;
  bool recursive = true;
  int32_t reserved = 0;
  bool ignoreCategories = false;  // kept and shown, read by no sort
  bool notifyControls = false;
  std::string description;
};

// The definitions of a database, both kinds in one vector. `owner` selects the kind the
// TBaseConfigClass operations see: 0 the list display definitions, any other value the sort
// definitions; a visible index counts only the selected kind.
class TListAndSortDisplayFieldInfoMananger : public options::TBaseConfigClass {
 public:
  std::vector<std::unique_ptr<TListSortAndDisplayFieldInfo>> definitions;
  int32_t managerVersion = 0;
  std::string defaultName;

  uint8_t SelectedKind() const { return owner == 0 ? 0 : 1; }

  int32_t GetCount() const override;
  const char* GetName(int32_t index) const override;
  bool SetName(int32_t index, const std::string& name) override;
  const char* GetComment(int32_t index) const override;
  bool SetComment(int32_t index, const std::string& comment) override;
  bool Read(TBaseFile& file) override;
  bool Write(TBaseFile& file) override;
  // Trailing blanks go; an empty name adds nothing and gives -1, a name in use adds nothing and
  // gives the index of the definition that has it.
  int32_t Add(const std::string& name) override;
  // As Add for the copy's name (the source's when newName is null); -1 for a bad index.
  int32_t Copy(int32_t index, const char* newName) override;
  bool Remove(int32_t index) override;
  const std::string& GetDefault() const override { return defaultName; }
  void SetDefault(const std::string& name) override { defaultName = name; }
  const char* GetFileFilter() const override;

  // The definition of that name and kind, ignoring case; null if none.
  TListSortAndDisplayFieldInfo* FindDefinition(const std::string& name, DefinitionKind kind) const;
  // The definition behind a visible index of the selected kind; null for a bad index.
  TListSortAndDisplayFieldInfo* At(int32_t index) const;
  // Appends the definition unless its name, trimmed, is empty or in use in its kind; the visible
  // index of that name in the definition's kind, -1 for an empty name.
  int32_t Append(std::unique_ptr<TListSortAndDisplayFieldInfo> definition);
  void CopyFrom(const TListAndSortDisplayFieldInfoMananger& other);
  void Clear();

 private:
  int32_t VisibleIndexOf(const TListSortAndDisplayFieldInfo* definition) const;
};

// The first item whose field is `fieldIndex` becomes the first sort field (exchanged with the one
// there), or a new first item is put in for it: the first gives 1, the second -3. `fieldName` is
// the field's name; `resolve` maps an item's field name to a field index, -1 for none.
template <class Resolve>
int32_t PutSortFieldFirst(TListSortAndDisplayFieldInfo& definition, int32_t fieldIndex,
                          const std::string& fieldName, bool ascending, Resolve&& resolve) {
  auto& items = definition.items;
  for (size_t p = 0; p < items.size(); ++p) {
    if (resolve(items[p].fieldName) != fieldIndex) continue;
    items[p].ascending = ascending;
    if (p > 0) std::swap(items[0], items[p]);  // the old first moves to p, not to 1
    return 1;
  }
  TListAndSortDisplayFieldInfoData item;
  item.fieldName = fieldName;
  item.ascending = ascending;
  items.insert(items.begin(), std::move(item));
  return -3;
}

}  // namespace verdal::listing
