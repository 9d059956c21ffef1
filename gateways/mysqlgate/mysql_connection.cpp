#include "mysql_connection.h"

#include <mutex>

#include "mysql_values.h"

namespace verdal::mysqlgate {
namespace {

// mysql_library_init is not thread-safe; mysql_init would call it on first use from any thread.
void InitLibraryOnce() {
  static std::once_flag once;
  std::call_once(once, [] { mysql_library_init(0, nullptr, nullptr); });
}

}  // namespace

MySqlConnection::~MySqlConnection() {
  if (db_ != nullptr) mysql_close(db_);
}

bool MySqlConnection::Open(const ConnectParams& p) {
  InitLibraryOnce();
  db_ = mysql_init(nullptr);
  if (db_ == nullptr) {
    error_ = "out of memory for a MariaDB connection";
    return false;
  }
  // Bounded waits, so that a server that is gone cannot hang the engine for ever.
  const unsigned int connectSeconds = 15, ioSeconds = 120;
  mysql_optionsv(db_, MYSQL_SET_CHARSET_NAME, "utf8mb4");
  mysql_optionsv(db_, MYSQL_OPT_CONNECT_TIMEOUT, &connectSeconds);
  mysql_optionsv(db_, MYSQL_OPT_READ_TIMEOUT, &ioSeconds);
  mysql_optionsv(db_, MYSQL_OPT_WRITE_TIMEOUT, &ioSeconds);
  const std::string host = Utf8Of(p.host.c_str()), user = Utf8Of(p.user.c_str()),
                    password = Utf8Of(p.password.c_str()), database = Utf8Of(p.database.c_str());
  auto orNull = [](const std::string& s) { return s.empty() ? nullptr : s.c_str(); };
  if (mysql_real_connect(db_, orNull(host), orNull(user), password.c_str(), orNull(database),
                         static_cast<unsigned>(p.port), orNull(p.socket),
                         CLIENT_FOUND_ROWS) == nullptr) {
    error_ = Cp1252Of(mysql_error(db_));
    mysql_close(db_);
    db_ = nullptr;
    return false;
  }
  return true;
}

}  // namespace verdal::mysqlgate
