#pragma once
// TPropertySheet: a sheet of pages (TPropertyPage), each with controls of its own. Pages may be
// added and removed while the sheet runs, as the option dialog does when another entry is chosen.
// A control's id on the sheet is its page's index times kIdsPerPage plus the page's own id.
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "ui/host.h"

namespace verdal::dialogs {

class TPropertyPage {
 public:
  virtual ~TPropertyPage() = default;
  virtual std::string Title() const = 0;
  // Ids from 0 to TPropertySheet::kIdsPerPage - 1; the page member is set by the sheet.
  virtual std::vector<ui::Control> Controls() const = 0;
  virtual std::string Text(int32_t control) const = 0;
  virtual void SetText(int32_t control, const std::string& text) = 0;
  // The sheet is closed with OK: the page takes its input over. False keeps the sheet open, the
  // page having told the user why.
  virtual bool Apply() { return true; }
};

class TPropertySheet : public ui::Sheet {
 public:
  static constexpr int32_t kIdsPerPage = 1000;

  explicit TPropertySheet(std::string title) : title_(std::move(title)) {}

  void AddPage(std::unique_ptr<TPropertyPage> page);
  // Removes the pages from index `first` on.
  void RemovePagesFrom(size_t first);
  size_t PageCount() const { return pages_.size(); }
  TPropertyPage* Page(size_t index) const;
  // The sheet's id of a page's control.
  static int32_t SheetId(size_t page, int32_t control) {
    return static_cast<int32_t>(page) * kIdsPerPage + control;
  }

  std::string Title() const override { return title_; }
  std::vector<std::string> Pages() const override;
  std::vector<ui::Control> Controls() const override;
  std::string Text(int32_t control) const override;
  void SetText(int32_t control, const std::string& text) override;
  // Every page applies, in order; the first that refuses keeps the sheet open.
  bool PressOk() override;
  // Pages write only on OK, so a cancel has nothing to undo.
  void PressCancel() override {}

 private:
  TPropertyPage* PageOf(int32_t control) const;

  std::string title_;
  std::vector<std::unique_ptr<TPropertyPage>> pages_;
};

}  // namespace verdal::dialogs
