#include "connection_table.h"

#include <limits>

namespace verdal::mysqlgate {

ConnectionTable& ConnectionTable::Instance() {
  static ConnectionTable table;
  return table;
}

int32_t ConnectionTable::Add(std::shared_ptr<MySqlConnection> connection) {
  std::lock_guard<std::mutex> guard(lock_);
  if (lastId_ == std::numeric_limits<int32_t>::max()) return 0;
  connections_.emplace(++lastId_, std::move(connection));
  return lastId_;
}

std::shared_ptr<MySqlConnection> ConnectionTable::Find(int32_t id) {
  std::lock_guard<std::mutex> guard(lock_);
  auto it = connections_.find(id);
  return it == connections_.end() ? nullptr : it->second;
}

bool ConnectionTable::Remove(int32_t id) {
  std::shared_ptr<MySqlConnection> closing;
  {
    std::lock_guard<std::mutex> guard(lock_);
    auto it = connections_.find(id);
    if (it == connections_.end()) return false;
    closing = std::move(it->second);
    connections_.erase(it);
  }
  return true;  // `closing` closes the connection here, outside the table's lock
}

}  // namespace verdal::mysqlgate
