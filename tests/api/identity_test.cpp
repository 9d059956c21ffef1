// Finding records by identity through the C interface: when the index is built and emptied, and
// what it answers once records change.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "field_helpers.h"
#include "temp_folder.h"
#include "verdal.h"

namespace {

struct Identity : ::testing::Test {
  void TearDown() override { VERDAL_CloseAllDBs(); }
  int32_t Add() { return VERDAL_AddRecord(db, -1, "r", 0, nullptr, -1, 0, nullptr); }
  std::string IdOf(int32_t cursor) {
    char id[37] = "";
    VERDAL_GetInternalData(db, cursor, nullptr, nullptr, nullptr, id);
    return id;
  }
  void Set(int32_t cursor, const char* id) {
    VERDAL_SetInternalData(db, cursor, nullptr, nullptr, nullptr, id);
  }
  // The number found, -1 for none, which is no error.
  int32_t Find(const std::string& text) {
    int32_t number = -7, result = VERDAL_FindIdentity(db, text.c_str(), &number);
    EXPECT_EQ(VERDAL_GetLastError(), 0);
    return result == 1 ? number : -1;
  }
  VerdalHandle db = OpenMemoryDatabase();  // size class 0: 63 buckets
};

}  // namespace

TEST_F(Identity, TheIndexHoldsTheDataIdsOfItsLastBuild) {
  int32_t a = Add();
  ASSERT_EQ(VERDAL_AddRecord(db, -1, "x", 0, "v", 17, 0, nullptr), -1);  // takes a data id only
  int32_t b = Add(), category = VERDAL_AddCategory(db, -1, "K");
  EXPECT_EQ(VERDAL_ClearIdentity(db), 1);  // makes no index: the first search builds one
  EXPECT_EQ(Find(IdOf(a)), a);             // both counted from 0
  EXPECT_EQ(Find(IdOf(b)), b + 1);         // a data id, no cursor
  EXPECT_EQ(Find(IdOf(category)), b + 2);  // categories have data records too
  EXPECT_EQ(VERDAL_FindIdentity(db, IdOf(a).c_str(), nullptr), 1);
  EXPECT_EQ(VERDAL_FindIdentity(db, nullptr, nullptr), 0);

  int32_t later = Add();
  EXPECT_EQ(Find(IdOf(later)), -1);
  EXPECT_EQ(VERDAL_ClearIdentity(db), 1);
  EXPECT_EQ(Find(IdOf(a)), -1);
  EXPECT_EQ(VERDAL_InitIdentity(db), 1);
  EXPECT_EQ(Find(IdOf(later)), b + 3);
  EXPECT_EQ(Find(IdOf(a)), a);
}

TEST_F(Identity, KeysAreReadFromTheRecordsButEntriesStayInTheirBuckets) {
  // Erste-5, Erste-13 and Erste-35 share one of the 63 buckets; Erste-24 lies in another.
  int32_t r1 = Add(), r2 = Add(), r3 = Add();
  Set(r1, "Erste-5");
  Set(r2, "Erste-13");
  ASSERT_EQ(VERDAL_InitIdentity(db), 1);
  EXPECT_EQ(Find("Erste-5"), r1);  // data ids and cursors agree here
  EXPECT_EQ(Find("erste-5"), -1);
  Set(r1, "Erste-24");
  EXPECT_EQ(Find("Erste-24"), -1);
  EXPECT_EQ(Find("Erste-5"), -1);
  Set(r1, "Erste-35");
  EXPECT_EQ(Find("Erste-35"), r1);
  // r2's entry, before r1's in their bucket, is passed over once r2 is gone.
  ASSERT_EQ(VERDAL_DeleteRecord(db, r2, 0, 0, nullptr, 1), 1);
  EXPECT_EQ(Find("Erste-13"), -1);
  EXPECT_EQ(Find("Erste-35"), r1);
  // Of two records with one identity, the one entered last wins.
  Set(r3, "Erste-35");
  ASSERT_EQ(VERDAL_InitIdentity(db), 1);
  EXPECT_EQ(Find("Erste-35"), r3);
}

TEST_F(Identity, EmptyingAndLoadingEmptyTheIndex) {
  TempFolder dir;
  db = VERDAL_OpenDB((dir / "ids.dbd").c_str(), nullptr, 1, 0, nullptr, 0, 0, 0);
  int32_t a = Add();
  const std::string idA = IdOf(a);
  ASSERT_EQ(VERDAL_Save(db, nullptr), 1);
  ASSERT_EQ(VERDAL_Load(db, nullptr, 0), 1);
  EXPECT_EQ(Find(idA), a);  // no index yet: built
  ASSERT_EQ(VERDAL_Load(db, nullptr, 0), 1);
  EXPECT_EQ(Find(idA), -1);  // emptied
  ASSERT_EQ(VERDAL_InitIdentity(db), 1);
  EXPECT_EQ(Find(idA), a);
  ASSERT_EQ(VERDAL_EmptyData(db, 1), 1);
  int32_t c = Add();
  EXPECT_EQ(Find(IdOf(c)), -1);
  VERDAL_CloseAllDBs();  // before the folder goes
}

TEST_F(Identity, ABadHandleFailsWithCode1) {
  int32_t number = -7;
  const auto code = [](int32_t result) { return result == 0 ? VERDAL_GetLastError() : -1; };
  EXPECT_EQ(code(VERDAL_InitIdentity(db + 1000)), VERDAL_ERR_HANDLE);
  EXPECT_EQ(code(VERDAL_ClearIdentity(db + 1000)), VERDAL_ERR_HANDLE);
  EXPECT_EQ(code(VERDAL_FindIdentity(db + 1000, "x", &number)), VERDAL_ERR_HANDLE);
  EXPECT_EQ(number, -7);
  EXPECT_EQ(Find("x"), -1);  // clears the code
}
