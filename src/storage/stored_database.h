#pragma once
// What a database file holds: the header that the envelope keeps in clear, and the content of the
// body inside it. An open database is one of these plus its file and bindings; the readers and
// writers of the file see only this.
#include <cstdint>
#include <string>

#include "listing/filter_parts.h"
#include "listing/list_display.h"
#include "model/node_store.h"
#include "options/option_containers.h"
#include "options/print_configs.h"

namespace verdal::storage {

// The envelope's part: the clear header and the password that opens an enciphered payload.
struct EnvelopeState {
  int16_t version = 13;
  uint32_t reservedWord = 0;
  bool compressed = false;
  bool enciphered = false;
  uint32_t storedLength = 0;
  uint32_t plainLength = 0;
  std::string password;
  std::string identifier;
};

// The body's part: everything the database holds.
struct DatabaseContent {
  explicit DatabaseContent(int32_t sizeClass) : store(sizeClass) {}
  model::NodeStore store;
  listing::TListAndSortDisplayFieldInfoMananger lists;
  listing::TDBFilterCollection filters;
  options::OptionContainers options;
  options::TPrintConfigs prints;  // currentPrintConfig is the default printout

  // What an emptying that does not keep definitions drops beside the fields.
  void ClearDefinitions() {
    lists.Clear();
    options.Clear();
    prints.Clear();
  }
};

struct StoredDatabase : EnvelopeState, DatabaseContent {
  explicit StoredDatabase(int32_t sizeClass) : DatabaseContent(sizeClass) {}
};

}  // namespace verdal::storage
