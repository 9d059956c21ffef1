#pragma once
// One field definition. The index of a field is its place in the database's field vector (the
// order a host sees); its position is the place of its value in every data record. Reordering
// fields changes indexes only, so no record is touched.
#include <cstdint>
#include <string>

#include "model/data_type_info.h"

namespace verdal::model {

struct TDBFieldInfo {
  TDBFieldInfo();

  uint8_t changedMark = 0;  // working flag of the field dialog; not stored
  int32_t reserved1 = 1;
  std::string name;
  int16_t position = -1;
  uint8_t reservedByte1 = 0;
  int32_t reserved2 = 0;
  TDataTypeInfo type;
  std::string displayName;
  uint8_t reservedByte2 = 1;
  int32_t serial;  // identifies the object in this process; not stored

  // Where no display name is set the name is shown.
  const std::string& ShownName() const { return displayName.empty() ? name : displayName; }
};

}  // namespace verdal::model
