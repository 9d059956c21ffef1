#include <sys/stat.h>
#include <sys/wait.h>

#include <gtest/gtest.h>

#include <fstream>

#include "api/temp_folder.h"
#include "platform/environment_scope.h"
#include "platform/temporary_file.h"
#include "platform/temporary_folder.h"

using namespace verdal::platform;

// The users of a shared folder see one private folder, gone with the last of them; a file left for
// another program lives until the process ends.
TEST(TemporaryFiles, SharedFolderAndFileKeptUntilTheProcessEnds) {
  TempFolder dir;
  EnvironmentScope environment({"TMPDIR"});
  setenv("TMPDIR", dir.path().c_str(), 1);
  struct stat st {};
  std::string first;
  {
    SharedTemporaryFolder a("~zep-");
    first = a.Path();
    EXPECT_EQ(first.rfind(dir.path() + "/~zep-", 0), 0u);
    EXPECT_EQ(SharedTemporaryFolder("~zep-").Path(), first);
    EXPECT_TRUE(stat(first.c_str(), &st) == 0 && (st.st_mode & 0777) == 0700);
    std::ofstream(first + "/brief.rtf") << "x";
  }
  EXPECT_FALSE(FileExists(first.c_str()));

  const std::string path = MakeTemporaryFile("liste-", ".txt");
  EXPECT_TRUE(HasExtension(path.c_str(), ".txt") && stat(path.c_str(), &st) == 0 && (st.st_mode & 0777) == 0600);
  const pid_t child = fork();
  if (child == 0) {
    RemoveAtProcessEnd(path);
    std::exit(FileExists(path.c_str()) ? 0 : 1);
  }
  int status = -1;
  waitpid(child, &status, 0);
  EXPECT_EQ(status, 0);  // there while the process ran
  EXPECT_FALSE(FileExists(path.c_str()));
}
