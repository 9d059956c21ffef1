// A whole database through the envelope on a disk file: fields, categories and values come back
// in every payload form, and the root flag of view 0 travels in the header.
#include <gtest/gtest.h>
#include <unistd.h>

#include <string>

#include "BASE_SOURCE/fileex.h"
#include "engine/db_manager.h"
#include "engine/handle_table.h"
#include "engine/pool_manager.h"
#include "storage/envelope.h"
#include "verdal.h"
#include "../api/field_helpers.h"

namespace {

using verdal::TFileEx;
using verdal::engine::TDBManager;

TEST(EnvelopeDatabase, EveryFormOnDisk) {
  VERDAL_CloseAllDBs();
  const VerdalHandle h = VERDAL_OpenDB(nullptr, nullptr, 0, 0, nullptr, 1, 0, 0);
  ASSERT_EQ(AddField(h, "Name", 0), 0);
  ASSERT_EQ(AddField(h, "Betrag", 1), 1);
  const int32_t category = VERDAL_AddCategory(h, VERDAL_CURSOR_ROOT, "Kunden");
  int32_t last = -1;
  for (int i = 0; i < 300; ++i) {
    last = VERDAL_AddRecord(h, i % 3 == 0 ? category : VERDAL_CURSOR_ROOT,
                            ("Eintrag " + std::to_string(i)).c_str(), 0, nullptr, 0, 0, nullptr);
    ASSERT_EQ(VERDAL_SetData(h, 0, ("M\xFCller " + std::to_string(i)).c_str(), last, 0, nullptr,
                             nullptr),
              1);
  }
  TDBManager* db = verdal::engine::Handles().Lookup(h);
  db->store.MainView().root.expanded = false;
  const std::string path = "/tmp/envelope_db_" + std::to_string(::getpid()) + ".dbd";

  struct Form {
    const char* password;
    int32_t compress;
  } forms[] = {{"", 0}, {"", 1}, {"geheim123", 0}, {"geheim123", 1}};
  for (const Form& f : forms) {
    SCOPED_TRACE(std::string(f.password) + (f.compress ? " compressed" : ""));
    ASSERT_EQ(VERDAL_SetPWDAndCompression(h, f.password, f.compress), 1);
    {
      TFileEx file(path.c_str(), TFileEx::kReadWrite | TFileEx::kCreate | TFileEx::kTruncate);
      ASSERT_TRUE(verdal::storage::WriteEnvelope(*db, file));
    }
    EXPECT_EQ(db->compressed, f.compress != 0);
    EXPECT_EQ(db->enciphered, *f.password != '\0');
    EXPECT_FALSE(db->store.rootExpanded);

    auto* back = new TDBManager(1);
    back->password = f.password;
    verdal::engine::Pool().Add(back->Handle());
    {
      TFileEx file(path.c_str(), TFileEx::kRead);
      ASSERT_TRUE(verdal::storage::ReadEnvelope(*back, file));
    }
    const VerdalHandle b = back->Handle();
    EXPECT_EQ(VERDAL_GetFieldSize(b), 2);
    EXPECT_STREQ(VERDAL_GetData(b, 0, last, 1, 0), "M\xFCller 299");
    EXPECT_EQ(VERDAL_GetItemCount(b), 1);
    EXPECT_EQ(back->identifier, db->identifier);
    EXPECT_FALSE(back->store.MainView().root.expanded);
    EXPECT_EQ(back->storedLength, db->storedLength);
    EXPECT_EQ(VERDAL_CloseDB(b), 1);
  }
  ::unlink(path.c_str());
  VERDAL_CloseAllDBs();
}

}  // namespace
