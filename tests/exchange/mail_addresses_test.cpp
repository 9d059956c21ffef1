#include "exchange/mail_addresses.h"

#include <gtest/gtest.h>

using verdal::exchange::AddressUse;

// One run meets the fields' texts in order; what it finds is what the action sends, counts as
// failed or as a duplicate.
TEST(MailAddresses, SplitStripDeduplicate) {
  constexpr AddressUse kSend = AddressUse::kSend, kNone = AddressUse::kNoAddress, kTwice = AddressUse::kDuplicate;
  using Found = std::vector<std::pair<std::string, AddressUse>>;
  const std::pair<std::vector<std::string>, Found> cases[] = {
      {{"a@x.de;b@x.de"}, {{"a@x.de", kSend}, {"b@x.de", kSend}}},
      {{"a@x.de\r\nb@x.de\n"}, {{"a@x.de", kSend}, {"b@x.de", kSend}}},
      {{" ;  a@x.de ;; \n"}, {{"a@x.de", kSend}}},
      {{"MAILTO:a@x.de", "a@x.de"}, {{"MAILTO:a@x.de", kSend}, {"a@x.de", kSend}}},
      {{"mailto:a@x.de", "A@X.DE"}, {{"a@x.de", kSend}, {"A@X.DE", kTwice}}},
      {{"a@x.de", "a@x.de;A@x.De"}, {{"a@x.de", kSend}, {"a@x.de", kTwice}, {"A@x.De", kTwice}}},
      {{"j\xF6rg@x.de", "J\xD6RG@X.DE"}, {{"j\xF6rg@x.de", kSend}, {"J\xD6RG@X.DE", kTwice}}},
      {{"a@x.de; Hans M\xFCller"}, {{"a@x.de", kSend}, {"Hans M\xFCller", kNone}}},
      {{"Hans M\xFCller", "", "040 1234"}, {}},  // no "@": no address, no failure
  };
  for (const auto& [fields, expected] : cases) {
    SCOPED_TRACE(fields.front());
    verdal::exchange::TMailAddressList run;
    Found found;
    for (const std::string& field : fields)
      for (const auto& f : run.Take(field)) found.emplace_back(f.text, f.use);
    EXPECT_EQ(found, expected);
  }
}
