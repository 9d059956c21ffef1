#pragma once
// The host's path mapper, through which import, export and actions pass file names.
// Its interface is a buffer of 260 bytes, the one place where a path of the engine must fit the
// original's limit; everywhere else a path may be as long as the system allows.
#include <string>

#include "verdal.h"

namespace verdal::engine {

// The size of the mapper's buffer, terminator included.
constexpr size_t kMapperPathSize = 260;

// Runs `path` through `mapper`, or through the process-wide mapper where `mapper` is null; with no
// mapper at all the path stays as it is. A path of 260 characters or more does not fit the buffer:
// it is refused with code 11 and left unchanged, never cut (a cut path names another file, which
// would then count as missing). The mapper's answer is read up to its terminator, at most 259
// characters.
bool MapPath(std::string& path, VerdalPathMapperFn mapper = nullptr);

}  // namespace verdal::engine
