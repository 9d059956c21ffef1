#pragma once
// The process-wide switches that a host sets through the exported setters.
#include <cstdint>

#include "verdal.h"

namespace verdal::engine {

struct Settings {
  bool notify = true;
  VerdalNotifyFn notification = nullptr;
  intptr_t notificationUser = 0;
  bool thousandsPoints = false;
  bool thousandsPointsOnlyWithDecimals = true;
  VerdalPathMapperFn pathMapper = nullptr;
  bool tryResolveLocally = false;
};

Settings& Switches();

}  // namespace verdal::engine
