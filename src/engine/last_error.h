#pragma once
#include <cstdint>

namespace verdal::engine {

// The process-wide last error, and the message of each code.
int32_t LastError();
void SetLastError(int32_t code);

// The message text of a code; code 27 gives the current action message.
const char* ErrorMessage(int32_t code);

// Code 27 reads the message that a failing action left here.
void SetActionMessage(const char* text);

}  // namespace verdal::engine
