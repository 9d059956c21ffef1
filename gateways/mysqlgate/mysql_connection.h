#pragma once
// One connection to a MariaDB or MySQL server, with what the engine's calls leave behind on it:
// the row being gathered by a run of insert or update calls, and the text of the last read-back.
#include <mysql.h>

#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "mysql_statement.h"

namespace verdal::mysqlgate {

// Connection details in code page 1252, as a definition file gives them. An empty host with a
// socket connects through the socket.
struct ConnectParams {
  std::string host;
  int32_t port = 0;
  std::string socket;
  std::string user;
  std::string password;
  std::string database;
};

class MySqlConnection {
 public:
  MySqlConnection() = default;
  ~MySqlConnection();
  MySqlConnection(const MySqlConnection&) = delete;
  MySqlConnection& operator=(const MySqlConnection&) = delete;

  // Connects with utf8mb4 and found-rows counting (an UPDATE that changes nothing still counts
  // its row). False with Error() set when the server cannot be had.
  bool Open(const ConnectParams& params);
  MYSQL* Handle() { return db_; }
  const std::string& Error() const { return error_; }

  // The columns gathered by a run of insert or update calls, from "is first" to "is last".
  struct PendingColumn {
    std::string name;  // UTF-8
    Param value;
  };
  std::vector<PendingColumn> pendingInsert, pendingUpdate;
  // The last read-back value; the engine gets a pointer into it.
  std::optional<std::string> readBack;
  // Calls on one connection come one at a time.
  std::mutex lock;

 private:
  MYSQL* db_ = nullptr;
  std::string error_;
};

}  // namespace verdal::mysqlgate
