#pragma once
// Text between the engine's code page 1252 and ODBC's UTF-16 (SQLWCHAR), which every driver
// manager and driver handles alike, and the driver's diagnostics as text for the user.
#include <sql.h>
#include <sqlext.h>

#include <string>
#include <string_view>

namespace verdal::sqlbridge {

using WideText = std::basic_string<SQLWCHAR>;

WideText Widen(std::string_view text);
// UTF-16 to code page 1252; a character the code page lacks (a surrogate pair included) becomes
// '?'.
std::string Narrow(const SQLWCHAR* text, size_t length);
inline std::string Narrow(const WideText& text) { return Narrow(text.data(), text.size()); }

// The diagnostic records of a handle, "[state] message" each, one per line.
std::string Diagnostics(SQLSMALLINT handleType, SQLHANDLE handle);

// Copies text into a caller's buffer of `size` bytes, cut to size-1 bytes and terminated.
void CopyOut(std::string_view text, char* buffer, int32_t size);

}  // namespace verdal::sqlbridge
