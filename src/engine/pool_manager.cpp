#include "engine/pool_manager.h"

#include <strings.h>

#include "engine/database_call.h"
#include "engine/db_manager.h"
#include "engine/handle_table.h"
#include "engine/link_walk.h"
#include "engine/notify.h"
#include "exchange/gateways.h"
#include "platform/trace.h"

namespace verdal::engine {
namespace {

std::string Trimmed(const char* name) {
  std::string s = name;
  size_t first = s.find_first_not_of(' ');
  if (first == std::string::npos) return std::string();
  size_t last = s.find_last_not_of(' ');
  return s.substr(first, last - first + 1);
}

}  // namespace

TDBPoolManager::TDBPoolManager() {
  handles_.reserve(6);
  names_.reserve(6);
  passwords_.reserve(3);
}

bool TDBPoolManager::Find(uint32_t handle) const {
  for (uint32_t h : handles_)
    if (h == handle) return true;
  platform::Trace("TDBPoolManager::Find -->Not Found: %u", handle);
  return false;
}

uint32_t TDBPoolManager::FindByName(const char* name) const {
  if (name == nullptr) return 0;
  // Trimmed in place: every link value shown asks for its database by name.
  std::string_view wanted = name;
  const size_t first = wanted.find_first_not_of(' ');
  wanted = first == std::string_view::npos ? wanted.substr(0, 0)
                                            : wanted.substr(first, wanted.find_last_not_of(' ') - first + 1);
  for (size_t i = 0; i < names_.size(); ++i)
    if (names_[i].size() == wanted.size() &&
        (wanted.empty() || strncasecmp(names_[i].data(), wanted.data(), wanted.size()) == 0))
      return handles_[i];
  return 0;
}

uint32_t TDBPoolManager::Add(uint32_t handle) {
  LinksChanged();
  handles_.push_back(handle);
  names_.emplace_back();
  platform::Trace("TDBPoolManager::Add: %u", handle);
  return handle;
}

uint32_t TDBPoolManager::Add(const char* name, uint32_t handle) {
  if (uint32_t existing = FindByName(name)) return existing;
  LinksChanged();
  handles_.push_back(handle);
  names_.push_back(Trimmed(name != nullptr ? name : ""));
  platform::Trace("TDBPoolManager::Add: %u, %s", handle, names_.back().c_str());
  return handle;
}

bool TDBPoolManager::Remove(uint32_t handle, bool close) {
  size_t i = 0;
  while (i < handles_.size() && handles_[i] != handle) ++i;
  if (i == handles_.size()) return false;
  LinksChanged();
  platform::Trace("TDBPoolManager::Remove: %u, %s, close=", handle, names_[i].c_str());
  handles_.erase(handles_.begin() + static_cast<std::ptrdiff_t>(i));
  names_.erase(names_.begin() + static_cast<std::ptrdiff_t>(i));
  if (close) delete Handles().Lookup(handle);
  return true;
}

void TDBPoolManager::Rename(uint32_t handle, const char* name) {
  LinksChanged();
  for (size_t i = 0; i < handles_.size(); ++i)
    if (handles_[i] == handle) names_[i] = Trimmed(name != nullptr ? name : "");
}

void TDBPoolManager::CloseAll() {
  LinksChanged();
  if (!handles_.empty()) platform::Trace("TDBPoolManager::CloseAll(), removing:");
  size_t i = 0;
  while (i < handles_.size()) {
    uint32_t handle = handles_[i];
    TDBManager* db = Handles().Lookup(handle);
    if (db != nullptr && InCall(*db)) {
      // Asked from a callback: the outermost call on it closes it as it returns.
      db->closeRequested = true;
      ++i;
      continue;
    }
    platform::Trace("%u, %s", handle, names_[i].c_str());
    // Out of the pool before it is destroyed: its close may not find itself again.
    handles_.erase(handles_.begin() + static_cast<std::ptrdiff_t>(i));
    names_.erase(names_.begin() + static_cast<std::ptrdiff_t>(i));
    delete db;
  }
  if (handles_.empty()) names_.clear();
}

uint32_t TDBPoolManager::HandleAt(int32_t index) const {
  if (index < 0 || static_cast<size_t>(index) >= handles_.size()) return 0;
  return handles_[static_cast<size_t>(index)];
}

const std::string* TDBPoolManager::SessionPassword(const std::string& fileName) const {
  for (const TPassWordSessionEntry& e : passwords_)
    if (strcasecmp(e.fileName.c_str(), fileName.c_str()) == 0) return &e.password;
  return nullptr;
}

void TDBPoolManager::SetSessionPassword(const std::string& fileName, const std::string& password) {
  for (TPassWordSessionEntry& e : passwords_)
    if (strcasecmp(e.fileName.c_str(), fileName.c_str()) == 0) {
      e.password = password;
      return;
    }
  passwords_.push_back({password, fileName});
}

TDBPoolManager& Pool() {
  // Never destroyed: the unload hook below still needs it after static destructors have run.
  static TDBPoolManager* pool = new TDBPoolManager;
  return *pool;
}

namespace {

// Library load: the notification record and the pool exist before the first export is called.
__attribute__((constructor)) void OnLoad() {
  ClearNotificationRecord();
  (void)Pool();
  (void)Handles();
}

// Library unload (or process exit): a host that closes nothing still gets everything saved.
// Databases close first: their links end through the gateways, which go last.
__attribute__((destructor)) void OnUnload() {
  Pool().CloseAll();
  exchange::UnloadGateways();
}

}  // namespace

}  // namespace verdal::engine
