#pragma once
// How the bridge's definition files (".imp" for imports, export definitions) spell their values:
// lists, file names beside the definition, character sets. Shared by both kinds, so that a key
// means the same wherever it stands.
#include <string>
#include <vector>

#include "platform/profile_file.h"

namespace verdal::sqlbridge {

enum class Charset { kAuto, kUtf8, kCp1252 };

// Reads the definition file at `path` into `profile` and gives its native name in `native`. False,
// with the reason in `error`, when it cannot be read or has no section `section`.
bool LoadDefinitionProfile(const std::string& path, const char* section, platform::ProfileFile& profile,
                           std::string& native, std::string& error);

// The comma-separated names of a list, each without its outer blanks; empty names are dropped.
std::vector<std::string> SplitList(const std::string& text);

// A file named in a definition: a relative name lies beside the definition at `definitionPath`.
std::string BesideDefinition(const std::string& definitionPath, const std::string& name);

// "UTF-8" (or "UTF8"), "CP1252" (or "WINDOWS-1252") in any letter case, or empty for kAuto.
// False for any other name.
bool ParseCharset(const std::string& text, Charset& charset);

}  // namespace verdal::sqlbridge
