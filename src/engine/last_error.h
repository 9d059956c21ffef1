#pragma once
#include <cstdint>

#include "verdal.h"

namespace verdal::engine {

// The process-wide last error, and the message of each code.
int32_t LastError();
// Every code the engine sets is a VerdalError of verdal.h, the codes hosts see.
void SetLastError(VerdalError code);

// The message text of a code (any number a host passes); code 27 gives the current action message.
const char* ErrorMessage(int32_t code);

// Code 27 reads the message that a failing action left here.
void SetActionMessage(const char* text);

}  // namespace verdal::engine
