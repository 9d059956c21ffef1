#include "engine/settings.h"

namespace verdal::engine {

Settings& Switches() {
  static Settings settings;  // trivially destructible: safe to read while the library unloads
  return settings;
}

}  // namespace verdal::engine
