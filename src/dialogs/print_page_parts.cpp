#include "dialogs/print_page_parts.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace verdal::dialogs {

std::string TwoDecimals(double value) {
  char text[64];
  std::snprintf(text, sizeof text, "%.2f", value);
  return text;
}

bool ParseNumber(const std::string& text, double& value) {
  std::string t = text;
  for (char& c : t)
    if (c == ',') c = '.';
  const size_t begin = t.find_first_not_of(' ');
  if (begin == std::string::npos) return false;
  char* end = nullptr;
  const double v = std::strtod(t.c_str() + begin, &end);
  while (end != nullptr && *end == ' ') ++end;
  if (end == nullptr || *end != '\0' || !std::isfinite(v)) return false;
  value = v;
  return true;
}

bool ParseInteger(const std::string& text, int32_t& value) {
  double v = 0;
  if (!ParseNumber(text, v) || v != std::floor(v) || v < INT32_MIN || v > INT32_MAX) return false;
  value = static_cast<int32_t>(v);
  return true;
}

void FontControls::Add(std::vector<ui::Control>& controls) const {
  using ui::ControlKind;
  controls.push_back({base_, 0, ControlKind::kEdit, prefix_ + " Schriftart:", 31});
  controls.push_back({base_ + 1, 0, ControlKind::kEdit, prefix_ + " Gr\xF6\xDF\x65 (pt):"});
  controls.push_back({base_ + 2, 0, ControlKind::kCheckBox, prefix_ + " fett"});
  controls.push_back({base_ + 3, 0, ControlKind::kCheckBox, prefix_ + " kursiv"});
  controls.push_back({base_ + 4, 0, ControlKind::kEdit, prefix_ + " Farbe:"});
}

bool FontControls::Text(const options::TPrintFont& font, int32_t control, std::string& out) const {
  switch (control - base_) {
    case 0: out = font.FaceName(); return true;
    case 1: {
      char text[32];
      std::snprintf(text, sizeof text, "%g", font.pointSize / 10.0);
      out = text;
      return true;
    }
    case 2: out = font.lfWeight >= 600 ? "1" : "0"; return true;
    case 3: out = font.lfItalic != 0 ? "1" : "0"; return true;
    case 4: out = std::to_string(font.colour); return true;
    default: return false;
  }
}

bool FontControls::SetText(options::TPrintFont& font, int32_t control, const std::string& text) const {
  switch (control - base_) {
    case 0:
      if (!text.empty()) font.SetFaceName(text);
      return true;
    case 1: {
      double points = 0;
      if (ParseNumber(text, points) && points >= 1 && points <= 1000) {
        font.pointSize = static_cast<int32_t>(std::lround(points * 10));
        font.lfHeight = -options::MulDiv(font.pointSize, 96, 720);  // the screen's 96 dpi
      }
      return true;
    }
    case 2: {
      const bool bold = text == "1";
      if (bold != (font.lfWeight >= 600)) font.lfWeight = bold ? 700 : 0;
      return true;
    }
    case 3: font.lfItalic = text == "1" ? 1 : 0; return true;
    case 4: {
      int32_t colour = 0;
      if (ParseInteger(text, colour) && colour >= 0 && colour <= 0xFFFFFF) font.colour = colour;
      return true;
    }
    default: return false;
  }
}

const std::vector<std::string>& PageAlignmentNames() {
  static const std::vector<std::string> names{"Links", "Rechts", "Zentriert"};
  return names;
}

}  // namespace verdal::dialogs
