// Exported functions of named options: counts, names, defaults and the copy of all options from
// one database to another.
#include <algorithm>
#include <cstring>

#include "dialogs/filter_dialog.h"
#include "dialogs/option_sheet.h"
#include "dialogs/print_sheet.h"
#include "engine/api/api_frame.h"
#include "engine/export.h"
#include "engine/notify.h"
#include "engine/option_kinds.h"
#include "io/text_buffer.h"
#include "platform/collation.h"
#include "ui/host.h"
#include "verdal.h"

using namespace verdal;
using api::Judge;
using engine::TDBManager;

namespace {

TextRing g_optionNames;

// Field names into a block of maxFields buffers of nameSize bytes, each cut and terminated.
int32_t CopyNames(const std::vector<std::string>& names, int32_t maxFields, int32_t nameSize, char* block) {
  if (maxFields <= 0 || nameSize <= 0) return 0;
  const int32_t count = std::min(maxFields, static_cast<int32_t>(names.size()));
  for (int32_t i = 0; i < count; ++i) {
    char* slot = block + static_cast<size_t>(i) * static_cast<size_t>(nameSize);
    const size_t n = std::min(names[i].size(), static_cast<size_t>(nameSize - 1));
    std::memcpy(slot, names[i].data(), n);
    slot[n] = '\0';
  }
  return count;
}

// Shows the sheet of an option kind; true when it was closed with OK.
bool RunKindSheet(TDBManager& db, VerdalWindow window, int32_t kind, int32_t owner, const char* title) {
  ui::Host& host = ui::CurrentHost();
  if (kind == VERDAL_OPTION_FILTER) {
    dialogs::TFilterDialog dialog(db.filters, db.store, window, &db.links);
    return host.RunSheet(window, dialog);
  }
  options::TBaseConfigClass* collection = engine::ConfigCollection(db, kind, owner);
  // The export page hands its definition to the bridge as VERDAL_Export would.
  auto editExport = [&db](const std::string& definition, int32_t flags) {
    engine::ExportRequest request;
    request.target = definition.c_str();
    request.flags = flags;
    return engine::Export(db, request) != 0;
  };
  return collection != nullptr &&
         dialogs::RunOptionSheet(host, window, title != nullptr ? title : "", kind, *collection, db.store,
                                 editExport);
}

}  // namespace

extern "C" {

VERDAL_API int32_t VERDAL_NumOptions(VerdalHandle handle, int32_t kind, int32_t owner) {
  return api::WithDatabase("VERDAL_NumOptions", handle, 0, Judge::kLastError, [&](TDBManager& db) {
    return engine::OptionCount(db, kind, owner);
  });
}

VERDAL_API const char* VERDAL_GetOptionName(VerdalHandle handle, int32_t kind, int32_t index,
                                            int32_t owner, int32_t* isDefault, int32_t maxFields,
                                            int32_t nameSize, int32_t* fieldCount,
                                            char* fieldNames) {
  return api::WithDatabase("VERDAL_GetOptionName", handle, static_cast<const char*>(nullptr),
                           Judge::kResult, [&](TDBManager& db) -> const char* {
    const char* name = engine::OptionName(db, kind, index, owner);
    if (name == nullptr) {
      engine::SetLastError(VERDAL_ERR_INPUT);
      return nullptr;
    }
    const char* kept = g_optionNames.Keep(name);
    if (isDefault != nullptr) {
      const std::string* byDefault = engine::OptionDefault(db, kind, owner);
      *isDefault = byDefault != nullptr && platform::SameNameNoCase(*byDefault, kept) ? 1 : 0;
    }
    if (kind == VERDAL_OPTION_FIELD_VIEW && fieldCount != nullptr && fieldNames != nullptr)
      *fieldCount = CopyNames(engine::FieldViewFields(db, index, owner), maxFields, nameSize, fieldNames);
    return kept;
  });
}

VERDAL_API int32_t VERDAL_SetDefaultOption(VerdalHandle handle, int32_t kind, const char* name,
                                           int32_t owner) {
  return api::WithDatabase("VERDAL_SetDefaultOption", handle, 0, Judge::kLastError,
                           [&](TDBManager& db) -> int32_t {
    return engine::SetOptionDefault(db, kind, name != nullptr ? name : "", owner) ? 1 : 0;
  });
}

VERDAL_API int32_t VERDAL_ConfigOptions(VerdalHandle handle, VerdalWindow window, int32_t kind,
                                        int32_t owner, const char* title, const char* defaultName) {
  return api::WithDatabase("VERDAL_ConfigOptions", handle, 0, Judge::kResult, [&](TDBManager& db) -> int32_t {
    if (engine::ConfigCollection(db, kind, owner) == nullptr && kind != VERDAL_OPTION_FILTER &&
        kind != VERDAL_OPTION_PRINT)
      return 0;
    if (defaultName != nullptr && *defaultName != '\0') engine::SetOptionDefault(db, kind, defaultName, owner);
    if (!engine::OptionSheetOpen::MayChange(db)) return 0;
    if (kind == VERDAL_OPTION_PRINT) {  // 1 however the sheet was closed
      {
        engine::OptionSheetOpen open(db);
        dialogs::RunPrintOptionSheet(ui::CurrentHost(), window, title != nullptr ? title : "", db.prints, db.store,
                                     db.lists);
      }
      db.MarkDirty();
      return 1;
    }
    bool confirmed = false;
    {
      engine::OptionSheetOpen open(db);
      confirmed = RunKindSheet(db, window, kind, owner, title);
    }
    db.MarkDirty();  // the pages work on the options directly, so a cancel keeps their changes
    if (!confirmed) {
      engine::SetLastError(VERDAL_ERR_CANCELLED);
      return 0;
    }
    if (kind == VERDAL_OPTION_FILTER)
      engine::NotifyChange(&db, db.store.currentCursor, VERDAL_NOTIFY_FILTERS_CHANGED, -10, 0, 0);
    if (kind == VERDAL_OPTION_SORT)
      engine::NotifyChange(&db, db.store.currentCursor, VERDAL_NOTIFY_LIST_OPTIONS_CHANGED, -10, 0, 0);
    return 1;
  });
}

VERDAL_API int32_t VERDAL_MoveOptions(VerdalHandle source, VerdalHandle target) {
  return api::Guarded("VERDAL_MoveOptionsEx", 0, Judge::kResult, [&]() -> int32_t {
    TDBManager* from = engine::AcceptHandle(source);
    TDBManager* to = from != nullptr ? engine::AcceptHandle(target) : nullptr;
    if (to == nullptr || !engine::OptionSheetOpen::MayChange(*to)) return 0;
    engine::DatabaseCall callFrom(*from);
    engine::DatabaseCall callTo(*to);
    engine::CopyOptions(*from, *to);
    to->MarkDirty();
    return 1;
  });
}

}  // extern "C"
