// Arbitrary bytes as an import exchange file. The whole-file check must agree with the reader: a
// file it accepts reads to its end without a throw. An accepted file is then built into an empty
// store and into one that holds a field (so that modes 1 and 2 match columns by name); every place
// a build makes must stand in the main tree.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "exchange/import_builder.h"
#include "exchange/import_exchange.h"
#include "io/memfile.h"
#include "model/fields.h"
#include "model/place_walk.h"

using namespace verdal;

namespace {

void Build(model::NodeStore& store, TMemFile& file) {
  exchange::ImportHeader header;
  exchange::ReadImportHeader(file, header);
  exchange::ImportBuilder builder(store, header, 0x200, nullptr);
  if (!builder.PrepareColumns()) return;
  if (header.mode == exchange::kModeAdd) builder.EnterExistingCategories();
  std::vector<std::string> cells;
  int32_t key = 0;
  for (int32_t row = 0; row < header.rowCount; ++row) {
    exchange::ReadImportRow(file, header, cells, key);
    builder.AddRow(cells, key, row);
  }
  builder.Finish();
  std::vector<int32_t> shown;
  model::CollectPlaces(store, &store.MainView().root, shown, model::kKindBoth, true, false, nullptr, false);
  if (shown.size() != store.places.Count()) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size > (1 << 20)) return 0;
  TMemFile file(static_cast<int32_t>(size) + 1);
  if (size > 0) file.Write(data, static_cast<int32_t>(size));
  if (!exchange::CheckImportExchange(file)) return 0;
  try {
    model::NodeStore empty(1);
    Build(empty, file);
  } catch (...) {
    std::abort();  // the check said the file reads whole
  }
  model::NodeStore filled(1);
  model::TDBFieldInfo field;
  field.name = "Name";
  model::AddFieldInfo(filled, field, -1);
  file.SeekToBegin();
  try {
    Build(filled, file);
  } catch (...) {
    std::abort();
  }
  return 0;
}
