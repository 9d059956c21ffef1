#include "dialogs/property_sheet.h"

namespace verdal::dialogs {

void TPropertySheet::AddPage(std::unique_ptr<TPropertyPage> page) {
  if (page != nullptr) pages_.push_back(std::move(page));
}

void TPropertySheet::RemovePagesFrom(size_t first) {
  if (first < pages_.size()) pages_.erase(pages_.begin() + static_cast<std::ptrdiff_t>(first), pages_.end());
}

TPropertyPage* TPropertySheet::Page(size_t index) const {
  return index < pages_.size() ? pages_[index].get() : nullptr;
}

std::vector<std::string> TPropertySheet::Pages() const {
  std::vector<std::string> titles;
  for (const auto& page : pages_) titles.push_back(page->Title());
  return titles;
}

std::vector<ui::Control> TPropertySheet::Controls() const {
  std::vector<ui::Control> all;
  for (size_t p = 0; p < pages_.size(); ++p) {
    for (ui::Control& c : pages_[p]->Controls()) {
      c.id = SheetId(p, c.id);
      c.page = static_cast<int32_t>(p);
      all.push_back(std::move(c));
    }
  }
  return all;
}

TPropertyPage* TPropertySheet::PageOf(int32_t control) const {
  return control < 0 ? nullptr : Page(static_cast<size_t>(control / kIdsPerPage));
}

std::string TPropertySheet::Text(int32_t control) const {
  const TPropertyPage* page = PageOf(control);
  return page != nullptr ? page->Text(control % kIdsPerPage) : std::string();
}

void TPropertySheet::SetText(int32_t control, const std::string& text) {
  // The page may replace the pages after it, never itself.
  if (TPropertyPage* page = PageOf(control)) page->SetText(control % kIdsPerPage, text);
}

bool TPropertySheet::PressOk() {
  for (const auto& page : pages_)
    if (!page->Apply()) return false;
  return true;
}

}  // namespace verdal::dialogs
