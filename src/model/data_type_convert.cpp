// Text to the internal form of a field's type.
#include <algorithm>

#include "model/data_type_info.h"
#include "model/date_text.h"
#include "model/number_text.h"
#include "platform/language.h"

namespace verdal::model {
namespace {

constexpr std::string_view kNowValue = "\\RVALUE:NOW";

// Whether a text is already what FormatNumber makes of it: an optional minus, an integer part
// without leading zeros, and exactly `decimals` digits after a point, 18 digits at most in all. A
// long double holds every decimal of 18 digits (LDBL_DIG), so reading and formatting such a text
// gives it back unchanged, and the stored values that exports and imports pass again skip both.
bool IsFormattedNumber(std::string_view t, int decimals) {
  size_t i = !t.empty() && t[0] == '-' ? 1 : 0;
  const size_t integerStart = i;
  while (i < t.size() && t[i] >= '0' && t[i] <= '9') ++i;
  const size_t integerDigits = i - integerStart;
  if (integerDigits == 0 || (integerDigits > 1 && t[integerStart] == '0')) return false;
  if (decimals <= 0) return i == t.size() && integerDigits <= 18;
  if (i >= t.size() || t[i] != '.') return false;
  const size_t fractionStart = ++i;
  while (i < t.size() && t[i] >= '0' && t[i] <= '9') ++i;
  return i == t.size() && i - fractionStart == static_cast<size_t>(decimals) &&
         integerDigits + static_cast<size_t>(decimals) <= 18;
}

void NumberToInternal(std::string_view value, int decimals, std::string& out) {
  if (IsFormattedNumber(value, decimals)) {
    out.assign(value.data(), value.size());
    return;
  }
  std::string work(value);
  // Where both marks occur, a German user wrote points between thousands: 1.234,56.
  if (work.find('.') != std::string::npos && work.find(',') != std::string::npos &&
      platform::IsGerman())
    work.erase(std::remove(work.begin(), work.end(), '.'), work.end());
  std::replace(work.begin(), work.end(), ',', '.');
  FormatNumber(ReadNumber(work), decimals, out);
}

bool YesNoValue(std::string_view value) {
  const size_t first = value.find_first_not_of(" \t");
  if (first != std::string_view::npos) {
    const char c = value[first];
    if (!(c >= '0' && c <= '9') && c != '-' && c != '+') {
      if (c == 'j' || c == 'J' || c == 'y' || c == 'Y') return true;
      if (c == 'n' || c == 'N') return false;
    }
  }
  const int32_t v = ReadInteger(value);
  return v == 1 || v == -1;
}

}  // namespace

bool TDataTypeInfo::ToInternal(std::string_view value, std::string& out, bool validate,
                               std::string* errorOut) const {
  auto refuse = [&] {
    if (errorOut != nullptr) *errorOut = errorText;
    return false;
  };
  if (validate && !allowEmpty && value.empty()) return refuse();
  switch (dataType) {
    case kTypeNumber:
      if (value.empty() && allowEmpty)
        out.clear();
      else
        NumberToInternal(value, decimals, out);
      return true;
    case kTypeYesNo:
      out = YesNoValue(value) ? "1" : "0";
      return true;
    case kTypeBinary:
      out.clear();
      return true;
    case kTypeDateTime:
    case kTypeDate:
    case kTypeTime: {
      if (value == kNowValue) {
        NowAsInternal(out);
        return true;
      }
      if (IsSevenPartValue(value)) {
        out.assign(value.data(), value.size());
        return true;
      }
      std::string converted;
      const bool ok = DateTextToInternal(dataType, value, validate, converted);
      out = std::move(converted);
      return ok ? true : refuse();
    }
    default:  // text, link and codes this engine does not know
      out.assign(value.data(), value.size());
      return true;
  }
}

}  // namespace verdal::model
