#pragma once
// The process-wide table of open connections under the 32-bit ids the engine keeps. Ids start at 1
// and are never given twice, so a stale id held somewhere finds nothing rather than another
// database's connection.
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>

#include "mysql_connection.h"

namespace verdal::mysqlgate {

class ConnectionTable {
 public:
  static ConnectionTable& Instance();
  // The new id, or 0 when the ids are used up.
  int32_t Add(std::shared_ptr<MySqlConnection> connection);
  // Null for an unknown id. The connection stays alive while a caller holds it, even if removed.
  std::shared_ptr<MySqlConnection> Find(int32_t id);
  // False for an unknown id.
  bool Remove(int32_t id);

 private:
  std::mutex lock_;
  std::map<int32_t, std::shared_ptr<MySqlConnection>> connections_;
  int32_t lastId_ = 0;
};

}  // namespace verdal::mysqlgate
