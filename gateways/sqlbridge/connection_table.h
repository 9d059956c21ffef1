#pragma once
// ConnectionTable: the process-wide register of open connections under the 32-bit ids that the
// exchange file and the engine carry. Ids start at 1 and are never given twice in a process, so a
// database that holds a closed connection's id finds nothing rather than someone else's link.
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>

#include "odbc_connection.h"

namespace verdal::sqlbridge {

class ConnectionTable {
 public:
  static ConnectionTable& Instance();

  // 0 when the ids are used up.
  int32_t Add(std::shared_ptr<OdbcConnection> connection);
  // Null for an unknown id. The connection lives while a caller holds it, even if it is removed
  // meanwhile.
  std::shared_ptr<OdbcConnection> Find(int32_t id);
  // The connection that was removed, or null.
  std::shared_ptr<OdbcConnection> Remove(int32_t id);

 private:
  std::mutex mutex_;
  std::map<int32_t, std::shared_ptr<OdbcConnection>> connections_;
  int32_t last_ = 0;
};

}  // namespace verdal::sqlbridge
