// Exported functions of the last error and the trace.
#include <cstring>
#include <vector>

#include "engine/last_error.h"
#include "platform/language.h"
#include "platform/trace.h"
#include "verdal.h"

namespace {

// Grows to the longest message asked for and never shrinks, so earlier pointers into it stay valid
// as long as no longer text has been asked for since.
std::vector<char> g_messageBuffer(1, '\0');

}  // namespace

extern "C" {

VERDAL_API int32_t VERDAL_GetLastError(void) { return verdal::engine::LastError(); }

VERDAL_API const char* VERDAL_GetLastErrorString(int32_t code) {
  const char* text = verdal::engine::ErrorMessage(code);
  size_t needed = std::strlen(text) + 1;
  if (needed > g_messageBuffer.size()) g_messageBuffer.resize(needed);
  std::memcpy(g_messageBuffer.data(), text, needed);
  return g_messageBuffer.data();
}

VERDAL_API void VERDAL_SetTraceSink(VerdalTraceFn sink) { verdal::platform::SetTraceSink(sink); }

VERDAL_API void VERDAL_SetLanguage(int32_t languageId) {
  verdal::platform::SetLanguageId(static_cast<uint16_t>(languageId));
}

}  // extern "C"
