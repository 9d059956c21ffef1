#pragma once
// The sheets of print configurations: the option sheet of kind 2 (the names page over the
// database's configurations, then the field page and the page set-up of the selected one), and
// the settings sheet of one record that the preview's configure command shows.
#include <string>

#include "listing/list_display.h"
#include "model/node_store.h"
#include "options/print_configs.h"
#include "ui/host.h"

namespace verdal::dialogs {

// The title of the field page on the option sheet.
inline constexpr const char* kTablePrintTitle = "Druckeinstellungen: Tabellarischer Ausdruck";

// True when closed with OK; what the names page did stays also on cancel, as it works on the
// configurations directly. The pages write their record only on OK.
bool RunPrintOptionSheet(ui::Host& host, VerdalWindow parent, const std::string& title,
                         options::TPrintConfigs& configs, model::NodeStore& store,
                         listing::TListAndSortDisplayFieldInfoMananger& lists);

// "Druckeinstellungen": TTablePrintDialog (titled "Druckeinstellungen") and TDruckDialog on one
// record. The original sheet has a single OK button; a host shows its own buttons, and the record
// changes only when the sheet is closed with OK (the result).
bool RunPrintSettingsSheet(ui::Host& host, VerdalWindow parent, options::TPrintData& record,
                           model::NodeStore& store, listing::TListAndSortDisplayFieldInfoMananger& lists);

}  // namespace verdal::dialogs
