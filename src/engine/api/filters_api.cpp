// Exported functions for named filters: the internal query text of a filter or of one condition.
#include "io/text_buffer.h"
#include "engine/api/api_frame.h"
#include "listing/filter_text.h"
#include "verdal.h"

using namespace verdal;
using api::Judge;
using engine::TDBManager;

namespace {

TextRing g_filterTexts;
TextRing g_parseStrings;

}  // namespace

extern "C" {

// An unknown name (or a filter naming a field that is gone) gives null without an error.
VERDAL_API const char* VERDAL_GetFilter(VerdalHandle handle, const char* name) {
  return api::WithDatabase("VERDAL_GetFilter", handle, static_cast<const char*>(nullptr),
                           Judge::kLastError, [&](TDBManager& db) -> const char* {
                             if (name == nullptr) return nullptr;
                             const char* text = listing::FilterText(db.filters, db.store, name, &db.links);
                             return text != nullptr ? g_filterTexts.Keep(text) : nullptr;
                           });
}

VERDAL_API const char* VERDAL_GetInternalParseString(VerdalHandle handle, int32_t fieldIndex,
                                                     const char* value, int32_t flags) {
  return api::WithDatabase("VERDAL_GetInternalParseString", handle,
                           static_cast<const char*>(nullptr), Judge::kResult,
                           [&](TDBManager& db) -> const char* {
                             const char* text =
                                 listing::InternalParseString(db.store, fieldIndex, value, flags, &db.links);
                             return text != nullptr ? g_parseStrings.Keep(text) : nullptr;
                           });
}

}  // extern "C"
