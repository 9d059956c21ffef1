#include "exchange/mail_addresses.h"

#include <algorithm>

#include "platform/cp1252.h"

namespace verdal::exchange {
namespace {

std::string_view StripBlanks(std::string_view text) {
  const size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

}  // namespace

std::vector<TFieldAddress> TMailAddressList::Take(std::string_view fieldText) {
  std::vector<TFieldAddress> found;
  if (fieldText.find('@') == std::string_view::npos) return found;
  std::string text;
  text.reserve(fieldText.size() + 1);
  for (char c : fieldText)
    if (c != '\r') text += c == '\n' ? ';' : c;
  text += ';';
  size_t begin = 0;
  for (size_t end = text.find(';'); end != std::string::npos; begin = end + 1, end = text.find(';', begin)) {
    std::string part(StripBlanks(std::string_view(text).substr(begin, end - begin)));
    if (part.empty()) continue;
    if (part.find('@') == std::string::npos) {
      found.push_back({std::move(part), AddressUse::kNoAddress});
      continue;
    }
    if (part.rfind("mailto:", 0) == 0) part.erase(0, 7);
    std::string key(StripBlanks(part));
    cp1252::ToUpper(key);
    const auto at = std::lower_bound(keys_.begin(), keys_.end(), key);
    const bool met = at != keys_.end() && *at == key;
    if (!met) keys_.insert(at, std::move(key));
    found.push_back({std::move(part), met ? AddressUse::kDuplicate : AddressUse::kSend});
  }
  return found;
}

}  // namespace verdal::exchange
