#include "model/id_map.h"

namespace verdal::model {

uint32_t BucketCountForSizeClass(int32_t sizeClass) {
  switch (sizeClass) {
    case 0: return 63;
    case 1: return 3331;
    case 2: return 65929;
    case 3: return 250799;
    default: return 3331;
  }
}

}  // namespace verdal::model
