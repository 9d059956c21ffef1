#pragma once
// The texts of a mail as they go on the wire (RFC 5322, RFC 2047): header values that only ASCII
// may carry, the date, and lines that end in CR LF.
#include <ctime>
#include <string>
#include <string_view>

namespace verdal::exchange {

// A header value from UTF-8: as it is where it is printable ASCII, else as encoded words
// ("=?UTF-8?B?...?=", at most 75 characters each, never splitting a character) joined by
// `between`, a folded line by default. Line breaks and other control characters in the text are
// encoded too, so they can never end the header.
std::string HeaderText(std::string_view utf8, const char* between = "\r\n ");

// The date of a Date header in local time, "Tue, 24 Nov 2026 11:32:00 +0100", in English
// whatever the locale.
std::string MailDate(std::time_t when);

// Every line break (CR LF, a lone LF, a lone CR) as CR LF.
std::string WithCrLf(std::string_view text);

std::string Base64(std::string_view bytes);

}  // namespace verdal::exchange
