#pragma once
// The gateway's open MariaDB and MySQL connections by id.
#include "exchange/connection_table.h"
#include "mysql_connection.h"

namespace verdal::mysqlgate {

using ConnectionTable = exchange::ConnectionTable<MySqlConnection>;

}  // namespace verdal::mysqlgate
