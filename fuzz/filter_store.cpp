// Arbitrary bytes as the stored filter collection. What reads must write back to bytes that read
// to the same again, and each filter's text must compile without harm.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "io/memfile.h"
#include "model/fields.h"
#include "query/query_cache.h"
#include "listing/filter_parts.h"
#include "listing/filter_text.h"

using namespace verdal;

namespace {

model::NodeStore& Store() {
  static model::NodeStore* store = [] {
    auto* s = new model::NodeStore(0);
    const std::pair<const char*, int16_t> fields[] = {
        {"Ort", model::kTypeText}, {"Preis", model::kTypeNumber}, {"Datum", model::kTypeDate}};
    for (const auto& [name, type] : fields) {
      model::TDBFieldInfo f;
      f.name = name;
      f.type.dataType = type;
      model::AddFieldInfo(*s, f, -1);
    }
    return s;
  }();
  return *store;
}

std::vector<uint8_t> Written(const listing::TDBFilterCollection& c) {
  TMemFile f(256);
  listing::WriteFilters(c, f);
  return std::vector<uint8_t>(f.Data(), f.Data() + f.GetLength());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  TMemFile in(static_cast<int32_t>(size) + 1);
  in.Write(data, static_cast<int32_t>(size));
  in.Seek(0);
  listing::TDBFilterCollection c;
  bool read = false;
  try {
    read = listing::ReadFilters(c, in);
  } catch (...) {
    read = false;
  }
  if (!read) {
    if (!c.filters.empty()) std::abort();
    return 0;
  }
  const std::vector<uint8_t> once = Written(c);
  TMemFile again(static_cast<int32_t>(once.size()) + 1);
  again.Write(once.data(), static_cast<int32_t>(once.size()));
  again.Seek(0);
  listing::TDBFilterCollection back;
  if (!listing::ReadFilters(back, again) || Written(back) != once) std::abort();

  model::NodeStore& store = Store();
  for (size_t i = 0; i < c.filters.size() && i < 8; ++i) {
    const char* text = listing::FilterText(c, store, c.filters[i]->name);
    if (text == nullptr) continue;
    query::QX_QueryCache q(store, text);
    q.Test(-1);
  }
  query::QX_GlobalSymbols().Clear();
  return 0;
}
