#pragma once
// The template of a mailing: a file whose "$NAME" words become the values of the record each
// message goes out for, and "$DATE" today's date.
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "model/field_info.h"
#include "platform/clock.h"

namespace verdal::exchange {

// A field as the template names it: "$" and its internal name.
struct TReplacerWord {
  std::string name;
  int32_t field;  // its index
};

// The database's fields, longest name first, equal lengths in field order: so "$NAME2" is
// replaced before "$NAME" could take its front part.
std::vector<TReplacerWord> ReplacerWords(const std::vector<std::unique_ptr<model::TDBFieldInfo>>& fields);

// How a value's line breaks are written into the template: by the kind of the template file.
enum class LineBreaks {
  kKeep,
  kRtf,   // ".rtf": each LF becomes "\par ", CRs go
  kHtml,  // ".htm", ".html": each LF becomes "<br>", CRs go
};
LineBreaks LineBreaksFor(const std::string& templatePath);

// A copy of the template with every "$" + name of the words replaced, ignoring letter case (code
// page 1252), by valueOf(field) with its line breaks written as `breaks` says; what a
// replacement inserts is not searched again for the same word. Then every "$DATE" becomes
// today's date as "DD.MM.YYYY". Fields go before the date, so a value holding "$DATE" shows the
// date.
std::string MergeTemplate(const std::string& templateText, const std::vector<TReplacerWord>& words,
                          const std::function<std::string(int32_t field)>& valueOf, LineBreaks breaks,
                          const platform::LocalTime& today);

}  // namespace verdal::exchange
