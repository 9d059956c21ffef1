#include "options/option_containers.h"

namespace verdal::options {

TBaseConfigClass* OptionContainers::ForKind(int32_t kind) {
  switch (static_cast<OptionKind>(kind)) {
    case OptionKind::kClipboard: return &clipboard;
    case OptionKind::kFieldView: return &fieldViews;
    case OptionKind::kExport: return &exports;
    case OptionKind::kEmail: return &emails;
    case OptionKind::kReplace: return &replacements;
    default: return nullptr;
  }
}

TBaseConfigClass* OptionContainers::InOrder(int index) {
  constexpr int32_t kKinds[kCount] = {5, 6, 7, 8, 10};
  return index >= 0 && index < kCount ? ForKind(kKinds[index]) : nullptr;
}

void OptionContainers::Clear() { *this = OptionContainers(); }

}  // namespace verdal::options
