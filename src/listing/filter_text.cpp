#include "listing/filter_text.h"

#include <algorithm>
#include <vector>

#include "model/fields.h"
#include "model/link_resolver.h"

namespace verdal::listing {

namespace {

constexpr const char* kConditionInternal[] = {"<", "<=", "=", "<>", ">", ">="};
constexpr const char* kConditionShown[] = {"kleiner",          "kleiner gleich",
                                           "gleich",           "ungleich",
                                           "gr\xF6\xDF" "er", "gr\xF6\xDF" "er gleich"};
constexpr const char* kLinkInternal[] = {"", "and", "or"};
constexpr const char* kLinkShown[] = {"", "und", "oder"};

// The texts handed out, one buffer per function.
std::string g_filterText;
std::string g_parseText;

// A text field, or a link whose chain ends at a text field, takes its value in quotes and is
// searched rather than compared.
bool IsTextual(model::TDBFieldInfo& field, model::TLinkResolver* links) {
  if (field.type.dataType == model::kTypeText) return true;
  if (field.type.dataType != model::kTypeLink || links == nullptr) return false;
  std::vector<model::TLinkResolver::Hop> chain;
  if (!links->LinkChain(field.type, chain) || chain.size() < 2) return false;
  const model::TDataTypeInfo* last = chain.back().database->FieldType(chain.back().fieldIndex);
  return last != nullptr && last->dataType == model::kTypeText;
}

std::string Join(std::initializer_list<const std::string*> parts) {
  std::string out;
  bool first = true;
  for (const std::string* p : parts) {
    if (!first) out += ' ';
    out += *p;
    first = false;
  }
  return out;
}

}  // namespace

const char* ConditionText(int16_t condition, bool internal) {
  const size_t i = static_cast<size_t>(std::clamp<int16_t>(condition, kLess, kGreaterEqual));
  return internal ? kConditionInternal[i] : kConditionShown[i];
}

const char* LinkText(int16_t link, bool internal) {
  const size_t i = static_cast<size_t>(std::clamp<int16_t>(link, kLinkNone, kLinkOr));
  return internal ? kLinkInternal[i] : kLinkShown[i];
}

bool RowText(TDBFilterParts& row, model::NodeStore& database, std::string& textOut, bool internal,
             bool useDisplayNames, model::TLinkResolver* links) {
  row.Clamp();
  model::TDBFieldInfo* field = model::FieldByName(database, row.fieldName.c_str());
  if (!internal) {
    const std::string link = LinkText(row.link, false);
    const std::string condition = ConditionText(row.condition, false);
    const std::string title = field == nullptr ? std::string("???")
                              : useDisplayNames ? field->ShownName()
                                                : row.fieldName;
    textOut = Join({&link, &row.openBracket, &title, &condition, &row.value, &row.closeBracket});
    return true;
  }
  if (field == nullptr) return false;
  const bool textual = IsTextual(*field, links);
  std::string op = ConditionText(row.condition, true);
  if (textual && row.condition == kEqual && !row.wholeWord) op = "*=";
  std::string value = textual ? "\"" + row.value + "\"" : row.value;
  int32_t flags = 0;
  if (textual) {
    if (row.beginsWith) flags |= 8;
    if (row.wildcard) flags |= 16;
    if (!row.caseSensitive) flags |= 4;
  }
  textOut = " ";
  textOut += LinkText(row.link, true);
  textOut += ' ';
  textOut += row.openBracket;
  textOut += " \\eval{" + row.fieldName + '|' + op + '|' + value + '|' + std::to_string(flags) + "} ";
  textOut += row.closeBracket;
  return true;
}

const char* FilterText(TDBFilterCollection& collection, model::NodeStore& database,
                       const std::string& name, model::TLinkResolver* links) {
  TDBFilterPartsItem* item = collection.Find(name);
  if (item == nullptr) return nullptr;
  std::string text, row;
  for (TDBFilterParts& r : item->rows) {
    if (!RowText(r, database, row, true, false, links)) return nullptr;
    text += row;
  }
  g_filterText = std::move(text);
  return g_filterText.c_str();
}

const char* InternalParseString(model::NodeStore& database, int32_t fieldIndex, const char* value,
                                int32_t flags, model::TLinkResolver* links) {
  if (fieldIndex < 0 || static_cast<size_t>(fieldIndex) >= database.fields.size()) return nullptr;
  TDBFilterParts row;
  row.fieldName = database.fields[static_cast<size_t>(fieldIndex)]->name;
  row.condition = kEqual;
  row.value = value != nullptr ? value : "";
  row.wholeWord = (flags & 2) == 0;
  row.caseSensitive = (flags & 4) == 0;
  row.beginsWith = (flags & 8) != 0;
  row.wildcard = (flags & 16) != 0;
  std::string text;
  if (!RowText(row, database, text, true, false, links)) return nullptr;
  g_parseText = std::move(text);
  return g_parseText.c_str();
}

}  // namespace verdal::listing
