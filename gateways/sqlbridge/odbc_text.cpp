#include "odbc_text.h"

#include <algorithm>
#include <cstring>

#include "platform/cp1252.h"

namespace verdal::sqlbridge {

WideText Widen(std::string_view text) {
  WideText wide;
  wide.reserve(text.size());
  for (char c : text) wide.push_back(static_cast<SQLWCHAR>(cp1252::ToUtf16(c)));
  return wide;
}

std::string Narrow(const SQLWCHAR* text, size_t length) {
  std::string out;
  out.reserve(length);
  for (size_t i = 0; i < length; ++i) {
    const unsigned unit = text[i];
    if (unit < 0x80 || (unit >= 0xA0 && unit <= 0xFF)) {
      out.push_back(static_cast<char>(unit));
      continue;
    }
    if (unit >= 0xD800 && unit <= 0xDBFF && i + 1 < length && text[i + 1] >= 0xDC00 &&
        text[i + 1] <= 0xDFFF)
      ++i;  // the pair is one character, outside the code page
    char byte = '?';
    for (int b = 0x80; b <= 0x9F; ++b)
      if (cp1252::ToUtf16(static_cast<char>(b)) == unit) byte = static_cast<char>(b);
    out.push_back(byte);
  }
  return out;
}

std::string Diagnostics(SQLSMALLINT handleType, SQLHANDLE handle) {
  std::string text;
  for (SQLSMALLINT record = 1; record <= 8; ++record) {
    SQLWCHAR state[6] = {};
    SQLINTEGER native = 0;
    SQLWCHAR message[1024];
    SQLSMALLINT length = 0;
    const SQLRETURN rc = SQLGetDiagRecW(handleType, handle, record, state, &native, message,
                                        static_cast<SQLSMALLINT>(sizeof message / sizeof message[0]),
                                        &length);
    if (!SQL_SUCCEEDED(rc)) break;
    const size_t used = std::min<size_t>(static_cast<size_t>(std::max<SQLSMALLINT>(length, 0)),
                                         sizeof message / sizeof message[0] - 1);
    if (!text.empty()) text += '\n';
    text += '[' + Narrow(state, 5) + "] " + Narrow(message, used);
  }
  return text;
}

void CopyOut(std::string_view text, char* buffer, int32_t size) {
  if (buffer == nullptr || size <= 0) return;
  const size_t n = std::min(text.size(), static_cast<size_t>(size - 1));
  std::memcpy(buffer, text.data(), n);
  buffer[n] = '\0';
}

}  // namespace verdal::sqlbridge
