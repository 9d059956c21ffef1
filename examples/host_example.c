/* A small address book on libverdal.so. It uses nothing but verdal.h: it opens a database in
 * memory, defines typed fields, adds categories and records, edits, moves and deletes them,
 * converts and compares values, listens to notifications, and prints the tree with the values as
 * a user sees them. */
#include <stdio.h>
#include <string.h>

#include "verdal.h"

/* The engine speaks code page 1252; the terminal speaks UTF-8. The letters of German texts are
 * the same in both tables above 0xA0, so this little conversion is enough here. */
static const char* Utf8(const char* text) {
  static char out[2048];
  size_t o = 0;
  for (const unsigned char* p = (const unsigned char*)(text ? text : ""); *p && o + 3 < sizeof out; ++p) {
    if (*p < 0x80) {
      out[o++] = (char)*p;
    } else {
      out[o++] = (char)(0xC0 | (*p >> 6));
      out[o++] = (char)(0x80 | (*p & 0x3F));
    }
  }
  out[o] = 0;
  return out;
}

/* Prints converted text padded to a width in characters, not bytes. */
static void Column(const char* text, int width) {
  const char* u = Utf8(text);
  int chars = 0;
  for (const unsigned char* p = (const unsigned char*)u; *p; ++p) chars += (*p & 0xC0) != 0x80;
  printf("%s%*s", u, width > chars ? width - chars : 0, "");
}

static const char* const kReasons[15] = {"", "current changing", "current changed", "deleting",
                                         "deleted", "", "added", "", "value changed",
                                         "tree changed", "category changed"};

static int g_quiet = 0;

static int32_t OnNotification(intptr_t user, VerdalNotification* n) {
  (void)user;
  if (!g_quiet)
    printf("    (notified: %s, cursor %d)\n", n->reason < 15 ? kReasons[n->reason] : "?", n->cursor);
  return 1; /* allow every change */
}

enum { kName, kOrt, kGeburtstag, kKunde, kUmsatz, kNummer };

static int32_t AddField(VerdalHandle db, const char* name, int16_t type, int counter) {
  TDBFieldParams p;
  memset(&p, 0, sizeof p);
  p.dataType = type;
  p.maxChars = -1;
  p.decimals = type == 1 && !counter ? 2 : 0;
  p.allowEmpty = 1;
  p.allowDuplicates = 1;
  p.isCounter = (uint8_t)counter;
  p.name = name;
  return VERDAL_AddField(db, &p, -1, 1);
}

static int32_t Person(VerdalHandle db, int32_t category, const char* name, const char* place,
                      const char* birthday, const char* customer, const char* turnover) {
  int32_t r = VERDAL_AddRecord(db, category, name, 0, name, kName, 0, NULL);
  VERDAL_SetData(db, kOrt, place, r, 1, NULL, NULL);
  VERDAL_SetData(db, kGeburtstag, birthday, r, 1, NULL, NULL);
  VERDAL_SetData(db, kKunde, customer, r, 1, NULL, NULL);
  VERDAL_SetData(db, kUmsatz, turnover, r, 1, NULL, NULL);
  return r;
}

/* Walks the tree in order; a stack of open categories gives the indentation. */
static void PrintTree(VerdalHandle db) {
  int32_t open[64];
  int depth = 0;
  int32_t category = 0;
  int32_t c = VERDAL_Seek(db, VERDAL_CURSOR_NONE, 1, 0, 1, 1, &category, VERDAL_KINDS_BOTH);
  while (c >= 0) {
    while (depth > 0 && !VERDAL_IsChildOf(db, open[depth - 1], c)) --depth;
    printf("  %*s", depth * 2, "");
    if (category == c) {
      printf("[%s]\n", Utf8(VERDAL_GetData(db, kName, c, 0, 1)));
      if (depth < 64) open[depth++] = c;
    } else {
      Column(VERDAL_GetData(db, kName, c, 0, 1), 15);
      Column(VERDAL_GetData(db, kOrt, c, 0, 1), 11);
      printf("%-10s", VERDAL_GetData(db, kGeburtstag, c, 0, 1));
      printf(" Kunde: %-4s", VERDAL_GetData(db, kKunde, c, 0, 1));
      printf(" Umsatz: %10s", VERDAL_GetData(db, kUmsatz, c, 0, 1));
      printf(" Nr. %s\n", VERDAL_GetData(db, kNummer, c, 0, 1));
    }
    c = VERDAL_Seek(db, c, 1, 0, 1, 1, &category, VERDAL_KINDS_BOTH);
  }
}

int main(void) {
  VERDAL_SetApplicationName("Adressbuch");
  VERDAL_SetLanguage(0x407);
  VERDAL_SetNotification(OnNotification, 0);

  printf("An address book in memory\n");
  VerdalHandle db = VERDAL_OpenDB(NULL, NULL, 0, 0, NULL, 1, 0, 0);
  AddField(db, "Name", 0, 0);
  AddField(db, "Ort", 0, 0);
  AddField(db, "Geburtstag", 5, 0);
  AddField(db, "Kunde", 2, 0);
  AddField(db, "Umsatz", 1, 0);
  AddField(db, "Nummer", 1, 1);
  printf("  %d fields:", VERDAL_GetFieldSize(db));
  for (int32_t i = 0; i < VERDAL_GetFieldSize(db); ++i) printf(" %s", VERDAL_GetFieldName(db, i));
  printf("\n");

  g_quiet = 1;
  int32_t friends = VERDAL_AddCategory(db, VERDAL_CURSOR_NONE, "Freunde");
  int32_t work = VERDAL_AddCategory(db, VERDAL_CURSOR_NONE, "Arbeit");
  int32_t clients = VERDAL_AddCategory(db, work, "Kunden");
  VERDAL_SetData(db, kName, "Freunde", friends, 0, NULL, NULL);
  VERDAL_SetData(db, kName, "Arbeit", work, 0, NULL, NULL);
  VERDAL_SetData(db, kName, "Kunden", clients, 0, NULL, NULL);
  Person(db, friends, "Anna Berger", "Bonn", "3.4.85", "nein", "0");
  int32_t jens = Person(db, friends, "Jens M\xFCller", "K\xF6ln", "17.11.1979", "ja", "1.250,5");
  int32_t eva = Person(db, clients, "Eva Schmitz", "Aachen", "1.2.20", "j", "12000");
  Person(db, clients, "Otto Klein", "D\xFCren", "29.2.1960", "1", "980,25");
  printf("  %d categories\n", VERDAL_GetItemCount(db));
  PrintTree(db);

  printf("Editing: Jens moved to Berlin\n");
  g_quiet = 0;
  VERDAL_SetData(db, kOrt, "Berlin", jens, 1, NULL, NULL);
  printf("Moving Jens up into the clients, and Eva to the top\n");
  VERDAL_MoveChild(db, jens, clients, VERDAL_KINDS_BOTH);
  VERDAL_MoveChild(db, eva, VERDAL_CURSOR_ROOT, VERDAL_KINDS_BOTH);
  g_quiet = 1;
  PrintTree(db);

  printf("Comparing turnovers as numbers\n");
  int32_t order = 0;
  VERDAL_Compare(db, jens, eva, kUmsatz, 0, 0, &order);
  printf("  Jens %s Eva\n", order < 0 ? "<" : order > 0 ? ">" : "=");
  printf("Converting as the fields would\n");
  printf("  '1.234,56' as a number: %s\n", VERDAL_ConvertData(db, kUmsatz, "1.234,56", 1, 0, 0));
  printf("  '24.12.99' as a date: %s\n", VERDAL_ConvertData(db, kGeburtstag, "24.12.99", 1, 0, 0));

  printf("Sorting by place, then by turnover from the highest\n");
  VERDAL_SetListSortTopInfo(db, "Nach Ort", kUmsatz, 0, 0);
  VERDAL_SetListSortTopInfo(db, "Nach Ort", kOrt, 1, 1);
  int32_t count = 0, *sorted = NULL;
  VERDAL_SortFlat(db, "Nach Ort", &count, &sorted);
  for (int32_t i = 0; i < count; ++i) {
    printf("  ");
    Column(VERDAL_GetData(db, kOrt, sorted[i], 0, 1), 11);
    printf("%s\n", Utf8(VERDAL_GetData(db, kName, sorted[i], 0, 1)));
  }
  VERDAL_GetCategoryDeleteChildList(sorted);
  printf("  the list's columns:");
  ListDisplayFieldRecord column;
  for (int32_t i = 0; VERDAL_GetListDisplayFieldInfo(db, NULL, i, &column) == 1; ++i)
    printf(" %s (%s)", Utf8(column.heading), column.alignment == 1 ? "right" : column.alignment == 2 ? "centred" : "left");
  printf("\n");

  printf("Refused: a value for the counter field\n");
  if (!VERDAL_SetData(db, kNummer, "99", eva, 0, NULL, NULL))
    printf("  error %d: %s\n", VERDAL_GetLastError(), Utf8(VERDAL_GetLastErrorString(VERDAL_GetLastError())));

  printf("Deleting the category 'Arbeit' with what is in it\n");
  g_quiet = 0;
  VERDAL_DeleteRecord(db, work, VERDAL_DELETE_CATEGORIES | VERDAL_DELETE_RECORDS, 1, NULL, 1);
  g_quiet = 1;
  PrintTree(db);

  VERDAL_CloseAllDBs();
  printf("  %d databases open\n", VERDAL_GetDBCount());
  return 0;
}
