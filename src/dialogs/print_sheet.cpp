#include "dialogs/print_sheet.h"

#include "dialogs/configure_base_config_dialog.h"
#include "dialogs/page_setup_page.h"
#include "dialogs/property_sheet.h"
#include "dialogs/table_print_page.h"

namespace verdal::dialogs {

bool RunPrintOptionSheet(ui::Host& host, VerdalWindow parent, const std::string& title,
                         options::TPrintConfigs& configs, model::NodeStore& store,
                         listing::TListAndSortDisplayFieldInfoMananger& lists) {
  TPropertySheet sheet(title);
  auto pages = [&](int32_t page, int32_t entry) -> std::unique_ptr<TPropertyPage> {
    options::TPrintData* record = configs.At(entry);
    if (record == nullptr) return nullptr;
    if (page == 0) return std::make_unique<TTablePrintDialog>(*record, store, lists, host, parent, kTablePrintTitle);
    if (page == 1) return std::make_unique<TDruckDialog>(*record);
    return nullptr;
  };
  auto names = std::make_unique<TConfigureBaseConfigDialog>(configs, sheet, pages, host, parent);
  TConfigureBaseConfigDialog& first = *names;
  sheet.AddPage(std::move(names));
  first.Start();
  return host.RunSheet(parent, sheet);
}

bool RunPrintSettingsSheet(ui::Host& host, VerdalWindow parent, options::TPrintData& record,
                           model::NodeStore& store, listing::TListAndSortDisplayFieldInfoMananger& lists) {
  TPropertySheet sheet("Druckeinstellungen");
  sheet.AddPage(std::make_unique<TTablePrintDialog>(record, store, lists, host, parent, "Druckeinstellungen"));
  sheet.AddPage(std::make_unique<TDruckDialog>(record));
  return host.RunSheet(parent, sheet);
}

}  // namespace verdal::dialogs
