// The pool of open databases, handles, properties and views, as a host sees them.
#include <gtest/gtest.h>

#include <cstring>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include "field_helpers.h"
#include "verdal.h"

namespace {

std::vector<std::string> g_trace;
void CollectTrace(const char* line) { g_trace.emplace_back(line); }

class Pool : public ::testing::Test {
 protected:
  void SetUp() override {
    VERDAL_CloseAllDBs();
    g_trace.clear();
    VERDAL_SetTraceSink(CollectTrace);
  }
  void TearDown() override {
    VERDAL_SetTraceSink(nullptr);
    VERDAL_CloseAllDBs();
  }
};

}  // namespace

TEST_F(Pool, MemoryDatabasesStandInOrderOfOpening) {
  VerdalHandle a = OpenMemoryDatabase(1), b = OpenMemoryDatabase(1), c = OpenMemoryDatabase(1);
  ASSERT_NE(a, 0u);
  EXPECT_EQ(std::set<VerdalHandle>({a, b, c}).size(), 3u);
  EXPECT_EQ(VERDAL_GetDBCount(), 3);
  EXPECT_EQ(VERDAL_GetDBHandle(0), a);
  EXPECT_EQ(VERDAL_GetDBHandle(2), c);
  VERDAL_GetDBProperties(0, nullptr);  // leaves code 1 behind
  EXPECT_EQ(VERDAL_GetDBHandle(3), 0u);
  EXPECT_EQ(VERDAL_GetLastError(), 0);
  EXPECT_EQ(VERDAL_GetDBHandle(-1), 0u);

  EXPECT_EQ(VERDAL_CloseDB(b), 1);
  EXPECT_EQ(VERDAL_GetDBCount(), 2);
  EXPECT_EQ(VERDAL_GetDBHandle(1), c);
  VERDAL_CloseAllDBs();
  EXPECT_EQ(VERDAL_GetDBCount(), 0);
}

TEST_F(Pool, UnknownZeroAndStaleHandlesFailWithCodeOne) {
  VerdalHandle stale = OpenMemoryDatabase(1);
  ASSERT_EQ(VERDAL_CloseDB(stale), 1);
  VerdalHandle fresh = OpenMemoryDatabase(1);
  EXPECT_NE(fresh, stale);  // handles are never reused
  VerdalDBProperties props;
  char id[37];
  for (VerdalHandle bad : {VerdalHandle{0}, stale, VerdalHandle{0xDEADBEEF}}) {
    EXPECT_EQ(VERDAL_GetDBProperties(bad, &props), 0);
    EXPECT_EQ(VERDAL_GetLastError(), 1);
    EXPECT_EQ(VERDAL_GetDBIdentifier(bad, id), 0);
    EXPECT_EQ(VERDAL_GetLastError(), 1);
    EXPECT_EQ(VERDAL_CloseDB(bad), 0);
    EXPECT_EQ(VERDAL_GetLastError(), 1);
  }
  EXPECT_EQ(VERDAL_CloseDBByFileName("nirgends.dbd"), 0);
  EXPECT_EQ(VERDAL_GetLastError(), 1);
  EXPECT_EQ(VERDAL_CloseDBByFileName(nullptr), 0);
  EXPECT_EQ(VERDAL_GetLastError(), 1);
  // A good call clears the last error; CreateView fails on a bad handle without touching it.
  EXPECT_EQ(VERDAL_GetDBIdentifier(fresh, id), 1);
  EXPECT_EQ(VERDAL_GetLastError(), 0);
  EXPECT_EQ(VERDAL_CreateView(stale, "x", 3), -1);
  EXPECT_EQ(VERDAL_GetLastError(), 0);
  // Failures are traced with the function's name and the code.
  EXPECT_NE(std::find(g_trace.begin(), g_trace.end(), "Error in VERDAL_GetDBProperties: ID=1"), g_trace.end());
}

TEST_F(Pool, PropertiesAndIdentifierOfAMemoryDatabase) {
  VerdalHandle db = OpenMemoryDatabase(1);
  VerdalDBProperties props;
  std::memset(&props, 0x55, sizeof props);
  ASSERT_EQ(VERDAL_GetDBProperties(db, &props), 1);
  EXPECT_EQ(props.readOnly, 0);
  EXPECT_EQ(props.importMode, 0);
  EXPECT_STREQ(props.fileName, "");
  EXPECT_STREQ(props.password, "");
  EXPECT_EQ(VERDAL_GetDBProperties(db, nullptr), 0);
  EXPECT_EQ(VERDAL_GetLastError(), 10);

  char id[37], other[37];
  ASSERT_EQ(VERDAL_GetDBIdentifier(db, id), 1);
  EXPECT_TRUE(std::regex_match(id, std::regex("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9a-f]{3}-[0-9A-F]{4}-[0-9A-F]{12}"))) << id;
  ASSERT_EQ(VERDAL_GetDBIdentifier(OpenMemoryDatabase(1), other), 1);
  EXPECT_STRNE(id, other);
}

TEST_F(Pool, ViewsAreFoundByNameAndModesAreChecked) {
  VerdalHandle db = OpenMemoryDatabase(1);
  EXPECT_EQ(VERDAL_CreateView(db, nullptr, VERDAL_VIEW_RECORDS), 0);
  EXPECT_EQ(VERDAL_CreateView(db, "", VERDAL_VIEW_BOTH), 0);
  EXPECT_EQ(VERDAL_CreateView(db, "Liste", VERDAL_VIEW_RECORDS), 1);
  EXPECT_EQ(VERDAL_CreateView(db, "Baum", VERDAL_VIEW_CATEGORIES), 2);
  EXPECT_EQ(VERDAL_CreateView(db, "LISTE", VERDAL_VIEW_BOTH), 1);
  EXPECT_EQ(VERDAL_CreateView(db, "Falsch", 0), -1);
  EXPECT_EQ(VERDAL_GetLastError(), 11);
}

TEST_F(Pool, ApplicationNameTakesAtMostOneHundredCharacters) {
  EXPECT_EQ(VERDAL_SetApplicationName(std::string(100, 'a').c_str()), 1);
  EXPECT_EQ(VERDAL_SetApplicationName(std::string(101, 'a').c_str()), 0);
  EXPECT_EQ(VERDAL_SetApplicationName(nullptr), 1);
  EXPECT_EQ(VERDAL_SetApplicationName("Verdal Version 1.0"), 1);
}

TEST_F(Pool, AFileThatTheSearchCannotFindOpensNothing) {
  EXPECT_EQ(VERDAL_OpenDB("gibt-es-nicht.dbd", nullptr, 0, 1, "/nonexistent-folder", 1, 0, 0), 0u);
  EXPECT_EQ(VERDAL_GetLastError(), 0);
  EXPECT_NE(std::find(g_trace.begin(), g_trace.end(), "VERDAL_OpenDBEx failed for 'gibt-es-nicht.dbd'"), g_trace.end());
  EXPECT_EQ(VERDAL_GetDBCount(), 0);
}
