// The order of two values of a field, run inside every sort step.
#include <algorithm>

#include "model/data_type_info.h"
#include "model/date_text.h"
#include "model/number_text.h"
#include "platform/collation.h"

namespace verdal::model {
namespace {

// Working copies for values that must be converted first; kept so that their memory is reused.
// The engine runs on one thread, and nothing below calls Compare again.
std::string g_first, g_second;

template <typename T>
int Order(T a, T b) {
  return (a > b) - (a < b);
}

int CompareText(std::string_view a, std::string_view b, bool stringSort) {
  return stringSort ? platform::CompareStringSort(a, b) : platform::CompareWordSort(a, b);
}

}  // namespace

int TDataTypeInfo::Compare(std::string_view first, std::string_view second, bool convertFirst,
                           bool stringSort, bool canonical, long double* numericOut,
                           TLinkResolver* database) const {
  std::string_view a = first, b = second;
  if (convertFirst) {
    ToInternal(first, g_first, false, nullptr);
    ToInternal(second, g_second, false, nullptr);
    a = g_first;
    b = g_second;
  }
  switch (dataType) {
    case kTypeNumber: {
      if (!canonical) {
        // Values typed by a user may still have a decimal comma.
        if (!convertFirst) {
          g_first.assign(first);
          g_second.assign(second);
          a = g_first;
          b = g_second;
        }
        std::replace(g_first.begin(), g_first.end(), ',', '.');
        std::replace(g_second.begin(), g_second.end(), ',', '.');
      }
      const long double x = ReadNumber(a), y = ReadNumber(b);
      if (numericOut != nullptr) *numericOut = x;
      return Order(x, y);
    }
    case kTypeYesNo: {
      const int32_t x = ReadInteger(a), y = ReadInteger(b);
      if (numericOut != nullptr) *numericOut = x;
      return Order(x, y);
    }
    case kTypeDateTime:
    case kTypeDate:
    case kTypeTime: {
      const long double x = DateOrderKey(dataType, a), y = DateOrderKey(dataType, b);
      if (numericOut != nullptr) *numericOut = x;
      return Order(x, y);
    }
    case kTypeLink:
      if (database != nullptr) {
        ShowValue(a, g_first, true, false, database);
        ShowValue(b, g_second, true, false, database);
        a = g_first;
        b = g_second;
      }
      return CompareText(a, b, stringSort);
    case kTypeText:
      return CompareText(a, b, stringSort);
    default:
      return 0;
  }
}

}  // namespace verdal::model
