#pragma once
// The five option containers a database carries, in their stored order, and the option kinds by
// which the interface names them.
#include <cstdint>

#include "options/config_container.h"

namespace verdal::options {

// The kinds of option, as the interface numbers them (VERDAL_OPTION_ in verdal.h).
enum class OptionKind : int32_t {
  kFilter = 1,
  kPrint = 2,
  kSort = 3,
  kClipboard = 5,
  kFieldView = 6,
  kExport = 7,
  kEmail = 8,
  kReplace = 10,
};

struct OptionContainers {
  TClipBoardContainer clipboard;
  TFieldViewContainer fieldViews;
  TFileExportContainer exports;
  TEmailContainer emails;
  TReplaceContainer replacements;

  // The container of kinds 5 to 10; null for any other kind.
  TBaseConfigClass* ForKind(int32_t kind);
  // In stored order.
  TBaseConfigClass* InOrder(int index);
  static constexpr int kCount = 5;
  void Clear();
};

}  // namespace verdal::options
