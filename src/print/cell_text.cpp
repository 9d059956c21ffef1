#include "print/cell_text.h"

#include "model/field_info.h"
#include "model/number_text.h"
#include "platform/intl.h"

namespace verdal::print {

void InsertThousands(std::string& number, char decimalSeparator) {
  const char separator = decimalSeparator == ',' ? '.' : ',';
  size_t start = 0;
  while (start < number.size() && (number[start] == '-' || number[start] == '+' || number[start] == ' ')) ++start;
  size_t end = start;
  while (end < number.size() && number[end] >= '0' && number[end] <= '9') ++end;
  for (size_t at = end; at > start + 3;) {
    at -= 3;
    number.insert(at, 1, separator);
  }
}

void ShowValue(model::TDBFieldInfo& field, std::string_view stored, const ThousandsRule& rule,
               model::TLinkResolver* links, std::string& out) {
  field.type.CreateDisplayString(stored, out, true, false, links);
  if (!out.empty() && field.type.dataType == model::kTypeNumber && rule.AppliesTo(field.type.decimals))
    InsertThousands(out, platform::Intl().decimal);
}

bool IsSummable(const model::TDBFieldInfo& field) {
  return field.type.dataType == model::kTypeNumber || field.type.dataType == model::kTypeYesNo;
}

void ShowSum(model::TDBFieldInfo& field, long double sum, const ThousandsRule& rule,
             model::TLinkResolver* links, std::string& out) {
  out.clear();
  if (field.type.dataType == model::kTypeYesNo) {
    model::FormatNumber(sum, 0, out);
  } else if (field.type.dataType == model::kTypeNumber) {
    std::string text;
    model::FormatNumber(sum, field.type.decimals, text);
    ShowValue(field, text, rule, links, out);
  }
}

}  // namespace verdal::print
