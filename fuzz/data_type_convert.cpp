// Arbitrary text through every conversion of every type: values come from files, imports and
// hosts. Besides not crashing, the internal form must be stable and comparison antisymmetric.
//
// Input: byte 0 type code (0..8, 8 standing for an unknown code), byte 1 decimals (signed),
// byte 2 switches, then two texts divided by the first zero byte.
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "model/data_type_info.h"
#include "model/date_text.h"
#include "platform/language.h"

using namespace verdal::model;

namespace {

bool IsDateType(int16_t t) { return t == kTypeDateTime || t == kTypeDate || t == kTypeTime; }

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 3) return 0;
  TDataTypeInfo field;
  field.dataType = static_cast<int16_t>(data[0] % 9);
  field.decimals = static_cast<int8_t>(data[1]);
  const uint8_t switches = data[2];
  field.allowEmpty = switches & 1;
  const bool validate = switches & 2, useWords = switches & 4, convertFirst = switches & 8;
  const bool stringSort = switches & 16;
  verdal::platform::SetLanguageId((switches & 32) ? 0x407 : 0x409);

  const std::string_view rest(reinterpret_cast<const char*>(data + 3), size - 3);
  const size_t zero = rest.find('\0');
  const std::string_view a = rest.substr(0, zero);
  const std::string_view b =
      zero == std::string_view::npos ? std::string_view() : rest.substr(zero + 1);

  std::string internalA, internalB, again, error;
  // A refused value leaves nothing to check; take what conversion without validation gives.
  if (!field.ToInternal(a, internalA, validate, &error)) field.ToInternal(a, internalA, false, nullptr);
  field.ToInternal(b, internalB, false, nullptr);
  if (IsDateType(field.dataType) && !internalA.empty() && !IsSevenPartValue(internalA)) abort();
  if (field.dataType == kTypeYesNo && internalA != "0" && internalA != "1") abort();
  if (field.dataType == kTypeYesNo || IsDateType(field.dataType)) {
    field.ToInternal(internalA, again, false, nullptr);
    if (again != internalA) abort();
  }

  std::string shown;
  field.CreateDisplayString(a, shown, useWords, convertFirst, nullptr);
  field.CreateDisplayString(internalA, shown, useWords, false, nullptr);

  long double number = 0;
  field.Compare(a, b, convertFirst, stringSort, false, &number, nullptr);
  const int ab = field.Compare(internalA, internalB, false, stringSort, true, nullptr, nullptr);
  const int ba = field.Compare(internalB, internalA, false, stringSort, true, nullptr, nullptr);
  if (ab != -ba) abort();

  int day, month, year;
  char separator;
  ParseDateText(a, day, month, year, separator);
  return 0;
}
