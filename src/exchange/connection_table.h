#pragma once
// ConnectionTable: a gateway's process-wide register of open connections under the 32-bit ids
// that the exchange file and the engine carry. Ids start at 1 and are never given twice in a
// process, so a database that holds a closed connection's id finds nothing rather than another
// database's link. A connection lives while a caller holds it, even once removed, and closes
// outside the table's lock when the last holder lets go.
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>

namespace verdal::exchange {

template <class Connection>
class ConnectionTable {
 public:
  static ConnectionTable& Instance() {
    // Never destroyed: a host may close its databases from an exit handler after static
    // destruction has begun.
    static auto* table = new ConnectionTable;
    return *table;
  }

  // The new id, 0 when the ids are used up.
  int32_t Add(std::shared_ptr<Connection> connection) {
    std::lock_guard<std::mutex> lock(mutex_);
    if (last_ == INT32_MAX) return 0;
    connections_.emplace(++last_, std::move(connection));
    return last_;
  }

  // Null for an unknown id.
  std::shared_ptr<Connection> Find(int32_t id) {
    std::lock_guard<std::mutex> lock(mutex_);
    const auto found = connections_.find(id);
    return found == connections_.end() ? nullptr : found->second;
  }

  // The connection that was removed, null for an unknown id.
  std::shared_ptr<Connection> Remove(int32_t id) {
    std::lock_guard<std::mutex> lock(mutex_);
    const auto found = connections_.find(id);
    if (found == connections_.end()) return nullptr;
    std::shared_ptr<Connection> connection = std::move(found->second);
    connections_.erase(found);
    return connection;
  }

 private:
  std::mutex mutex_;
  std::map<int32_t, std::shared_ptr<Connection>> connections_;
  int32_t last_ = 0;
};

}  // namespace verdal::exchange
