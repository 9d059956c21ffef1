// Exports through the real bridge, read back as a user would: a CSV file imported again into an
// empty database gives the same values and, with category columns, the same tree; a stored
// definition run as an action; the codes of VERDAL_Export.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "field_helpers.h"
#include "import_host.h"
#include "scripted_ui.h"
#include "temp_folder.h"
#include "verdal.h"

namespace {

// Name, Preis (number), Tag (date); records two levels down, as grouped data is:
// [Obst] { [Kern] { Apfel, Birne; "Williams" } [Stein] { Kirsche } }, [Nuss] { [Schale] { Walnuss } }.
VerdalHandle Shop(bool typedFieldsOnly = false) {
  VerdalHandle db = OpenMemoryDatabase();
  AddField(db, "Name", 0);
  AddField(db, "Preis", 1);
  AddField(db, "Tag", 5);
  if (typedFieldsOnly) return db;
  const int32_t fruit = VERDAL_AddCategory(db, VERDAL_CURSOR_ROOT, "Obst");
  const int32_t pome = VERDAL_AddCategory(db, fruit, "Kern");
  const int32_t stone = VERDAL_AddCategory(db, fruit, "Stein");
  const int32_t shell = VERDAL_AddCategory(db, VERDAL_AddCategory(db, VERDAL_CURSOR_ROOT, "Nuss"), "Schale");
  const int32_t apple = VERDAL_AddRecord(db, pome, "Apfel", 0, "Boskop", 0, 0, nullptr);
  const int32_t pear = VERDAL_AddRecord(db, pome, "Birne", 0, "Birne; \"Williams\"", 0, 0, nullptr);
  VERDAL_AddRecord(db, stone, "Kirsche", 0, "Kirsche", 0, 0, nullptr);
  const int32_t nut = VERDAL_AddRecord(db, shell, "Nuss", 0, "Walnuss", 0, 0, nullptr);
  VERDAL_SetData(db, 1, "1234.5", apple, 0, nullptr, nullptr);
  VERDAL_SetData(db, 1, "-2", pear, 0, nullptr, nullptr);
  VERDAL_SetData(db, 2, "24.12.2026", nut, 0, nullptr, nullptr);
  VERDAL_SetData(db, 2, "01.03.1999", apple, 0, nullptr, nullptr);
  return db;
}

// The file imported into `into`; its CAT columns (the categories, then the record's own title,
// which is no field) give the path.
std::string Import(VerdalHandle into, const TempFolder& dir, const std::string& csv, const char* paths) {
  WriteText(dir / "back.imp", std::string("[ODBC_IMPORT]\nTXT_IMPORT_USE=1\nDATASOURCE=") + csv +
                                  "\nIMPORT_TYPE=2\nTXT_IMPORT_SEPTYPE=1\nTXT_IMPORT_STRING_DELIM=\"\n"
                                  "TXT_IMPORT_CHARSET=UTF-8\nPATH_COLUMNS=" + paths + "\nFREE_COLUMN=CAT3\n");
  if (VERDAL_Import(into, (dir / "back.imp").c_str(), 0, nullptr, nullptr, 0, 0, nullptr, nullptr, 0, nullptr,
                    nullptr, 0) != 1)
    return "import failed: " + std::to_string(VERDAL_GetLastError());
  return Outline(into);
}

TEST(Export, CsvWithCategoryColumnsImportsBackIntoTheSameTree) {
  TempFolder dir;
  const VerdalHandle db = Shop();
  ASSERT_EQ(VERDAL_Export(db, (dir / "out.csv").c_str(), 0, nullptr, 0, VERDAL_EXPORT_CATEGORIES, 0, nullptr,
                          0, 0, 0, 0), 1);
  const VerdalHandle back = Shop(true);
  EXPECT_EQ(Import(back, dir, "out.csv", "CAT1,CAT2"), Outline(db));
  VERDAL_CloseAllDBs();
}

TEST(Export, CsvWithoutCategoryColumnsKeepsEveryValue) {
  TempFolder dir;
  const VerdalHandle db = Shop();
  // The records alone, as a host picks them.
  int32_t count = 0, *cursors = nullptr;
  VERDAL_GetCategoryChildList(db, VERDAL_CURSOR_ROOT, 0, 0, 1, 0, &count, &cursors, 2, nullptr, 0);
  ASSERT_EQ(count, 4);
  ASSERT_EQ(VERDAL_Export(db, (dir / "flat.csv").c_str(), 0, nullptr, 0, 0, count, cursors, 0, 0, 0, 0), 1);
  VERDAL_GetCategoryDeleteChildList(cursors);
  const VerdalHandle back = Shop(true);
  const std::string outline = Import(back, dir, "flat.csv", "");
  std::string flat;  // the records of the original, all at the top now
  for (size_t at = 0, end; (end = Outline(db).find('\n', at)) != std::string::npos; at = end + 1) {
    std::string line = Outline(db).substr(at, end - at);
    if (line.find('[') == std::string::npos) flat += line.substr(line.find_first_not_of(' ')) + "\n";
  }
  EXPECT_EQ(outline, flat);
  VERDAL_CloseAllDBs();
}

// A settings file of export options holding one definition, as the option sheet's Export writes it.
void WriteExportSettings(const std::string& path, const std::string& name, const std::string& definition) {
  std::string b;
  auto u32 = [&](uint32_t v) { b.append(reinterpret_cast<const char*>(&v), 4); };
  auto str = [&](const std::string& t) { u32(static_cast<uint32_t>(t.size())); b += t; };
  u32(0x040B664B), u32(0x0427EEF3), u32(1), str(name), u32(1);                // file, collection
  u32(0x41524D59), u32(1), u32(1), u32(0xFFFFFFFF), str(name), str(""), str(definition);  // entry
  WriteText(path, b);
}

TEST(Export, AStoredDefinitionRunsAsAnActionWithCategoryColumns) {
  TempFolder dir;
  ScriptedUi ui;
  const VerdalHandle db = Shop();
  ui.pickPath = dir / "tabelle.export";
  WriteExportSettings(ui.pickPath, "Tabelle", "[ODBC_EXPORT]\nDATASOURCE=" + (dir / "aus.csv") + "\n");
  ui.script = [](const VerdalSheet* s) {
    Set(s, 0, "&Import", "1");
    EXPECT_EQ(s->pressOk(s), 1);
  };
  ASSERT_EQ(VERDAL_ConfigOptions(db, nullptr, VERDAL_OPTION_EXPORT, 0, "Export", ""), 1);
  int32_t count = 0, *cursors = nullptr;
  VERDAL_GetCategoryChildList(db, VERDAL_CURSOR_ROOT, 0, 0, 1, 0, &count, &cursors, 2, nullptr, 0);
  EXPECT_EQ(VERDAL_ExecAction(db, VERDAL_OPTION_EXPORT, "tabelle", 1, cursors), 1);
  VERDAL_GetCategoryDeleteChildList(cursors);
  const VerdalHandle back = Shop(true);
  const std::string whole = Outline(db);  // Apfel comes third, under [Obst] and [Kern]
  size_t third = 0;
  for (int line = 0; line < 3; ++line) third = whole.find('\n', third) + 1;
  EXPECT_EQ(Import(back, dir, "aus.csv", "CAT1,CAT2"), whole.substr(0, third));

  // The export page has the bridge fill in every key of a new definition; the sheet's Export
  // shows what it holds.
  MakeOption(ui, db, VERDAL_OPTION_EXPORT, "Neu", {}, [](const VerdalSheet* s) {
    Set(s, PageWith(s, "Bearbeiten..."), "Bearbeiten...", "1");
  });
  ui.pickPath = dir / "neu.export";
  ui.script = [](const VerdalSheet* s) {
    Set(s, 0, "&Export", "1");
    s->pressCancel(s);
  };
  VERDAL_ConfigOptions(db, nullptr, VERDAL_OPTION_EXPORT, 0, "Export", "");
  const std::string settings = FileText(dir / "neu.export");
  EXPECT_NE(settings.find("[ODBC_EXPORT]"), std::string::npos);
  EXPECT_NE(settings.find("EXPORT_FORMAT"), std::string::npos);
  EXPECT_EQ(VERDAL_Export(db + 1000, "x.csv", 0, nullptr, 0, 0, 0, nullptr, 0, 0, 0, 0), 0);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_HANDLE);
  VERDAL_CloseAllDBs();
}

// In a process of its own, since a loaded bridge stays loaded.
TEST(Export, WithoutTheBridgeCode14) {
  if (!RunningAlone()) {
    EXPECT_EQ(RunAlone("Export.WithoutTheBridgeCode14", "VERDAL_GATEWAY_DIR", "/nonexistent"), 0);
    return;
  }
  const VerdalHandle db = Shop();
  EXPECT_EQ(VERDAL_Export(db, "/tmp/never.csv", 0, nullptr, 0, 0, 0, nullptr, 0, 0, 0, 0), 0);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_BRIDGE_LOAD);
  VERDAL_CloseAllDBs();
}

}  // namespace
