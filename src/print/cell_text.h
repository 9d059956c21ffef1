#pragma once
// What a table cell shows: a value as the user reads it, with points between thousands where the
// host asked for them, and the sums of total and subtotal rows.
#include <cstdint>
#include <string>
#include <string_view>

namespace verdal::model {
struct TDBFieldInfo;
class TLinkResolver;
}  // namespace verdal::model

namespace verdal::print {

// The host's switches for thousands separators in number cells.
struct ThousandsRule {
  bool enabled = false;
  bool onlyWithDecimals = true;
  bool AppliesTo(int16_t decimals) const { return enabled && (!onlyWithDecimals || decimals > 0); }
};

// Inserts the thousands separator into the whole part of a shown number: a point where the
// decimal separator is a comma, else a comma.
void InsertThousands(std::string& number, char decimalSeparator);

// The shown text of a stored value: yes/no in words, numbers with thousands by the rule.
void ShowValue(model::TDBFieldInfo& field, std::string_view stored, const ThousandsRule& rule,
               model::TLinkResolver* links, std::string& out);

// The shown text of a sum of the field's values: a number with its decimals, yes/no as a count,
// nothing for other types.
void ShowSum(model::TDBFieldInfo& field, long double sum, const ThousandsRule& rule,
             model::TLinkResolver* links, std::string& out);

// Whether a column of this field can be summed.
bool IsSummable(const model::TDBFieldInfo& field);

}  // namespace verdal::print
