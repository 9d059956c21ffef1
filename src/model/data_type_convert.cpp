// Text to the internal form of a field's type.
#include <algorithm>

#include "model/data_type_info.h"
#include "model/date_text.h"
#include "model/number_text.h"
#include "platform/language.h"

namespace verdal::model {
namespace {

constexpr std::string_view kNowValue = "\\RVALUE:NOW";

void NumberToInternal(std::string_view value, int decimals, std::string& out) {
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
