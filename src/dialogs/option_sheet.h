#pragma once
// The two sheets the option functions of the interface show: the option sheet of a kind (the
// names page and the kind's pages for the selected entry) and the single list display or sort
// page of one definition.
#include <cstdint>
#include <string>

#include "dialogs/file_export_page.h"
#include "listing/list_display.h"
#include "model/node_store.h"
#include "options/base_config.h"
#include "ui/host.h"

namespace verdal::dialogs {

// The option sheet of kind 3 (collection = the list manager with owner 1) or 5 to 10 (a
// container): the names page and the kind's pages. True when closed with OK; what the pages
// changed before a cancel stays, as the names page works on the collection directly.
// editExport is how the export kind's page has the bridge edit a definition.
bool RunOptionSheet(ui::Host& host, VerdalWindow parent, const std::string& title,
                    int32_t kind, options::TBaseConfigClass& collection, model::NodeStore& store,
                    EditExportDefinition editExport = {});

// One page of TListSortAndDisplayDialog for the definition `name`: the sort face when
// sortFace, else the list display face. True when closed with OK.
bool RunListSortSheet(ui::Host& host, VerdalWindow parent, const std::string& title,
                      listing::TListAndSortDisplayFieldInfoMananger& lists,
                      model::NodeStore& store, const std::string& name, bool sortFace);

}  // namespace verdal::dialogs
