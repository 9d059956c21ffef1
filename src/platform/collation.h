#pragma once
// Locale-aware comparison of code page 1252 text, standing for the system's string comparisons:
// word sort (lstrcmpA), string sort (CompareStringA with SORT_STRINGSORT) and case-insensitive word
// sort (lstrcmpiA). Collation is that of the environment's locale (LC_ALL, LC_COLLATE, LANG), the
// root collation for "C", "POSIX" or none. Results are -1, 0 or 1.
#include <string>
#include <string_view>

namespace verdal::platform {

// Word sort: hyphen and apostrophe are passed over, and decide only between texts that are
// otherwise equal: "co-op" and "coop" sort next to each other, both before "cop".
int CompareWordSort(std::string_view a, std::string_view b);

// String sort: hyphen and apostrophe are symbols like other punctuation, before digits and letters.
int CompareStringSort(std::string_view a, std::string_view b);

// Word sort that ignores case; accents still count.
int CompareWordSortNoCase(std::string_view a, std::string_view b);

// Appends a key of the text's first level (letters and digits, not accents or case; for word sort
// without hyphens and apostrophes), for sorts that compare each text many times. Texts whose keys
// differ compare as the keys' bytes do (shorter first where one begins the other) under
// CompareWordSort, or with stringSort CompareStringSort; texts with equal keys must be compared.
void AppendPrimaryKey(std::string_view text, bool stringSort, std::string& key);

// The one test for names that are found, or must be unique, regardless of case (lstrcmpiA):
// fields, filters, views. "ärger" names "Ärger", "GRÖßE" names "Größe".
bool SameNameNoCase(std::string_view a, std::string_view b);

// A key that is the same for names that SameNameNoCase finds equal, for hashing them. Keys are
// valid until ResetCollation; CollationGeneration tells whether that has happened.
std::string NameKeyNoCase(std::string_view name);
unsigned CollationGeneration();

// Drops the cached collators, so that the next comparison reads the environment again. For tests.
void ResetCollation();

}  // namespace verdal::platform
