#include "exchange/export_exchange.h"

namespace verdal::exchange {

std::string CategoryColumnName(int n) { return "CAT" + std::to_string(n); }

}  // namespace verdal::exchange
