#pragma once
// A field as a host adds one with the defaults of a new field, for benchmarks that build databases.
#include <cstring>

#include "verdal.h"

namespace bench_support {

inline int32_t AddField(VerdalHandle db, const char* name, int16_t type) {
  TDBFieldParams p;
  std::memset(&p, 0, sizeof p);
  p.dataType = type;
  p.maxChars = -1;
  p.decimals = 2;
  p.allowEmpty = 1;
  p.allowDuplicates = 1;
  p.format = "%d.%m.%Y";
  p.name = name;
  return VERDAL_AddField(db, &p, -1, 1);
}

}  // namespace bench_support
