#pragma once
// Actions: a stored option run over records the host chose. Print, clipboard copy, export,
// e-mail and replacement; what each does is in actions.cpp and mail_action.cpp.
#include <cstdint>
#include <string>

namespace verdal::engine {

class TDBManager;

// The result of VERDAL_ExecAction: 1, or 0 with code 1, 11 (no visible option of that name) or 27;
// print and export give the result of their functions. Other kinds do nothing and give 1.
int32_t ExecAction(TDBManager& db, int32_t kind, const char* name, int32_t count,
                   const int32_t* cursors);

// What an action takes of a field: the record's stored value shown with yes/no as words and
// converted first; the empty text where the place, its record or the value is missing.
std::string ActionText(TDBManager& db, int32_t fieldIndex, int32_t cursor);

}  // namespace verdal::engine
