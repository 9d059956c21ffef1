#pragma once
// A database imported from a text file through an ".imp" definition gives its changes back to the
// file at close: each record's line is found by the number in its identity column and replaced,
// new records are appended, and the lines of deleted records go.
#include <cstdint>
#include <string>
#include <vector>

#include "model/link_resolver.h"
#include "model/node_store.h"

namespace verdal::exchange {

// What the write-back reads of a database.
struct WriteBackSource {
  model::NodeStore& store;
  model::TLinkResolver* links;          // for link fields' shown values
  std::string identityField;            // the field whose number names a line
  const std::vector<int32_t>& deletedRows;
};

// True when the definition at `path` is a text import that can be written back: the section
// "ODBC_IMPORT" has TXT_IMPORT_USE set, a data source of a text kind that exists, IMPORT_TYPE 3
// and an IDENTFIELD. Without checkOnly the file is written back as well.
bool ReadImpDefinition(WriteBackSource& database, const std::string& path, std::string dataSource,
                       bool checkOnly);

// How the lines of the text file are written.
struct TextLayout {
  bool hasColumnLine = true;
  std::string delimiter;  // encloses text values; empty for none
  char separator = ';';
  std::vector<std::string> sourceFields;  // the file's columns, in order
  bool utf8 = false;                      // new cells are written as UTF-8
};

// Rewrites the text file. Nothing happens when it cannot be read; a file that cannot be written
// keeps its old content (the new one is written beside it and renamed over it).
void WriteBackTextSource(WriteBackSource& database, const std::string& dataSource,
                         const TextLayout& layout);

// The separator a definition chooses by TXT_IMPORT_SEPTYPE.
char SeparatorOfType(int32_t type, const std::string& userSeparator);

}  // namespace verdal::exchange
