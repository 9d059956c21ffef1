// Exported functions of the last error and the trace.
#include <cstring>
#include <vector>

#include "io/text_buffer.h"
#include "engine/last_error.h"
#include "platform/language.h"
#include "platform/trace.h"
#include "verdal.h"

namespace {

verdal::TextRing g_messages;

}  // namespace

extern "C" {

VERDAL_API int32_t VERDAL_GetLastError(void) { return verdal::engine::LastError(); }

VERDAL_API const char* VERDAL_GetLastErrorString(int32_t code) {
  return g_messages.Keep(verdal::engine::ErrorMessage(code));
}

VERDAL_API void VERDAL_SetTraceSink(VerdalTraceFn sink) { verdal::platform::SetTraceSink(sink); }

VERDAL_API void VERDAL_SetLanguage(int32_t languageId) {
  verdal::platform::SetLanguageId(static_cast<uint16_t>(languageId));
}

}  // extern "C"
