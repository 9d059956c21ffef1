#pragma once
// The pages an option kind shows beside its names page, for one entry: what CreatePage gives in
// the options interface. The options layer knows nothing of pages, so the kinds are told apart
// here.
//
//   kind 3   the sort face of TListSortAndDisplayDialog (the list display face while the list
//            manager's owner is 0)
//   kind 5   field selection, separators
//   kind 6   field selection
//   kind 7   the export definition, edited by the bridge
//   kind 8   e-mail settings, field selection
//   kind 10  replacement text, field selection
#include <cstdint>
#include <memory>

#include "dialogs/file_export_page.h"
#include "dialogs/property_sheet.h"
#include "model/node_store.h"
#include "options/base_config.h"
#include "ui/host.h"

namespace verdal::dialogs {

struct OptionPageContext {
  ui::Host& host;
  VerdalWindow parent;
  model::NodeStore& store;
  EditExportDefinition editExport;  // how the export page has the bridge edit a definition
};

// Page `page` (0, 1, ...) of the kind for the entry at visible index `entry`; null past the
// kind's last page, for a bad entry, or for a collection that is not the kind's.
std::unique_ptr<TPropertyPage> CreateOptionPage(int32_t kind, int32_t page, options::TBaseConfigClass& collection,
                                                int32_t entry, const OptionPageContext& context);

}  // namespace verdal::dialogs
