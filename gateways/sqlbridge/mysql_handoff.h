#pragma once
// Definitions that name a MariaDB or MySQL server go to the MySQL gateway, which reads them with
// its own client library.
#include <cstdint>
#include <string>

#include "exchange/gateway_abi.h"

namespace verdal::sqlbridge {

// The folder the gateways live in: VERDAL_GATEWAY_DIR if set, else the folder of the file that
// holds this code.
std::string GatewayFolder();

// `definition` is the caller's input, not yet mapped: the MySQL gateway maps it itself with the
// same mapper. Loads libverdal_mysqlgate.so from GatewayFolder() (once; it stays loaded, since connections live
// in it) and returns what its MySQLSelectInfo returns; 0 when it cannot be loaded.
int32_t HandOffToMySql(const char* definition, const char* exchangePath, VerdalPathMapperFn mapper,
                       int32_t flags, int32_t fieldCount, const char* const* names1,
                       const char* const* names2);

}  // namespace verdal::sqlbridge
