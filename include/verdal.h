/* verdal.h - the C interface of the Verdal tree database engine (libverdal.so).
 *
 * Text is code page 1252 bytes, in and out. A function that returns text hands out one of
 * VERDAL_TEXT_KEPT buffers of its own, used in turn: the text stays valid until the
 * VERDAL_TEXT_KEPT-th next call of the same function, and no other call ends it (so several
 * results can stand in one printf). A database handle is an id issued by the engine, never an
 * address; 0 means "no database". Failures set a process-wide last error, read with
 * VERDAL_GetLastError. The interface is for one thread.
 *
 * Callbacks may call back in. While a call on a database runs (a notification or tree walk
 * callback, a user interface function, a path mapper), the callback may call any function, and
 * nothing it calls frees what the outer call is working on: VERDAL_CloseDB,
 * VERDAL_CloseDBByFileName, VERDAL_CloseAllDBs and VERDAL_EmptyData on that database succeed at
 * once but are carried out when the outermost call on it returns (until then the database stays
 * open and whole, and the outer call ends normally); VERDAL_Load on it is refused with code 10;
 * VERDAL_OpenDB of its name gives its handle without reading the file again (0 when that would
 * have to make a read-only database writable). Notifications do not nest: a change made inside a
 * notification callback is not notified. */
#ifndef VERDAL_H
#define VERDAL_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#if defined(__GNUC__)
#define VERDAL_API __attribute__((visibility("default")))
#else
#define VERDAL_API
#endif

typedef uint32_t VerdalHandle;
typedef void* VerdalWindow;

/* Last-error codes (VERDAL_GetLastError); VERDAL_GetLastErrorString gives the text of each. */
typedef enum VerdalError {
  VERDAL_ERR_NONE = 0,
  VERDAL_ERR_HANDLE = 1,           /* no open database has this handle */
  VERDAL_ERR_FIELD = 2,            /* no field has this index or name */
  VERDAL_ERR_CROSS_FIELD = 3,      /* no field of the linked database has this index */
  VERDAL_ERR_CROSS_OPEN = 4,       /* the linked database cannot be opened */
  VERDAL_ERR_CURSOR = 5,           /* no place has this cursor */
  VERDAL_ERR_CATEGORY_CURSOR = 6,  /* no category place has this cursor */
  VERDAL_ERR_CROSS_TABLE = 7,      /* the field is no link to another database */
  VERDAL_ERR_CANCELLED = 8,        /* the user or a notification callback said no */
  VERDAL_ERR_READ_ONLY_FIELD = 9,  /* the field cannot be written */
  VERDAL_ERR_TARGET = 10,          /* the target is not what the call needs (no data record, ...) */
  VERDAL_ERR_INPUT = 11,           /* an argument or value is not acceptable */
  VERDAL_ERR_VIEW = 12,            /* no view has this number */
  VERDAL_ERR_QUERY = 13,           /* the query text does not parse or bind */
  VERDAL_ERR_BRIDGE_LOAD = 14,     /* the gateway module cannot be loaded */
  VERDAL_ERR_IMPORT = 15,          /* the import was cancelled or failed */
  VERDAL_ERR_EXCHANGE_MISSING = 16, /* the exchange file is not there */
  VERDAL_ERR_EXCHANGE_OPEN = 17,   /* the exchange file cannot be opened */
  VERDAL_ERR_SQL_INSERT = 18,      /* the linked SQL table took no new row */
  VERDAL_ERR_MOVE = 19,            /* the node cannot move there (below itself, the root) */
  VERDAL_ERR_PARENT_RECORD = 20,   /* a new node's parent is a record, not a category */
  VERDAL_ERR_INTERNAL = 21,        /* the engine failed inside (out of memory, an exception) */
  VERDAL_ERR_INDEX = 22,           /* an index outside its range (special data) */
  VERDAL_ERR_SQL_DELETE = 23,      /* the linked SQL table kept a row it should drop */
  VERDAL_ERR_SQL_UPDATE = 24,      /* the linked SQL table took no change */
  VERDAL_ERR_READ_FILE = 25,       /* the file cannot be read or is damaged */
  VERDAL_ERR_WRITE_FILE = 26,      /* the file cannot be written */
  VERDAL_ERR_ACTION = 27           /* an action failed; its message is the text of this code */
} VerdalError;

/* How many texts each text-returning function keeps valid at a time (see above). */
#define VERDAL_TEXT_KEPT 8

/* The longest record title or category name, in characters, that the engine stores; longer ones
 * are cut there. A name buffer of VERDAL_NAME_MAX + 1 bytes has room for any name. */
#define VERDAL_NAME_MAX 255

/* Pseudo cursors. */
enum {
  VERDAL_CURSOR_NONE = -1,
  VERDAL_CURSOR_ROOT = -2,
  VERDAL_CURSOR_FIRST = -3,
  VERDAL_CURSOR_CURRENT = -4,
  VERDAL_CURSOR_LAST = -5,
  VERDAL_CURSOR_FIRST_SIBLING = -6,
  VERDAL_CURSOR_NEXT = -7,
  VERDAL_CURSOR_PREVIOUS = -8
};

/* Notification reasons. */
enum {
  VERDAL_NOTIFY_CURRENT_CHANGING = 1,
  VERDAL_NOTIFY_CURRENT_CHANGED = 2,
  VERDAL_NOTIFY_DELETING = 3,
  VERDAL_NOTIFY_DELETED = 4,
  VERDAL_NOTIFY_ADDED = 6,
  VERDAL_NOTIFY_VALUE_CHANGED = 8,
  VERDAL_NOTIFY_SHAPE_CHANGED = 9,
  VERDAL_NOTIFY_CATEGORY_CHANGED = 10,
  VERDAL_NOTIFY_FILTERS_CHANGED = 12,
  VERDAL_NOTIFY_LIST_OPTIONS_CHANGED = 14
};

/* View modes of VERDAL_CreateView. */
enum { VERDAL_VIEW_CATEGORIES = 1, VERDAL_VIEW_RECORDS = 2, VERDAL_VIEW_BOTH = 3 };

/* Kinds of node that walks and lists take. */
enum { VERDAL_KINDS_CATEGORIES = 1, VERDAL_KINDS_RECORDS = 2, VERDAL_KINDS_BOTH = 3 };

/* Flags of VERDAL_DeleteRecord: what below the node is deleted too (the rest moves to the top
 * level). VERDAL_DELETE_CATEGORIES also makes the walk below the node go to all depths. */
enum { VERDAL_DELETE_CATEGORIES = 2, VERDAL_DELETE_RECORDS = 4 };

/* Kinds of option (kinds 4 and 9 do not exist). */
enum {
  VERDAL_OPTION_FILTER = 1,
  VERDAL_OPTION_PRINT = 2,
  VERDAL_OPTION_SORT = 3,
  VERDAL_OPTION_CLIPBOARD = 5,
  VERDAL_OPTION_FIELD_VIEW = 6,
  VERDAL_OPTION_EXPORT = 7,
  VERDAL_OPTION_EMAIL = 8,
  VERDAL_OPTION_REPLACE = 10
};

#pragma pack(push, 1)

/* One column of a list display, as VERDAL_GetListDisplayFieldInfo fills it. The texts belong to
 * the engine and stay valid until the definition or the field changes. */
typedef struct ListDisplayFieldRecord {
  uint8_t alignment; /* 0 left, 1 right, 2 centred */
  uint8_t unused[2]; /* not written */
  uint8_t readOnly;
  int32_t width;
  const char* fieldName;
  const char* heading; /* the shown name, or the field name */
  int32_t fieldIndex;
} ListDisplayFieldRecord;

/* The notification record handed to the callback. One record for the process; valid during the
 * callback only. */
typedef struct VerdalNotification {
  int32_t reserved;
  int32_t reason;
  int32_t database;    /* the handle concerned */
  int32_t cursor;
  int32_t categoryId;  /* for a record the cursor of its category (-2 at top level) */
  int32_t busy;
  int32_t isCategory;
  int32_t field;       /* field index, -10 when not about one field, -8 for a category's text */
  int32_t value;       /* in-out; VERDAL_DeleteRecord passes its flags here */
  int32_t extra;
} VerdalNotification;

/* Filled by VERDAL_GetDBProperties. */
typedef struct VerdalDBProperties {
  int32_t readOnly;
  int32_t importMode;
  char fileName[260];
  char password[260];
} VerdalDBProperties;

/* A field definition as it crosses the interface. Numbers that the engine holds as 80-bit values
 * travel as doubles. String pointers handed out stay valid until the next change of the field;
 * null strings handed in count as empty. */
typedef struct TDBFieldParams {
  int16_t dataType; /* 0 text, 1 number, 2 yes/no, 3 binary, 4 date and time, 5 date, 6 time, 7 link */
  int16_t sqlType;  /* ODBC type code, 0 for automatic */
  uint32_t extendedType;
  int32_t maxChars;
  int16_t decimals;
  double minValue;
  double maxValue;
  uint8_t hasMin;
  uint8_t hasMax;
  uint8_t isCounter;
  uint8_t hostFlag1;
  double startValue;
  double counterValue;
  uint8_t hostFlag2;
  uint8_t allowEmpty;
  uint8_t allowDuplicates;
  uint8_t readOnly;
  uint8_t hiddenInLists;
  uint8_t hiddenInSort;
  uint8_t hiddenField;
  uint8_t lookInOwnFolder; /* a link field's database is looked for beside this one first */
  const char* format;
  const char* initValue;
  const char* hostText1;
  const char* errorText;
  const char* linkDatabase;
  const char* linkField;
  const char* name;
  const char* displayName;
  const char* hostText2;
} TDBFieldParams;

/* The facts of one node that VERDAL_GetCategoryInfo gives. Every out pointer may be null: that
 * fact is then not worked out. */
typedef struct TDBCategoryQuery {
  int32_t viewIndex;       /* in: the view, 0 for the main tree */
  int32_t onlyExpanded;    /* in: a closed node shows no children */
  int32_t* isCategory;
  char* name;              /* a record's title, a category's shown name, cut to fit */
  int32_t nameSize;        /* in: bytes in name; 0 means VERDAL_NAME_MAX + 1 */
  int32_t* expanded;
  int32_t* parent;         /* -1 at the top level */
  int32_t* depth;          /* 0 at the top level */
  int32_t* row;            /* the number by the view's mode */
  int32_t* visibleChildren;
} TDBCategoryQuery;

/* Local time as the engine stores it. Day of week 0 is Sunday. */
typedef struct VerdalLocalTime {
  uint16_t year, month, dayOfWeek, day, hour, minute, second, millisecond;
} VerdalLocalTime;

/* Where a link field's chain ends, as VERDAL_GetCrossInfo and VERDAL_GetCrossData fill it: the
 * path of the last database (cut to 259 characters) and the name of the last field (cut to 1023). */
typedef struct TCrossInfo {
  char path[260];
  char fieldName[1024];
} TCrossInfo;

#pragma pack(pop)

#if defined(__cplusplus)
static_assert(sizeof(VerdalNotification) == 40, "notification record is 40 bytes");
static_assert(sizeof(VerdalDBProperties) == 528, "properties record is 528 bytes");
static_assert(sizeof(VerdalLocalTime) == 16, "local time is 16 bytes");
static_assert(sizeof(TCrossInfo) == 1284, "cross info record is 1284 bytes");
static_assert(sizeof(ListDisplayFieldRecord) == 12 + 2 * sizeof(void*), "list display record: 28 bytes on 64-bit");
static_assert(sizeof(TDBFieldParams) == 58 + 9 * sizeof(void*), "field record: 130 bytes on 64-bit");
#else
_Static_assert(sizeof(VerdalNotification) == 40, "notification record is 40 bytes");
_Static_assert(sizeof(VerdalDBProperties) == 528, "properties record is 528 bytes");
_Static_assert(sizeof(VerdalLocalTime) == 16, "local time is 16 bytes");
_Static_assert(sizeof(TCrossInfo) == 1284, "cross info record is 1284 bytes");
_Static_assert(sizeof(ListDisplayFieldRecord) == 12 + 2 * sizeof(void*), "list display record: 28 bytes on 64-bit");
_Static_assert(sizeof(TDBFieldParams) == 58 + 9 * sizeof(void*), "field record: 130 bytes on 64-bit");
#endif

/* The answer is the low byte of the result: nonzero allows, zero vetoes (reasons 1 and 3). */
typedef int32_t (*VerdalNotifyFn)(intptr_t user, VerdalNotification* record);
typedef void (*VerdalPathMapperFn)(char path[260]);
/* Called for each shown node of a tree walk; returns the seed for that node's children. */
typedef intptr_t (*VerdalTreeFn)(intptr_t parentSeed, int32_t cursor, int32_t depth, int32_t number,
                                 intptr_t user);

/* Pool and errors. The message of VERDAL_GetLastErrorString is valid until its
 * VERDAL_TEXT_KEPT-th next call. */
VERDAL_API int32_t VERDAL_GetLastError(void);
VERDAL_API const char* VERDAL_GetLastErrorString(int32_t code);
VERDAL_API int32_t VERDAL_GetDBCount(void);
VERDAL_API VerdalHandle VERDAL_GetDBHandle(int32_t index);
VERDAL_API void VERDAL_CloseAllDBs(void);

/* Process-wide switches. */
VERDAL_API void VERDAL_SetNotify(int32_t enable);
VERDAL_API void VERDAL_SetNotification(VerdalNotifyFn callback, intptr_t user);
VERDAL_API int32_t VERDAL_SetApplicationName(const char* name);
VERDAL_API void VERDAL_SetPathMapper(VerdalPathMapperFn mapper);
VERDAL_API void VERDAL_SetNumericTPoints(int32_t enable, int32_t onlyWithDecimals);
VERDAL_API void VERDAL_SetTryResolveDBReferencesLocal(int32_t enable);

/* Open and close. */
VERDAL_API VerdalHandle VERDAL_OpenDB(const char* fileName, const char* password, int32_t noSearch,
                                      int32_t search, const char* searchFolder, int32_t sizeClass,
                                      int32_t readOnly, int32_t refuseReadOnly);
/* Reads the file again (null or the database's own name), or switches the database to another
 * file. 1, or 0 (code 25 when the file could not be read; code 10 from inside a callback of a
 * call on this database). */
VERDAL_API int32_t VERDAL_Load(VerdalHandle db, const char* fileName, int32_t refuseReadOnly);
/* Null, empty or the own name: saves over the database's file so that a failure leaves the old
 * file whole (and the previous version in the ".bak" beside it). Another name: writes a copy
 * there; the database stays on its own file. 1, or 0. */
VERDAL_API int32_t VERDAL_Save(VerdalHandle db, const char* fileName);
VERDAL_API int32_t VERDAL_CloseDB(VerdalHandle db);
VERDAL_API int32_t VERDAL_CloseDBByFileName(const char* fileName);
VERDAL_API int32_t VERDAL_GetDBProperties(VerdalHandle db, VerdalDBProperties* properties);
/* identifier needs 37 bytes. */
VERDAL_API int32_t VERDAL_GetDBIdentifier(VerdalHandle db, char* identifier);

/* Fields. */
VERDAL_API int32_t VERDAL_GetFieldSize(VerdalHandle db);
/* Null for a bad handle or index; the last error is left alone. Valid until the
 * VERDAL_TEXT_KEPT-th next call of VERDAL_GetFieldName. */
VERDAL_API const char* VERDAL_GetFieldName(VerdalHandle db, int32_t index);
VERDAL_API int32_t VERDAL_GetFieldIndex(VerdalHandle db, const char* name);
/* linked may be null; for a field that is not a link it receives a copy of info. */
VERDAL_API int32_t VERDAL_GetFieldInfo(VerdalHandle db, int32_t index, TDBFieldParams* info,
                                       TDBFieldParams* linked);
/* Adds a field at the end and gives its index. A name that exists already is refused with -2 when
 * refuseExisting is set; otherwise that field moves to index (-1: the last place) and takes the
 * record's data type. -3 for a name holding '|', '\', '{' or '}'. -1 for a bad handle (last
 * error untouched), and -1 with code 11 for a null record or name, or a full field list. */
VERDAL_API int32_t VERDAL_AddField(VerdalHandle db, const TDBFieldParams* field, int32_t index,
                                   int32_t refuseExisting);
VERDAL_API int32_t VERDAL_HasSameDataFields(VerdalHandle first, VerdalHandle second, int32_t sameOrder);

/* Values. The text of VERDAL_ConvertData is valid until its VERDAL_TEXT_KEPT-th next call. */
VERDAL_API const char* VERDAL_ConvertData(VerdalHandle db, int32_t fieldIndex, const char* text,
                                          int32_t toInternal, int32_t useWords, int32_t validate);
VERDAL_API int32_t VERDAL_Compare(VerdalHandle db, int32_t firstCursor, int32_t secondCursor,
                                  int32_t fieldIndex, int32_t stringSort, int32_t reverse,
                                  int32_t* result);

/* Links. A link field (type 7) stores the cursor of a record of another database (linkDatabase)
 * and shows that record's value of linkField, which may be a link again: a chain of databases,
 * opened as it is followed (never created), that may not come back to a database it has passed,
 * except that the first link may lead into its own database. Values of a link field show, compare
 * and filter as the value at the end of the chain; a link that does not resolve shows empty.
 * Code 3: the field is no link field; code 7: its chain does not resolve. */
/* info may be null; its texts are emptied first. */
VERDAL_API int32_t VERDAL_GetCrossInfo(VerdalHandle db, int32_t fieldIndex, TCrossInfo* info);
/* What the field may take: for a link field the records at the end of its chain, for any other
 * field its own database. node VERDAL_CURSOR_ROOT lists every record (with withCategories the
 * categories too), depth-first, through the filter where one is given (code 13 if it does not
 * compile); a category lists the records below it; a record lists itself alone, unfiltered (code 5
 * if there is no such node). strings gets the shown texts and ids the cursors, both allocated by
 * the engine with one entry more than count; count 0 allocates nothing and leaves both null. Give
 * them back with VERDAL_DeleteGetCrossData. */
VERDAL_API int32_t VERDAL_GetCrossData(VerdalHandle db, int32_t fieldIndex, int32_t* count,
                                       char*** strings, int32_t** ids, TCrossInfo* info,
                                       int32_t node, const char* filter, int32_t withCategories);
VERDAL_API void VERDAL_DeleteGetCrossData(int32_t count, char** strings, int32_t* ids);
/* In the first record of referringDb whose link (to targetDb's targetField) holds oldNode, stores
 * newNode: at most one record of one field changes. Notifies reason 2 for newNode in targetDb and
 * returns 1 also when nothing held oldNode. Unlike other functions it leaves an earlier last error
 * standing when it succeeds. */
VERDAL_API int32_t VERDAL_UpdateCrossValue(VerdalHandle targetDb, VerdalHandle referringDb,
                                           int32_t targetField, int32_t oldNode, int32_t newNode);
/* 1 when the link value of the record at node (in referringDb) names a record that exists in
 * targetDb, whichever database the field itself names; 0 for a field that is no link, without a
 * code. */
VERDAL_API int32_t VERDAL_ExistsReferenceEntry(VerdalHandle referringDb, VerdalHandle targetDb,
                                               int32_t node, int32_t fieldIndex);

/* Records and categories. Cursors name nodes; the VERDAL_CURSOR_ values are pseudo cursors. */
VERDAL_API int32_t VERDAL_AddRecord(VerdalHandle db, int32_t parent, const char* title,
                                    int32_t temporary, const char* firstValue, int32_t firstField,
                                    int32_t unused, VerdalWindow window);
VERDAL_API int32_t VERDAL_DuplicateRecord(VerdalHandle db, int32_t source, int32_t parent,
                                          const char* title);
/* errorText, where given, receives at most 1023 characters and a terminator. */
VERDAL_API int32_t VERDAL_SetData(VerdalHandle db, int32_t fieldIndex, const char* value,
                                  int32_t cursor, int32_t validate, char* errorText,
                                  VerdalWindow window);
/* The stored text (raw) or the text a user sees, copied: a later change of the value does not
 * touch it. Valid until the VERDAL_TEXT_KEPT-th next call of VERDAL_GetData. */
VERDAL_API const char* VERDAL_GetData(VerdalHandle db, int32_t fieldIndex, int32_t cursor,
                                      int32_t raw, int32_t useWords);
VERDAL_API int32_t VERDAL_HasDataMember(VerdalHandle db, int32_t fieldIndex, const char* value,
                                        int32_t asStored, int32_t searchCategories,
                                        int32_t* cursorOut, int32_t skipCursor);
VERDAL_API int32_t VERDAL_AddCategory(VerdalHandle db, int32_t parent, const char* name);
VERDAL_API int32_t VERDAL_DeleteRecord(VerdalHandle db, int32_t cursor, int32_t flags, int32_t notify,
                                       VerdalWindow parent, int32_t renumber);
VERDAL_API int32_t VERDAL_EmptyData(VerdalHandle db, int32_t keepDefinitions);
/* Real cursors and VERDAL_CURSOR_ROOT only. */
VERDAL_API int32_t VERDAL_HasMember(VerdalHandle db, int32_t cursor);
/* The number of categories; -1 for a bad handle, without a code. */
VERDAL_API int32_t VERDAL_GetItemCount(VerdalHandle db);
/* Three words per node, free for the host (index 0 to 2, else code 22). */
VERDAL_API int32_t VERDAL_GetSpecialData(VerdalHandle db, int32_t index, int32_t cursor);
VERDAL_API int32_t VERDAL_SetSpecialData(VerdalHandle db, int32_t index, int32_t value, int32_t cursor);
/* Each pointer may be null; the identifier out needs 37 bytes. */
VERDAL_API int32_t VERDAL_GetInternalData(VerdalHandle db, int32_t cursor, VerdalLocalTime* created,
                                          VerdalLocalTime* changed, int32_t* modified,
                                          char* identifier);
VERDAL_API int32_t VERDAL_SetInternalData(VerdalHandle db, int32_t cursor,
                                          const VerdalLocalTime* created,
                                          const VerdalLocalTime* changed, const uint8_t* modified,
                                          const char* identifier);

/* Walking and moving. VERDAL_MoveChild takes a target cursor, or VERDAL_CURSOR_NEXT (one step
 * down) or VERDAL_CURSOR_PREVIOUS (one step up). */
VERDAL_API int32_t VERDAL_Seek(VerdalHandle db, int32_t cursor, int32_t count, int32_t wrap,
                               int32_t descend, int32_t keepCurrent, int32_t* categoryOut,
                               int32_t kinds);
VERDAL_API int32_t VERDAL_MoveChild(VerdalHandle db, int32_t cursor, int32_t target, int32_t kinds);
/* No pseudo cursors. */
VERDAL_API int32_t VERDAL_IsChildOf(VerdalHandle db, int32_t cursor, int32_t other);

/* The tree of a view. */
/* Calls back for each shown node below the start (-1: the root), parents before children.
 * 1; -1 bad handle, -3 bad view, -2 start not in the view. The last error is left alone. The
 * walk goes over the children lists as they stood when it reached each node: nodes the callback
 * adds or moves may be missed or met twice, nodes it deletes are passed over. */
VERDAL_API int32_t VERDAL_BuildCategoryTree(VerdalHandle db, intptr_t seed, VerdalTreeFn callback,
                                            intptr_t user, int32_t viewIndex, int32_t startCursor);
/* Real cursors and VERDAL_CURSOR_ROOT only. */
VERDAL_API int32_t VERDAL_GetCategoryInfo(VerdalHandle db, int32_t cursor, TDBCategoryQuery* query);
/* The places below a node as an array the engine allocates (one entry more than the count; give
 * it back with VERDAL_GetCategoryDeleteChildList). kinds -1 takes the view's mode. With a null
 * count only the cursor is checked. A filter text selects with the query language (code 13 when
 * it fails). */
VERDAL_API int32_t VERDAL_GetCategoryChildList(VerdalHandle db, int32_t cursor, int32_t viewIndex,
                                               int32_t reverse, int32_t recurse,
                                               int32_t onlyExpanded, int32_t* count,
                                               int32_t** cursors, int32_t kinds,
                                               const char* filter, int32_t includeStart);
VERDAL_API void VERDAL_GetCategoryDeleteChildList(int32_t* cursors);
/* Name, open state and parent of a node; null pointers leave that part alone. mode 1 moves into a
 * category, 2 beside the target, other values into the target. Code 19 when the move is refused. */
VERDAL_API int32_t VERDAL_SetCategoryInfo(VerdalHandle db, int32_t cursor, const char* name,
                                          const int32_t* expanded, const int32_t* newParent,
                                          const int32_t* position, int32_t mode,
                                          int32_t* positionOut, int32_t checkOnly,
                                          int32_t viewIndex);
VERDAL_API int32_t VERDAL_HasCategories(VerdalHandle db);

/* Views. */
VERDAL_API int32_t VERDAL_CreateView(VerdalHandle db, const char* name, int32_t mode);

/* Filters. The internal query text of the named filter (case ignored), for the functions that
 * take a filter text; null for an unknown name or a filter that names a missing field, without
 * an error. Valid until the VERDAL_TEXT_KEPT-th next call of VERDAL_GetFilter. */
VERDAL_API const char* VERDAL_GetFilter(VerdalHandle db, const char* name);
/* The query text of one condition "equal" on a field: flags 2 drops "whole word", 4 drops
 * "case-sensitive", 8 means "begins with", 16 a pattern with '*'. Null for a bad handle (code 1)
 * or field index. Valid until the VERDAL_TEXT_KEPT-th next call of the same function. */
VERDAL_API const char* VERDAL_GetInternalParseString(VerdalHandle db, int32_t fieldIndex,
                                                     const char* value, int32_t flags);

/* List display. A definition names the columns of a host's list; the same record with another
 * kind is a sort definition. The two kinds are looked up apart (a sort definition's name given to
 * a list display function is unknown, -2). Results: 1 success, -1 an unknown database, -2 an
 * unknown definition, -3 a bad index or field, -5 a column whose field is gone. None of these but
 * VERDAL_ConfigView touches the last error. */
/* With a null name the number of fields, hidden ones too; else the definition's columns. */
VERDAL_API int32_t VERDAL_GetListDisplayFieldSize(VerdalHandle db, const char* name);
/* With a null name, index is a field index and the record gets the field's default column (width
 * 24); else column index of the definition. */
VERDAL_API int32_t VERDAL_GetListDisplayFieldInfo(VerdalHandle db, const char* name, int32_t index,
                                                  ListDisplayFieldRecord* record);
/* Marks the database changed. */
VERDAL_API int32_t VERDAL_SetListDisplayFieldInfoColWidth(VerdalHandle db, const char* name,
                                                          int32_t index, int32_t width);
/* The first sort field of a sort definition: fieldIndexOut -1 when it has none or its field is
 * gone; ascendingOut 1 or 0 (1 for a definition without fields). Either may be null. */
VERDAL_API int32_t VERDAL_GetListSortTopInfo(VerdalHandle db, const char* name,
                                             int32_t* fieldIndexOut, int32_t* ascendingOut);
/* Makes a field the first of a sort definition: a field already in it changes places with the
 * first one (1); another is put in front of all (-3). A missing definition is made with that one
 * field (1) unless mustExist (-2). */
VERDAL_API int32_t VERDAL_SetListSortTopInfo(VerdalHandle db, const char* name, int32_t fieldIndex,
                                             int32_t ascending, int32_t mustExist);
/* The list display (sort 0) or sort page for the definition name, through the user interface.
 * 1 when confirmed; 0 with last error 8 when cancelled (always without a user interface), 0 with
 * last error 1 for an unknown database. The database counts as changed afterwards either way. */
VERDAL_API int32_t VERDAL_ConfigView(VerdalHandle db, VerdalWindow window, const char* title,
                                     const char* name, int32_t sort);

/* Sorting by a sort definition's fields, most significant first. Among records equal under every
 * field the order is reversed by each sort. Children that do not take part (categories in a sort
 * of records) stand first under their node. No sort marks the database changed. */
/* All records below the definition's start, at every depth, sorted: countOut gets the count and
 * arrayOut an array of count + 1 cursors (the last unset), given back with
 * VERDAL_GetCategoryDeleteChildList. -1 unknown database, -2 no sort definition of that name, 0 a
 * start without a place; 1 otherwise, with nothing written for a definition without fields. The
 * last error is not touched. */
VERDAL_API int32_t VERDAL_SortFlat(VerdalHandle db, const char* name, int32_t* countOut,
                                   int32_t** arrayOut);
/* The tree in place, below the definition's start, every level with its recursive flag; every view
 * shows the new order. 1, or 0 with last error 1 (unknown database), 11 (unknown definition), 0
 * (a start without a place) or 10 (asked from a callback of another call on the database, such
 * as a tree walk, whose nodes it would change; VERDAL_SortCategories the same). Notifies VERDAL_NOTIFY_SHAPE_CHANGED (field 0, extra 1) when the
 * definition asks for it. */
VERDAL_API int32_t VERDAL_Sort(VerdalHandle db, const char* name);
/* The categories by name, below startCursor (-2 the root); with useDialog the user chooses through
 * the user interface and the first three arguments are ignored (0 when cancelled, and always
 * without a user interface). */
VERDAL_API int32_t VERDAL_SortCategories(VerdalHandle db, int32_t ascending, int32_t recursive,
                                         int32_t stringSort, int32_t startCursor,
                                         int32_t useDialog, VerdalWindow parentWindow);

/* Options: named settings by kind (VERDAL_OPTION_). owner scopes the entries of kinds 5 to 10 to a
 * part of the host: an entry is visible to its own owner, or to all when its owner is -1; new
 * entries take the caller's owner. Filters, printouts and sort definitions have no owners. All
 * clear the last error; an unknown database gives 0 with last error 1. */
VERDAL_API int32_t VERDAL_NumOptions(VerdalHandle db, int32_t kind, int32_t owner);
/* The name of option index, valid until the VERDAL_TEXT_KEPT-th next call; null with last error 11
 * for a bad index or kind. isDefault (may be null) gets 1 for the default option. For kind 6 with
 * fieldCount and fieldNames given, the view's fields that the database still has are copied into
 * fieldNames, a block of maxFields buffers of nameSize bytes each (cut and terminated), and
 * fieldCount gets how many. */
VERDAL_API const char* VERDAL_GetOptionName(VerdalHandle db, int32_t kind, int32_t index,
                                            int32_t owner, int32_t* isDefault, int32_t maxFields,
                                            int32_t nameSize, int32_t* fieldCount,
                                            char* fieldNames);
/* 1, or 0 for an unknown kind. Does not mark the database changed. */
VERDAL_API int32_t VERDAL_SetDefaultOption(VerdalHandle db, int32_t kind, const char* name,
                                           int32_t owner);
/* The option sheet of a kind through the user interface; a non-empty defaultName is made the
 * default first. 1 when confirmed (notifying VERDAL_NOTIFY_FILTERS_CHANGED for kind 1 and
 * VERDAL_NOTIFY_LIST_OPTIONS_CHANGED for kind 3); 0 with last error 8 when cancelled (always
 * without a user interface), and what the pages changed before stays. Kind 2, the print
 * configurations, gives 1 however its sheet was closed. The database counts as changed afterwards
 * either way. */
VERDAL_API int32_t VERDAL_ConfigOptions(VerdalHandle db, VerdalWindow window, int32_t kind,
                                        int32_t owner, const char* title, const char* defaultName);
/* Replaces every option and default of target by a copy of source's. While an option or list
 * sheet is open on target (a host callback calling in), this and another sheet on it give 0 with
 * last error 10: the open sheet's pages hold the entries. */
VERDAL_API int32_t VERDAL_MoveOptions(VerdalHandle source, VerdalHandle target);
/* Removes the print configuration of that name, ignoring case: 1; -1 for an invalid handle; -2 if
 * no configuration has that name. The last error is left as it was. */
VERDAL_API int32_t VERDAL_PrintTableDeleteOption(VerdalHandle db, const char* configName);

/* Password and compression. password buffers hold 32 bytes; compress receives 0 or 1. */
VERDAL_API int32_t VERDAL_GetPWDAndCompression(VerdalHandle db, char* password, int32_t* compress);
/* Blanks at both ends of the password are dropped; it must then be empty (no cipher) or have 5 to
 * 31 characters, else -2 and nothing changes. -1 for a bad handle. Takes effect at the next save. */
VERDAL_API int32_t VERDAL_SetPWDAndCompression(VerdalHandle db, const char* password,
                                               int32_t compress);
/* Shows the password dialog through the user interface; 0 for a bad handle, else 1. */
VERDAL_API int32_t VERDAL_ConfigurePWDAndCompression(VerdalHandle db, VerdalWindow window,
                                                     char* password, int32_t* compress);

/* Identities. An index finds a data record by its identity (the text VERDAL_GetInternalData
 * reads). It is what the last VERDAL_InitIdentity made of the records then present: records added
 * later are not in it, deleted ones are passed over, and a record whose identity was changed since
 * is usually found by neither text. It is emptied with the data (VERDAL_EmptyData, every load) and
 * never saved. */
/* Builds the index anew. 1, or 0 with last error 1. */
VERDAL_API int32_t VERDAL_InitIdentity(VerdalHandle db);
/* Empties the index until the next VERDAL_InitIdentity. 1, or 0 with last error 1. */
VERDAL_API int32_t VERDAL_ClearIdentity(VerdalHandle db);
/* 1 with the data id of the record whose identity is text (exact, case counts; null is the empty
 * text) in recordNumber, which may be null; a data id is no cursor. 0 with last error 0 when none
 * is found, 0 with last error 1 for a bad handle. A database without an index gets one built first;
 * an emptied one finds nothing. */
VERDAL_API int32_t VERDAL_FindIdentity(VerdalHandle db, const char* text, int32_t* recordNumber);

/* Import and SQL links. The gateway modules libverdal_sqlbridge.so and libverdal_mysqlgate.so
 * are loaded from the folder of libverdal.so (VERDAL_GATEWAY_DIR overrides it). */
typedef void (*VerdalProgressFn)(int32_t percent);
enum {
  VERDAL_IMPORT_RAW = 0x100,            /* values are stored as they come, unconverted */
  VERDAL_IMPORT_CONFIGURE_ONLY = 0x400  /* the bridge only configures; nothing is read */
};
/* Reads input (an ".imp" definition, or a .csv/.txt/.tab/.tsv/.asc file taken whole with a column
 * line, option then giving the mode 0 to 3) through the bridge. Mode 0 replaces fields and records,
 * 1 updates records named in a "ZEPNODEID" column and adds the others, 2 adds under the categories
 * of matching paths, 3 replaces and stays linked: every later added, changed and deleted record is
 * written to the source first. mapper null takes VERDAL_SetPathMapper's; progress (may be null)
 * gets 0 at start and end and the share of rows done between. fieldCount names1[i] names2[i]
 * take only these source columns, renamed. extra and reserved go to the bridge unseen (0).
 * outCount (may be null) gets the number of records made; when above 0, *outCursors a new array
 * of their cursors in depth-first order, released with VERDAL_GetCategoryDeleteChildList.
 * 1 on success; 0 with last error 1, 14 (no bridge), 15 (the bridge failed: the source cannot be
 * read, the server refused), 16 or 17 (no exchange file; one that is empty, cut short or damaged),
 * or 0 with last error 0 when a column matches no field in modes 1 and 2. On every failure the
 * database is as it was. */
VERDAL_API int32_t VERDAL_Import(VerdalHandle handle, const char* input, intptr_t extra,
                                 VerdalPathMapperFn mapper, VerdalProgressFn progress,
                                 intptr_t option, int32_t flags, int32_t* outCount,
                                 int32_t** outCursors, int32_t fieldCount,
                                 const char* const* names1, const char* const* names2,
                                 intptr_t reserved);
/* A statement on the MariaDB or MySQL server a database is linked to: a1 the statement with ?
 * placeholders, a2 an array of a3 parameter texts (may be null), a4 a buffer of a5 bytes for the
 * first column of the first row (may be null), a6 an int32_t* for the affected rows (may be null).
 * The gateway's result (1 done, 0 refused); 0 with last error 1 for an unknown handle and 0 with
 * last error 0 for a database not linked to such a server. */
VERDAL_API int32_t VERDAL_ExecSQL(VerdalHandle handle, intptr_t a1, intptr_t a2, intptr_t a3,
                                  intptr_t a4, intptr_t a5, intptr_t a6);

/* Writes places to a target through the bridge: the places of cursors (count of them), or with
 * count 0 or cursors null every place of view 0. target names a data file (its extension gives
 * the format: .csv .txt .tsv .xlsx .html) or, with flag VERDAL_EXPORT_DEFINITION, an export
 * definition, which VERDAL_EXPORT_EDIT_ONLY only brings up to date. VERDAL_EXPORT_CATEGORIES adds
 * leading columns CAT1.. with each place's path, and the whole tree then gives records only.
 * mapper null takes VERDAL_SetPathMapper's; extra, reserved and arg1 to arg4 go to the bridge
 * unseen (0). 1 once the bridge has had the rows, whether or not it could write the target; 0
 * with last error 1, or 14 when the bridge cannot be loaded. */
enum {
  VERDAL_EXPORT_EDIT_ONLY = 0x400,
  VERDAL_EXPORT_CATEGORIES = 0x800,
  VERDAL_EXPORT_DEFINITION = 0x4000
};
VERDAL_API int32_t VERDAL_Export(VerdalHandle handle, const char* target, intptr_t extra,
                                 VerdalPathMapperFn mapper, intptr_t reserved, int32_t flags,
                                 int32_t count, const int32_t* cursors, intptr_t arg1,
                                 intptr_t arg2, intptr_t arg3, intptr_t arg4);

/* Runs the stored option `name` (VERDAL_OPTION_ kinds: print 2, clipboard 5, export 7, e-mail 8,
 * replacement 10) over count records at cursors, in that order; other kinds do nothing. 1, or 0
 * with last error 1, 11 (no visible option has that name), or 27 (the e-mail could not start:
 * VERDAL_GetLastErrorString tells why); print and export give their functions' result. */
VERDAL_API int32_t VERDAL_ExecAction(VerdalHandle handle, int32_t kind, const char* name,
                                     int32_t count, const int32_t* cursors);

/* Additions for hosts on this platform. */
/* Printing. VERDAL_PrintTable lays the records out as a table (the print configuration
 * `configName`, null for the empty name), over the rows the filter accepts, or the `count`
 * cursors in `ids` when ids is not null, and shows it in the print preview, from which it is printed
 * to a PDF file (see VerdalUserInterface.showPrintPreview; without one the table is printed once to
 * "<database name>.pdf" beside the database, or for a database in memory in VERDAL_PRINT_DIR or
 * the temporary folder). `styleField` is the index of a field whose "field,flags;..." pairs style
 * the cells (1 bold, 2 underlined, 4 a line over, 8 double underlined), or -1. 1, or 0 with code 1
 * for an unknown handle. */
typedef struct VerdalPrintInfo {
  const char* filter; /* rows chosen again with this filter text (phase 1) */
  const char* title1; /* replace the configuration's titles where set (phase 1) */
  const char* title2;
  void* extraPage;    /* a host page for the settings sheet (phase 0); not shown on this platform */
  int32_t reserved;
  int32_t count;      /* with ids: the rows from now on (phase 1); the host frees them after phase 3 */
  int32_t* ids;
} VerdalPrintInfo;
/* Phases: 0 before the settings sheet opens, 1 before a printout is built, 2 after the settings
 * sheet, 3 after a printout was built from the host's ids. */
typedef int32_t (*VerdalPrintFn)(VerdalPrintInfo* info, int32_t phase);
VERDAL_API int32_t VERDAL_PrintTable(VerdalHandle db, const char* configName, const char* filter,
                                     VerdalPrintFn callback, int32_t count, const int32_t* ids,
                                     int32_t styleField);

typedef void (*VerdalTraceFn)(const char* line);
/* The diagnostic trace goes to this function; null discards it (the default, unless the
 * environment has VERDAL_TRACE=stderr). */
VERDAL_API void VERDAL_SetTraceSink(VerdalTraceFn sink);
/* The language of the engine's texts; 0 takes it from the environment's locale. */
VERDAL_API void VERDAL_SetLanguage(int32_t languageId);

/* The user interface: what the engine shows goes to these host functions. */
/* Buttons, icons and answers of a message box. */
enum {
  VERDAL_MB_OK = 0,
  VERDAL_MB_OKCANCEL = 1,
  VERDAL_MB_YESNOCANCEL = 3,
  VERDAL_MB_YESNO = 4,
  VERDAL_MB_RETRYCANCEL = 5
};
enum {
  VERDAL_ICON_NONE = 0,
  VERDAL_ICON_STOP = 0x10,
  VERDAL_ICON_QUESTION = 0x20,
  VERDAL_ICON_WARNING = 0x30,
  VERDAL_ICON_INFORMATION = 0x40
};
enum { VERDAL_ID_OK = 1, VERDAL_ID_CANCEL = 2, VERDAL_ID_RETRY = 4, VERDAL_ID_YES = 6, VERDAL_ID_NO = 7 };
/* Kinds of control in a dialog. A check box's text is "1" when checked, "0" otherwise. A list
 * and a combo box offer items (itemCount, item); their text is the selected item, "" for none, and
 * setting a text selects the first item equal to it ("" clears a list's selection; any other text
 * that is no item changes nothing). Setting any text on a button presses it. */
enum {
  VERDAL_CONTROL_TEXT = 0,   /* label or note */
  VERDAL_CONTROL_EDIT = 1,
  VERDAL_CONTROL_MASKED = 2, /* an edit shown masked */
  VERDAL_CONTROL_CHECK = 3,
  VERDAL_CONTROL_LIST = 4,
  VERDAL_CONTROL_CHOICE = 5, /* a combo box: one of its items */
  VERDAL_CONTROL_BUTTON = 6
};

typedef struct VerdalControl {
  int32_t id;
  int32_t page;
  int32_t kind;
  int32_t limit; /* longest text an edit takes, 0 for no limit */
  const char* label;
} VerdalControl;

/* A dialog of the engine, as handed to runSheet and valid only during that call. The host shows
 * the controls, reads and sets their texts, and ends the dialog with pressOk (answers 1 when the
 * dialog accepts the input; on 0 it stays open, having told the user why) or pressCancel. A
 * dialog left without either counts as cancelled. Texts handed out stay valid until the next call
 * on the sheet.
 * A dialog may change while it runs: after setText and pressOk, pageCount and controlCount are
 * brought up to date, and pages, controls, items and the enabled state may differ from before
 * (a button or a choice in a list can add or remove whole pages), so a host reads them again. A
 * control id names the same control for as long as it exists. The members after `engine` came
 * with lists, combo boxes and buttons. */
typedef struct VerdalSheet VerdalSheet;
struct VerdalSheet {
  const char* title;
  int32_t pageCount;
  int32_t controlCount;
  const char* (*pageTitle)(const VerdalSheet* sheet, int32_t page);
  void (*control)(const VerdalSheet* sheet, int32_t index, VerdalControl* out);
  const char* (*getText)(const VerdalSheet* sheet, int32_t controlId);
  void (*setText)(const VerdalSheet* sheet, int32_t controlId, const char* text);
  int32_t (*pressOk)(const VerdalSheet* sheet);
  void (*pressCancel)(const VerdalSheet* sheet);
  void* engine; /* the engine's, do not touch */
  /* The items of a list or combo box, 0 and "" for other controls. */
  int32_t (*itemCount)(const VerdalSheet* sheet, int32_t controlId);
  const char* (*item)(const VerdalSheet* sheet, int32_t controlId, int32_t index);
  /* 0 when the control cannot act now (a button with nothing to do), else 1. */
  int32_t (*enabled)(const VerdalSheet* sheet, int32_t controlId);
};

/* A member left null behaves as without a user interface: a message box answers its default,
 * the rest is cancelled, the clipboard text is kept in the engine, nothing opens and nothing
 * stops a run. Members are only ever added at the end; `size` says how many the host knows. */
/* The print preview as a host shows it: the pages of the table, drawn to PNG on request at one of
 * the twelve zoom steps ("2.5%" ... "100%" at index 8 ... "250%"). The host answers the callback
 * with the command the user chose: close, configure (the settings sheet runs through runSheet, and
 * the preview is shown again), print (a PDF, its path from pickFile) or printer set-up. */
#define VERDAL_PREVIEW_CLOSE 0
#define VERDAL_PREVIEW_CONFIGURE 400
#define VERDAL_PREVIEW_PRINT 401
#define VERDAL_PREVIEW_PRINTER_SETUP 402
typedef struct VerdalPrintPreview VerdalPrintPreview;
struct VerdalPrintPreview {
  int32_t pageCount;
  const char* statusText; /* "Seite %d von %d" */
  void* engine;           /* the engine's, do not touch */
  /* Draws page `page` (from 1) at zoom step `zoomIndex` into a PNG file: 1 written, 0 not. */
  int32_t (*renderPage)(const VerdalPrintPreview* preview, int32_t page, int32_t zoomIndex,
                        const char* pngPath);
};

typedef struct VerdalUserInterface {
  /* sizeof(VerdalUserInterface) as the host was built; 0 counts as the record up to runSheet. */
  int32_t size;
  intptr_t user;
  /* Returns a VERDAL_ID_ answer. */
  int32_t (*messageBox)(intptr_t user, VerdalWindow parent, const char* title, const char* text,
                        int32_t buttons, int32_t icon, int32_t defaultAnswer);
  /* text holds limit + 1 bytes; returns 1 with the entered text there, 0 when cancelled. */
  int32_t (*promptPassword)(intptr_t user, VerdalWindow parent, const char* title,
                            const char* prompt, int32_t limit, char* text);
  /* path holds 260 bytes: the initial path in, the chosen one out; 1 chosen, 0 cancelled. */
  int32_t (*pickFile)(intptr_t user, VerdalWindow parent, const char* title, const char* filter,
                      int32_t save, char* path);
  int32_t (*pickFolder)(intptr_t user, VerdalWindow parent, const char* title, char* path);
  void (*runSheet)(intptr_t user, VerdalWindow parent, const VerdalSheet* sheet);
  /* Added with actions. The text (code page 1252) goes on the host's clipboard. */
  void (*setClipboardText)(intptr_t user, const char* text);
  /* Opens a file with the desktop's application for it (the list of addresses a mailing missed). */
  void (*openDocument)(intptr_t user, const char* path);
  /* Asked between the records of an action: 1 when the user pressed Esc or Enter to stop it. */
  int32_t (*stopRequested)(intptr_t user);
  /* Added with printing. Shows the preview; returns a VERDAL_PREVIEW_ command. */
  int32_t (*showPrintPreview)(intptr_t user, VerdalWindow parent, const VerdalPrintPreview* preview);
} VerdalUserInterface;

/* The structure is copied; null returns to no user interface (the default). */
VERDAL_API void VERDAL_SetUserInterface(const VerdalUserInterface* ui);

#ifdef __cplusplus
}
#endif

#endif /* VERDAL_H */
