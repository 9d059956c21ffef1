#include "platform/trace.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace verdal::platform {
namespace {

void StderrSink(const char* line) { std::fprintf(stderr, "verdal: %s\n", line); }

TraceSink InitialSink() {
  const char* env = std::getenv("VERDAL_TRACE");
  return (env != nullptr && std::strcmp(env, "stderr") == 0) ? StderrSink : nullptr;
}

TraceSink& Sink() {
  static TraceSink sink = InitialSink();
  return sink;
}

}  // namespace

void SetTraceSink(TraceSink sink) { Sink() = sink; }

bool TraceEnabled() { return Sink() != nullptr; }

void Trace(const char* format, ...) {
  TraceSink sink = Sink();
  if (sink == nullptr) return;  // formatting costs nothing when nobody listens
  char line[1024];
  va_list args;
  va_start(args, format);
  std::vsnprintf(line, sizeof line, format, args);
  va_end(args);
  sink(line);
}

}  // namespace verdal::platform
