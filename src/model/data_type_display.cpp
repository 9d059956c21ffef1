// Internal form to the text a user sees.
#include <algorithm>
#include <vector>

#include "model/data_type_info.h"
#include "model/date_text.h"
#include "model/link_resolver.h"
#include "model/number_text.h"
#include "platform/intl.h"
#include "platform/trace.h"

namespace verdal::model {
namespace {

// A link value is the id of a node in the next database of the chain; each hop reads the value
// found there as the next id, and the last one is shown with the last field's type. A link at the
// end of the chain is not followed further.
void ShowLink(const TDataTypeInfo& field, std::string current, std::string& out,
              TLinkResolver& database) {
  std::vector<TLinkResolver::Hop> chain;
  bool sound = database.LinkChain(field, chain) && chain.size() >= 2;
  for (size_t i = 1; sound && i < chain.size(); ++i) sound = chain[i].database != nullptr;
  if (!sound) {
    const std::string name(database.Name());
    platform::Trace(
        "Error in TDataTypeInfo::CreateDisplayString(): Invalid Crossdata in Table '%s-->%s', "
        "Field %d.",
        name.c_str(), field.linkDatabase.c_str(), database.FieldIndexOf(field));
    out.clear();
    return;
  }
  for (size_t i = 1; i < chain.size(); ++i) {
    const TLinkResolver::Hop& hop = chain[i];
    std::string stored;
    if (!hop.database->StoredValue(ReadInteger(current), hop.fieldIndex, stored)) {
      out.clear();
      return;
    }
    current = std::move(stored);
  }
  TDataTypeInfo* last = chain.back().database->FieldType(chain.back().fieldIndex);
  if (last == nullptr) {
    out.clear();
    return;
  }
  last->CreateDisplayString(current, out, true, false, nullptr);
}

}  // namespace

void TDataTypeInfo::CreateDisplayString(std::string_view value, std::string& out, bool useWords,
                                        bool convertFirst, TLinkResolver* database) {
  // Date types always show in their fixed format, and the field keeps it from now on.
  if (const char* fixed = FixedFormat(dataType)) format = fixed;
  ShowValue(value, out, useWords, convertFirst, database);
}

void TDataTypeInfo::ShowValue(std::string_view value, std::string& out, bool useWords,
                              bool convertFirst, TLinkResolver* database) const {
  if (KeepsTextAsIs() && !convertFirst) {
    out.assign(value.data(), value.size());  // text is shown as it is kept; assign copes with a view of out
    return;
  }
  std::string work;
  if (convertFirst)
    ToInternal(value, work, false, nullptr);
  else
    work.assign(value);
  switch (dataType) {
    case kTypeNumber:
      std::replace(work.begin(), work.end(), '.', platform::Intl().decimal);
      break;
    case kTypeYesNo:
      if (useWords) {
        const int32_t v = ReadInteger(work);
        work = (v == 1 || v == -1) ? "Ja" : "Nein";
      }
      break;
    case kTypeDateTime:
    case kTypeDate:
    case kTypeTime:
      FormatDateValue(FixedFormat(dataType), work, work);
      break;
    case kTypeLink:
      if (database == nullptr)
        work.clear();
      else
        ShowLink(*this, std::move(work), work, *database);
      break;
    default:
      break;
  }
  out = std::move(work);
}

}  // namespace verdal::model
