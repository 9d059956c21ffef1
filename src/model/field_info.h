#pragma once
// One field definition. The index of a field is its place in the database's field vector (the
// order a host sees); its position is the place of its value in every data record.
#include <cstdint>
#include <string>

namespace verdal::model {

struct TDBFieldInfo {
  std::string name;
  int32_t position = -1;
};

}  // namespace verdal::model
