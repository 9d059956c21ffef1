#pragma once
// What ODBC_IMPORT_ZEP does, apart from guarding the C boundary.
#include <cstdint>

#include "exchange/gateway_abi.h"

namespace verdal::sqlbridge {

constexpr int32_t kFlagConfigureOnly = 0x400;

// 1 when the exchange file is written (or, with kFlagConfigureOnly, when nothing was to be done);
// 0 otherwise, with no exchange file left behind.
int32_t RunImport(const char* input, const char* exchangePath, VerdalPathMapperFn mapper,
                  intptr_t option, int32_t flags, int32_t fieldCount, const char* const* names1,
                  const char* const* names2);

}  // namespace verdal::sqlbridge
