// Databases on disk through the C interface: the file's bytes, opening, reopening, saving and
// closing.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <iterator>
#include <string>
#include <thread>

#include "field_helpers.h"
#include "support/byte_builder.h"
#include "temp_folder.h"
#include "verdal.h"

using verdal::test_support::Bytes;

namespace {

constexpr uint32_t kSectionMark = 0x41524D59;
constexpr uint32_t kDataMark = 0x0427EEF3;

VerdalHandle Open(const std::string& name, int readOnly = 0, int refuse = 0) {
  return VERDAL_OpenDB(name.c_str(), nullptr, 1, 0, nullptr, 1, readOnly, refuse);
}

class Files : public ::testing::Test {
 protected:
  void TearDown() override { VERDAL_CloseAllDBs(); }
  TempFolder dir;
};

// The bytes of one data record as the format table gives them, from what the interface tells.
Bytes DataRecord(VerdalHandle db, int32_t cursor, const char* title, const char* value) {
  VerdalLocalTime created, changed;
  int32_t modified = 0;
  char id[37];
  VERDAL_GetInternalData(db, cursor, &created, &changed, &modified, id);
  Bytes r;
  r.I32(cursor == 0 ? 0 : 1).I32(1);  // data ids follow the order of creation here
  for (const VerdalLocalTime* t : {&changed, &created})
    for (uint16_t v : {t->year, t->month, t->dayOfWeek, t->day, t->hour, t->minute, t->second, t->millisecond})
      r.Le(v, 2);
  r.U8(static_cast<uint8_t>(modified)).Str(id).Str(title).I32(1).Str(value);
  Bytes whole;
  whole.Le(kDataMark, 4).U8(2).I32(static_cast<int32_t>(r.b.size()) + 4).Append(r);
  return whole;
}

}  // namespace

TEST_F(Files, ASavedDatabaseIsTheFileTheFormatDescribes) {
  std::string name = dir / "klein.dbd";
  VerdalHandle db = Open(name);
  ASSERT_NE(db, 0u);
  AddField(db, "Name", 0);
  int32_t c = VERDAL_AddCategory(db, -1, "K");
  int32_t r = VERDAL_AddRecord(db, c, "T", 0, "Eva", 0, 0, nullptr);
  ASSERT_EQ(VERDAL_Save(db, nullptr), 1);
  char identifier[37];
  VERDAL_GetDBIdentifier(db, identifier);

  Bytes body;
  body.I32(1).I32(2).I32(2);
  body.I16(1).Le(kSectionMark, 4).I32(1).I32(0).Str("Name").I16(0).U8(0).U8(1);
  body.I32(4).Le(0, 4).I16(0).I16(0).Le(0, 4).I32(-1).I16(2);  // the text field's type
  body.Ext(0, 0).Ext(0, 0).U8(0).U8(0).U8(0).Ext(0, 0).Ext(0, 0).U8(0).U8(0).U8(1).U8(1).U8(0);
  body.Str("%d.%m.%Y").Str("").Str("").Str("").Str("").Str("").U8(0).U8(0).U8(0).Str("");
  body.Str("");  // display name
  body.Le(kDataMark, 4).I32(1).Str("").I32(0).Str("").I32(0).U8(1).Str("").I32(0);
  for (int i = 0; i < 5; ++i) body.Le(kDataMark, 4).I32(1).Str("").I32(0);
  body.I32(1).Le(kSectionMark, 4).I32(0).I32(-1).I32(0).U8(0).Str("K").Str("K");
  body.I32(2).Append(DataRecord(db, c, "", "")).Append(DataRecord(db, r, "T", "Eva"));
  body.I32(2);
  body.Le(kSectionMark, 4).I32(c).I32(0).I32(0).U8(1).I32(0).I16(3).I32(-1).I32(-1).I32(-1);
  body.Le(kSectionMark, 4).I32(r).I32(0).I32(1).U8(0).I32(0).I16(3).I32(-1).I32(-1).I32(-1);
  body.Le(kSectionMark, 4);
  Bytes file;
  file.Le(kSectionMark, 4).I16(13).I32(0).U8(0).U8(0);
  file.I32(static_cast<int32_t>(body.b.size())).I32(static_cast<int32_t>(body.b.size()));
  file.Str(identifier).I32(r).U8(1).Append(body);
  EXPECT_EQ(TempFolder::Read(name), file.b);

  // And the bytes read back into the same database.
  VERDAL_CloseDB(db);
  db = Open(name);
  EXPECT_STREQ(VERDAL_GetData(db, 0, r, 1, 0), "Eva");
  EXPECT_EQ(VERDAL_Seek(db, VERDAL_CURSOR_CURRENT, 0, 0, 0, 1, nullptr, 3), r);
}

TEST_F(Files, IdsAtTheEndOfTheirRangeRefuseNewNodesCleanly) {
  std::string name = dir / "ende.dbd";
  VerdalHandle db = Open(name);
  AddField(db, "Name", 0);
  int32_t c = VERDAL_AddCategory(db, -1, "K");
  int32_t r = VERDAL_AddRecord(db, c, "T", 0, "Eva", 0, 0, nullptr);
  ASSERT_EQ(VERDAL_CloseDB(db), 1);
  const std::vector<uint8_t> saved = TempFolder::Read(name);
  // The data id counter at the head of the body, and the cursor of the last place (the record's)
  // just before the closing mark.
  constexpr size_t kDataCounterAt = 69;
  const size_t lastCursorAt = saved.size() - 35;
  for (size_t at : {kDataCounterAt, lastCursorAt}) {
    std::vector<uint8_t> bytes = saved;
    for (int i = 0; i < 4; ++i) bytes[at + i] = static_cast<uint8_t>(INT32_MAX >> (8 * i));
    TempFolder::Write(name, bytes);
    db = Open(name);
    ASSERT_NE(db, 0u);
    auto refused = [](int32_t got) { return got == -1 && VERDAL_GetLastError() == 21; };
    EXPECT_TRUE(refused(VERDAL_AddRecord(db, c, "neu", 0, nullptr, -1, 0, nullptr)));
    EXPECT_TRUE(refused(VERDAL_DuplicateRecord(db, VERDAL_CURSOR_LAST, c, "Kopie")));
    EXPECT_TRUE(refused(VERDAL_AddCategory(db, -1, "L")));
    // What was there stays usable.
    int32_t record = at == lastCursorAt ? INT32_MAX : r;
    EXPECT_STREQ(VERDAL_GetData(db, 0, record, 1, 0), "Eva");
    EXPECT_EQ(VERDAL_SetData(db, 0, "Udo", record, 0, nullptr, nullptr), 1);
    VERDAL_CloseAllDBs();
  }
}

TEST_F(Files, OpeningTheSameNameGivesTheSameDatabase) {
  std::string name = dir / "a.dbd";
  VerdalHandle first = Open(name);
  ASSERT_NE(first, 0u);
  EXPECT_EQ(Open(dir.path() + "/A.DBD  "), first);  // letter case and blanks do not matter
  EXPECT_EQ(VERDAL_GetDBCount(), 1);
  VERDAL_CloseDB(first);

  // First read-only, then writable: the same database becomes writable.
  VerdalHandle ro = Open(name, 1);
  VerdalDBProperties props;
  VERDAL_GetDBProperties(ro, &props);
  EXPECT_EQ(props.readOnly, 1);
  EXPECT_EQ(Open(name), ro);
  VERDAL_GetDBProperties(ro, &props);
  EXPECT_EQ(props.readOnly, 0);
  EXPECT_STREQ(props.fileName, name.c_str());
}

TEST_F(Files, AReadOnlyDatabaseSeesChangesOnlyAfterTwoSeconds) {
  std::string name = dir / "geteilt.dbd";
  VerdalHandle writer = Open(name);
  AddField(writer, "Name", 0);
  VERDAL_CloseDB(writer);
  VerdalHandle reader = Open(name, 1);
  ASSERT_NE(reader, 0u);
  EXPECT_EQ(VERDAL_GetFieldSize(reader), 1);
  // Another process changes the file: here a copy written elsewhere and moved over it.
  std::string other = dir / "anders.dbd";
  VerdalHandle copy = Open(other);
  AddField(copy, "Name", 0);
  AddField(copy, "Ort", 0);
  VERDAL_CloseDB(copy);
  ASSERT_EQ(rename(other.c_str(), name.c_str()), 0);
  EXPECT_EQ(Open(name, 1), reader);  // within 2000 ms: the same, unchanged
  std::this_thread::sleep_for(std::chrono::milliseconds(2100));
  VerdalHandle fresh = Open(name, 1);
  ASSERT_NE(fresh, 0u);
  EXPECT_NE(fresh, reader);
  EXPECT_EQ(VERDAL_GetFieldSize(fresh), 2);
  EXPECT_EQ(VERDAL_GetFieldSize(reader), 0);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_HANDLE);  // the old one is gone
}

TEST_F(Files, SearchingLongNamesAndMissingFiles) {
  VerdalHandle made = Open(dir / "gesucht.dbd");
  VERDAL_CloseDB(made);
  VerdalHandle found = VERDAL_OpenDB("gesucht.dbd", nullptr, 0, 1, dir.path().c_str(), 1, 0, 0);
  ASSERT_NE(found, 0u);
  VerdalDBProperties props;
  VERDAL_GetDBProperties(found, &props);
  EXPECT_EQ(std::string(props.fileName), dir / "gesucht.dbd");

  EXPECT_EQ(Open(dir / "fehlt.dbd", 1), 0u);  // read-only: never created
  EXPECT_FALSE(std::ifstream(dir / "fehlt.dbd").good());
}

TEST_F(Files, AMemoryDatabaseSavesACopyAndStaysInMemory) {
  VerdalHandle mem = OpenMemoryDatabase(1);
  AddField(mem, "Name", 0);
  VERDAL_AddRecord(mem, -1, "r", 0, "Otto", 0, 0, nullptr);
  std::string name = dir / "kopie.dbd";
  ASSERT_EQ(VERDAL_Save(mem, name.c_str()), 1);
  VerdalDBProperties props;
  VERDAL_GetDBProperties(mem, &props);
  EXPECT_STREQ(props.fileName, "");
  VerdalHandle copy = Open(name);
  ASSERT_NE(copy, 0u);
  EXPECT_NE(copy, mem);
  EXPECT_STREQ(VERDAL_GetData(copy, 0, VERDAL_CURSOR_FIRST, 1, 0), "Otto");
}

TEST_F(Files, SavesKeepTheOldVersionInTheBackupEvenIfItWasProtected) {
  std::string name = dir / "b.dbd";
  VerdalHandle db = Open(name);
  AddField(db, "Name", 0);
  ASSERT_EQ(VERDAL_Save(db, nullptr), 1);
  std::vector<uint8_t> before = TempFolder::Read(name);
  ASSERT_EQ(chmod((dir / "b.bak").c_str(), 0444), 0);
  AddField(db, "Ort", 0);
  ASSERT_EQ(VERDAL_Save(db, nullptr), 1);
  EXPECT_EQ(TempFolder::Read(dir / "b.bak"), before);
  EXPECT_NE(TempFolder::Read(name), before);
  EXPECT_FALSE(std::ifstream(dir / "~b.dbd").good());  // no temporary file left behind
}

TEST_F(Files, FilesThatCannotBeReadAreRefusedWithCode25) {
  std::string name = dir / "neu.dbd";
  VerdalHandle db = Open(name);
  VERDAL_CloseDB(db);
  std::vector<uint8_t> bytes = TempFolder::Read(name);
  std::vector<uint8_t> later = bytes;
  later[4] = 14;  // a version from the future
  TempFolder::Write(name, later);
  EXPECT_EQ(Open(name), 0u);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_READ_FILE);
  std::vector<uint8_t> cut(bytes.begin(), bytes.begin() + static_cast<long>(bytes.size() / 2));
  TempFolder::Write(name, cut);
  EXPECT_EQ(Open(name), 0u);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_READ_FILE);
  TempFolder::Write(name, std::vector<uint8_t>(3, 0));
  EXPECT_EQ(Open(name), 0u);
  EXPECT_EQ(VERDAL_GetDBCount(), 0);
}

TEST_F(Files, ClosingAndUnloadingSaveWhatIsDirty) {
  std::string name = dir / "c.dbd";
  VerdalHandle db = Open(name);
  AddField(db, "Name", 0);
  VERDAL_AddRecord(db, -1, "r", 0, "gespeichert beim Schliessen", 0, 0, nullptr);
  ASSERT_EQ(VERDAL_CloseDB(db), 1);
  db = Open(name);
  EXPECT_STREQ(VERDAL_GetData(db, 0, VERDAL_CURSOR_FIRST, 1, 0), "gespeichert beim Schliessen");
  VERDAL_CloseDB(db);

  // A host that ends without closing anything: the library saves at unload.
  pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    VerdalHandle h = Open(name);
    VERDAL_SetData(h, 0, "gespeichert beim Beenden", VERDAL_CURSOR_FIRST, 0, nullptr, nullptr);
    exit(0);
  }
  int status = 0;
  waitpid(child, &status, 0);
  ASSERT_TRUE(WIFEXITED(status));
  db = Open(name);
  EXPECT_STREQ(VERDAL_GetData(db, 0, VERDAL_CURSOR_FIRST, 1, 0), "gespeichert beim Beenden");
}

// A load large enough to map memory ahead, then every kind of change to what it made: texts
// written in their slots and in new blocks, records and places deleted, a view built after the
// load, the whole database emptied and filled again. Each must leave the other objects intact.
TEST_F(Files, ALargeLoadedDatabaseTakesEveryKindOfChange) {
  std::string name = dir / "gross.dbd";
  constexpr int kRecords = 40000;  // a body of about 10 MB
  auto valueOf = [](int i) { return "Wert " + std::to_string(i) + (i % 3 == 0 ? " mit einem langen Anhang" : ""); };
  VerdalHandle db = Open(name);
  AddField(db, "Name", 0);
  AddField(db, "Notiz", 0);
  int32_t c = VERDAL_AddCategory(db, -1, "K");
  for (int i = 0; i < kRecords; ++i) {
    int32_t r = VERDAL_AddRecord(db, c, "", 0, valueOf(i).c_str(), 0, 0, nullptr);
    VERDAL_SetData(db, 1, std::string(200, static_cast<char>('a' + i % 26)).c_str(), r, 0, nullptr, nullptr);
  }
  ASSERT_EQ(VERDAL_CloseDB(db), 1);

  db = Open(name);
  ASSERT_NE(db, 0u);
  std::vector<int32_t> records;
  int32_t category = 0;
  for (int32_t k = VERDAL_Seek(db, -1, 1, 0, 1, 1, &category, 3); k >= 0; k = VERDAL_Seek(db, k, 1, 0, 1, 1, &category, 3))
    if (k != category) records.push_back(k);
  ASSERT_EQ(records.size(), static_cast<size_t>(kRecords));
  ASSERT_EQ(VERDAL_CreateView(db, "zweite", 3), 1);
  for (int i = 0; i < kRecords; i += 4) {
    VERDAL_SetData(db, 0, "kurz", records[i], 0, nullptr, nullptr);
    VERDAL_SetData(db, 1, "nun ein Text, der nicht mehr in seinen Platz passt", records[i + 1], 0, nullptr, nullptr);
    ASSERT_EQ(VERDAL_DeleteRecord(db, records[i + 2], 0, 0, nullptr, 0), 1);
  }
  ASSERT_EQ(VERDAL_Save(db, nullptr), 1);
  VERDAL_CloseDB(db);

  db = Open(name);
  ASSERT_NE(db, 0u);
  int seen = 0;
  for (int32_t k = VERDAL_Seek(db, -1, 1, 0, 1, 1, &category, 3); k >= 0; k = VERDAL_Seek(db, k, 1, 0, 1, 1, &category, 3)) {
    if (k == category) continue;
    // Records keep their order; of each four, the third is gone.
    int i = 4 * (seen / 3) + (seen % 3 == 2 ? 3 : seen % 3);
    std::string name0 = i % 4 == 0 ? "kurz" : valueOf(i);
    std::string note = i % 4 == 1 ? "nun ein Text, der nicht mehr in seinen Platz passt"
                                  : std::string(200, static_cast<char>('a' + i % 26));
    ASSERT_EQ(VERDAL_GetData(db, 0, k, 1, 0), name0) << "record " << i;
    ASSERT_EQ(VERDAL_GetData(db, 1, k, 1, 0), note) << "record " << i;
    ++seen;
  }
  EXPECT_EQ(seen, kRecords - kRecords / 4);

  ASSERT_EQ(VERDAL_EmptyData(db, 1), 1);
  int32_t r = VERDAL_AddRecord(db, -1, "", 0, "neu", 0, 0, nullptr);
  EXPECT_STREQ(VERDAL_GetData(db, 0, r, 1, 0), "neu");
}

namespace {

// What lstat tells of the name (a link is not followed); all zero where nothing has the name.
struct stat StatOf(const std::string& name) {
  struct stat st {};
  lstat(name.c_str(), &st);
  return st;
}

// How many names the folder holds; the cases that use it only ever add names.
std::ptrdiff_t Entries(const std::string& folder) {
  return std::distance(std::filesystem::directory_iterator(folder), std::filesystem::directory_iterator());
}

VerdalHandle DatabaseWith(const std::string& name, const char* value) {
  VerdalHandle db = Open(name);
  EXPECT_NE(db, 0u) << name;
  AddField(db, "Name", 0);
  VERDAL_AddRecord(db, -1, "r", 0, value, 0, 0, nullptr);
  return db;
}

void SaveValue(VerdalHandle db, const char* value) {
  VERDAL_SetData(db, 0, value, VERDAL_CURSOR_FIRST, 0, nullptr, nullptr);
  ASSERT_EQ(VERDAL_Save(db, nullptr), 1);
}

// Keeps this process from writing a file while it lives: the immutable flag binds even root, where
// the file system has it; write protection binds everyone but root.
struct Unwritable {
  explicit Unwritable(const std::string& file) : name(file) {
    if (!Immutable(true)) chmod(name.c_str(), 0444);
  }
  ~Unwritable() {
    Immutable(false);
    chmod(name.c_str(), 0644);
  }
  bool Immutable(bool on) {
    int fd = ::open(name.c_str(), O_RDONLY), flags = 0;
    bool ok = fd >= 0 && ioctl(fd, FS_IOC_GETFLAGS, &flags) == 0;
    flags = on ? (flags | FS_IMMUTABLE_FL) : (flags & ~FS_IMMUTABLE_FL);
    ok = ok && ioctl(fd, FS_IOC_SETFLAGS, &flags) == 0;
    if (fd >= 0) ::close(fd);
    return ok;
  }
  std::string name;
};

}  // namespace

// Save-as opens the target with create and truncate and writes it in place: a symbolic link is
// written through, and the target keeps its inode (so its mode and its other hard links), and
// nothing but the target is touched. A save-as or an open that cannot write its file fails with
// code 26 and leaves nothing behind.
TEST_F(Files, SaveAsWritesTheCopyInPlaceOrNothing) {
  VerdalHandle db = DatabaseWith(dir / "quelle.dbd", "Otto");
  std::string target = dir / "ziel.dbd", link = dir / "verweis.dbd", folder = dir / "ordner.dbd";
  TempFolder::Write(target, std::vector<uint8_t>(5000, 'a'));
  ASSERT_EQ(symlink("ziel.dbd", link.c_str()), 0);
  ASSERT_EQ(mkdir(folder.c_str(), 0755), 0);
  const ino_t inode = StatOf(target).st_ino;
  const std::ptrdiff_t entries = Entries(dir.path());

  ASSERT_EQ(VERDAL_Save(db, link.c_str()), 1);
  EXPECT_EQ(StatOf(target).st_ino, inode);
  VerdalHandle copy = Open(target, 1);
  ASSERT_NE(copy, 0u);
  EXPECT_STREQ(VERDAL_GetData(copy, 0, VERDAL_CURSOR_FIRST, 1, 0), "Otto");

  for (const std::string& bad : {folder, dir / "fehlt/kopie.dbd"}) {
    EXPECT_EQ(VERDAL_Save(db, bad.c_str()), 0) << bad;
    EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_WRITE_FILE);
  }
  EXPECT_EQ(Open(dir / "fehlt/neu.dbd"), 0u);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_WRITE_FILE);
  EXPECT_EQ(Entries(dir.path()), entries);  // no temporary file, no backup, no half-made copy
  EXPECT_EQ(Entries(folder), 0);
}

// A save over the database's own file wipes only what no name holds any more: not the file a link
// it was opened through named, not the old file's other hard links, and never through a link or
// hard link planted at the temporary name, neither while saving nor when a leftover goes at close.
TEST_F(Files, ASaveWipesNoOtherFile) {
  std::string real = dir / "echt.dbd", name = dir / "d.dbd", second = dir / "zweit.dbd";
  std::string temporary = dir / "~d.dbd", victim = dir / "opfer.txt";
  ASSERT_EQ(VERDAL_CloseDB(DatabaseWith(real, "alt")), 1);
  const std::vector<uint8_t> old = TempFolder::Read(real), bait(100, 'v');
  TempFolder::Write(victim, bait);
  ASSERT_EQ(symlink("echt.dbd", name.c_str()), 0);
  VerdalHandle db = Open(name);
  ASSERT_NE(db, 0u);

  ASSERT_EQ(symlink("opfer.txt", temporary.c_str()), 0);
  SaveValue(db, "neu");
  EXPECT_EQ(TempFolder::Read(real), old);  // the new file lies under the link's name instead
  ASSERT_EQ(::link(name.c_str(), second.c_str()), 0);
  const std::vector<uint8_t> saved = TempFolder::Read(name);
  ASSERT_EQ(symlink("opfer.txt", temporary.c_str()), 0);
  SaveValue(db, "zu");
  EXPECT_EQ(TempFolder::Read(second), saved);
  EXPECT_EQ(TempFolder::Read(victim), bait);
  ASSERT_EQ(VERDAL_CloseDB(db), 1);

  for (bool hard : {false, true}) {
    SCOPED_TRACE(hard ? "hard link" : "symbolic link");
    ASSERT_EQ(hard ? ::link(victim.c_str(), temporary.c_str()) : symlink("opfer.txt", temporary.c_str()), 0);
    ASSERT_EQ(VERDAL_CloseDB(Open(name)), 1);
    EXPECT_EQ(StatOf(temporary).st_mode, 0u);
    EXPECT_EQ(TempFolder::Read(victim), bait);
  }
}

// Paths of 260 characters and more are paths like any other inside the engine; only a name the
// system itself refuses is refused, as such (code 11), and not created or searched.
TEST_F(Files, LongPathsAreNotTakenAsMissing) {
  std::string folder = dir / std::string(100, 'a') + "/" + std::string(100, 'b');
  std::filesystem::create_directories(folder);
  std::string name = folder + "/" + std::string(80, 'c') + ".dbd";
  ASSERT_EQ(VERDAL_CloseDB(DatabaseWith(name, "lang")), 1);
  VerdalHandle db = Open(name);
  ASSERT_NE(db, 0u);
  EXPECT_STREQ(VERDAL_GetData(db, 0, VERDAL_CURSOR_FIRST, 1, 0), "lang");

  // The properties record holds 260 bytes: a name that does not fit is refused, not cut.
  VerdalDBProperties props;
  std::memset(&props, 'Z', sizeof props);
  EXPECT_EQ(VERDAL_GetDBProperties(db, &props), 0);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_TARGET);
  EXPECT_STREQ(props.fileName, "");
  EXPECT_EQ(props.readOnly, 0);  // the other members are filled

  for (int readOnly : {0, 1}) {
    EXPECT_EQ(Open(dir / (std::string(300, 'x') + ".dbd"), readOnly), 0u);
    EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_INPUT);
  }
}

// A file that cannot be written, opened for writing, opens read-only; with the refuse flag, the
// open fails. The file is not touched either way.
TEST_F(Files, AFileThatCannotBeWrittenOpensReadOnly) {
  std::string name = dir / "fest.dbd";
  ASSERT_EQ(VERDAL_CloseDB(DatabaseWith(name, "fest")), 1);
  const std::vector<uint8_t> bytes = TempFolder::Read(name);
  Unwritable protect(name);
  if (access(name.c_str(), W_OK) == 0)
    GTEST_SKIP() << "root on a file system without the immutable flag: no file is unwritable here";

  VerdalHandle db = Open(name);
  ASSERT_NE(db, 0u);
  VerdalDBProperties props;
  ASSERT_EQ(VERDAL_GetDBProperties(db, &props), 1);
  EXPECT_EQ(props.readOnly, 1);
  EXPECT_STREQ(VERDAL_GetData(db, 0, VERDAL_CURSOR_FIRST, 1, 0), "fest");
  SaveValue(db, "anders");  // a save of a read-only database does nothing
  ASSERT_EQ(VERDAL_CloseDB(db), 1);
  EXPECT_EQ(Open(name, 0, 1), 0u);
  EXPECT_EQ(VERDAL_GetDBCount(), 0);
  EXPECT_EQ(TempFolder::Read(name), bytes);
}
