#pragma once
// The e-mail action: one message to each address found in the option's fields of the chosen
// records, with the option's subject and text, and its attachment as it is or, as a template,
// merged with the values of each address's record.
#include <cstdint>

#include "options/config_records.h"

namespace verdal::engine {

class TDBManager;

// 1 once the run has gone through the records (the user is told what was sent, what failed and
// what was there twice; the addresses that failed are handed to the host as a text file), or 0
// with code 27 and its message where it could not start: the attachment is missing, there is no
// mail session, or the logon failed. A path too long for the path mapper gives 0 with code 11.
int32_t RunMailAction(TDBManager& db, const options::TEmailData& option, int32_t count,
                      const int32_t* cursors);

}  // namespace verdal::engine
