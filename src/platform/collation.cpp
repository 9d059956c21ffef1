#include "platform/collation.h"

#include <unicode/ucol.h>

#include <cstdlib>
#include <cstring>
#include <string>

#include "platform/cp1252.h"

namespace verdal::platform {
namespace {

// Opening a collator loads rule data; comparisons run inside every sort step, so both are kept.
struct Collators {
  UCollator* tertiary = nullptr;   // case and accents count
  UCollator* secondary = nullptr;  // accents count, case does not
  UCollator* primary = nullptr;    // letters only: for sort keys that leave ties to a comparison
  bool opened = false;
};
Collators g_collators;
unsigned g_generation = 0;

std::string CollationLocale() {
  for (const char* var : {"LC_ALL", "LC_COLLATE", "LANG"}) {
    const char* value = std::getenv(var);
    if (value == nullptr || *value == '\0') continue;
    std::string name(value, std::strcspn(value, ".@"));
    // ICU reads "C" as en_US_POSIX, whose collation is plain ASCII order: use the root instead.
    if (name == "C" || name == "POSIX") return {};
    return name;
  }
  return {};
}

UCollator* Open(const std::string& locale, UColAttributeValue strength) {
  UErrorCode status = U_ZERO_ERROR;
  UCollator* coll = ucol_open(locale.c_str(), &status);
  if (U_FAILURE(status)) {
    status = U_ZERO_ERROR;
    coll = ucol_open("", &status);
    if (U_FAILURE(status)) return nullptr;
  }
  ucol_setStrength(coll, strength);
  ucol_setAttribute(coll, UCOL_ALTERNATE_HANDLING, UCOL_NON_IGNORABLE, &status);
  ucol_setAttribute(coll, UCOL_NORMALIZATION_MODE, UCOL_OFF, &status);
  return coll;
}

const Collators& OpenCollators() {
  if (!g_collators.opened) {
    const std::string locale = CollationLocale();
    g_collators.tertiary = Open(locale, UCOL_TERTIARY);
    g_collators.secondary = Open(locale, UCOL_SECONDARY);
    g_collators.primary = Open(locale, UCOL_PRIMARY);
    g_collators.opened = true;
  }
  return g_collators;
}

UCollator* Collator(bool ignoreCase) {
  return ignoreCase ? OpenCollators().secondary : OpenCollators().tertiary;
}

// Text in UTF-16, on the stack for the usual short values.
class Utf16Text {
 public:
  Utf16Text(std::string_view text, bool skipHyphens) {
    UChar* out = text.size() <= kInline ? inline_ : (heap_.resize(text.size()), heap_.data());
    int32_t n = 0;
    for (char c : text) {
      if (skipHyphens && (c == '-' || c == '\'')) continue;
      out[n++] = static_cast<UChar>(cp1252::ToUtf16(c));
    }
    data_ = out;
    length_ = n;
  }
  Utf16Text(const Utf16Text&) = delete;
  Utf16Text& operator=(const Utf16Text&) = delete;

  const UChar* data() const { return data_; }
  int32_t length() const { return length_; }

 private:
  static constexpr size_t kInline = 256;
  UChar inline_[kInline];
  std::u16string heap_;
  const UChar* data_ = nullptr;
  int32_t length_ = 0;
};

int Sign(int v) { return (v > 0) - (v < 0); }

int ByteCompare(std::string_view a, std::string_view b) { return Sign(a.compare(b)); }

int Collate(UCollator* coll, std::string_view a, std::string_view b, bool skipHyphens) {
  Utf16Text ua(a, skipHyphens), ub(b, skipHyphens);
  switch (ucol_strcoll(coll, ua.data(), ua.length(), ub.data(), ub.length())) {
    case UCOL_LESS: return -1;
    case UCOL_GREATER: return 1;
    default: return 0;
  }
}

int WordSort(std::string_view a, std::string_view b, bool ignoreCase) {
  UCollator* coll = Collator(ignoreCase);
  if (coll == nullptr) return ByteCompare(a, b);
  if (int r = Collate(coll, a, b, true)) return r;
  // Equal without hyphens and apostrophes: now they decide, as symbols.
  return Collate(coll, a, b, false);
}

}  // namespace

int CompareWordSort(std::string_view a, std::string_view b) { return WordSort(a, b, false); }

int CompareWordSortNoCase(std::string_view a, std::string_view b) { return WordSort(a, b, true); }

int CompareStringSort(std::string_view a, std::string_view b) {
  UCollator* coll = Collator(false);
  return coll != nullptr ? Collate(coll, a, b, false) : ByteCompare(a, b);
}

bool SameNameNoCase(std::string_view a, std::string_view b) {
  return a == b || CompareWordSortNoCase(a, b) == 0;
}

std::string NameKeyNoCase(std::string_view name) {
  UCollator* coll = Collator(true);
  std::string key;
  if (coll == nullptr) {
    // Without ICU the comparison is by bytes, and so is the key.
    key.assign(name);
    return key;
  }
  // Equal under the word sort means equal with hyphens and apostrophes as symbols too.
  Utf16Text text(name, false);
  key.resize(64);
  for (;;) {
    const int32_t n = ucol_getSortKey(coll, text.data(), text.length(),
                                      reinterpret_cast<uint8_t*>(key.data()), static_cast<int32_t>(key.size()));
    if (n <= 0) return std::string(name);
    if (static_cast<size_t>(n) <= key.size()) {
      key.resize(static_cast<size_t>(n));
      return key;
    }
    key.resize(static_cast<size_t>(n));
  }
}

namespace {

// Appends the collation key of the text; false when there is no collator or ICU fails.
bool AppendKey(UCollator* coll, std::string_view text, bool skipHyphens, std::string& key) {
  if (coll == nullptr) return false;
  Utf16Text u(text, skipHyphens);
  const size_t at = key.size();
  size_t room = 2 * static_cast<size_t>(u.length()) + 16;
  for (;;) {
    key.resize(at + room);
    const int32_t n = ucol_getSortKey(coll, u.data(), u.length(), reinterpret_cast<uint8_t*>(key.data() + at),
                                      static_cast<int32_t>(room));
    if (n <= 0) return false;
    if (static_cast<size_t>(n) <= room) {
      key.resize(at + static_cast<size_t>(n));
      return true;
    }
    room = static_cast<size_t>(n);
  }
}

}  // namespace

void AppendPrimaryKey(std::string_view text, bool stringSort, std::string& key) {
  const size_t at = key.size();
  // The word sort's first pass passes over hyphens and apostrophes; its primary level decides
  // before anything else.
  if (AppendKey(OpenCollators().primary, text, !stringSort, key)) return;
  key.resize(at);
  key.append(text);  // without ICU, texts compare by their bytes
}

unsigned CollationGeneration() { return g_generation; }

void ResetCollation() {
  ++g_generation;
  if (g_collators.tertiary != nullptr) ucol_close(g_collators.tertiary);
  if (g_collators.secondary != nullptr) ucol_close(g_collators.secondary);
  if (g_collators.primary != nullptr) ucol_close(g_collators.primary);
  g_collators = Collators{};
}

}  // namespace verdal::platform
