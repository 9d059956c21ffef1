#pragma once
// The process-wide list of open databases, in order of opening, with the file name of each, and
// the passwords seen in this process.
#include <cstdint>
#include <string>
#include <vector>

namespace verdal::engine {

struct TPassWordSessionEntry {
  std::string password;
  std::string fileName;
};

class TDBPoolManager {
 public:
  TDBPoolManager();

  // True if the pool holds the handle.
  bool Find(uint32_t handle) const;
  // The handle stored under the name (trimmed, case-insensitive); 0 for none or a null name.
  uint32_t FindByName(const char* name) const;
  // A database without a file: stands in the pool under the empty name.
  uint32_t Add(uint32_t handle);
  // Under a name; a name that is there already keeps its handle, which is returned.
  uint32_t Add(const char* name, uint32_t handle);
  // Takes the handle out; with close set the database is destroyed as well.
  bool Remove(uint32_t handle, bool close);
  // The database now stands under another file name (trimmed).
  void Rename(uint32_t handle, const char* name);
  // Destroys every database, first opened first, each through its full close.
  void CloseAll();

  int32_t Count() const { return static_cast<int32_t>(handles_.size()); }
  uint32_t HandleAt(int32_t index) const;

  // The session password of a file name (case-insensitive), null if none was seen.
  const std::string* SessionPassword(const std::string& fileName) const;
  void SetSessionPassword(const std::string& fileName, const std::string& password);

 private:
  std::vector<uint32_t> handles_;
  std::vector<std::string> names_;
  std::vector<TPassWordSessionEntry> passwords_;
};

// The pool. It lives from library load to unload; at unload every database still open is closed,
// which saves what is dirty.
TDBPoolManager& Pool();

}  // namespace verdal::engine
