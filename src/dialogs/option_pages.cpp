#include "dialogs/option_pages.h"

#include "dialogs/email_page.h"
#include "dialogs/field_map_page.h"
#include "dialogs/list_sort_display_dialog.h"
#include "dialogs/replace_page.h"
#include "dialogs/separator_page.h"
#include "listing/list_display.h"
#include "options/config_container.h"
#include "options/option_containers.h"

namespace verdal::dialogs {

namespace {

template <class Container>
auto* RecordOf(options::TBaseConfigClass& collection, int32_t entry) {
  auto* container = dynamic_cast<Container*>(&collection);
  return container != nullptr ? container->At(entry) : nullptr;
}

}  // namespace

std::unique_ptr<TPropertyPage> CreateOptionPage(int32_t kind, int32_t page, options::TBaseConfigClass& collection,
                                                int32_t entry, const OptionPageContext& context) {
  using options::OptionKind;
  switch (static_cast<OptionKind>(kind)) {
    case OptionKind::kSort: {
      auto* lists = dynamic_cast<listing::TListAndSortDisplayFieldInfoMananger*>(&collection);
      const char* name = collection.GetName(entry);
      if (lists == nullptr || name == nullptr || page != 0) return nullptr;
      return std::make_unique<TListSortAndDisplayDialog>(*lists, context.store, name, lists->owner != 0);
    }
    case OptionKind::kClipboard: {
      auto* record = RecordOf<options::TClipBoardContainer>(collection, entry);
      if (record == nullptr) return nullptr;
      if (page == 0) return std::make_unique<TDBFieldMapPage>(record->fields, context.store);
      if (page == 1) return std::make_unique<TSeparatorConf1MapPage>(*record);
      return nullptr;
    }
    case OptionKind::kFieldView: {
      auto* record = RecordOf<options::TFieldViewContainer>(collection, entry);
      if (record == nullptr || page != 0) return nullptr;
      return std::make_unique<TDBFieldMapPage>(record->fields, context.store);
    }
    case OptionKind::kEmail: {
      auto* record = RecordOf<options::TEmailContainer>(collection, entry);
      if (record == nullptr) return nullptr;
      if (page == 0) return std::make_unique<TEmailMapPage>(*record, context.host, context.parent);
      if (page == 1) return std::make_unique<TDBFieldMapPage>(record->fields, context.store);
      return nullptr;
    }
    case OptionKind::kReplace: {
      auto* record = RecordOf<options::TReplaceContainer>(collection, entry);
      if (record == nullptr) return nullptr;
      if (page == 0) return std::make_unique<TReplaceMapPage>(*record);
      if (page == 1) return std::make_unique<TDBFieldMapPage>(record->fields, context.store);
      return nullptr;
    }
    case OptionKind::kExport: {
      auto* record = RecordOf<options::TFileExportContainer>(collection, entry);
      if (record == nullptr || page != 0) return nullptr;
      return std::make_unique<TFileExportMapPage>(*record, context.store, context.editExport);
    }
    default:
      return nullptr;
  }
}

}  // namespace verdal::dialogs
