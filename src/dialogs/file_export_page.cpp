#include "dialogs/file_export_page.h"

#include <fstream>
#include <iterator>

#include "platform/temporary_file.h"

namespace verdal::dialogs {

namespace {
// Edit only, the target a definition file; with category columns where the database has categories.
constexpr int32_t kEditFlags = 0x4400;
constexpr int32_t kCategoryColumns = 0x800;
}  // namespace

std::vector<ui::Control> TFileExportMapPage::Controls() const {
  return {{kEdit, 0, ui::ControlKind::kButton, "Bearbeiten...", 0, {}, static_cast<bool>(edit_)}};
}

void TFileExportMapPage::SetText(int32_t control, const std::string&) {
  if (control == kEdit) Edit();
}

void TFileExportMapPage::Edit() {
  if (!edit_) return;
  platform::ScopedTemporaryFile file("tmp");
  if (file.path.empty()) return;
  {
    std::ofstream out(file.path, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(definition_.data()),
              static_cast<std::streamsize>(definition_.size()));
    if (!out) return;
  }
  const int32_t flags = store_.categories.Count() > 0 ? kEditFlags | kCategoryColumns : kEditFlags;
  if (!edit_(file.path, flags)) return;
  std::ifstream in(file.path, std::ios::binary);
  if (!in) return;
  definition_.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

}  // namespace verdal::dialogs
