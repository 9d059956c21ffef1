#pragma once
// Databases in memory and field records with the defaults a new field has, for tests that
// build databases.
#include <cstring>

#include "verdal.h"

inline VerdalHandle OpenMemoryDatabase(int32_t sizeClass = 0) {
  return VERDAL_OpenDB(nullptr, nullptr, 0, 0, nullptr, sizeClass, 0, 0);
}

inline TDBFieldParams FieldParams(const char* name, int16_t type) {
  TDBFieldParams p;
  std::memset(&p, 0, sizeof p);
  p.dataType = type;
  p.maxChars = -1;
  p.decimals = 2;
  p.allowEmpty = 1;
  p.allowDuplicates = 1;
  p.format = "%d.%m.%Y";
  p.name = name;
  return p;
}

inline int32_t AddField(VerdalHandle db, const char* name, int16_t type) {
  TDBFieldParams p = FieldParams(name, type);
  return VERDAL_AddField(db, &p, -1, 1);
}
