// Link fields across databases on disk: chains, their candidates, broken and moved links,
// notifications along a chain, and keeping links in step.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "field_helpers.h"
#include "temp_folder.h"
#include "verdal.h"

namespace {

using Ids = std::vector<int32_t>;
using Texts = std::vector<std::string>;

VerdalHandle Create(const std::string& path) { return VERDAL_OpenDB(path.c_str(), nullptr, 1, 0, nullptr, 1, 0, 0); }
std::string N(int32_t cursor) { return std::to_string(cursor); }
// The code a call failed with, -1 when it succeeded.
int32_t Code(int32_t result) { return result == 0 ? VERDAL_GetLastError() : -1; }

void AddLink(VerdalHandle db, const char* name, const std::string& target, const char* field, uint8_t own = 0) {
  TDBFieldParams p = FieldParams(name, 7);
  p.linkDatabase = target.c_str();
  p.linkField = field;
  p.lookInOwnFolder = own;
  VERDAL_AddField(db, &p, -1, 1);
}

// A record whose fields take the given values in order.
int32_t Add(VerdalHandle db, const std::vector<std::string>& values) {
  int32_t cursor = VERDAL_AddRecord(db, VERDAL_CURSOR_ROOT, "r", 0, nullptr, -1, 0, nullptr);
  for (size_t i = 0; i < values.size(); ++i)
    EXPECT_EQ(VERDAL_SetData(db, static_cast<int32_t>(i), values[i].c_str(), cursor, 0, nullptr, nullptr), 1);
  return cursor;
}

std::string Shown(VerdalHandle db, int32_t field, int32_t cursor) {
  const char* text = VERDAL_GetData(db, field, cursor, 0, 1);
  return text != nullptr ? text : "<null>";
}

Ids Filtered(VerdalHandle db, const std::string& filter) {
  int32_t count = 0, *list = nullptr;
  EXPECT_EQ(VERDAL_GetCategoryChildList(db, -2, 0, 0, 1, 0, &count, &list, 2, filter.c_str(), 0), 1);
  Ids ids(list, list + count);
  VERDAL_GetCategoryDeleteChildList(list);
  return ids;
}

// The candidates' texts and ids; the result of the call in `result`.
std::pair<Texts, Ids> CrossData(VerdalHandle db, int32_t field, int32_t node = VERDAL_CURSOR_ROOT,
                                const char* filter = nullptr, int32_t withCategories = 0, int32_t* result = nullptr) {
  int32_t count = -1, *ids = nullptr;
  char** strings = nullptr;
  int32_t r = VERDAL_GetCrossData(db, field, &count, &strings, &ids, nullptr, node, filter, withCategories);
  if (result != nullptr) *result = r;
  std::pair<Texts, Ids> out;
  for (int32_t i = 0; r == 1 && i < count; ++i) {
    out.first.push_back(strings[i]);
    out.second.push_back(ids[i]);
  }
  VERDAL_DeleteGetCrossData(count, strings, ids);
  return out;
}

// c.dbd holds cities with a name and a number; b.dbd links to a city's name and number; a.dbd
// links to b's link, so that its values show c's names through two hops.
class Links : public ::testing::Test {
 protected:
  void SetUp() override {
    c = Create(dir / "c.dbd");
    AddField(c, "Name", 0);
    TDBFieldParams number = FieldParams("Zahl", 1);
    number.decimals = 0;
    VERDAL_AddField(c, &number, -1, 1);
    kiel = Add(c, {"Kiel", "7"});
    bonn = Add(c, {"Bonn", "3"});
    b = Create(dir / "b.dbd");
    AddLink(b, "Ort", dir / "c.dbd", "Name");
    AddLink(b, "Punkte", dir / "c.dbd", "Zahl");
    inBonn = Add(b, {N(bonn), N(bonn)});
    inKiel = Add(b, {N(kiel), N(kiel)});
    a = Create(dir / "a.dbd");
    AddLink(a, "Kunde", dir / "b.dbd", "Ort");
    toBonn = Add(a, {N(inBonn)});
    toKiel = Add(a, {N(inKiel)});
  }
  void TearDown() override {
    VERDAL_SetTryResolveDBReferencesLocal(0);
    VERDAL_SetNotification(nullptr, 0);
    VERDAL_CloseAllDBs();
  }

  TempFolder dir;
  VerdalHandle a = 0, b = 0, c = 0;
  int32_t kiel = -1, bonn = -1, inBonn = -1, inKiel = -1, toBonn = -1, toKiel = -1;
};

TEST_F(Links, ChainShowsComparesAndFiltersByTheFarValue) {
  EXPECT_EQ(Shown(a, 0, toBonn) + Shown(a, 0, toKiel), "BonnKiel");
  EXPECT_EQ(VERDAL_GetData(a, 0, toBonn, 1, 0), N(inBonn));
  EXPECT_STREQ(VERDAL_ConvertData(a, 0, N(inKiel).c_str(), 0, 1, 0), "Kiel");
  int32_t order = 0;
  ASSERT_EQ(VERDAL_Compare(a, toBonn, toKiel, 0, 0, 0, &order), 1);
  EXPECT_LT(order, 0);  // Bonn before Kiel, though the stored cursors run the other way
  TCrossInfo info;
  ASSERT_EQ(VERDAL_GetCrossInfo(a, 0, &info), 1);
  EXPECT_EQ(info.path + std::string("|") + info.fieldName, dir / "c.dbd|Name");
  TDBFieldParams near{}, far{};
  ASSERT_EQ(VERDAL_GetFieldInfo(b, 1, &near, &far), 1);
  EXPECT_EQ(near.dataType * 10 + far.dataType, 71);  // the far field's type
  EXPECT_STREQ(far.name, "Zahl");
  ListDisplayFieldRecord column{}, nameColumn{};
  ASSERT_EQ(VERDAL_GetListDisplayFieldInfo(b, nullptr, 1, &column), 1);
  ASSERT_EQ(VERDAL_GetListDisplayFieldInfo(b, nullptr, 0, &nameColumn), 1);
  EXPECT_EQ(column.alignment * 10 + nameColumn.alignment, 10);  // aligned as the far field

  // A filter on a link compares what it shows: quoted as text for a name, as a number for Zahl.
  const std::string byName = VERDAL_GetInternalParseString(a, 0, "Kiel", 0);
  EXPECT_NE(byName.find("\"Kiel\""), std::string::npos);
  EXPECT_EQ(Filtered(a, byName), Ids{toKiel});
  const std::string byNumber = VERDAL_GetInternalParseString(b, 1, "3", 0);
  EXPECT_EQ(byNumber.find('"'), std::string::npos);
  EXPECT_EQ(Filtered(b, byNumber), Ids{inBonn});

  // Seen at the near end at once: an edit at the far end, the middle database made anew with its
  // fields in another order, the middle database closed (the link opens it again).
  ASSERT_EQ(VERDAL_SetData(c, 0, "Hamburg", bonn, 0, nullptr, nullptr), 1);
  EXPECT_EQ(Shown(a, 0, toBonn), "Hamburg");
  ASSERT_EQ(VERDAL_EmptyData(b, 0), 1);
  AddLink(b, "Punkte", dir / "c.dbd", "Zahl");
  AddLink(b, "Ort", dir / "c.dbd", "Name");
  ASSERT_EQ(VERDAL_SetData(a, 0, N(Add(b, {N(kiel), N(bonn)})).c_str(), toBonn, 0, nullptr, nullptr), 1);
  EXPECT_EQ(Shown(a, 0, toBonn), "Hamburg");
  ASSERT_EQ(VERDAL_CloseDB(b), 1);
  EXPECT_EQ(Shown(a, 0, toBonn), "Hamburg");
  EXPECT_EQ(VERDAL_GetDBCount(), 3);
}

TEST_F(Links, CandidatesComeFromTheEndOfTheChain) {
  EXPECT_EQ(CrossData(a, 0), std::make_pair(Texts{"Kiel", "Bonn"}, Ids{kiel, bonn}));
  const std::string onlyKiel = VERDAL_GetInternalParseString(c, 0, "Kiel", 0);
  EXPECT_EQ(CrossData(a, 0, VERDAL_CURSOR_ROOT, onlyKiel.c_str()).second, Ids{kiel});
  // A record as node stands for itself, filter or not; a category gives its records.
  EXPECT_EQ(CrossData(a, 0, bonn, onlyKiel.c_str()).first, Texts{"Bonn"});
  int32_t group = VERDAL_AddCategory(c, -2, "Gruppe");
  int32_t inGroup = VERDAL_AddRecord(c, group, "r", 0, "Lund", 0, 0, nullptr);
  EXPECT_EQ(CrossData(a, 0, group, nullptr, 1).second, Ids{inGroup});
  EXPECT_EQ(CrossData(a, 0, VERDAL_CURSOR_ROOT, nullptr, 1).second.size(), 4u);  // with the category
  EXPECT_EQ(CrossData(c, 1).first, (Texts{"7", "3", ""}));  // a plain field lists its own values

  int32_t result = -1;
  for (auto [node, filter, field, code] : {std::tuple{9999, "", 0, VERDAL_ERR_CURSOR},
                                           {VERDAL_CURSOR_ROOT, "((", 0, VERDAL_ERR_QUERY},
                                           {VERDAL_CURSOR_ROOT, "", 5, VERDAL_ERR_FIELD}}) {
    CrossData(a, field, node, filter, 0, &result);
    EXPECT_EQ(Code(result), code);
  }
}

TEST_F(Links, BrokenChainsGiveCodesAndEmptyValues) {
  VerdalHandle d = Create(dir / "d.dbd"), e = Create(dir / "e.dbd");
  AddField(d, "Text", 0);
  AddLink(e, "Zurueck", dir / "d.dbd", "Text");  // back into d: a chain may not come home
  const std::string missing = dir / "fehlt.dbd";
  const struct {
    const char* name;
    std::string target;
    const char* field;
  } broken[] = {{"Leer", "", "Name"}, {"Fehlt", missing, "Name"}, {"FeldFehlt", dir / "c.dbd", "Nope"},
                {"Kreis", dir / "e.dbd", "Zurueck"}};
  for (const auto& k : broken) AddLink(d, k.name, k.target, k.field);
  AddLink(d, "Selbst", dir / "d.dbd", "Text");  // the first link may stay in its database
  int32_t self = Add(d, {"eigen", "0", "0", "0", "0", "0"});
  ASSERT_EQ(VERDAL_SetData(d, 5, N(self).c_str(), self, 0, nullptr, nullptr), 1);
  for (int32_t field = 1; field <= 4; ++field) {
    SCOPED_TRACE(broken[field - 1].name);
    TCrossInfo info;
    std::memset(&info, 'x', sizeof info);
    EXPECT_EQ(Code(VERDAL_GetCrossInfo(d, field, &info)), VERDAL_ERR_CROSS_TABLE);
    EXPECT_STREQ(info.path, "");
    EXPECT_EQ(Shown(d, field, self), "");
    int32_t result = -1;
    CrossData(d, field, VERDAL_CURSOR_ROOT, nullptr, 0, &result);
    EXPECT_EQ(Code(result), VERDAL_ERR_CROSS_TABLE);
  }
  EXPECT_EQ(Shown(d, 5, self), "eigen");
  EXPECT_FALSE(std::filesystem::exists(missing));  // following a link never makes a file
  EXPECT_EQ(Code(VERDAL_GetCrossInfo(d, 0, nullptr)), VERDAL_ERR_CROSS_FIELD);
  EXPECT_EQ(Code(VERDAL_GetCrossInfo(d, 99, nullptr)), VERDAL_ERR_FIELD);
  EXPECT_EQ(Code(VERDAL_GetCrossInfo(0, 0, nullptr)), VERDAL_ERR_HANDLE);
}

TEST_F(Links, MovedLinksResolveBesideTheirDatabase) {
  VerdalHandle m = Create(dir / "m.dbd");
  AddLink(m, "Global", "/nicht/mehr/da/c.dbd", "Name");
  AddLink(m, "Feld", "/nicht/mehr/da/c.dbd", "Name", 1);  // looks beside its database by itself
  int32_t r = Add(m, {N(kiel), N(bonn)});
  EXPECT_EQ(Shown(m, 0, r) + "|" + Shown(m, 1, r), "|Bonn");
  TDBFieldParams p{};
  ASSERT_EQ(VERDAL_GetFieldInfo(m, 1, &p, nullptr), 1);
  EXPECT_EQ(std::string(p.linkDatabase), dir / "c.dbd");  // from now on, and saved with the field
  VERDAL_SetTryResolveDBReferencesLocal(1);
  EXPECT_EQ(Shown(m, 0, r), "Kiel");
}

// What the host hears: database, reason, cursor.
using Told = std::tuple<VerdalHandle, int32_t, int32_t>;
std::vector<Told> g_told;
int32_t Listen(intptr_t, VerdalNotification* n) {
  g_told.emplace_back(static_cast<VerdalHandle>(n->database), n->reason, n->cursor);
  return 1;
}

TEST_F(Links, TheCurrentRecordTravelsAlongTheChain) {
  g_told.clear();
  VERDAL_SetNotification(&Listen, 0);
  int32_t category = -1;
  ASSERT_EQ(VERDAL_Seek(a, toBonn, 0, 0, 0, 0, &category, 2), toBonn);
  EXPECT_EQ(Shown(b, 0, VERDAL_CURSOR_CURRENT) + Shown(c, 0, VERDAL_CURSOR_CURRENT), "BonnBonn");
  // About to change: told of the record still current (the last added), and its chain.
  EXPECT_EQ(g_told, (std::vector<Told>{{a, 1, toKiel}, {b, 1, inKiel}, {c, 1, kiel},
                                       {a, 2, toBonn}, {b, 2, inBonn}, {c, 2, bonn}}));
  // Setting a link tells the linked database of the record now named, and the chain beyond it.
  g_told.clear();
  ASSERT_EQ(VERDAL_SetData(a, 0, N(inKiel).c_str(), toBonn, 0, nullptr, nullptr), 1);
  EXPECT_EQ(g_told, (std::vector<Told>{{a, 8, toBonn}, {b, 2, inKiel}, {c, 2, kiel}}));
}

TEST_F(Links, UpdateCrossValueAndExistsReferenceEntry) {
  int32_t alsoBonn = Add(b, {N(bonn), "0"});
  VERDAL_GetData(b, 0, 9999, 0, 0);  // leaves code 5, which a successful update leaves standing
  ASSERT_EQ(VERDAL_UpdateCrossValue(c, b, 0, bonn, kiel), 1);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_CURSOR);
  // The first holder only; a link to another field of c stays.
  EXPECT_EQ(Shown(b, 0, inBonn) + Shown(b, 0, alsoBonn) + Shown(b, 1, inBonn), "KielBonn3");
  EXPECT_EQ(Code(VERDAL_UpdateCrossValue(c, b, 1, 12345, kiel)), VERDAL_ERR_CURSOR);
  EXPECT_EQ(Code(VERDAL_UpdateCrossValue(c, b, 9, bonn, kiel)), VERDAL_ERR_FIELD);
  EXPECT_EQ(Code(VERDAL_UpdateCrossValue(c, 0, 0, bonn, kiel)), VERDAL_ERR_HANDLE);

  EXPECT_EQ(VERDAL_ExistsReferenceEntry(b, c, alsoBonn, 0), 1);
  EXPECT_EQ(VERDAL_ExistsReferenceEntry(b, OpenMemoryDatabase(), alsoBonn, 0), 0);  // the one named decides
  ASSERT_EQ(VERDAL_DeleteRecord(c, bonn, 0, 0, nullptr, 0), 1);
  EXPECT_EQ(VERDAL_ExistsReferenceEntry(b, c, alsoBonn, 0), 0);
  EXPECT_EQ(Shown(b, 0, alsoBonn), "");  // a link whose record has gone shows empty
  EXPECT_EQ(VERDAL_ExistsReferenceEntry(c, b, kiel, 0), 0);  // no link field: no error either
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_NONE);
  EXPECT_EQ(Code(VERDAL_ExistsReferenceEntry(b, c, 9999, 0)), VERDAL_ERR_CURSOR);
}

TEST_F(Links, LinkedDatabasesOpenWithTheirDatabaseOnce) {
  VERDAL_CloseAllDBs();
  VerdalHandle reopened = VERDAL_OpenDB((dir / "a.dbd").c_str(), nullptr, 0, 0, nullptr, 1, 0, 0);
  EXPECT_EQ(VERDAL_GetDBCount(), 3);  // b and c came along
  EXPECT_EQ(Shown(reopened, 0, toBonn), "Bonn");
  // Another name of an open file gives the same database.
  std::filesystem::create_symlink(dir / "c.dbd", dir / "alias.dbd");
  VerdalHandle viaAlias = VERDAL_OpenDB((dir / "alias.dbd").c_str(), nullptr, 0, 0, nullptr, 1, 0, 0);
  EXPECT_EQ(VERDAL_GetDBCount(), 3);
  EXPECT_EQ(Shown(viaAlias, 0, kiel), "Kiel");
}

}  // namespace
