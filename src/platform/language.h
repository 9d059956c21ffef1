#pragma once
#include <cstdint>

namespace verdal::platform {

// The system's default language id: from the environment's locale (LC_ALL, LC_MESSAGES, LANG, in
// that order) unless a host has set one. German ids are 0x407, 0x807, 0xC07, 0x1007 and 0x1407.
uint16_t LanguageId();

// 0 returns to the environment's language.
void SetLanguageId(uint16_t id);

// The id an environment locale name maps to ("de_CH.UTF-8" gives 0x807, "C" gives 0x409).
uint16_t LanguageIdFromLocaleName(const char* name);

bool IsGermanLanguage(uint16_t id);
inline bool IsGerman() { return IsGermanLanguage(LanguageId()); }

}  // namespace verdal::platform
