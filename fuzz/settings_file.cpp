// Arbitrary bytes as a settings file and as a stored option collection. The first byte picks the
// collection: one of the five option containers or the list display and sort definitions.
//
// As a settings file, the bytes go to a collection that already holds entries: a load that fails
// must leave it writing the same bytes as before. As a section of a database body, they go to an
// empty collection's Read. Whatever either read leaves behind, all of it or what came before a
// refusal, must write bytes that read again and write the same bytes.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "io/memfile.h"
#include "listing/list_display.h"
#include "options/option_containers.h"
#include "options/settings_file.h"

using namespace verdal;

namespace {

constexpr int kChoices = options::OptionContainers::kCount + 1;

struct Collections {
  options::OptionContainers options;
  listing::TListAndSortDisplayFieldInfoMananger lists;
  options::TBaseConfigClass& Pick(int which) {
    return which < options::OptionContainers::kCount ? *options.InOrder(which) : lists;
  }
};

std::vector<uint8_t> Written(options::TBaseConfigClass& c) {
  TMemFile f(256);
  c.Write(f);
  return std::vector<uint8_t>(f.Data(), f.Data() + f.GetLength());
}

// Reads the bytes into a fresh collection of the same choice; whether that succeeded.
bool ReadsInto(options::TBaseConfigClass& c, const uint8_t* data, size_t size) {
  TMemFile f(static_cast<int32_t>(size) + 1);
  if (size > 0) f.Write(data, static_cast<int32_t>(size));
  f.Seek(0);
  try {
    return c.Read(f);
  } catch (...) {
    return false;
  }
}

void CheckRoundTrip(int which, options::TBaseConfigClass& c) {
  const std::vector<uint8_t> once = Written(c);
  Collections fresh;
  options::TBaseConfigClass& back = fresh.Pick(which);
  if (!ReadsInto(back, once.data(), once.size()) || Written(back) != once) std::abort();
}

// Every visible index below the count names an entry, the count itself none: for both owners that
// a host uses, which for the definitions are the two kinds.
void CheckVisibleIndexes(options::TBaseConfigClass& c) {
  for (int32_t owner : {0, 1}) {
    c.owner = owner;
    const int32_t count = c.GetCount();
    for (int32_t i = 0; i < count && i < 64; ++i)
      if (c.GetName(i) == nullptr || c.GetComment(i) == nullptr) std::abort();
    if (c.GetName(count) != nullptr || c.GetName(-1) != nullptr) std::abort();
  }
  c.owner = 0;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0 || size > (1u << 20)) return 0;
  const int which = data[0] % kChoices;
  const uint8_t* rest = data + 1;
  const size_t restSize = size - 1;

  // A settings file loaded over entries of two owners and a default.
  Collections held;
  options::TBaseConfigClass& target = held.Pick(which);
  for (int32_t owner : {0, 1}) {
    target.owner = owner;
    target.Add("Eins");
    target.SetComment(0, "vorher");
  }
  target.SetDefault("Eins");
  const std::vector<uint8_t> before = Written(target);
  if (options::LoadSettings(target, rest, static_cast<int32_t>(restSize)) == options::SettingsResult::kOk) {
    CheckRoundTrip(which, target);
    CheckVisibleIndexes(target);
  } else if (Written(target) != before) {
    std::abort();
  }

  // The same bytes as a section of a database body.
  Collections empty;
  options::TBaseConfigClass& section = empty.Pick(which);
  ReadsInto(section, rest, restSize);
  CheckRoundTrip(which, section);
  CheckVisibleIndexes(section);
  return 0;
}
