#pragma once
// What a host's list gets from the list display and sort definitions: its columns one by one,
// a column's width, and the first sort field. The results are the codes of the interface: 1 for
// success, -2 an unknown definition, -3 a bad index or field, -5 a column whose field is gone.
#include <cstdint>
#include <string>

#include "listing/list_display.h"
#include "model/node_store.h"

namespace verdal::model {
class TLinkResolver;
}

namespace verdal::listing {

// One column as the host sees it; the texts belong to the field or the definition.
struct ListColumn {
  uint8_t alignment = 0;  // 0 left, 1 right, 2 centred
  bool readOnly = false;
  int32_t width = 0;
  const char* fieldName = nullptr;
  const char* heading = nullptr;
  int32_t fieldIndex = -1;
};

// The number of fields with a null name, else the definition's columns; -2 for no definition.
int32_t ColumnCount(const TListAndSortDisplayFieldInfoMananger& lists, model::NodeStore& store,
                    const char* name);

// With a null name, the column a field makes by default; else the definition's column `index`.
int32_t Column(const TListAndSortDisplayFieldInfoMananger& lists, model::NodeStore& store,
               const char* name, int32_t index, ListColumn& out, model::TLinkResolver* links);

int32_t SetColumnWidth(TListAndSortDisplayFieldInfoMananger& lists, model::NodeStore& store,
                       const char* name, int32_t index, int32_t width);

// The first sort field's index (-1 if there is none or it is gone) and direction.
int32_t SortTop(const TListAndSortDisplayFieldInfoMananger& lists, model::NodeStore& store,
                const char* name, int32_t* fieldIndexOut, int32_t* ascendingOut);

// Makes a field the first sort field of the definition `name`, creating the definition unless
// mustExist: 1 when the field was there already (or the definition is new), -3 when it was put
// in front, -2 for a null or missing name, -3 for a bad field index. `changed` tells whether the
// definitions changed.
int32_t SetSortTop(TListAndSortDisplayFieldInfoMananger& lists, model::NodeStore& store,
                   const char* name, int32_t fieldIndex, bool ascending, bool mustExist, bool& changed);

}  // namespace verdal::listing
