#include "platform/language.h"

#include <cstdlib>
#include <cstring>
#include <initializer_list>

namespace verdal::platform {
namespace {

uint16_t g_override = 0;

uint16_t FromEnvironment() {
  for (const char* var : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    const char* value = std::getenv(var);
    if (value != nullptr && *value != '\0') return LanguageIdFromLocaleName(value);
  }
  return 0x409;
}

}  // namespace

uint16_t LanguageIdFromLocaleName(const char* name) {
  if (name == nullptr || std::strncmp(name, "de", 2) != 0) return 0x409;
  struct Region { const char* prefix; uint16_t id; };
  static const Region regions[] = {
      {"de_DE", 0x407}, {"de_CH", 0x807}, {"de_AT", 0xC07}, {"de_LU", 0x1007}, {"de_LI", 0x1407}};
  for (const Region& r : regions)
    if (std::strncmp(name, r.prefix, 5) == 0) return r.id;
  return 0x407;
}

uint16_t LanguageId() { return g_override != 0 ? g_override : FromEnvironment(); }

void SetLanguageId(uint16_t id) { g_override = id; }

bool IsGermanLanguage(uint16_t id) {
  return id == 0x407 || id == 0x807 || id == 0xC07 || id == 0x1007 || id == 0x1407;
}

}  // namespace verdal::platform
