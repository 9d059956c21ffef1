#pragma once
#include <cstdint>

namespace verdal::platform {

// Local time as the engine stores it: eight 16-bit values.
struct LocalTime {
  uint16_t year, month, dayOfWeek, day, hour, minute, second, millisecond;
};
static_assert(sizeof(LocalTime) == 16);

// Milliseconds of a monotonic clock, wrapping at 2^32 like the tick count hosts know.
uint32_t TickCount();

// The current local time, day of week 0 = Sunday.
LocalTime NowLocal();

}  // namespace verdal::platform
