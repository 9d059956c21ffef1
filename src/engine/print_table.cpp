#include "engine/print_table.h"

#include <cstdlib>
#include <vector>

#include "dialogs/print_preview_window.h"
#include "dialogs/table_print_page.h"
#include "engine/db_manager.h"
#include "engine/option_kinds.h"
#include "engine/settings.h"
#include "listing/sort_run.h"
#include "platform/clock.h"
#include "platform/file_system.h"
#include "print/print_rows.h"
#include "ui/host.h"

namespace verdal::engine {

std::string DefaultPdfPath(const TDBManager& db) {
  if (!db.fileName.empty()) {
    std::string path = platform::NativePath(db.fileName.c_str());
    const size_t slash = path.rfind('/');
    const size_t dot = path.rfind('.');
    if (dot != std::string::npos && (slash == std::string::npos || dot > slash)) path.resize(dot);
    return path + ".pdf";
  }
  const char* folder = std::getenv("VERDAL_PRINT_DIR");
  const std::string base = folder != nullptr && *folder != '\0' ? folder : platform::TemporaryFolder();
  return base + "/" + (db.identifier.empty() ? std::string("verdal") : db.identifier) + ".pdf";
}

int32_t PrintTable(TDBManager& db, const char* configName, const char* filter, VerdalPrintFn callback,
                   int32_t count, const int32_t* ids, int32_t styleField) {
  const std::string name = configName != nullptr ? configName : "";
  if (ids == nullptr || count < 0) count = 0;
  if (ids == nullptr) print::MarkFilteredRows(db.store, filter, &db.links);
  else print::MarkAllRows(db.store);

  // A configuration the database does not hold starts with a column for every listed field, as
  // the settings would make it: a table without columns prints nothing at all.
  options::TPrintData working = dialogs::TTablePrintDialog::DefaultRecord(name, db.store);
  if (const options::TPrintData* stored = db.prints.Find(name)) working = *stored;
  else if (!name.empty()) db.prints.records.push_back(working);

  dialogs::PreviewRequest request;
  request.explicitRows = ids != nullptr;
  if (ids != nullptr) request.ids.assign(ids, ids + count);
  listing::TListSortAndDisplayFieldInfo* sort =
      working.sortName.empty() ? nullptr : db.lists.FindDefinition(working.sortName, listing::DefinitionKind::kSort);
  if (sort != nullptr) {
    listing::TListSortAndDisplayFieldInfo definition = *sort;
    if (ids == nullptr) {
      definition.startCursor = -2;  // the whole tree, whatever start the definition keeps
      std::vector<int32_t> sorted;
      if (listing::RunFlatSort(db.store, definition, sorted, &db.links) == listing::SortResult::kSorted) {
        request.ids = std::move(sorted);
        request.explicitRows = true;
      }
    } else {
      listing::SortList(db.store, definition, request.ids.data(), static_cast<int32_t>(request.ids.size()), &db.links);
    }
  }

  request.store = &db.store;
  request.lists = &db.lists;
  request.record = &working;
  request.callback = callback;
  request.styleField = styleField;
  request.pdfPath = DefaultPdfPath(db);
  request.environment.links = &db.links;
  request.environment.thousands = {Switches().thousandsPoints, Switches().thousandsPointsOnlyWithDecimals};
  ui::Host& host = ui::CurrentHost();
  request.environment.stopRequested = [&host] { return host.StopRequested(); };
  const platform::LocalTime now = platform::NowLocal();
  request.environment.day = now.day;
  request.environment.month = now.month;
  request.environment.year = now.year;
  request.reselect = [&db](const char* text) {
    if (text != nullptr) print::MarkFilteredRows(db.store, text, &db.links);
    else print::MarkAllRows(db.store);
  };
  {
    // The preview holds the configuration and the sort definitions: no sheet or move of options
    // may replace them while it is open.
    OptionSheetOpen open(db);
    dialogs::TCYXPreviewWindow preview(host, nullptr, std::move(request));
    preview.Open();
  }
  if (!name.empty())
    if (options::TPrintData* stored = db.prints.Find(name)) *stored = working;
  db.MarkDirty();
  return 1;
}

}  // namespace verdal::engine
