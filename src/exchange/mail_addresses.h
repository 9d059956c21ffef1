#pragma once
// The addresses a mailing finds in the fields of its records. A field's text may hold several,
// one a line or separated by ';'; the run sends to each address once, whatever its letter case.
#include <string>
#include <string_view>
#include <vector>

namespace verdal::exchange {

enum class AddressUse {
  kSend,       // a new address: send to it
  kNoAddress,  // a part without "@": counts as failed
  kDuplicate,  // sent to already in this run
};

struct TFieldAddress {
  std::string text;  // the part, stripped of blanks; for kSend and kDuplicate without "mailto:"
  AddressUse use;
};

// The addresses of one run: every address it has met, by key.
class TMailAddressList {
 public:
  // The parts of a field's text, in their order, each with what to do with it. A text without
  // "@" names no address at all: nothing, not even failures. Otherwise CRs are dropped, a line
  // break separates like ';', each part is stripped of blanks at both ends and empty ones are
  // dropped. A part with "@" loses a leading "mailto:" (in small letters only) and is a duplicate
  // where its key (upper case in code page 1252) has been met before in the run.
  std::vector<TFieldAddress> Take(std::string_view fieldText);

 private:
  std::vector<std::string> keys_;  // sorted
};

}  // namespace verdal::exchange
