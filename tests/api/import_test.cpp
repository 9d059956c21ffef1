// Imports of text files through the bridge, in every mode, and the write-back of a linked text
// file at close.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "field_helpers.h"
#include "import_host.h"
#include "temp_folder.h"
#include "verdal.h"

namespace {

std::vector<int32_t> progressSeen;
void Progress(int32_t percent) { progressSeen.push_back(percent); }

int32_t Import(VerdalHandle db, const std::string& input, intptr_t mode = 0, int32_t flags = 0,
               int32_t* count = nullptr, int32_t** cursors = nullptr) {
  return VERDAL_Import(db, input.c_str(), 0, nullptr, Progress, mode, flags, count, cursors, 0, nullptr,
                       nullptr, 0);
}

std::string Definition(const std::string& source, int mode, const std::string& more = "") {
  return "[ODBC_IMPORT]\r\nTXT_IMPORT_USE=1\r\nDATASOURCE=" + source + "\r\nIMPORT_TYPE=" +
         std::to_string(mode) + "\r\nTXT_IMPORT_SEPTYPE=1\r\nTXT_IMPORT_STRING_DELIM=\"\r\n" + more;
}

class ImportTest : public ::testing::Test {
 protected:
  void SetUp() override {
    progressSeen.clear();
    db = OpenMemoryDatabase();
    // Quoted separators, a doubled quote, a line break inside quotes, UTF-8 text, and the paths
    // of the edge cases: a case-blind shared category, a path that stops after its first level
    // (a category and no record), and an empty first level (a record at the top).
    WriteText(dir / "people.csv",
              "Region;City;Name;Price;Note\n"
              "Nord;Kiel;Anna;1,50;\"a;b\"\n"
              "nord;Kiel;Bert;2;\"line1\nline2\"\n"
              "S\xC3\xBC" "d;;Cora;3;x\n"
              ";Ulm;Dora;4;\"say \"\"hi\"\"\"\n");
    WriteText(dir / "people.imp", Definition(dir / "people.csv", 0, "PATH_COLUMNS=Region,City\r\n"));
    ASSERT_EQ(Import(db, dir / "people.imp", 0, 0, &count, &cursors), 1) << VERDAL_GetLastError();
  }
  void TearDown() override {
    VERDAL_GetCategoryDeleteChildList(cursors);
    VERDAL_CloseDB(db);
  }
  TempFolder dir;
  VerdalHandle db = 0;
  int32_t count = -1;
  int32_t* cursors = nullptr;
};

const char* const kImported =
    "[Nord]\n"
    "  [Kiel]\n"
    "    Anna|1,50|a;b\n"
    "    Bert|2|line1\nline2\n"
    "[S\xFC" "d]\n"
    "Dora|4|say \"hi\"\n";

}  // namespace

TEST_F(ImportTest, PathsBecomeCategoriesAndRowsRecords) {
  EXPECT_EQ(Outline(db), kImported);
  EXPECT_EQ(VERDAL_GetFieldSize(db), 3);  // path columns make no fields
  EXPECT_EQ(progressSeen, (std::vector<int32_t>{0, 25, 50, 75, 0}));
  ASSERT_EQ(count, 3);
  EXPECT_STREQ(VERDAL_GetData(db, 0, cursors[0], 1, 0), "Anna");
  EXPECT_STREQ(VERDAL_GetData(db, 0, cursors[2], 1, 0), "Dora");
}

TEST_F(ImportTest, UpdateMatchesNodeIdsAndFieldsByName) {
  // An id that names a place changes it; an empty or unknown id adds a record; the column the
  // file lacks keeps its value; "zepnodeid" in any case is no field.
  WriteText(dir / "update.csv", "zepnodeid;Name;Price\n" + std::to_string(cursors[0]) +
                                    ";Anna2;9\n;Eve;5\n999999;Finn;6\n");
  ASSERT_EQ(Import(db, dir / "update.csv", 1), 1);
  EXPECT_EQ(Outline(db), std::string(kImported).replace(std::string(kImported).find("Anna|1,50"), 9, "Anna2|9") +
                             "Eve|5|\nFinn|6|\n");
  EXPECT_EQ(VERDAL_GetFieldSize(db), 3);

  // A column that names no field ends the import with nothing changed and no error code.
  const std::string before = Outline(db);
  WriteText(dir / "stray.csv", "Name;Nope\nX;Y\n");
  EXPECT_EQ(Import(db, dir / "stray.csv", 1), 0);
  EXPECT_EQ(VERDAL_GetLastError(), 0);
  EXPECT_EQ(Outline(db), before);
}

TEST_F(ImportTest, AddFindsPathsRegardlessOfCase) {
  WriteText(dir / "more.csv", "Region;City;Name\nNORD;kiel;Gus\nWest;Bonn;Hal\n");
  WriteText(dir / "more.imp", Definition(dir / "more.csv", 2, "PATH_COLUMNS=Region,City\r\n"));
  ASSERT_EQ(Import(db, dir / "more.imp"), 1);
  EXPECT_EQ(Outline(db),
            "[Nord]\n  [Kiel]\n    Anna|1,50|a;b\n    Bert|2|line1\nline2\n    Gus||\n"
            "[S\xFC" "d]\nDora|4|say \"hi\"\n[West]\n  [Bonn]\n    Hal||\n");
}

TEST(Import, ValuesTakeTheFieldsTypesUnlessRaw) {
  TempFolder dir;
  WriteText(dir / "n.csv", "Name;Price\nX;1,5\n");
  struct Case {
    int32_t flags;
    const char* outline;
  };
  for (const Case& c : {Case{0, "X|1.50\n"}, Case{VERDAL_IMPORT_RAW, "X|1,5\n"},
                        Case{VERDAL_IMPORT_CONFIGURE_ONLY, ""}}) {
    VerdalHandle db = OpenMemoryDatabase();
    AddField(db, "Name", 0);
    AddField(db, "Price", 1);
    EXPECT_EQ(Import(db, dir / "n.csv", 2, c.flags), 1);
    EXPECT_EQ(Outline(db), c.outline) << c.flags;
    VERDAL_CloseDB(db);
  }
}

// A progress callback that changes the tree would meet places not yet in it: it is refused.
VerdalHandle importing = 0;
std::vector<int32_t> nestedResults;
void ChangeFromProgress(int32_t) {
  nestedResults.push_back(VERDAL_DeleteRecord(importing, 0, 0, 1, nullptr, 1));
  nestedResults.push_back(VERDAL_GetLastError());
  nestedResults.push_back(VERDAL_AddRecord(importing, 1, "", 0, nullptr, -1, 0, nullptr));
  nestedResults.push_back(VERDAL_GetLastError());
}

TEST(Import, ProgressCallbackCannotChangeTheTree) {
  TempFolder dir;
  WriteText(dir / "r.csv", "Region;Name\nA;x\nA;y\n");
  WriteText(dir / "r.imp", Definition(dir / "r.csv", 0, "PATH_COLUMNS=Region\r\n"));
  importing = OpenMemoryDatabase();
  ASSERT_EQ(VERDAL_Import(importing, (dir / "r.imp").c_str(), 0, nullptr, ChangeFromProgress, 0, 0, nullptr,
                          nullptr, 0, nullptr, nullptr, 0), 1);
  EXPECT_EQ(Outline(importing), "[A]\n  x\n  y\n");
  ASSERT_EQ(nestedResults.size(), 12u);  // at the start, after the second row and at the end
  EXPECT_EQ(std::vector<int32_t>(nestedResults.begin() + 4, nestedResults.begin() + 8),
            (std::vector<int32_t>{0, VERDAL_ERR_TARGET, -1, VERDAL_ERR_TARGET}));
  VERDAL_CloseDB(importing);
}

TEST(Import, RefusalsLeaveTheDatabaseAsItWas) {
  TempFolder dir;
  VerdalHandle db = OpenMemoryDatabase();
  AddField(db, "Name", 0);
  VERDAL_AddRecord(db, VERDAL_CURSOR_ROOT, "", 0, "kept", 0, 0, nullptr);
  WriteText(dir / "gone.imp", Definition(dir / "missing.csv", 0));
  WriteText(dir / "open.csv", "Name\n\"never closed\n");
  WriteText(dir / "twice.csv", "Name;NAME\nx;y\n");  // fields are found by name
  for (const std::string& input : {dir / "gone.imp", dir / "open.csv", dir / "none.csv", dir / "twice.csv"}) {
    EXPECT_EQ(Import(db, input), 0) << input;
    EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_IMPORT) << input;
    EXPECT_EQ(Outline(db), "kept\n");
  }
  EXPECT_EQ(VERDAL_OpenDB((dir / "gone.imp").c_str(), nullptr, 1, 0, nullptr, 0, 0, 0), 0u);
  EXPECT_EQ(VERDAL_Import(db + 1000, nullptr, 0, nullptr, nullptr, 0, 0, nullptr, nullptr, 0, nullptr,
                          nullptr, 0), 0);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_HANDLE);
  VERDAL_CloseDB(db);
}

TEST(Import, WithoutTheBridgeCode14) {
  if (!RunningAlone()) {
    EXPECT_EQ(RunAlone("Import.WithoutTheBridgeCode14", "VERDAL_GATEWAY_DIR", "/nonexistent"), 0);
    return;
  }
  TempFolder dir;
  WriteText(dir / "a.csv", "Name\nx\n");
  VerdalHandle db = OpenMemoryDatabase();
  EXPECT_EQ(Import(db, dir / "a.csv"), 0);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_BRIDGE_LOAD);
  EXPECT_EQ(Outline(db), "");
  VERDAL_CloseDB(db);
}

// A linked text file opened through its definition: at close, a changed record's line is
// rewritten, a new record appended, a deleted record's line dropped, and other lines and the
// column line stay as they were.
TEST(Import, LinkedTextFileIsWrittenBackAtClose) {
  TempFolder dir;
  WriteText(dir / "p.csv", "id;Name;City\r\n1;\"Anna\";\"Kiel\"\r\n2;\"Bert\";\"Ulm\"\r\n  3 ;\"Cora\";\"Bonn\"\r\n");
  WriteText(dir / "p.imp", Definition(dir / "p.csv", 3, "IDENTFIELD=id\r\n"));
  VerdalHandle db = VERDAL_OpenDB((dir / "p.imp").c_str(), nullptr, 1, 0, nullptr, 0, 0, 0);
  ASSERT_NE(db, 0u) << VERDAL_GetLastError();
  VerdalDBProperties properties{};
  VERDAL_GetDBProperties(db, &properties);
  EXPECT_EQ(properties.importMode, 1);
  EXPECT_EQ(Outline(db), "1|Anna|Kiel\n2|Bert|Ulm\n3|Cora|Bonn\n");
  int32_t count = 0;
  int32_t* cursors = nullptr;
  VERDAL_GetCategoryChildList(db, VERDAL_CURSOR_ROOT, 0, 0, 1, 0, &count, &cursors, 3, nullptr, 0);
  ASSERT_EQ(count, 3);
  char error[1024] = {};
  EXPECT_EQ(VERDAL_SetData(db, 1, "Bernd", cursors[1], 0, error, nullptr), 1);
  EXPECT_EQ(VERDAL_DeleteRecord(db, cursors[2], 0, 1, nullptr, 1), 1);
  VERDAL_GetCategoryDeleteChildList(cursors);
  const int32_t added = VERDAL_AddRecord(db, VERDAL_CURSOR_ROOT, "", 0, "Dora", 1, 0, nullptr);
  ASSERT_GE(added, 0);
  EXPECT_EQ(VERDAL_SetData(db, 2, "Hof", added, 0, error, nullptr), 1);
  EXPECT_STREQ(VERDAL_GetData(db, 0, added, 1, 0), "4");  // the identity counts on
  EXPECT_EQ(VERDAL_CloseDB(db), 1);
  EXPECT_EQ(FileText(dir / "p.csv"), "id;Name;City\r\n1;\"Anna\";\"Kiel\"\r\n2;\"Bernd\";\"Ulm\"\r\n4;\"Dora\";\"Hof\"\r\n");
  EXPECT_FALSE(std::filesystem::exists(dir / "p.dbd"));
}
