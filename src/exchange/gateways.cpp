#include "exchange/gateways.h"

#include <dlfcn.h>

#include <cstdlib>

#include "platform/file_system.h"
#include "platform/trace.h"

namespace verdal::exchange {
namespace {

SqlBridge bridge;
MySqlGate gate;

void* OpenModule(const char* file) {
  const std::string path = GatewayFolder() + "/" + file;
  if (!platform::FileExists(path.c_str())) return nullptr;
  void* module = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (module == nullptr) platform::Trace("Cannot load %s: %s", path.c_str(), dlerror());
  return module;
}

template <class Fn>
void Find(void* module, const char* name, Fn& entry) {
  entry = reinterpret_cast<Fn>(dlsym(module, name));
}

}  // namespace

std::string GatewayFolder() {
  const char* folder = std::getenv("VERDAL_GATEWAY_DIR");
  return folder != nullptr && *folder != '\0' ? std::string(folder) : platform::EngineFolder();
}

const SqlBridge* LoadSqlBridge() {
  if (bridge.module == nullptr) {
    void* module = OpenModule(kSqlBridgeFile);
    if (module == nullptr) return nullptr;
    bridge.module = module;
    Find(module, "ODBC_IMPORT_ZEP", bridge.import);
    Find(module, "ODBC_EXPORT_ZEP", bridge.exportRows);
    Find(module, "ODBC_CLOSE_DBHANDLE", bridge.closeConnection);
    Find(module, "ODBC_EXEC_UPDATE", bridge.update);
    Find(module, "ODBC_EXEC_ADDNEW", bridge.addNew);
    Find(module, "ODBC_EXEC_DEL", bridge.remove);
    Find(module, "ODBC_EXEC_GETVALUE", bridge.getValue);
    Find(module, "ODBC_IMPORT_ZEP_BATCH", bridge.importBatch);
    Find(module, "ODBC_SETAPPNAME", bridge.setApplicationName);
  }
  return &bridge;
}

const MySqlGate* LoadMySqlGate() {
  if (gate.module == nullptr) {
    void* module = OpenModule(kMySqlGateFile);
    if (module == nullptr) return nullptr;
    gate.module = module;
    Find(module, "MySQLDeleteCon", gate.closeConnection);
    Find(module, "MySQLUpdateRec", gate.update);
    Find(module, "MySQLNewRec", gate.addNew);
    Find(module, "MySQLDelRec", gate.remove);
    Find(module, "MySQLExecuteSQL", gate.executeSql);
    Find(module, "MySQLGetFieldValue", gate.getValue);
  }
  return &gate;
}

void UnloadGateways() {
  if (bridge.module != nullptr) dlclose(bridge.module);
  if (gate.module != nullptr) dlclose(gate.module);
  bridge = SqlBridge{};
  gate = MySqlGate{};
}

}  // namespace verdal::exchange
