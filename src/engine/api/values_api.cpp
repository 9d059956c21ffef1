// Exported functions on values: set, get, find, convert, compare.
#include "engine/api/api_frame.h"
#include "engine/values.h"
#include "verdal.h"

using namespace verdal;
using api::Judge;
using engine::TDBManager;

extern "C" {

VERDAL_API int32_t VERDAL_SetData(VerdalHandle handle, int32_t fieldIndex, const char* value,
                                  int32_t cursor, int32_t validate, char* errorText,
                                  VerdalWindow window) {
  return api::WithDatabase("VERDAL_SetData", handle, 0, Judge::kResult, [&](TDBManager& db) {
    return engine::SetData(db, fieldIndex, value, cursor, validate != 0, errorText, window);
  });
}

VERDAL_API const char* VERDAL_GetData(VerdalHandle handle, int32_t fieldIndex, int32_t cursor,
                                      int32_t raw, int32_t useWords) {
  return api::WithDatabase("VERDAL_GetData", handle, static_cast<const char*>(nullptr), Judge::kResult,
                           [&](TDBManager& db) {
    return engine::GetData(db, fieldIndex, cursor, raw != 0, useWords != 0);
  });
}

VERDAL_API int32_t VERDAL_HasDataMember(VerdalHandle handle, int32_t fieldIndex, const char* value,
                                        int32_t asStored, int32_t searchCategories,
                                        int32_t* cursorOut, int32_t skipCursor) {
  return api::WithDatabase("VERDAL_HasDataMember", handle, 0, Judge::kLastError, [&](TDBManager& db) {
    return engine::HasDataMember(db, fieldIndex, value, asStored != 0, searchCategories != 0,
                                 cursorOut, skipCursor);
  });
}

VERDAL_API const char* VERDAL_ConvertData(VerdalHandle handle, int32_t fieldIndex, const char* text,
                                          int32_t toInternal, int32_t useWords, int32_t validate) {
  return api::WithDatabase("VERDAL_ConvertData", handle, static_cast<const char*>(nullptr),
                           Judge::kResult, [&](TDBManager& db) {
    return engine::ConvertData(db, fieldIndex, text, toInternal != 0, useWords != 0, validate != 0);
  });
}

VERDAL_API int32_t VERDAL_Compare(VerdalHandle handle, int32_t firstCursor, int32_t secondCursor,
                                  int32_t fieldIndex, int32_t stringSort, int32_t reverse,
                                  int32_t* result) {
  return api::WithDatabase("VERDAL_Compare", handle, 0, Judge::kResult, [&](TDBManager& db) {
    return engine::CompareValues(db, firstCursor, secondCursor, fieldIndex, stringSort != 0,
                                 reverse != 0, result);
  });
}

}  // extern "C"
