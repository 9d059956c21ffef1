#pragma once
// The path of an import's input or an export's target as the host means it: passed through the
// host's path mapper, whose buffer holds 260 bytes, then made native.
#include <string>

#include "exchange/gateway_abi.h"

namespace verdal::sqlbridge {

// False for a name that does not fit the mapper's buffer: it is refused, never cut.
bool MapHostPath(const char* name, VerdalPathMapperFn mapper, std::string& path);

}  // namespace verdal::sqlbridge
