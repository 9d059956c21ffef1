#pragma once
// Cursors name places: values from 0 up are place ids, -1 to -8 are the pseudo cursors of the
// interface (VERDAL_CURSOR_...), which resolve against the main tree and the current cursor.
#include <cstdint>

#include "model/node_store.h"
#include "verdal.h"

namespace verdal::model {

// Turns a pseudo cursor into a real one (-1 when there is none); real cursors pass unchanged.
int32_t ResolveCursor(NodeStore& store, int32_t cursor);

// The cursor reached after |count| steps forward (count > 0) or backward from cursor in the main
// tree; the cursor itself for 0, -1 when the place, its node or a step is missing.
int32_t StepCursor(NodeStore& store, int32_t cursor, int32_t count, bool wrap, bool descend);

}  // namespace verdal::model
