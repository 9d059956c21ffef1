#include "connection_table.h"

namespace verdal::sqlbridge {

ConnectionTable& ConnectionTable::Instance() {
  // Never destroyed: a host may close its databases from an exit handler after static
  // destruction has begun.
  static ConnectionTable* table = new ConnectionTable;
  return *table;
}

int32_t ConnectionTable::Add(std::shared_ptr<OdbcConnection> connection) {
  std::lock_guard<std::mutex> lock(mutex_);
  if (last_ == INT32_MAX) return 0;
  connections_.emplace(++last_, std::move(connection));
  return last_;
}

std::shared_ptr<OdbcConnection> ConnectionTable::Find(int32_t id) {
  std::lock_guard<std::mutex> lock(mutex_);
  const auto found = connections_.find(id);
  return found == connections_.end() ? nullptr : found->second;
}

std::shared_ptr<OdbcConnection> ConnectionTable::Remove(int32_t id) {
  std::lock_guard<std::mutex> lock(mutex_);
  const auto found = connections_.find(id);
  if (found == connections_.end()) return nullptr;
  std::shared_ptr<OdbcConnection> connection = std::move(found->second);
  connections_.erase(found);
  return connection;
}

}  // namespace verdal::sqlbridge
