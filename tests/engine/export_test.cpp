// The exchange file an export writes, read back with the bridge's own reader: which places become
// rows, the column descriptions with their widths, the two strings per value, and the category
// columns with their companion of paths.
#include "engine/export.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "api/field_helpers.h"
#include "api/temp_folder.h"
#include "engine/db_manager.h"
#include "exchange/export_exchange.h"
#include "io/fileex.h"
#include "model/node_store.h"
#include "verdal.h"

namespace {

using namespace verdal;

struct ReadBack {
  exchange::ExportHeader header;
  std::vector<std::vector<std::string>> rows;  // internal, display, internal, display, ...
  std::vector<std::vector<std::string>> paths;
};

ReadBack Export(VerdalHandle handle, int32_t flags, std::vector<int32_t> cursors, const std::string& path) {
  engine::TDBManager& db = *engine::AcceptHandle(handle);
  model::Renumber(db.store);
  engine::ExportRequest request;
  request.flags = flags;
  request.count = static_cast<int32_t>(cursors.size());
  request.cursors = cursors.empty() ? nullptr : cursors.data();
  engine::WriteExportExchange(db, engine::ExportPlaces(db, request),
                              (flags & exchange::kExportCategoryColumns) != 0, path);
  ReadBack out;
  TFileEx file;
  EXPECT_TRUE(file.Open(path.c_str(), TFileEx::kRead));
  exchange::ReadExportHeader(file, out.header);
  std::vector<std::string> internal, display;
  for (int32_t r = 0; r < out.header.rowCount; ++r) {
    exchange::ReadExportRow(file, out.header, internal, display);
    std::vector<std::string> row;
    for (size_t i = 0; i < internal.size(); ++i) row.insert(row.end(), {internal[i], display[i]});
    out.rows.push_back(row);
  }
  EXPECT_EQ(file.Tell(), file.GetLength()) << "nothing follows the rows";
  TFileEx companion;
  if (companion.Open((path + exchange::kPathsSuffix).c_str(), TFileEx::kRead)) {
    std::vector<std::string> names;
    while (companion.Tell() < companion.GetLength()) {
      exchange::ReadExportPath(companion, names);
      out.paths.push_back(names);
    }
  }
  return out;
}

class ExportFile : public ::testing::Test {
 protected:
  void SetUp() override {
    db = OpenMemoryDatabase();
    TDBFieldParams name = FieldParams("Name", 0);
    name.displayName = "Voller Name";
    ASSERT_EQ(VERDAL_AddField(db, &name, -1, 1), 0);
    ASSERT_EQ(AddField(db, "Preis", 1), 1);
    ASSERT_EQ(AddField(db, "Tag", 5), 2);
    // [Obst] { [Kern] { Apfel }, Birne }, Nuss: one record per depth.
    const int32_t fruit = VERDAL_AddCategory(db, VERDAL_CURSOR_ROOT, "Obst");
    const int32_t pome = VERDAL_AddCategory(db, fruit, "Kern");
    apple = VERDAL_AddRecord(db, pome, "Apfel", 0, "Boskop", 0, 0, nullptr);
    pear = VERDAL_AddRecord(db, fruit, "Birne", 0, nullptr, 0, 0, nullptr);
    nut = VERDAL_AddRecord(db, VERDAL_CURSOR_ROOT, "Nuss", 0, "Walnuss", 0, 0, nullptr);
    ASSERT_EQ(VERDAL_SetData(db, 1, "1234.5", apple, 0, nullptr, nullptr), 1);
    ASSERT_EQ(VERDAL_SetData(db, 2, "24.12.2026", nut, 0, nullptr, nullptr), 1);
  }
  void TearDown() override { VERDAL_CloseDB(db); }

  VerdalHandle db = 0;
  int32_t apple = 0, pear = 0, nut = 0;
  TempFolder folder;
};

TEST_F(ExportFile, WholeTreeTakesEveryPlaceWithTypedDescriptionsAndTwoStringsAValue) {
  const ReadBack out = Export(db, 0, {}, folder / "x");
  ASSERT_EQ(out.header.rowCount, 5);  // two categories and three records, depth-first
  ASSERT_EQ(out.header.categoryColumns, 0);
  ASSERT_EQ(out.header.columns.size(), 3u);
  const auto& c = out.header.columns;
  EXPECT_EQ(c[0].name + "/" + c[0].displayName, "Name/Voller Name");
  EXPECT_EQ(c[1].name + "/" + c[1].displayName, "Preis/Preis");  // display name falls back
  EXPECT_EQ(c[0].sqlType, 12);
  EXPECT_NE(c[1].sqlType, 12);  // a number column is typed as one
  // The longest stored value; a field never filled still has width 1.
  EXPECT_EQ(c[0].width, 7);
  EXPECT_EQ(c[1].width, static_cast<int32_t>(std::string(VERDAL_GetData(db, 1, apple, 1, 0)).size()));
  EXPECT_TRUE(out.paths.empty()) << "no companion without category columns";

  // Row 3 is Apfel: stored and shown value; a category row and a missing value are empty strings.
  EXPECT_EQ(out.rows[2][0], "Boskop");
  EXPECT_EQ(out.rows[2][1], "Boskop");
  EXPECT_EQ(out.rows[2][3], VERDAL_GetData(db, 1, apple, 0, 0));
  EXPECT_EQ(out.rows[0], std::vector<std::string>(6, out.rows[0][0]));
  EXPECT_EQ(out.rows[0][0], "");
  EXPECT_EQ(out.rows[4][5], "24.12.2026");
}

TEST_F(ExportFile, CategoryColumnsTakeRecordsOnlyAndTheirPaths) {
  const ReadBack out = Export(db, exchange::kExportCategoryColumns, {}, folder / "x");
  ASSERT_EQ(out.header.rowCount, 3);
  ASSERT_EQ(out.header.categoryColumns, 3);  // Apfel lies at depth 2
  ASSERT_EQ(out.header.columns.size(), 6u);
  EXPECT_EQ(out.header.columns[2].name, "CAT3");
  // A depth's width is the longest name of a place at that depth: Nuss, Birne, Apfel.
  EXPECT_EQ(out.header.columns[0].width, 4);
  EXPECT_EQ(out.header.columns[1].width, 5);
  EXPECT_EQ(out.header.columns[2].width, 5);
  EXPECT_EQ(out.rows[0].size(), 6u) << "rows carry no category values";
  const std::vector<std::vector<std::string>> paths = {{"Obst", "Kern", "Apfel"}, {"Obst", "Birne"}, {"Nuss"}};
  EXPECT_EQ(out.paths, paths);
}

TEST_F(ExportFile, ChosenCursorsInTheirOrderSkippingThoseGone) {
  ReadBack out = Export(db, exchange::kExportCategoryColumns, {nut, 9999, apple}, folder / "x");
  ASSERT_EQ(out.header.rowCount, 2);
  EXPECT_EQ(out.rows[0][0], "Walnuss");
  EXPECT_EQ(out.rows[1][0], "Boskop");
  EXPECT_EQ(out.header.categoryColumns, 3);

  // Records only at the top: one category column, "CAT1". An empty database: no rows.
  out = Export(db, exchange::kExportCategoryColumns, {nut}, folder / "y");
  EXPECT_EQ(out.header.categoryColumns, 1);
  EXPECT_EQ(out.header.columns[0].name, "CAT1");
  VERDAL_EmptyData(db, 1);
  out = Export(db, exchange::kExportCategoryColumns | 0x1234, {}, folder / "z");
  EXPECT_EQ(out.header.rowCount, 0);
  EXPECT_EQ(out.header.columns.size(), 4u);
}

}  // namespace
