// Link fields across databases on disk: chains, their candidates, broken and moved links,
// notifications along a chain, and keeping links in step.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "field_helpers.h"
#include "temp_folder.h"
#include "verdal.h"

namespace {

VerdalHandle Create(const std::string& path) { return VERDAL_OpenDB(path.c_str(), nullptr, 1, 0, nullptr, 1, 0, 0); }

int32_t AddLink(VerdalHandle db, const char* name, const std::string& target, const char* field,
                uint8_t flags = 0) {
  TDBFieldParams p = FieldParams(name, 7);
  p.linkDatabase = target.c_str();
  p.linkField = field;
  p.lookInOwnFolder = flags;
  return VERDAL_AddField(db, &p, -1, 1);
}

// A record whose fields take the given values in order.
int32_t Add(VerdalHandle db, std::vector<const char*> values) {
  int32_t cursor = VERDAL_AddRecord(db, VERDAL_CURSOR_ROOT, "r", 0, nullptr, -1, 0, nullptr);
  for (size_t i = 0; i < values.size(); ++i)
    EXPECT_EQ(VERDAL_SetData(db, static_cast<int32_t>(i), values[i], cursor, 0, nullptr, nullptr), 1);
  return cursor;
}

std::string Shown(VerdalHandle db, int32_t field, int32_t cursor) {
  const char* text = VERDAL_GetData(db, field, cursor, 0, 1);
  return text != nullptr ? text : "<null>";
}

struct Candidates {
  int32_t result = 0;
  std::vector<int32_t> ids;
  std::vector<std::string> texts;
};

Candidates CrossData(VerdalHandle db, int32_t field, int32_t node = VERDAL_CURSOR_ROOT,
                     const char* filter = nullptr, int32_t withCategories = 0) {
  Candidates c;
  int32_t count = -1;
  char** strings = nullptr;
  int32_t* ids = nullptr;
  c.result = VERDAL_GetCrossData(db, field, &count, &strings, &ids, nullptr, node, filter, withCategories);
  for (int32_t i = 0; c.result == 1 && i < count; ++i) {
    c.ids.push_back(ids[i]);
    c.texts.push_back(strings[i]);
  }
  VERDAL_DeleteGetCrossData(count, strings, ids);
  return c;
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
    inBonn = Add(b, {std::to_string(bonn).c_str(), std::to_string(bonn).c_str()});
    inKiel = Add(b, {std::to_string(kiel).c_str(), std::to_string(kiel).c_str()});
    a = Create(dir / "a.dbd");
    AddLink(a, "Kunde", dir / "b.dbd", "Ort");
    toBonn = Add(a, {std::to_string(inBonn).c_str()});
    toKiel = Add(a, {std::to_string(inKiel).c_str()});
  }
  void TearDown() override {
    VERDAL_SetTryResolveDBReferencesLocal(0);
    VERDAL_CloseAllDBs();
  }

  TempFolder dir;
  VerdalHandle a = 0, b = 0, c = 0;
  int32_t kiel = -1, bonn = -1, inBonn = -1, inKiel = -1, toBonn = -1, toKiel = -1;
};

TEST_F(Links, ChainShowsComparesAndFiltersByTheFarValue) {
  EXPECT_EQ(Shown(a, 0, toBonn), "Bonn");
  EXPECT_EQ(Shown(a, 0, toKiel), "Kiel");
  EXPECT_STREQ(VERDAL_GetData(a, 0, toBonn, 1, 0), std::to_string(inBonn).c_str());
  EXPECT_STREQ(VERDAL_ConvertData(a, 0, std::to_string(inKiel).c_str(), 0, 1, 0), "Kiel");
  int32_t order = 0;
  ASSERT_EQ(VERDAL_Compare(a, toBonn, toKiel, 0, 0, 0, &order), 1);
  EXPECT_LT(order, 0);  // Bonn before Kiel, though the stored cursors run the other way

  TCrossInfo info;
  ASSERT_EQ(VERDAL_GetCrossInfo(a, 0, &info), 1);
  EXPECT_EQ(std::string(info.path), dir / "c.dbd");
  EXPECT_STREQ(info.fieldName, "Name");
  TDBFieldParams near{}, far{};
  ASSERT_EQ(VERDAL_GetFieldInfo(b, 1, &near, &far), 1);
  EXPECT_EQ(near.dataType, 7);
  EXPECT_EQ(far.dataType, 1);
  EXPECT_STREQ(far.name, "Zahl");

  // A filter on a link compares what it shows: quoted as text for a name, as a number for Zahl.
  const std::string byName = VERDAL_GetInternalParseString(a, 0, "Kiel", 0);
  EXPECT_NE(byName.find("\"Kiel\""), std::string::npos);
  int32_t count = 0;
  int32_t* list = nullptr;
  ASSERT_EQ(VERDAL_GetCategoryChildList(a, -2, 0, 0, 1, 0, &count, &list, 2, byName.c_str(), 0), 1);
  ASSERT_EQ(count, 1);
  EXPECT_EQ(list[0], toKiel);
  VERDAL_GetCategoryDeleteChildList(list);
  const std::string byNumber = VERDAL_GetInternalParseString(b, 1, "3", 0);
  EXPECT_EQ(byNumber.find('"'), std::string::npos);
  ASSERT_EQ(VERDAL_GetCategoryChildList(b, -2, 0, 0, 1, 0, &count, &list, 2, byNumber.c_str(), 0), 1);
  ASSERT_EQ(count, 1);
  EXPECT_EQ(list[0], inBonn);
  VERDAL_GetCategoryDeleteChildList(list);

  // An edit at the far end is seen at once at the near end, and so is a new field before the
  // one shown, and the far database closed (the link opens it again).
  ASSERT_EQ(VERDAL_SetData(c, 0, "Hamburg", bonn, 0, nullptr, nullptr), 1);
  EXPECT_EQ(Shown(a, 0, toBonn), "Hamburg");
  ASSERT_EQ(VERDAL_EmptyData(b, 0), 1);  // b anew, its link to c's name now second
  AddLink(b, "Punkte", dir / "c.dbd", "Zahl");
  AddLink(b, "Ort", dir / "c.dbd", "Name");
  const int32_t renewed = Add(b, {std::to_string(kiel).c_str(), std::to_string(bonn).c_str()});
  ASSERT_EQ(VERDAL_SetData(a, 0, std::to_string(renewed).c_str(), toBonn, 0, nullptr, nullptr), 1);
  EXPECT_EQ(Shown(a, 0, toBonn), "Hamburg");
  ASSERT_EQ(VERDAL_CloseDB(b), 1);
  EXPECT_EQ(Shown(a, 0, toBonn), "Hamburg");
  EXPECT_EQ(VERDAL_GetDBCount(), 3);
}

TEST_F(Links, CandidatesComeFromTheEndOfTheChain) {
  Candidates all = CrossData(a, 0);
  ASSERT_EQ(all.result, 1);
  EXPECT_EQ(all.ids, (std::vector<int32_t>{kiel, bonn}));
  EXPECT_EQ(all.texts, (std::vector<std::string>{"Kiel", "Bonn"}));
  const std::string onlyKiel = VERDAL_GetInternalParseString(c, 0, "Kiel", 0);
  EXPECT_EQ(CrossData(a, 0, VERDAL_CURSOR_ROOT, onlyKiel.c_str()).ids, std::vector<int32_t>{kiel});
  // A record as node stands for itself, filter or not; a category gives its records.
  EXPECT_EQ(CrossData(a, 0, bonn, onlyKiel.c_str()).texts, std::vector<std::string>{"Bonn"});
  int32_t group = VERDAL_AddCategory(c, -2, "Gruppe");
  int32_t inGroup = VERDAL_AddRecord(c, group, "r", 0, "Lund", 0, 0, nullptr);
  EXPECT_EQ(CrossData(a, 0, group, nullptr, 1).ids, std::vector<int32_t>{inGroup});
  EXPECT_EQ(CrossData(a, 0, VERDAL_CURSOR_ROOT, nullptr, 1).ids.size(), 4u);  // with the category
  // A plain field lists its own values; the number field shows its decimals as set.
  EXPECT_EQ(CrossData(c, 1).texts, (std::vector<std::string>{"7", "3", ""}));

  EXPECT_EQ(CrossData(a, 0, 9999).result, 0);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_CURSOR);
  EXPECT_EQ(CrossData(a, 0, VERDAL_CURSOR_ROOT, "((").result, 0);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_QUERY);
  EXPECT_EQ(CrossData(a, 5).result, 0);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_FIELD);
  int32_t count = 7;
  char** strings = reinterpret_cast<char**>(&count);
  int32_t* ids = &count;
  const std::string none = VERDAL_GetInternalParseString(c, 0, "Nirgends", 0);
  ASSERT_EQ(VERDAL_GetCrossData(a, 0, &count, &strings, &ids, nullptr, -2, none.c_str(), 0), 1);
  EXPECT_EQ(count, 0);
  EXPECT_EQ(strings, nullptr);
  EXPECT_EQ(ids, nullptr);
}

TEST_F(Links, BrokenChainsGiveCodesAndEmptyValues) {
  VerdalHandle d = Create(dir / "d.dbd");
  VerdalHandle e = Create(dir / "e.dbd");
  AddField(d, "Text", 0);
  const std::string missing = dir / "fehlt.dbd";
  struct Case {
    const char* name;
    std::string target;
    const char* field;
    int32_t code;  // of VERDAL_GetCrossInfo
  } cases[] = {
      {"Leer", "", "Name", VERDAL_ERR_CROSS_TABLE},
      {"Fehlt", missing, "Name", VERDAL_ERR_CROSS_TABLE},
      {"FeldFehlt", dir / "c.dbd", "Nope", VERDAL_ERR_CROSS_TABLE},
      {"Kreis", dir / "e.dbd", "Zurueck", VERDAL_ERR_CROSS_TABLE},  // d -> e -> d.Text
      {"Selbst", dir / "d.dbd", "Text", VERDAL_ERR_NONE},            // the first link may stay home
  };
  AddLink(e, "Zurueck", dir / "d.dbd", "Text");  // back into d: a chain may not come home
  for (const Case& k : cases) AddLink(d, k.name, k.target, k.field);
  int32_t self = Add(d, {"eigen", "0", "0", "0", "0", "0"});
  ASSERT_EQ(VERDAL_SetData(d, 5, std::to_string(self).c_str(), self, 0, nullptr, nullptr), 1);
  for (size_t i = 0; i < std::size(cases); ++i) {
    SCOPED_TRACE(cases[i].name);
    const int32_t field = static_cast<int32_t>(i) + 1;
    TCrossInfo info;
    std::memset(&info, 'x', sizeof info);
    EXPECT_EQ(VERDAL_GetCrossInfo(d, field, &info), cases[i].code == 0 ? 1 : 0);
    EXPECT_EQ(VERDAL_GetLastError(), cases[i].code);
    if (cases[i].code != 0) {
      EXPECT_STREQ(info.path, "");
      EXPECT_EQ(Shown(d, field, self), "");
      EXPECT_EQ(CrossData(d, field).result, 0);
    }
  }
  EXPECT_EQ(Shown(d, 5, self), "eigen");
  EXPECT_FALSE(std::filesystem::exists(missing));  // following a link never makes a file
  EXPECT_EQ(VERDAL_GetCrossInfo(d, 0, nullptr), 0);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_CROSS_FIELD);
  EXPECT_EQ(VERDAL_GetCrossInfo(d, 99, nullptr), 0);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_FIELD);
  EXPECT_EQ(VERDAL_GetCrossInfo(0, 0, nullptr), 0);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_HANDLE);
}

TEST_F(Links, MovedLinksResolveBesideTheirDatabase) {
  VerdalHandle m = Create(dir / "m.dbd");
  const std::string gone = "/nicht/mehr/da/c.dbd";
  AddLink(m, "Global", gone, "Name");
  AddLink(m, "Feld", gone, "Name", 1);  // this field looks beside its database by itself
  int32_t r = Add(m, {std::to_string(kiel).c_str(), std::to_string(bonn).c_str()});
  EXPECT_EQ(Shown(m, 0, r), "");
  EXPECT_EQ(Shown(m, 1, r), "Bonn");
  TDBFieldParams p{};
  ASSERT_EQ(VERDAL_GetFieldInfo(m, 1, &p, nullptr), 1);
  EXPECT_EQ(std::string(p.linkDatabase), dir / "c.dbd");  // from now on, and saved with the field
  VERDAL_SetTryResolveDBReferencesLocal(1);
  EXPECT_EQ(Shown(m, 0, r), "Kiel");
}

// What the host hears, with the database it is about.
struct Told {
  VerdalHandle db;
  int32_t reason, cursor;
  bool operator==(const Told&) const = default;
};
std::vector<Told> g_told;
int32_t Listen(intptr_t, VerdalNotification* n) {
  g_told.push_back({static_cast<VerdalHandle>(n->database), n->reason, n->cursor});
  return 1;
}

TEST_F(Links, TheCurrentRecordTravelsAlongTheChain) {
  VERDAL_SetNotification(&Listen, 0);
  g_told.clear();
  int32_t category = -1;
  ASSERT_EQ(VERDAL_Seek(a, toBonn, 0, 0, 0, 0, &category, 2), toBonn);
  EXPECT_EQ(Shown(b, 0, VERDAL_CURSOR_CURRENT), "Bonn");
  EXPECT_EQ(Shown(c, 0, VERDAL_CURSOR_CURRENT), "Bonn");
  // About to change: told of the record still current (the last added), and its chain.
  const std::vector<Told> expected{{a, 1, toKiel}, {b, 1, inKiel}, {c, 1, kiel},
                                   {a, 2, toBonn}, {b, 2, inBonn}, {c, 2, bonn}};
  EXPECT_EQ(g_told, expected);
  // Setting a link tells the linked database of the record now named, and the chain beyond it.
  g_told.clear();
  ASSERT_EQ(VERDAL_SetData(a, 0, std::to_string(inKiel).c_str(), toBonn, 0, nullptr, nullptr), 1);
  EXPECT_EQ(g_told, (std::vector<Told>{{a, 8, toBonn}, {b, 2, inKiel}, {c, 2, kiel}}));
  VERDAL_SetNotification(nullptr, 0);
}

TEST_F(Links, UpdateCrossValueAndExistsReferenceEntry) {
  int32_t alsoBonn = Add(b, {std::to_string(bonn).c_str(), "0"});
  VERDAL_GetData(b, 0, 9999, 0, 0);  // leaves code 5, which a successful update leaves standing
  ASSERT_EQ(VERDAL_UpdateCrossValue(c, b, 0, bonn, kiel), 1);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_CURSOR);
  EXPECT_EQ(Shown(b, 0, inBonn), "Kiel");  // the first holder only
  EXPECT_EQ(Shown(b, 0, alsoBonn), "Bonn");
  EXPECT_EQ(Shown(b, 1, inBonn), "3");     // a field linked to another field of c stays
  EXPECT_EQ(VERDAL_UpdateCrossValue(c, b, 1, 12345, kiel), 0);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_CURSOR);
  EXPECT_EQ(VERDAL_UpdateCrossValue(c, b, 9, bonn, kiel), 0);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_FIELD);
  EXPECT_EQ(VERDAL_UpdateCrossValue(c, 0, 0, bonn, kiel), 0);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_HANDLE);

  EXPECT_EQ(VERDAL_ExistsReferenceEntry(b, c, alsoBonn, 0), 1);
  VerdalHandle empty = OpenMemoryDatabase();
  EXPECT_EQ(VERDAL_ExistsReferenceEntry(b, empty, alsoBonn, 0), 0);  // the database named decides
  ASSERT_EQ(VERDAL_DeleteRecord(c, bonn, 0, 0, nullptr, 0), 1);
  EXPECT_EQ(VERDAL_ExistsReferenceEntry(b, c, alsoBonn, 0), 0);
  EXPECT_EQ(Shown(b, 0, alsoBonn), "");  // a link whose record has gone shows empty
  VerdalHandle plain = OpenMemoryDatabase();
  AddField(plain, "Text", 0);
  int32_t r = Add(plain, {"x"});
  EXPECT_EQ(VERDAL_ExistsReferenceEntry(plain, c, r, 0), 0);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_NONE);
  EXPECT_EQ(VERDAL_ExistsReferenceEntry(b, c, 9999, 0), 0);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_CURSOR);
}

TEST_F(Links, LinkedDatabasesOpenWithTheirDatabaseOnce) {
  VERDAL_CloseAllDBs();
  VerdalHandle reopened = VERDAL_OpenDB((dir / "a.dbd").c_str(), nullptr, 0, 0, nullptr, 1, 0, 0);
  ASSERT_NE(reopened, 0u);
  EXPECT_EQ(VERDAL_GetDBCount(), 3);  // b and c came along
  EXPECT_EQ(Shown(reopened, 0, toBonn), "Bonn");
  // Another name of an open file gives the same database.
  const std::string alias = dir / "alias.dbd";
  std::filesystem::create_symlink(dir / "c.dbd", alias);
  VerdalHandle viaAlias = VERDAL_OpenDB(alias.c_str(), nullptr, 0, 0, nullptr, 1, 0, 0);
  EXPECT_EQ(VERDAL_GetDBCount(), 3);
  EXPECT_EQ(Shown(viaAlias, 0, kiel), "Kiel");
}

}  // namespace
