#include "dialogs/option_sheet.h"

#include "dialogs/configure_base_config_dialog.h"
#include "dialogs/list_sort_display_dialog.h"
#include "dialogs/option_pages.h"
#include "dialogs/property_sheet.h"
#include "options/option_containers.h"

namespace verdal::dialogs {

namespace {

bool HasNamesPage(int32_t kind) {
  using options::OptionKind;
  switch (static_cast<OptionKind>(kind)) {
    case OptionKind::kSort:
    case OptionKind::kClipboard:
    case OptionKind::kFieldView:
    case OptionKind::kExport:
    case OptionKind::kEmail:
    case OptionKind::kReplace: return true;
    default: return false;
  }
}

}  // namespace

bool RunOptionSheet(ui::Host& host, VerdalWindow parent, const std::string& title, int32_t kind,
                    options::TBaseConfigClass& collection, model::NodeStore& store,
                    EditExportDefinition editExport) {
  if (!HasNamesPage(kind)) return false;
  TPropertySheet sheet(title);
  const OptionPageContext context{host, parent, store, std::move(editExport)};
  auto pages = [kind, &collection, context](int32_t page, int32_t entry) {
    return CreateOptionPage(kind, page, collection, entry, context);
  };
  auto names = std::make_unique<TConfigureBaseConfigDialog>(collection, sheet, pages, host, parent);
  TConfigureBaseConfigDialog& first = *names;
  sheet.AddPage(std::move(names));
  first.Start();
  return host.RunSheet(parent, sheet);
}

bool RunListSortSheet(ui::Host& host, VerdalWindow parent, const std::string& title,
                      listing::TListAndSortDisplayFieldInfoMananger& lists, model::NodeStore& store,
                      const std::string& name, bool sortFace) {
  TPropertySheet sheet(title);
  sheet.AddPage(std::make_unique<TListSortAndDisplayDialog>(lists, store, name, sortFace));
  return host.RunSheet(parent, sheet);
}

}  // namespace verdal::dialogs
