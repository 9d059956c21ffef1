#pragma once
// What the import and SQL-link tests share: the tree of a database as indented text, a file's
// bytes, and running a piece of a test in a process of its own (for a gateway folder of its own).
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "verdal.h"

// One line per node, depth-first, indented two blanks a level: "[name]" for a category, the
// values of every field joined by '|' for a record (stored form).
inline std::string Outline(VerdalHandle db) {
  int32_t count = 0;
  int32_t* cursors = nullptr;
  if (VERDAL_GetCategoryChildList(db, VERDAL_CURSOR_ROOT, 0, 0, 1, 0, &count, &cursors, 3, nullptr, 0) == 0)
    return "(no list)";
  std::string out;
  const int32_t fields = VERDAL_GetFieldSize(db);
  for (int32_t i = 0; i < count; ++i) {
    int32_t isCategory = 0, depth = 0;
    char name[VERDAL_NAME_MAX + 1] = {};
    TDBCategoryQuery q{};
    q.isCategory = &isCategory;
    q.name = name;
    q.depth = &depth;
    VERDAL_GetCategoryInfo(db, cursors[i], &q);
    out += std::string(2 * static_cast<size_t>(depth), ' ');
    if (isCategory) {
      out += "[" + std::string(name) + "]\n";
      continue;
    }
    for (int32_t f = 0; f < fields; ++f) {
      if (f > 0) out += "|";
      const char* v = VERDAL_GetData(db, f, cursors[i], 1, 0);
      out += v != nullptr ? v : "(null)";
    }
    out += "\n";
  }
  VERDAL_GetCategoryDeleteChildList(cursors);
  return out;
}

inline std::string FileText(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

inline void WriteText(const std::string& path, const std::string& text) {
  std::ofstream(path, std::ios::binary | std::ios::trunc) << text;
}

// Whether this process is the fresh one RunAlone started.
inline bool RunningAlone() { return std::getenv("VERDAL_TEST_ALONE") != nullptr; }

// Runs one test again in a fresh process of this program, with one more environment variable,
// and gives its exit status: the engine keeps a gateway it has loaded for the life of the process,
// so a test of another gateway folder needs a process that has loaded none.
inline int RunAlone(const char* test, const char* variable, const char* value) {
  const pid_t child = fork();
  if (child == 0) {
    setenv(variable, value, 1);
    setenv("VERDAL_TEST_ALONE", "1", 1);
    const std::string filter = std::string("--gtest_filter=") + test;
    execl("/proc/self/exe", "verdal_api_tests", filter.c_str(), static_cast<char*>(nullptr));
    _exit(127);
  }
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128;
}
