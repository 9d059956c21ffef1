#pragma once
// What the two pages of a print configuration share: lengths shown with two decimals, and a font
// record edited through plain controls. The platform's font and colour dialogs have no
// counterpart here, so a font is five controls (face name, size in points, bold, italic, colour
// as a number, the Windows value 0x00BBGGRR) and the line colour one edit.
#include <cstdint>
#include <string>
#include <vector>

#include "options/print_data.h"
#include "ui/host.h"

namespace verdal::dialogs {

std::string TwoDecimals(double value);
// A number typed with '.' or ','; false for anything else.
bool ParseNumber(const std::string& text, double& value);
bool ParseInteger(const std::string& text, int32_t& value);

// The controls of one font, ids base to base + 4, labelled "<prefix> Schriftart:", "<prefix>
// Gr\xF6\xDF\x65 (pt):", "<prefix> fett", "<prefix> kursiv", "<prefix> Farbe:".
class FontControls {
 public:
  static constexpr int32_t kCount = 5;
  FontControls(int32_t base, std::string prefix) : base_(base), prefix_(std::move(prefix)) {}
  void Add(std::vector<ui::Control>& controls) const;
  // False for an id that is not one of these.
  bool Text(const options::TPrintFont& font, int32_t control, std::string& out) const;
  // Text that is no valid value changes nothing.
  bool SetText(options::TPrintFont& font, int32_t control, const std::string& text) const;

 private:
  int32_t base_;
  std::string prefix_;
};

// Alignments of titles, page number and date: the item index is the stored value.
const std::vector<std::string>& PageAlignmentNames();

}  // namespace verdal::dialogs
