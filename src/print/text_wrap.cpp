#include "print/text_wrap.h"

#include <cstdint>
#include <string>

namespace verdal::print {

namespace {

std::string_view TrimEnd(std::string_view s) {
  while (!s.empty() && s.back() == ' ') s.remove_suffix(1);
  return s;
}

void WrapParagraph(std::string_view rest, float width, const float* advances, std::vector<std::string>& lines) {
  while (true) {
    while (!rest.empty() && rest.front() == ' ') rest.remove_prefix(1);
    // Grow the line until the text before the current character is wider than the width.
    size_t lastBlank = std::string_view::npos;
    size_t overflow = std::string_view::npos;
    float sum = 0;
    for (size_t i = 0; i < rest.size(); ++i) {
      if (rest[i] == ' ') lastBlank = i;
      if (static_cast<int32_t>(sum + 0.5f) > width) {
        overflow = i;
        break;
      }
      sum += advances[static_cast<uint8_t>(rest[i])];
    }
    if (overflow == std::string_view::npos && static_cast<int32_t>(sum + 0.5f) > width && !rest.empty())
      overflow = rest.size();  // only the last character runs over: no blank after it can help
    if (overflow == std::string_view::npos || lastBlank == std::string_view::npos) {
      // It fits, or it is one overlong word: the rest is the line.
      lines.emplace_back(overflow == std::string_view::npos ? TrimEnd(rest) : rest);
      return;
    }
    // Where the width ran out on the blank itself, the line ends one character before it; never
    // with nothing, so that every line takes something.
    size_t end = lastBlank;
    if (overflow == lastBlank && lastBlank > 1) end = lastBlank - 1;
    lines.emplace_back(TrimEnd(rest.substr(0, end)));
    rest.remove_prefix(end);
  }
}

}  // namespace

void WrapText(std::string_view text, float width, const float* advances, std::vector<std::string>& lines) {
  lines.clear();
  std::string clean;
  clean.reserve(text.size());
  for (const char c : text)
    if (c != '\r') clean += c;
  std::string_view all = clean;
  if (!all.empty() && all.back() == '\n') all.remove_suffix(1);  // a last empty paragraph
  while (true) {
    const size_t feed = all.find('\n');
    WrapParagraph(all.substr(0, feed), width, advances, lines);
    if (feed == std::string_view::npos) break;
    all.remove_prefix(feed + 1);
  }
}

}  // namespace verdal::print
