#pragma once
// A private folder for temporary files that the users in this process share: the first user makes
// it below $TMPDIR or /tmp, the last one removes it with everything in it.
//
// The folder gets a new name from mkdtemp (the prefix and six random characters) with mode 0700,
// never a fixed name: a folder of another user or of another process, or a symbolic link planted
// under a name someone could guess, is therefore never written into, and two processes of one user
// never remove each other's files.
#include <string>

namespace verdal::platform {

class SharedTemporaryFolder {
 public:
  // Joins the users of the folder of this prefix, making the folder where it has none.
  explicit SharedTemporaryFolder(const char* prefix);
  ~SharedTemporaryFolder();
  SharedTemporaryFolder(const SharedTemporaryFolder&) = delete;
  SharedTemporaryFolder& operator=(const SharedTemporaryFolder&) = delete;

  // Without a trailing slash; "" when the folder could not be made.
  const std::string& Path() const { return path_; }

 private:
  std::string prefix_;
  std::string path_;
};

}  // namespace verdal::platform
