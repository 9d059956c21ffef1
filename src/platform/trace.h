#pragma once
// The diagnostic trace: one printf-style function used throughout the engine. By default the lines
// go nowhere; a host installs a sink (VERDAL_SetTraceSink), or VERDAL_TRACE=stderr sends them to
// standard error. Tracing never changes behaviour.

namespace verdal::platform {

using TraceSink = void (*)(const char* line);

void Trace(const char* format, ...) __attribute__((format(printf, 1, 2)));
void SetTraceSink(TraceSink sink);
bool TraceEnabled();

}  // namespace verdal::platform
