// Arbitrary bytes as a sequence of calls on the C interface, the way a host makes them: a few
// databases in memory and in files of a fresh folder, fields of every type, records and categories
// added, changed, moved, sought and deleted, views, tree walks, child lists, filters, passwords,
// saves and loads, identity searches, imports of small text files through the bridge, exports,
// tables printed to PDF, and a notification callback that calls back in when the input says so.
// After each call the harness checks what the interface promises a host; a broken promise traps.
#include <algorithm>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "verdal.h"

namespace {

#define CHECK(cond)                                                                   \
  do {                                                                                \
    if (!(cond)) {                                                                    \
      std::fprintf(stderr, "api_sequence: %s failed at line %d\n", #cond, __LINE__); \
      __builtin_trap();                                                               \
    }                                                                                 \
  } while (0)

constexpr int kSlots = 3;
constexpr int kMaxOps = 64;

struct Input {
  const uint8_t* data;
  size_t size;
  size_t pos = 0;
  bool Done() const { return pos >= size; }
  uint8_t Byte() { return pos < size ? data[pos++] : 0; }
  bool Bit() { return Byte() & 1; }
};

struct Slot {
  VerdalHandle db = 0;
  std::string file;         // empty for a database in memory
  bool hadTemporary = false;  // temporary records are in the tree but not in child lists or files
  std::vector<int32_t> cursors;
};

struct State {
  Input in;
  std::string folder;
  Slot slots[kSlots];
  int copies = 0;
};

// What the notification callback does when it next hears the reason it waits for.
struct Reentry {
  int32_t reason = 0;  // 0: none
  int32_t action = 0;
  int32_t done = 0;    // how many callbacks changed something
} g_reentry;

const char* const kTexts[] = {"",       "a",          "Zürich",   "12",     "-3.5",  "1e308",
                              "31.12.1999", "23:59:60", "ja",     "{x}",   "a|b\\c", "  x  ",
                              "999999999999999999999",   "0",      "nein",  "*"};
const char* const kFilters[] = {"",          "[F0] = \"a\"", "[F1] > 3", "(",       "[nope] = 1",
                                "NOT [F0]", "[F0] LIKE \"*\"", "1 = 1", "[F2] AND OR", "\"x\""};
const char* const kNames[] = {"F0", "F1", "F2", "F3", "Name", "f0", "a|b", "", "Datum", "Link"};
const int32_t kCounts[] = {1, -1, 0, 2, -2, 3, 7, -7, INT32_MAX, INT32_MIN, INT32_MAX - 1, INT32_MIN + 1};

const char* Text(Input& in) { return kTexts[in.Byte() % (sizeof kTexts / sizeof *kTexts)]; }

bool Alive(VerdalHandle db) { return db != 0 && VERDAL_GetItemCount(db) >= 0; }

int32_t PickCursor(Input& in, const Slot& s) {
  uint8_t b = in.Byte();
  switch (b % 4) {
    case 0: return -1 - static_cast<int32_t>((b >> 2) % 8);  // the pseudo cursors
    case 1: return static_cast<int32_t>(b >> 2) - 4;         // small numbers, some unknown
    default:
      return s.cursors.empty() ? -2 : s.cursors[(b >> 2) % s.cursors.size()];
  }
}

int32_t PickField(Input& in) { return static_cast<int32_t>(in.Byte() % 7) - 1; }

// What a host callback may do to the engine that called it.
void Reenter(VerdalHandle db, int32_t cursor, int32_t action) {
  switch (action % 8) {
    case 0: VERDAL_CloseDB(db); break;
    case 1: VERDAL_CloseAllDBs(); break;
    case 2: VERDAL_EmptyData(db, action & 8); break;
    case 3: VERDAL_DeleteRecord(db, cursor, action & 6, 1, nullptr, 1); break;
    case 4: VERDAL_AddRecord(db, cursor, "inner", 0, nullptr, -1, 0, nullptr); break;
    case 5: VERDAL_SetData(db, 0, "inner", cursor, 1, nullptr, nullptr); break;
    case 6: VERDAL_Load(db, nullptr, 0); break;
    case 7: VERDAL_SortCategories(db, action & 16, 1, 0, -2, 0, nullptr); break;
  }
}

int32_t OnNotify(intptr_t, VerdalNotification* n) {
  if (g_reentry.reason == 0 || n->reason != g_reentry.reason) return 1;
  int32_t action = g_reentry.action;
  g_reentry.reason = 0;
  ++g_reentry.done;
  if (action % 9 == 8) {  // a veto
    --g_reentry.done;
    return 0;
  }
  Reenter(static_cast<VerdalHandle>(n->database), n->cursor, action);
  return 1;
}

// A tree walk whose callback, at one node, calls back into the engine.
struct TreeWalk {
  std::vector<int32_t> visits;
  VerdalHandle db;
  size_t reenterAt;
  int32_t action;
};

intptr_t OnTreeNode(intptr_t seed, int32_t cursor, int32_t, int32_t, intptr_t user) {
  auto* walk = reinterpret_cast<TreeWalk*>(user);
  walk->visits.push_back(cursor);
  if (walk->visits.size() == walk->reenterAt) {
    ++g_reentry.done;
    Reenter(walk->db, cursor, walk->action);
  }
  return seed + 1;
}

// Cursors below a node that the child list gives (view 0, all depths, closed or not).
std::vector<int32_t> ChildList(VerdalHandle db, int32_t cursor, int32_t kinds, bool recurse) {
  int32_t count = -1;
  int32_t* cursors = nullptr;
  std::vector<int32_t> out;
  if (VERDAL_GetCategoryChildList(db, cursor, 0, 0, recurse, 0, &count, &cursors, kinds, nullptr, 0) == 1) {
    CHECK(count >= 0 && (count == 0 || cursors != nullptr));
    out.assign(cursors, cursors + count);
  }
  VERDAL_GetCategoryDeleteChildList(cursors);
  return out;
}

// Every node in tree order by stepping from the first one without wrap.
std::vector<int32_t> SeekWalk(VerdalHandle db) {
  std::vector<int32_t> out;
  for (int32_t c = VERDAL_Seek(db, -1, 1, 0, 1, 1, nullptr, VERDAL_KINDS_BOTH); c >= 0;
       c = VERDAL_Seek(db, c, 1, 0, 1, 1, nullptr, VERDAL_KINDS_BOTH)) {
    out.push_back(c);
    CHECK(out.size() < 10000);  // a walk without wrap must end
  }
  return out;
}

bool IsSubsequence(const std::vector<int32_t>& part, const std::vector<int32_t>& whole) {
  size_t i = 0;
  for (int32_t c : whole)
    if (i < part.size() && part[i] == c) ++i;
  return i == part.size();
}

// What a host sees of a database: every node in order with kind, depth, name and raw values.
std::vector<std::string> Shape(VerdalHandle db) {
  std::vector<std::string> out;
  int32_t fields = VERDAL_GetFieldSize(db);
  for (int32_t c : ChildList(db, -2, VERDAL_KINDS_BOTH, true)) {
    int32_t isCategory = -1, depth = -1;
    char name[VERDAL_NAME_MAX + 1] = {0};
    TDBCategoryQuery q{};
    q.isCategory = &isCategory;
    q.depth = &depth;
    q.name = name;
    CHECK(VERDAL_GetCategoryInfo(db, c, &q) == 1);
    std::string line = std::to_string(isCategory) + "/" + std::to_string(depth) + "/" + name;
    for (int32_t f = 0; f < fields; ++f) {
      const char* v = VERDAL_GetData(db, f, c, 1, 0);
      line += "|" + std::string(v != nullptr ? v : "<null>");
    }
    out.push_back(line);
  }
  return out;
}

// The promises that hold between any two calls.
void CheckDatabase(Slot& s) {
  if (!Alive(s.db)) return;
  std::vector<int32_t> walk = SeekWalk(s.db);
  std::vector<int32_t> listed = ChildList(s.db, -2, VERDAL_KINDS_BOTH, true);
  if (s.hadTemporary)
    CHECK(IsSubsequence(listed, walk));
  else
    CHECK(listed == walk);
  for (int32_t c : walk) CHECK(VERDAL_HasMember(s.db, c) == 1);
  CHECK(VERDAL_GetItemCount(s.db) == static_cast<int32_t>(ChildList(s.db, -2, VERDAL_KINDS_CATEGORIES, true).size()));
  s.cursors = walk;
}

std::string NewPath(State& st, const char* stem) {
  return st.folder + "/" + stem + std::to_string(st.copies++) + ".dbd";
}

// A saved copy opened anew shows the same tree and values.
void CheckSavedCopy(State& st, Slot& s) {
  VerdalDBProperties props{};
  if (VERDAL_GetDBProperties(s.db, &props) != 1 || props.readOnly || props.importMode) return;
  std::string copy = NewPath(st, "copy");
  int32_t before = g_reentry.done;
  if (VERDAL_Save(s.db, copy.c_str()) != 1 || g_reentry.done != before || !Alive(s.db)) return;
  struct stat info;
  CHECK(stat(copy.c_str(), &info) == 0);
  char password[32] = {0};
  int32_t compress = 0;
  CHECK(VERDAL_GetPWDAndCompression(s.db, password, &compress) == 1);
  VerdalHandle again = VERDAL_OpenDB(copy.c_str(), password, 1, 0, nullptr, 0, 1, 0);
  CHECK(again != 0);
  CHECK(Shape(again) == Shape(s.db));
  CHECK(VERDAL_GetFieldSize(again) == VERDAL_GetFieldSize(s.db));
  CHECK(VERDAL_HasSameDataFields(again, s.db, 1) == 1);
  CHECK(VERDAL_CloseDB(again) == 1);
}

void AddFieldOp(Input& in, Slot& s, const std::string& folder) {
  TDBFieldParams p;
  std::memset(&p, 0, sizeof p);
  p.dataType = static_cast<int16_t>(in.Byte() % 9);  // 8 is no type at all
  uint8_t flags = in.Byte();
  p.maxChars = (flags & 1) ? 4 : -1;
  p.decimals = static_cast<int16_t>(flags % 5);
  p.isCounter = (flags >> 1) & 1;
  p.readOnly = (flags >> 2) & 1;
  p.allowEmpty = (flags >> 3) & 1;
  p.allowDuplicates = (flags >> 4) & 1;
  p.hasMin = (flags >> 5) & 1;
  p.minValue = -10;
  p.hasMax = (flags >> 6) & 1;
  p.maxValue = 100;
  p.format = (flags & 0x80) ? "%d.%m.%Y" : nullptr;
  p.initValue = (flags & 0x80) ? nullptr : Text(in);
  p.name = kNames[in.Byte() % (sizeof kNames / sizeof *kNames)];
  // A link leads to one of the slots' files, or to one that is never there.
  const std::string target = folder + "/db" + std::to_string(in.Byte() % (kSlots + 1)) + ".dbd";
  if (p.dataType == 7) {
    p.linkDatabase = target.c_str();
    p.linkField = kNames[in.Byte() % (sizeof kNames / sizeof *kNames)];
    p.lookInOwnFolder = in.Bit();
  }
  int32_t index = VERDAL_AddField(s.db, &p, static_cast<int32_t>(in.Byte() % 5) - 1, in.Bit());
  if (index >= 0) {
    CHECK(index < VERDAL_GetFieldSize(s.db));
    TDBFieldParams back;
    CHECK(VERDAL_GetFieldInfo(s.db, index, &back, nullptr) == 1);
  }
}

void Step(State& st) {
  Input& in = st.in;
  Slot& s = st.slots[in.Byte() % kSlots];
  uint8_t op = in.Byte();
  int32_t before = g_reentry.done;
  if (!Alive(s.db)) {
    s = Slot{};
    if (op & 1) {
      s.file = st.folder + "/db" + std::to_string(&s - st.slots) + ".dbd";
      s.db = VERDAL_OpenDB(s.file.c_str(), (op & 2) ? "geheim1" : nullptr, 1, 0, nullptr, 0, 0, 0);
    } else {
      s.db = VERDAL_OpenDB(nullptr, nullptr, 0, 0, nullptr, op % 3, 0, 0);
    }
    CHECK(s.db != 0 || !s.file.empty());
    if (s.db == 0) s.file.clear();
    return;
  }
  VerdalHandle db = s.db;
  switch (op % 34) {
    case 0: AddFieldOp(in, s, st.folder); break;
    case 1: {
      int32_t parent = PickCursor(in, s);
      bool temporary = (in.Byte() % 4) == 0;
      int32_t field = PickField(in);
      const char* value = in.Bit() ? Text(in) : nullptr;
      int32_t items = VERDAL_GetItemCount(db);
      int32_t c = VERDAL_AddRecord(db, parent, in.Bit() ? Text(in) : nullptr, temporary, value, field, 0, nullptr);
      if (temporary) s.hadTemporary = true;
      if (c >= 0 && g_reentry.done == before) {
        CHECK(VERDAL_HasMember(db, c) == 1);
        CHECK(VERDAL_GetItemCount(db) == items);
        CHECK(VERDAL_Seek(db, c, 0, 0, 0, 1, nullptr, VERDAL_KINDS_BOTH) == c);
        int32_t isCategory = -1, up = -3;
        TDBCategoryQuery q{};
        q.isCategory = &isCategory;
        q.parent = &up;
        CHECK(VERDAL_GetCategoryInfo(db, c, &q) == 1 && isCategory == 0);
        std::vector<int32_t> siblings = ChildList(db, up == -1 ? -2 : up, VERDAL_KINDS_BOTH, false);
        bool listed = false;
        for (int32_t x : siblings) listed |= x == c;
        CHECK(listed != temporary);
      }
      break;
    }
    case 2: {
      int32_t parent = PickCursor(in, s);
      int32_t items = VERDAL_GetItemCount(db);
      int32_t c = VERDAL_AddCategory(db, parent, Text(in));
      if (c >= 0 && g_reentry.done == before) {
        CHECK(VERDAL_HasMember(db, c) == 1);
        CHECK(VERDAL_GetItemCount(db) == items + 1);
        int32_t up = -3;
        TDBCategoryQuery q{};
        q.parent = &up;
        CHECK(VERDAL_GetCategoryInfo(db, c, &q) == 1);
        bool listed = false;
        for (int32_t x : ChildList(db, up == -1 ? -2 : up, VERDAL_KINDS_CATEGORIES, false)) listed |= x == c;
        CHECK(listed);
      }
      break;
    }
    case 3: {
      int32_t source = PickCursor(in, s);
      int32_t c = VERDAL_DuplicateRecord(db, source, PickCursor(in, s), in.Bit() ? Text(in) : nullptr);
      if (c >= 0 && g_reentry.done == before) CHECK(VERDAL_HasMember(db, c) == 1);
      break;
    }
    case 4: {
      int32_t field = PickField(in);
      const char* value = in.Bit() ? Text(in) : nullptr;
      int32_t cursor = PickCursor(in, s);
      char error[1024];
      int32_t ok = VERDAL_SetData(db, field, value, cursor, in.Bit(), in.Bit() ? error : nullptr, nullptr);
      if (ok == 1 && g_reentry.done == before && cursor >= 0) CHECK(VERDAL_GetData(db, field, cursor, 1, 0) != nullptr);
      break;
    }
    case 5: VERDAL_GetData(db, PickField(in), PickCursor(in, s), in.Bit(), in.Bit()); break;
    case 6: {
      int32_t cursor = PickCursor(in, s);
      uint8_t b = in.Byte();
      int32_t ok = VERDAL_DeleteRecord(db, cursor, b & 6, b & 1, nullptr, (b >> 3) & 1);
      if (ok == 1 && cursor >= 0 && g_reentry.done == before) CHECK(VERDAL_HasMember(db, cursor) == 0);
      break;
    }
    case 7: {
      int32_t cursor = PickCursor(in, s);
      uint8_t b = in.Byte();
      int32_t target = (b & 3) == 0 ? VERDAL_CURSOR_NEXT : (b & 3) == 1 ? VERDAL_CURSOR_PREVIOUS : PickCursor(in, s);
      int32_t ok = VERDAL_MoveChild(db, cursor, target, 1 + (b >> 2) % 3);
      if (ok == 1 && cursor >= 0 && g_reentry.done == before) CHECK(VERDAL_HasMember(db, cursor) == 1);
      break;
    }
    case 8: {
      int32_t cursor = PickCursor(in, s);
      int32_t count = kCounts[in.Byte() % (sizeof kCounts / sizeof *kCounts)];
      uint8_t b = in.Byte();
      int32_t category = -99;
      int32_t c = VERDAL_Seek(db, cursor, count, b & 1, (b >> 1) & 1, (b >> 2) & 1, (b & 8) ? &category : nullptr,
                              1 + (b >> 4) % 3);
      if (c >= 0 && g_reentry.done == before && Alive(db)) CHECK(VERDAL_HasMember(db, c) == 1);
      break;
    }
    case 9: VERDAL_CreateView(db, in.Bit() ? Text(in) : nullptr, static_cast<int32_t>(in.Byte() % 5)); break;
    case 10: {
      const uint8_t b = in.Byte();
      TreeWalk walk{{}, db, (b & 1) ? static_cast<size_t>(b >> 4) + 1 : 0, in.Byte()};
      int32_t view = static_cast<int32_t>(in.Byte() % 4);
      int32_t start = in.Bit() ? -1 : PickCursor(in, s);
      VERDAL_BuildCategoryTree(db, 0, OnTreeNode, reinterpret_cast<intptr_t>(&walk), view, start);
      break;
    }
    case 11: {
      int32_t cursor = PickCursor(in, s);
      uint8_t b = in.Byte();
      int32_t count = -1;
      int32_t* cursors = nullptr;
      const char* filter = (b & 0x80) ? kFilters[in.Byte() % (sizeof kFilters / sizeof *kFilters)] : nullptr;
      int32_t ok = VERDAL_GetCategoryChildList(db, cursor, (b >> 5) & 3, b & 1, (b >> 1) & 1, (b >> 2) & 1,
                                               (b & 0x40) ? nullptr : &count, &cursors,
                                               static_cast<int32_t>((b >> 3) % 4) - 1, filter, in.Bit());
      if (ok == 1 && count > 0) {
        CHECK(cursors != nullptr);
        for (int32_t i = 0; i < count; ++i) CHECK(VERDAL_HasMember(db, cursors[i]) == 1);
      }
      VERDAL_GetCategoryDeleteChildList(cursors);
      break;
    }
    case 12: {
      int32_t cursor = PickCursor(in, s);
      uint8_t b = in.Byte();
      int32_t expanded = b & 1, parent = PickCursor(in, s), position = static_cast<int32_t>(in.Byte() % 5) - 1;
      int32_t positionOut = 0;
      VERDAL_SetCategoryInfo(db, cursor, (b & 2) ? Text(in) : nullptr, (b & 4) ? &expanded : nullptr,
                             (b & 8) ? &parent : nullptr, (b & 16) ? &position : nullptr, (b >> 5) % 3,
                             (b & 0x80) ? &positionOut : nullptr, in.Bit(), static_cast<int32_t>(in.Byte() % 3));
      break;
    }
    case 13: {
      int32_t a = 0, b = 0, c = 0, d = 0, e = 0;
      char name[8];
      TDBCategoryQuery q{};
      q.viewIndex = static_cast<int32_t>(in.Byte() % 3);
      q.onlyExpanded = in.Bit();
      q.isCategory = &a;
      q.name = name;
      q.nameSize = sizeof name;
      q.expanded = &b;
      q.parent = &c;
      q.depth = &d;
      q.row = &e;
      q.visibleChildren = &e;
      if (VERDAL_GetCategoryInfo(db, PickCursor(in, s), &q) == 1) CHECK(std::memchr(name, 0, sizeof name) != nullptr);
      break;
    }
    case 14: VERDAL_GetFilter(db, kNames[in.Byte() % (sizeof kNames / sizeof *kNames)]); break;
    case 15: VERDAL_GetInternalParseString(db, PickField(in), Text(in), in.Byte() & 31); break;
    case 16: VERDAL_ConvertData(db, PickField(in), Text(in), in.Bit(), in.Bit(), in.Bit()); break;
    case 17: {
      int32_t result = 0;
      int32_t first = PickCursor(in, s), second = PickCursor(in, s);
      uint8_t b = in.Byte();
      VERDAL_Compare(db, first, second, PickField(in), b & 1, (b >> 1) & 1, (b & 4) ? &result : nullptr);
      break;
    }
    case 18: {
      static const char* const kPasswords[] = {"", "geheim1", "  kurz ", "1234", "abcdefghijklmnopqrstuvwxyz01234567"};
      VERDAL_SetPWDAndCompression(db, kPasswords[in.Byte() % 5], in.Bit());
      char password[32];
      int32_t compress = -1;
      CHECK(VERDAL_GetPWDAndCompression(db, password, &compress) == 1);
      CHECK(compress == 0 || compress == 1);
      CHECK(std::memchr(password, 0, sizeof password) != nullptr);
      break;
    }
    case 19: VERDAL_Save(db, in.Bit() ? nullptr : NewPath(st, "other").c_str()); break;
    case 20: CheckSavedCopy(st, s); break;
    case 21: {
      const char* name = nullptr;
      std::string other;
      if (in.Bit()) {
        other = st.folder + "/db" + std::to_string(in.Byte() % kSlots) + ".dbd";
        name = other.c_str();
      }
      if (VERDAL_Load(db, name, in.Bit()) == 1) s.hadTemporary = false;
      break;
    }
    case 22:
      if (in.Bit()) VERDAL_CloseDB(db); else VERDAL_CloseDBByFileName(s.file.c_str());
      break;
    case 23:
      if ((in.Byte() & 7) == 0) VERDAL_CloseAllDBs(); else VERDAL_EmptyData(db, in.Bit());
      break;
    case 24:
      g_reentry.reason = static_cast<int32_t>(in.Byte() % 11);
      g_reentry.action = in.Byte();
      break;
    case 25: {
      int32_t found = -7;
      uint8_t b = in.Byte();
      VERDAL_HasDataMember(db, PickField(in), Text(in), b & 1, (b >> 1) & 1, (b & 4) ? &found : nullptr,
                           PickCursor(in, s));
      int32_t cursor = PickCursor(in, s);
      VERDAL_SetSpecialData(db, static_cast<int32_t>(b >> 4) - 1, 7, cursor);
      VERDAL_GetSpecialData(db, static_cast<int32_t>(b >> 6), cursor);
      VerdalLocalTime t{};
      int32_t modified = 0;
      char identifier[37];
      VERDAL_GetInternalData(db, cursor, &t, &t, &modified, identifier);
      VERDAL_IsChildOf(db, cursor, PickCursor(in, s));
      break;
    }
    case 26: {  // the first sort field: what was set is what is read
      const char* name = kNames[in.Byte() % (sizeof kNames / sizeof *kNames)];
      const int32_t field = PickField(in);
      const int32_t ascending = in.Bit();
      const int32_t set = VERDAL_SetListSortTopInfo(db, name, field, ascending, in.Bit());
      int32_t top = -9, up = -9;
      const int32_t got = VERDAL_GetListSortTopInfo(db, name, &top, &up);
      const bool isField = field >= 0 && field < VERDAL_GetFieldSize(db);
      if (isField && (set == 1 || set == -3)) CHECK(got == 1 && top == field && up == ascending);
      ListDisplayFieldRecord r;
      const int32_t columns = VERDAL_GetListDisplayFieldSize(db, in.Bit() ? name : nullptr);
      if (columns > 0) VERDAL_GetListDisplayFieldInfo(db, nullptr, in.Byte() % columns, &r);
      VERDAL_SetListDisplayFieldInfoColWidth(db, name, in.Byte() % 4, in.Byte());
      break;
    }
    case 27: {  // options: counts agree with names, and a copy has them all
      const int32_t kind = in.Byte() % 12;
      const int32_t owner = static_cast<int32_t>(in.Byte() % 3) - 1;
      const int32_t count = VERDAL_NumOptions(db, kind, owner);
      for (int32_t i = 0; i <= count; ++i) {
        const char* name = VERDAL_GetOptionName(db, kind, i, owner, nullptr, 0, 0, nullptr, nullptr);
        CHECK((name != nullptr) == (i < count));
      }
      VERDAL_SetDefaultOption(db, kind, kNames[in.Byte() % (sizeof kNames / sizeof *kNames)], owner);
      Slot& t = st.slots[in.Byte() % kSlots];
      if (Alive(t.db) && VERDAL_MoveOptions(db, t.db) == 1)
        CHECK(VERDAL_NumOptions(t.db, kind, owner) == count);
      // Without a user interface every sheet answers as cancelled.
      if (in.Bit()) CHECK(VERDAL_ConfigOptions(db, nullptr, kind, owner, "x", "") == (kind == 2 ? 1 : 0));
      if (in.Bit()) CHECK(VERDAL_ConfigView(db, nullptr, "x", kNames[in.Byte() % 4], in.Bit()) == 0);
      break;
    }
    case 28: {  // sorts: a flat sort gives every record once; a tree sort keeps every child
      const char* name = kNames[in.Byte() % (sizeof kNames / sizeof *kNames)];
      int32_t count = -1, *array = nullptr;
      if (VERDAL_SortFlat(db, name, &count, &array) == 1 && array != nullptr) {
        std::vector<int32_t> sorted(array, array + count);
        VERDAL_GetCategoryDeleteChildList(array);
        int32_t all = 0, *records = nullptr;
        CHECK(VERDAL_GetCategoryChildList(db, -2, 0, 0, 1, 0, &all, &records, 2, nullptr, 0) == 1);
        std::vector<int32_t> below(records, records + all);
        VERDAL_GetCategoryDeleteChildList(records);
        std::sort(sorted.begin(), sorted.end());
        std::sort(below.begin(), below.end());
        CHECK(sorted == below);
      }
      if (in.Bit()) VERDAL_Sort(db, name);
      else VERDAL_SortCategories(db, in.Bit(), in.Bit(), in.Bit(), PickCursor(in, s), 0, nullptr);
      break;
    }
    case 29: {  // links: candidates come as counted; a record as node lists itself alone
      const int32_t field = PickField(in);
      const int32_t node = in.Bit() ? VERDAL_CURSOR_ROOT : PickCursor(in, s);
      const char* filter = in.Bit() ? kFilters[in.Byte() % (sizeof kFilters / sizeof *kFilters)] : nullptr;
      int32_t count = -1;
      char** strings = nullptr;
      int32_t* ids = nullptr;
      TCrossInfo info;
      if (VERDAL_GetCrossData(db, field, &count, &strings, &ids, &info, node, filter, in.Bit()) == 1) {
        CHECK(count >= 0 && (count == 0) == (strings == nullptr) && (count == 0) == (ids == nullptr));
        for (int32_t i = 0; i < count; ++i) CHECK(strings[i] != nullptr && std::strlen(strings[i]) < 1u << 20);
        VERDAL_DeleteGetCrossData(count, strings, ids);
      }
      if (VERDAL_GetCrossInfo(db, field, &info) == 1)
        CHECK(std::memchr(info.path, 0, sizeof info.path) != nullptr && info.fieldName[0] != '\0');
      const VerdalHandle other = st.slots[in.Byte() % kSlots].db;
      const int32_t exists = VERDAL_ExistsReferenceEntry(db, other, PickCursor(in, s), field);
      CHECK(exists == 0 || exists == 1);
      VERDAL_UpdateCrossValue(other, db, PickField(in), PickCursor(in, s), PickCursor(in, s));
      VERDAL_SetTryResolveDBReferencesLocal(in.Bit());
      break;
    }
    case 30: {  // identities: a build finds every record, a cleared index none
      const uint8_t b = in.Byte();
      const int32_t cursor = PickCursor(in, s);
      char identifier[37];
      const bool has = VERDAL_GetInternalData(db, cursor, nullptr, nullptr, nullptr, identifier) == 1;
      int32_t number = -7;
      switch (b % 4) {
        case 0:
          CHECK(VERDAL_InitIdentity(db) == 1);
          if (has) CHECK(VERDAL_FindIdentity(db, identifier, &number) == 1 && number >= 0);
          break;
        case 1:
          VERDAL_FindIdentity(db, Text(in), nullptr);  // makes the index if there is none
          CHECK(VERDAL_ClearIdentity(db) == 1);
          if (has) CHECK(VERDAL_FindIdentity(db, identifier, &number) == 0 && number == -7);
          break;
        case 2:  // an identity changed under the index, whose entry stays in the old bucket
          if (has) VERDAL_SetInternalData(db, cursor, nullptr, nullptr, nullptr, Text(in));
          VERDAL_FindIdentity(db, in.Bit() ? Text(in) : nullptr, in.Bit() ? &number : nullptr);
          break;
        default:
          VERDAL_FindIdentity(db, has ? identifier : Text(in), &number);
          break;
      }
      CHECK(VERDAL_GetLastError() == 0);  // not finding is no error
      break;
    }
    case 31: {  // imports of a small text file: a refused one leaves the tree as it was
      const uint8_t b = in.Byte();
      std::string csv = std::string(kNames[in.Byte() % 10]) + ";" + kNames[in.Byte() % 10] + "\n";
      for (int rows = in.Byte() % 4; rows > 0; --rows) csv += std::string(Text(in)) + ";" + Text(in) + "\n";
      const std::string path = st.folder + "/in.csv";
      if (FILE* f = std::fopen(path.c_str(), "wb")) {
        std::fwrite(csv.data(), 1, csv.size(), f);
        std::fclose(f);
      }
      const int32_t items = VERDAL_GetItemCount(db);
      int32_t count = -1;
      int32_t* cursors = nullptr;
      const int32_t ok = VERDAL_Import(db, path.c_str(), 0, nullptr, nullptr, b % 5, (b & 0x20) ? VERDAL_IMPORT_RAW : 0,
                                       &count, &cursors, 0, nullptr, nullptr, 0);
      if (ok == 0) {
        CHECK(VERDAL_GetItemCount(db) == items);
      } else {
        CHECK(count >= 0 && (count == 0) == (cursors == nullptr));
        for (int32_t i = 0; i < count; ++i) s.cursors.push_back(cursors[i]);
      }
      VERDAL_GetCategoryDeleteChildList(cursors);
      break;
    }
    case 32: {  // exports of chosen places or the whole tree: done once the bridge had the rows
      const uint8_t b = in.Byte();
      std::vector<int32_t> chosen;
      for (int n = b % 4; n > 0; --n) chosen.push_back(PickCursor(in, s));
      const int32_t items = VERDAL_GetItemCount(db);
      const std::string target = st.folder + ((b & 8) ? "/out.html" : "/out.csv");
      const int32_t ok = VERDAL_Export(db, target.c_str(), 0, nullptr, 0, (b & 16) ? VERDAL_EXPORT_CATEGORIES : 0,
                                       static_cast<int32_t>(chosen.size()), chosen.empty() ? nullptr : chosen.data(),
                                       0, 0, 0, 0);
      CHECK(ok == (VERDAL_GetLastError() == 0 ? 1 : 0));
      CHECK(VERDAL_GetItemCount(db) == items);
      // A replacement by a name: done, or refused as unknown; the places stay either way.
      const int32_t acted = VERDAL_ExecAction(db, VERDAL_OPTION_REPLACE, Text(in),
                                              static_cast<int32_t>(chosen.size()), chosen.data());
      CHECK(acted == 1 || VERDAL_GetLastError() == VERDAL_ERR_INPUT);
      CHECK(VERDAL_GetItemCount(db) == items);
      break;
    }
    case 33: {  // a table printed headless to a PDF (chosen places or a filter, a style field), or
                // its configuration deleted: the tree stays as it was
      const uint8_t b = in.Byte();
      setenv("VERDAL_PRINT_DIR", st.folder.c_str(), 1);
      const int32_t items = VERDAL_GetItemCount(db);
      const std::string name = (b & 1) ? Text(in) : "";
      if (b & 2) {
        const int32_t deleted = VERDAL_PrintTableDeleteOption(db, name.c_str());
        CHECK(deleted == 1 || deleted == -2);
        break;
      }
      std::vector<int32_t> chosen;
      for (int n = (b >> 2) % 4; n > 0; --n) chosen.push_back(PickCursor(in, s));
      const std::string filter = Text(in);
      const int32_t style = static_cast<int32_t>(in.Byte() % 4) - 1;
      CHECK(VERDAL_PrintTable(db, name.c_str(), filter.c_str(), nullptr, static_cast<int32_t>(chosen.size()),
                              (b & 16) ? chosen.data() : nullptr, style) == 1);
      CHECK(VERDAL_GetItemCount(db) == items);
      break;
    }
  }
}

}  // namespace

// fontconfig's patterns live in pango's font caches for the life of the process, made at the first
// printout; the leak checker cannot follow them there.
extern "C" const char* __lsan_default_suppressions() { return "leak:libfontconfig.so\n"; }

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static bool once = [] {
    setenv("VERDAL_GATEWAY_DIR", VERDAL_GATEWAY_BUILD_DIR, 1);
    VERDAL_SetUserInterface(nullptr);
    VERDAL_SetTraceSink(nullptr);
    return true;
  }();
  (void)once;
  char pattern[] = "/tmp/verdal-fuzz-XXXXXX";
  if (mkdtemp(pattern) == nullptr) return 0;
  State st{Input{data, size}, pattern, {}, 0};
  g_reentry = Reentry{};
  VERDAL_SetNotify(1);
  VERDAL_SetNotification(OnNotify, 0);
  for (int i = 0; i < kMaxOps && !st.in.Done(); ++i) {
    Step(st);
    // Two slots hold the same database when one opened or loaded the other's file: temporary
    // records added through either are in both.
    for (Slot& s : st.slots)
      for (const Slot& t : st.slots) s.hadTemporary |= s.db != 0 && t.db == s.db && t.hadTemporary;
    for (Slot& s : st.slots) CheckDatabase(s);
  }
  VERDAL_SetNotification(nullptr, 0);
  VERDAL_SetTryResolveDBReferencesLocal(0);
  VERDAL_CloseAllDBs();
  CHECK(VERDAL_GetDBCount() == 0);
  std::error_code ignored;
  std::filesystem::remove_all(pattern, ignored);
  return 0;
}
