#pragma once
// TPassWordDialog (IDD_CONFIGURE_PASSWORD): the password, typed twice, and the compression flag
// of a database. OK refuses with a stop message when the two texts differ or the password is
// shorter than 5 characters; an empty password is allowed and means no cipher. Blanks are kept.
#include <string>

#include "ui/host.h"

namespace verdal::dialogs {

class TPassWordDialog : public ui::Sheet {
 public:
  enum ControlId : int32_t { kPassword = 1, kRepeat = 2, kCompress = 3, kNote = 4 };
  static constexpr int32_t kLimit = 31;
  static constexpr size_t kMinimumLength = 5;

  // Both edits start with the current password, the check box with the compressed flag.
  TPassWordDialog(const std::string& password, bool compressed, VerdalWindow parent = nullptr);

  std::string Title() const override;
  std::vector<std::string> Pages() const override;
  std::vector<ui::Control> Controls() const override;
  std::string Text(int32_t control) const override;
  // Edits keep at most 31 characters; the check box takes "1" or "0".
  void SetText(int32_t control, const std::string& text) override;
  bool PressOk() override;
  void PressCancel() override {}

  void SetChecked(bool checked) { compress_ = checked; }
  bool Checked() const { return compress_; }

  // What OK took over; meaningful after PressOk answered true.
  const std::string& Password() const { return password_; }
  bool Compress() const { return compress_; }

 private:
  VerdalWindow parent_;
  std::string password_;
  std::string repeat_;
  bool compress_;
};

}  // namespace verdal::dialogs
