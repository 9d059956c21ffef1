// Finding records by identity through the C interface: when the index is built, emptied and
// searched, what it answers after records change, and what it answers a bad handle.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "field_helpers.h"
#include "temp_folder.h"
#include "verdal.h"

namespace {

// The failure lines of the trace (the pool traces its lookups as well).
std::vector<std::string> g_trace;
void CollectTrace(const char* line) {
  if (std::string(line).starts_with("Error in")) g_trace.emplace_back(line);
}

class Identity : public ::testing::Test {
 protected:
  void SetUp() override {
    db = OpenMemoryDatabase();  // size class 0: 63 buckets
    AddField(db, "Name", 0);
  }
  void TearDown() override { VERDAL_CloseAllDBs(); }

  int32_t Add() { return VERDAL_AddRecord(db, -1, "r", 0, nullptr, -1, 0, nullptr); }
  std::string IdentityOf(int32_t cursor) {
    char id[37] = "";
    EXPECT_EQ(VERDAL_GetInternalData(db, cursor, nullptr, nullptr, nullptr, id), 1);
    return id;
  }
  void SetIdentity(int32_t cursor, const char* text) {
    ASSERT_EQ(VERDAL_SetInternalData(db, cursor, nullptr, nullptr, nullptr, text), 1);
  }
  // The record number found, or -1 for "not found", which must leave no error.
  int32_t Find(const std::string& text) {
    int32_t number = -7;
    int32_t result = VERDAL_FindIdentity(db, text.c_str(), &number);
    EXPECT_EQ(VERDAL_GetLastError(), 0) << text;
    return result == 1 ? number : -1;
  }

  VerdalHandle db = 0;
};

}  // namespace

TEST_F(Identity, TheIndexHoldsTheRecordsOfItsLastBuild) {
  int32_t a = Add(), b = Add();
  int32_t category = VERDAL_AddCategory(db, -1, "K");
  // Clearing before any build makes no index: the first search still builds one.
  EXPECT_EQ(VERDAL_ClearIdentity(db), 1);
  const int32_t foundA = Find(IdentityOf(a));
  EXPECT_GE(foundA, 0);
  EXPECT_GE(Find(IdentityOf(b)), 0);
  EXPECT_GE(Find(IdentityOf(category)), 0);  // categories have data records too
  EXPECT_EQ(VERDAL_FindIdentity(db, IdentityOf(a).c_str(), nullptr), 1);
  EXPECT_EQ(VERDAL_FindIdentity(db, nullptr, nullptr), 0);  // the empty text
  EXPECT_EQ(VERDAL_GetLastError(), 0);

  int32_t later = Add();
  EXPECT_EQ(Find(IdentityOf(later)), -1);
  EXPECT_EQ(VERDAL_ClearIdentity(db), 1);
  for (int32_t c : {a, b, category, later}) EXPECT_EQ(Find(IdentityOf(c)), -1);
  EXPECT_EQ(VERDAL_InitIdentity(db), 1);
  for (int32_t c : {a, b, category, later}) EXPECT_GE(Find(IdentityOf(c)), 0);
  EXPECT_EQ(Find(IdentityOf(a)), foundA);
}

TEST_F(Identity, KeysAreReadFromTheRecordsButEntriesStayInTheirBuckets) {
  // Erste-5, Erste-13 and Erste-35 share one of the 63 buckets; Erste-24 lies in another.
  int32_t r1 = Add(), r2 = Add(), r3 = Add();
  SetIdentity(r1, "Erste-5");
  SetIdentity(r2, "Erste-13");
  ASSERT_EQ(VERDAL_InitIdentity(db), 1);
  const int32_t id1 = Find("Erste-5"), id2 = Find("Erste-13"), id3 = Find(IdentityOf(r3));
  EXPECT_TRUE(id1 >= 0 && id2 >= 0 && id3 >= 0 && id1 != id2 && id2 != id3);
  EXPECT_EQ(Find("erste-5"), -1);  // letter case counts
  EXPECT_EQ(Find("Erste-5 "), -1);

  // A changed identity is the key at once, but the entry stays where the old one put it.
  SetIdentity(r1, "Erste-24");
  EXPECT_EQ(Find("Erste-24"), -1);
  EXPECT_EQ(Find("Erste-5"), -1);
  SetIdentity(r1, "Erste-35");
  EXPECT_EQ(Find("Erste-35"), id1);

  // A deleted record's entry is passed over: r2 stands before r1 in their bucket.
  ASSERT_EQ(VERDAL_DeleteRecord(db, r2, 0, 0, nullptr, 1), 1);
  EXPECT_EQ(Find("Erste-13"), -1);
  EXPECT_EQ(Find("Erste-35"), id1);

  // Of two records with one identity, the one entered last (the later in the data walk) wins.
  SetIdentity(r3, "Erste-35");
  ASSERT_EQ(VERDAL_InitIdentity(db), 1);
  EXPECT_EQ(Find("Erste-35"), id3);
  EXPECT_EQ(Find("Erste-24"), -1);
}

TEST_F(Identity, TheNumberFoundIsTheDataIdNotTheCursor) {
  int32_t a = Add();
  // A refused record took a data id but no cursor, so from here on the two differ.
  ASSERT_EQ(VERDAL_AddRecord(db, -1, "x", 0, "v", 17, 0, nullptr), -1);
  int32_t b = Add();
  // A fresh database gives both from 0.
  EXPECT_EQ(Find(IdentityOf(a)), a);
  EXPECT_EQ(Find(IdentityOf(b)), b + 1);
}

TEST_F(Identity, EmptyingAndLoadingEmptyTheIndex) {
  TempFolder dir;
  const std::string name = dir / "ids.dbd";
  db = VERDAL_OpenDB(name.c_str(), nullptr, 1, 0, nullptr, 0, 0, 0);
  ASSERT_NE(db, 0u);
  AddField(db, "Name", 0);
  int32_t a = Add(), b = Add();
  const std::string idA = IdentityOf(a), idB = IdentityOf(b);
  ASSERT_EQ(VERDAL_InitIdentity(db), 1);
  const int32_t numberA = Find(idA), numberB = Find(idB);
  ASSERT_EQ(VERDAL_Save(db, nullptr), 1);
  ASSERT_EQ(VERDAL_Load(db, nullptr, 0), 1);
  EXPECT_EQ(Find(idA), -1);
  ASSERT_EQ(VERDAL_InitIdentity(db), 1);
  EXPECT_EQ(Find(idA), numberA);
  EXPECT_EQ(Find(idB), numberB);

  ASSERT_EQ(VERDAL_EmptyData(db, 1), 1);
  int32_t c = Add();
  EXPECT_EQ(Find(IdentityOf(c)), -1);  // emptied, not gone: no build on search
  ASSERT_EQ(VERDAL_InitIdentity(db), 1);
  EXPECT_GE(Find(IdentityOf(c)), 0);
  VERDAL_CloseAllDBs();  // before the folder goes
}

TEST_F(Identity, ABadHandleFailsWithCode1AndATrace) {
  g_trace.clear();
  VERDAL_SetTraceSink(CollectTrace);
  const VerdalHandle bad = db + 1000;
  int32_t number = -7;
  EXPECT_EQ(VERDAL_InitIdentity(bad), 0);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_HANDLE);
  EXPECT_EQ(VERDAL_ClearIdentity(bad), 0);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_HANDLE);
  EXPECT_EQ(VERDAL_FindIdentity(bad, "x", &number), 0);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_HANDLE);
  EXPECT_EQ(number, -7);
  // Not finding clears the code left behind and is no failure.
  EXPECT_EQ(VERDAL_FindIdentity(db, "x", &number), 0);
  EXPECT_EQ(VERDAL_GetLastError(), 0);
  VERDAL_SetTraceSink(nullptr);
  EXPECT_EQ(g_trace, (std::vector<std::string>{"Error in VERDAL_InitIdentity: ID=1",
                                               "Error in VERDAL_ClearIdentity: ID=1",
                                               "Error in VERDAL_FindIdentity: ID=1"}));
}
