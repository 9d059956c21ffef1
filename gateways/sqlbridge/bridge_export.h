#pragma once
// What ODBC_EXPORT_ZEP does, apart from guarding the C boundary.
#include <cstdint>

#include "exchange/gateway_abi.h"

namespace verdal::sqlbridge {

// 1 when the target is written (with exchange::kExportEditOnly and a definition file: when the
// definition is brought up to date; with that flag and a data file there is nothing to do); 0
// otherwise, with the reason traced and no half-written target left behind.
int32_t RunExport(const char* target, const char* exchangePath, VerdalPathMapperFn mapper, int32_t flags);

}  // namespace verdal::sqlbridge
