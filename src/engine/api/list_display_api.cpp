// Exported functions of list display and sort definitions: a host's columns, their widths and
// the first sort field. Only the sheet touches the last error.
#include "dialogs/option_sheet.h"
#include "engine/api/api_frame.h"
#include "engine/option_kinds.h"
#include "listing/list_columns.h"
#include "ui/host.h"
#include "verdal.h"

using namespace verdal;
using api::Judge;
using engine::TDBManager;

extern "C" {

VERDAL_API int32_t VERDAL_GetListDisplayFieldSize(VerdalHandle handle, const char* name) {
  return api::QuietlyWithDatabase(handle, -1, [&](TDBManager& db) {
    return listing::ColumnCount(db.lists, db.store, name);
  });
}

VERDAL_API int32_t VERDAL_GetListDisplayFieldInfo(VerdalHandle handle, const char* name,
                                                  int32_t index, ListDisplayFieldRecord* record) {
  return api::QuietlyWithDatabase(handle, -1, [&](TDBManager& db) {
    listing::ListColumn column;
    const int32_t result = listing::Column(db.lists, db.store, name, index, column, &db.links);
    if (result == 1 && record != nullptr) {
      record->alignment = column.alignment;
      record->readOnly = column.readOnly ? 1 : 0;
      record->width = column.width;
      record->fieldName = column.fieldName;
      record->heading = column.heading;
      record->fieldIndex = column.fieldIndex;
    }
    return result;
  });
}

VERDAL_API int32_t VERDAL_SetListDisplayFieldInfoColWidth(VerdalHandle handle, const char* name,
                                                          int32_t index, int32_t width) {
  return api::QuietlyWithDatabase(handle, -1, [&](TDBManager& db) {
    const int32_t result = listing::SetColumnWidth(db.lists, db.store, name, index, width);
    if (result == 1) db.MarkDirty();
    return result;
  });
}

VERDAL_API int32_t VERDAL_GetListSortTopInfo(VerdalHandle handle, const char* name,
                                             int32_t* fieldIndexOut, int32_t* ascendingOut) {
  return api::QuietlyWithDatabase(handle, -1, [&](TDBManager& db) {
    return listing::SortTop(db.lists, db.store, name, fieldIndexOut, ascendingOut);
  });
}

VERDAL_API int32_t VERDAL_SetListSortTopInfo(VerdalHandle handle, const char* name,
                                             int32_t fieldIndex, int32_t ascending,
                                             int32_t mustExist) {
  return api::QuietlyWithDatabase(handle, -1, [&](TDBManager& db) {
    bool changed = false;
    const int32_t result = listing::SetSortTop(db.lists, db.store, name, fieldIndex, ascending != 0,
                                               mustExist != 0, changed);
    if (changed) db.MarkDirty();
    return result;
  });
}

VERDAL_API int32_t VERDAL_ConfigView(VerdalHandle handle, VerdalWindow window, const char* title,
                                     const char* name, int32_t sort) {
  return api::WithDatabase("VERDAL_ConfigView", handle, 0, Judge::kResult, [&](TDBManager& db) -> int32_t {
    if (!engine::OptionSheetOpen::MayChange(db)) return 0;
    bool confirmed = false;
    {
      engine::OptionSheetOpen open(db);
      confirmed = dialogs::RunListSortSheet(ui::CurrentHost(), window, title != nullptr ? title : "", db.lists,
                                            db.store, name != nullptr ? name : "", sort != 0);
    }
    db.MarkDirty();
    if (confirmed) return 1;
    engine::SetLastError(VERDAL_ERR_CANCELLED);
    return 0;
  });
}

}  // extern "C"
