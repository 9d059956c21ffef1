#pragma once
#include <cstdint>

#include "verdal.h"

namespace verdal::engine {

// Every code the engine sets; verdal.h gives hosts the same codes as VERDAL_ERR_*.
enum class ErrorCode : int32_t {
  kNone = VERDAL_ERR_NONE,
  kHandle = VERDAL_ERR_HANDLE,
  kField = VERDAL_ERR_FIELD,
  kCrossField = VERDAL_ERR_CROSS_FIELD,
  kCrossOpen = VERDAL_ERR_CROSS_OPEN,
  kCursor = VERDAL_ERR_CURSOR,
  kCategoryCursor = VERDAL_ERR_CATEGORY_CURSOR,
  kCrossTable = VERDAL_ERR_CROSS_TABLE,
  kCancelled = VERDAL_ERR_CANCELLED,
  kReadOnlyField = VERDAL_ERR_READ_ONLY_FIELD,
  kTarget = VERDAL_ERR_TARGET,
  kInput = VERDAL_ERR_INPUT,
  kView = VERDAL_ERR_VIEW,
  kQuery = VERDAL_ERR_QUERY,
  kBridgeLoad = VERDAL_ERR_BRIDGE_LOAD,
  kImport = VERDAL_ERR_IMPORT,
  kExchangeMissing = VERDAL_ERR_EXCHANGE_MISSING,
  kExchangeOpen = VERDAL_ERR_EXCHANGE_OPEN,
  kSqlInsert = VERDAL_ERR_SQL_INSERT,
  kMove = VERDAL_ERR_MOVE,
  kParentRecord = VERDAL_ERR_PARENT_RECORD,
  kInternal = VERDAL_ERR_INTERNAL,
  kIndex = VERDAL_ERR_INDEX,
  kSqlDelete = VERDAL_ERR_SQL_DELETE,
  kSqlUpdate = VERDAL_ERR_SQL_UPDATE,
  kReadFile = VERDAL_ERR_READ_FILE,
  kWriteFile = VERDAL_ERR_WRITE_FILE,
  kAction = VERDAL_ERR_ACTION,
};

// The process-wide last error, and the message of each code.
int32_t LastError();
void SetLastError(ErrorCode code);

// The message text of a code (any number a host passes); code 27 gives the current action message.
const char* ErrorMessage(int32_t code);

// Code 27 reads the message that a failing action left here.
void SetActionMessage(const char* text);

}  // namespace verdal::engine
