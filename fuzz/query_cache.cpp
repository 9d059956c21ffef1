// Arbitrary filter text, \eval macros included, bound to a small database in memory and tested
// against every node. A step limit for the whole input stops loops through the cancellation
// error. Strings compare by bytes here: collation converts whole texts, and a loop over texts
// near the language's 16 MB limit would take minutes within any step limit.
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "engine/db_manager.h"
#include "engine/record_ops.h"
#include "engine/values.h"
#include "model/fields.h"
#include "model/place_walk.h"
#include "query/query_cache.h"

using namespace verdal;

namespace {

constexpr int kStepLimit = 2000;
int g_steps = 0;

query::QX_Error CountStep(void*) {
  return ++g_steps > kStepLimit ? query::QX_ErrDefs::Err(query::QX_ErrDefs::kCancelled) : nullptr;
}

engine::TDBManager& Database() {
  static engine::TDBManager* db = [] {
    auto* d = new engine::TDBManager(0);
    const std::pair<const char*, int16_t> fields[] = {
        {"Name", model::kTypeText}, {"Ort Name", model::kTypeText}, {"Preis", model::kTypeNumber},
        {"Ja", model::kTypeYesNo},  {"Bin", model::kTypeBinary},    {"Zeit", model::kTypeDateTime},
        {"Datum", model::kTypeDate}, {"Uhr", model::kTypeTime},     {"Link", model::kTypeLink}};
    for (const auto& [name, type] : fields) {
      model::TDBFieldInfo f;
      f.name = name;
      f.type.dataType = type;
      model::AddFieldInfo(d->store, f, -1);
    }
    int32_t cat = engine::AddCategory(*d, -2, "Kat");
    const char* values[][9] = {
        {"Graben", "Kiel", "1,5", "Ja", "", "31.12.2001 13:05", "31.12.2001", "13:05", "3"},
        {"abend", "", "-20", "Nein", "", "", "1.1.1999", "", ""},
        {"", "Bonn Nord", "1e300", "", "", "1.2.3", "99.99.9999", "25:99", "x"},
    };
    for (const auto& row : values) {
      int32_t c = engine::AddRecord(*d, cat, row[0], false, row[0], 0, nullptr);
      for (int32_t i = 1; i < 9; ++i) engine::SetData(*d, i, row[i], c, false, nullptr, nullptr);
    }
    engine::AddRecord(*d, -2, "oben", false, "Top", 0, nullptr);
    return d;
  }();
  return *db;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size > 4096) return 0;
  engine::TDBManager& db = Database();
  std::string text(reinterpret_cast<const char*>(data), size);
  {
    g_steps = 0;
    query::QX_QueryCache q(db.store, text.c_str());
    q.SetStepHook(CountStep, nullptr);
    query::QX_Utilities::SetTextCompare(nullptr);
    std::vector<int32_t> list;
    model::CollectPlaces(db.store, &db.store.MainView().root, list, model::kKindBoth, true, false,
                         &q, true);
    q.Test(-1);
    q.Test(123456);
  }
  // Global definitions outlive the query; drop them so that runs do not pile up names and values.
  query::QX_GlobalSymbols().Clear();
  return 0;
}
