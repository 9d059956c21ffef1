#pragma once
// TConfigureBaseConfigDialog: the names page of every option kind. It lists the entries of a
// collection (TBaseConfigClass), with a name box, a comment box and the buttons New, Copy, Delete,
// Rename, Import and Export, and works on the collection directly: what it did stays also when the
// sheet is cancelled.
//
// The selected entry is the collection's default. Whenever another entry is selected, the comment
// box goes into the entry left, and the pages after this one are dropped and made anew for the
// new entry; what was typed on them and not yet applied is gone, as the pages write only on OK.
// The pages hold the entry itself, so every change to the collection's entries selects again.
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "dialogs/property_sheet.h"
#include "options/base_config.h"
#include "ui/host.h"

namespace verdal::dialogs {

class TConfigureBaseConfigDialog : public TPropertyPage {
 public:
  enum ControlId : int32_t {
    kNames = 1,  // the entries' names; choosing one selects it
    kName = 2,
    kComment = 3,
    kNew = 4,
    kCopy = 5,
    kDelete = 6,
    kRename = 7,
    kImport = 8,
    kExport = 9,
  };
  // Page `page` (0, 1, ...) for the entry at a visible index; null when there are no more.
  using PageFactory = std::function<std::unique_ptr<TPropertyPage>(int32_t page, int32_t entry)>;

  // The page must be on `sheet` before Start.
  TConfigureBaseConfigDialog(options::TBaseConfigClass& collection, TPropertySheet& sheet, PageFactory pages,
                             ui::Host& host, VerdalWindow parent);

  // The first pass: selects the default, or the first entry where the default names none; an
  // empty collection gets a new entry at once.
  void Start();

  std::string Title() const override { return "Einstellungen"; }
  std::vector<ui::Control> Controls() const override;
  std::string Text(int32_t control) const override;
  void SetText(int32_t control, const std::string& text) override;
  // Leaving with OK stores the comment box.
  bool Apply() override;

  int32_t Selected() const { return selected_; }

  // The buttons.
  void New();
  void CopyEntry();
  void Delete();
  void Rename();
  void Import();
  void Export();

 private:
  std::vector<std::string> Names() const;
  void Select(int32_t index);
  void StoreComment();
  void Refuse(const char* text);
  // `base` followed by the first number from `first` up to 32767 that names no entry; "" if all do.
  std::string FreeName(const std::string& base, int first) const;

  options::TBaseConfigClass& collection_;
  TPropertySheet& sheet_;
  PageFactory pages_;
  ui::Host& host_;
  VerdalWindow parent_;
  size_t firstExtraPage_ = 1;
  int32_t selected_ = -1;
  std::string name_;
  std::string comment_;
};

}  // namespace verdal::dialogs
