#include "platform/clock.h"

#include <ctime>

namespace verdal::platform {

uint32_t TickCount() {
  timespec ts{};
  clock_gettime(CLOCK_MONOTONIC, &ts);
  uint64_t ms = static_cast<uint64_t>(ts.tv_sec) * 1000u + static_cast<uint64_t>(ts.tv_nsec) / 1000000u;
  return static_cast<uint32_t>(ms);
}

LocalTime NowLocal() {
  timespec ts{};
  clock_gettime(CLOCK_REALTIME, &ts);
  // Converting to local time is costly; within the same second only the milliseconds change.
  static time_t lastSecond = -1;
  static tm lastParts{};
  if (ts.tv_sec != lastSecond) {
    localtime_r(&ts.tv_sec, &lastParts);
    lastSecond = ts.tv_sec;
  }
  const tm& parts = lastParts;
  LocalTime t{};
  t.year = static_cast<uint16_t>(parts.tm_year + 1900);
  t.month = static_cast<uint16_t>(parts.tm_mon + 1);
  t.dayOfWeek = static_cast<uint16_t>(parts.tm_wday);
  t.day = static_cast<uint16_t>(parts.tm_mday);
  t.hour = static_cast<uint16_t>(parts.tm_hour);
  t.minute = static_cast<uint16_t>(parts.tm_min);
  t.second = static_cast<uint16_t>(parts.tm_sec);
  t.millisecond = static_cast<uint16_t>(ts.tv_nsec / 1000000);
  return t;
}

}  // namespace verdal::platform
