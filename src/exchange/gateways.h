#pragma once
// The two gateway modules, loaded by name on first use from the engine's own folder
// (VERDAL_GATEWAY_DIR overrides it) and kept until the library is unloaded. Each table holds the
// module and one pointer per entry point; a pointer the module lacks stays null, and a call
// through it counts as failed, as a module that cannot be loaded does.
#include <string>

#include "exchange/gateway_abi.h"

namespace verdal::exchange {

struct SqlBridge {
  void* module = nullptr;
  ODBC_IMPORT_ZEP_Fn import = nullptr;
  ODBC_EXPORT_ZEP_Fn exportRows = nullptr;
  ODBC_CLOSE_DBHANDLE_Fn closeConnection = nullptr;
  ODBC_EXEC_UPDATE_Fn update = nullptr;
  ODBC_EXEC_ADDNEW_Fn addNew = nullptr;
  ODBC_EXEC_DEL_Fn remove = nullptr;
  ODBC_EXEC_GETVALUE_Fn getValue = nullptr;
  void* importBatch = nullptr;  // ODBC_IMPORT_ZEP_BATCH, never called
  ODBC_SETAPPNAME_Fn setApplicationName = nullptr;
};

struct MySqlGate {
  void* module = nullptr;
  MySQLDeleteCon_Fn closeConnection = nullptr;
  MySQLUpdateRec_Fn update = nullptr;
  MySQLNewRec_Fn addNew = nullptr;
  MySQLDelRec_Fn remove = nullptr;
  MySQLExecuteSQL_Fn executeSql = nullptr;
  MySQLGetFieldValue_Fn getValue = nullptr;
};

// The file names of the modules.
constexpr const char* kSqlBridgeFile = "libverdal_sqlbridge.so";
constexpr const char* kMySqlGateFile = "libverdal_mysqlgate.so";

// Where the modules are looked for: VERDAL_GATEWAY_DIR if set, else the engine's folder.
std::string GatewayFolder();

// The loaded module's table, null when it cannot be loaded (a failed load is tried again next
// time, so a module installed later is found).
const SqlBridge* LoadSqlBridge();
const MySqlGate* LoadMySqlGate();

// Releases both modules; at library unload.
void UnloadGateways();

}  // namespace verdal::exchange
