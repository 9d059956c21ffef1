/* A small host of libverdal.so. It uses nothing but verdal.h: it opens databases in memory, makes
 * views, listens to notifications and shows how the engine answers bad input. */
#include <stdio.h>

#include "verdal.h"

/* The engine speaks code page 1252; the terminal speaks UTF-8. The letters of German texts are
 * the same in both tables above 0xA0, so this little conversion is enough for messages. */
static const char* Utf8(const char* text) {
  static char out[2048];
  size_t o = 0;
  for (const unsigned char* p = (const unsigned char*)text; *p && o + 3 < sizeof out; ++p) {
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

static int32_t OnNotification(intptr_t user, VerdalNotification* n) {
  const char* host = (const char*)user;
  printf("  [%s] notification: reason %d, database %d, cursor %d, category %d, field %d\n", host,
         n->reason, n->database, n->cursor, n->categoryId, n->field);
  return 1; /* allow every change */
}

static void ShowDatabase(VerdalHandle db) {
  VerdalDBProperties props;
  char identifier[37];
  if (!VERDAL_GetDBProperties(db, &props) || !VERDAL_GetDBIdentifier(db, identifier)) {
    printf("  database %u: %s\n", db, Utf8(VERDAL_GetLastErrorString(VERDAL_GetLastError())));
    return;
  }
  printf("  database %u: %s, read only %d, file '%s', identifier %s\n", db,
         props.fileName[0] ? "file" : "in memory", props.readOnly, props.fileName, identifier);
}

int main(void) {
  VERDAL_SetApplicationName("Verdal example host");
  VERDAL_SetNotification(OnNotification, (intptr_t) "example");

  printf("Opening two databases in memory\n");
  VerdalHandle addresses = VERDAL_OpenDB(NULL, NULL, 0, 0, NULL, 1, 0, 0);
  VerdalHandle notes = VERDAL_OpenDB(NULL, NULL, 0, 0, NULL, 0, 0, 0);
  printf("  %d databases open\n", VERDAL_GetDBCount());
  for (int32_t i = 0; i < VERDAL_GetDBCount(); ++i) ShowDatabase(VERDAL_GetDBHandle(i));

  printf("Views of database %u\n", addresses);
  printf("  main view in records mode: index %d\n", VERDAL_CreateView(addresses, NULL, VERDAL_VIEW_RECORDS));
  printf("  view 'Kategorien': index %d\n", VERDAL_CreateView(addresses, "Kategorien", VERDAL_VIEW_CATEGORIES));
  printf("  view 'Liste': index %d\n", VERDAL_CreateView(addresses, "Liste", VERDAL_VIEW_BOTH));
  printf("  view 'KATEGORIEN' again: index %d\n", VERDAL_CreateView(addresses, "KATEGORIEN", VERDAL_VIEW_BOTH));

  printf("Closing database %u, then using its handle\n", notes);
  printf("  close: %d\n", VERDAL_CloseDB(notes));
  VerdalDBProperties props;
  int32_t ok = VERDAL_GetDBProperties(notes, &props);
  printf("  properties of the closed handle: %d, error %d: %s\n", ok, VERDAL_GetLastError(),
         Utf8(VERDAL_GetLastErrorString(VERDAL_GetLastError())));
  printf("  a view on it: %d\n", VERDAL_CreateView(notes, "x", VERDAL_VIEW_BOTH));

  printf("Looking for a file that is nowhere\n");
  VerdalHandle missing = VERDAL_OpenDB("nirgends.dbd", NULL, 0, 1, "/tmp", 1, 1, 0);
  printf("  handle %u, error %d\n", missing, VERDAL_GetLastError());

  printf("Closing everything\n");
  VERDAL_CloseAllDBs();
  printf("  %d databases open\n", VERDAL_GetDBCount());
  return 0;
}
