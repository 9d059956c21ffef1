#pragma once
// The throw-away SQL servers of the tests (scripts/sql-servers). ctest starts them once per run
// and hands their folder over in VERDAL_SQL_SERVERS; DIR/servers.env holds KEY=VALUE lines. Both
// listen on Unix sockets only.
//
// ODBC connection strings that work with them (the drivers as odbcinst lists them):
//   PostgreSQL (psqlODBC): the socket's folder goes where a host name would.
//     Driver={PostgreSQL Unicode};Servername=<PG_SOCKET_DIR>;Port=<PG_PORT>;Database=verdal_test;
//     Uid=verdal;Pwd=<PG_PASSWORD>
//   MariaDB (Connector/ODBC): Socket names the socket file; no Server is needed.
//     Driver={MariaDB Unicode};Socket=<MARIADB_SOCKET>;Database=verdal_test;Uid=verdal;
//     Pwd=<MARIADB_PASSWORD>
//
// A test asks for a server with SQL_SERVER_OR_SKIP("pg" or "mariadb", info): without the server it
// is skipped, saying why, unless VERDAL_REQUIRE_SERVERS=1 (as in CI), where it fails.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <map>
#include <string>

namespace verdal::test_support {

struct SqlServerInfo {
  std::string socket;  // PostgreSQL: the socket's folder; MariaDB: the socket file
  int port = 0;        // PostgreSQL only; part of its socket's name
  std::string user;
  std::string password;
  std::string database;
  std::string odbc;  // a ready ODBC connection string
};

inline const std::map<std::string, std::string>& SqlServersEnv() {
  static const std::map<std::string, std::string> values = [] {
    std::map<std::string, std::string> v;
    const char* dir = std::getenv("VERDAL_SQL_SERVERS");
    if (dir == nullptr || *dir == 0) return v;
    std::ifstream in(std::string(dir) + "/servers.env");
    std::string line;
    while (std::getline(in, line)) {
      const size_t eq = line.find('=');
      if (eq != std::string::npos) v[line.substr(0, eq)] = line.substr(eq + 1);
    }
    return v;
  }();
  return values;
}

inline bool ServersRequired() {
  const char* v = std::getenv("VERDAL_REQUIRE_SERVERS");
  return v != nullptr && std::string(v) == "1";
}

// Fills `info` for "pg" or "mariadb"; false with the reason in `why` when there is no such server.
inline bool SqlServer(const char* kind, SqlServerInfo& info, std::string* why = nullptr) {
  const auto& env = SqlServersEnv();
  const std::string k(kind);
  const std::string prefix = k == "pg" ? "PG_" : k == "mariadb" ? "MARIADB_" : "";
  auto get = [&](const char* key) {
    auto it = env.find(prefix + key);
    return it == env.end() ? std::string() : it->second;
  };
  const std::string socket = get(k == "pg" ? "SOCKET_DIR" : "SOCKET");
  if (prefix.empty() || socket.empty()) {
    if (why != nullptr) {
      *why = std::getenv("VERDAL_SQL_SERVERS") == nullptr
                 ? "VERDAL_SQL_SERVERS is not set (run the tests through ctest)"
                 : "no " + k + " server in $VERDAL_SQL_SERVERS/servers.env";
    }
    return false;
  }
  info.socket = socket;
  info.port = std::atoi(get("PORT").c_str());
  info.user = get("USER");
  info.password = get("PASSWORD");
  info.database = get("DATABASE");
  if (k == "pg") {
    info.odbc = "Driver={PostgreSQL Unicode};Servername=" + info.socket +
                ";Port=" + std::to_string(info.port) + ";Database=" + info.database +
                ";Uid=" + info.user + ";Pwd=" + info.password;
  } else {
    info.odbc = "Driver={MariaDB Unicode};Socket=" + info.socket + ";Database=" + info.database +
                ";Uid=" + info.user + ";Pwd=" + info.password;
  }
  return true;
}

}  // namespace verdal::test_support

// Skips the test (fails it under VERDAL_REQUIRE_SERVERS=1) when the server is missing.
#define SQL_SERVER_OR_SKIP(kind, info)                                              \
  do {                                                                              \
    std::string sqlServerWhy_;                                                      \
    if (!::verdal::test_support::SqlServer(kind, info, &sqlServerWhy_)) {           \
      if (::verdal::test_support::ServersRequired()) FAIL() << sqlServerWhy_;       \
      GTEST_SKIP() << sqlServerWhy_;                                                \
    }                                                                               \
  } while (0)
