#pragma once
// Breaks cell text into lines of at most a width, by the advances of a font. The rules are those
// users of the printed tables know: blanks at a line's start go, a line breaks at its last blank,
// a word longer than the width stays whole (the cell clips it), and where the width runs out on a
// blank the line ends one character before it.
#include <string_view>
#include <vector>

namespace verdal::print {

// Lines view `text`. Carriage returns are dropped, line feeds end paragraphs (a last empty one
// does not count) and every paragraph gives at least one line. `advances` is a 256-entry table in
// the unit of `width`; a text is wider than the width when its rounded advance sum is.
void WrapText(std::string_view text, float width, const float* advances, std::vector<std::string>& lines);

}  // namespace verdal::print
