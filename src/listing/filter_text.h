#pragma once
// The two text forms of filter rows: the sentence a user reads in lists, and the internal query
// text with \eval macros that the query cache compiles.
#include <string>

#include "model/node_store.h"
#include "listing/filter_parts.h"

namespace verdal::model {
class TLinkResolver;
}

namespace verdal::listing {

// The shown and internal words of a condition and a link; both clamp their argument.
const char* ConditionText(int16_t condition, bool internal);
const char* LinkText(int16_t link, bool internal);

// The text of one row. The readable form (internal off) names the field by its display name with
// useDisplayNames, and shows "???" for a field that does not exist. The internal form is false
// for such a row. Link and condition of the row are clamped first. links: resolves link fields,
// so that a link to a text field counts as text; null treats link fields as not textual.
bool RowText(TDBFilterParts& row, model::NodeStore& database, std::string& textOut, bool internal,
             bool useDisplayNames, model::TLinkResolver* links = nullptr);

// The internal text of the named filter (ignoring case): the rows' texts one after the other.
// Null for an unknown name or a row that has no text. The text lies in a buffer of this module,
// valid until the next call.
const char* FilterText(TDBFilterCollection& collection, model::NodeStore& database,
                       const std::string& name, model::TLinkResolver* links = nullptr);

// The internal text of a single row made on the spot for the field at fieldIndex, with condition
// "gleich": flags bit 2 clears wholeWord, bit 4 clears caseSensitive, 8 sets beginsWith and 16
// wildcard. Null for an unknown field index. The text lies in a buffer of this module.
const char* InternalParseString(model::NodeStore& database, int32_t fieldIndex, const char* value,
                                int32_t flags, model::TLinkResolver* links = nullptr);

}  // namespace verdal::listing
