#pragma once
// The bridge's open ODBC connections by id.
#include "exchange/connection_table.h"
#include "odbc_connection.h"

namespace verdal::sqlbridge {

using ConnectionTable = exchange::ConnectionTable<OdbcConnection>;

}  // namespace verdal::sqlbridge
