#pragma once
// Walking the tree and moving nodes, as the exported functions do it.
#include <cstdint>

namespace verdal::engine {

class TDBManager;

// Steps from a cursor until a node of the kinds asked for; makes it current unless keepCurrent.
// -1 and code 5 when a step fails; with a vetoed change of the current cursor, the current cursor
// and code 8.
int32_t Seek(TDBManager& db, int32_t cursor, int32_t count, bool wrap, bool descend,
             bool keepCurrent, int32_t* categoryOut, int32_t kinds);

// Moves a node next to or into a target, or one step up (-8) or down (-7). 1 on success; 0 with
// code 5 for unknown nodes, 0 without a code when nothing can move.
int32_t MoveChild(TDBManager& db, int32_t cursor, int32_t target, int32_t kinds);

// 1 if the node of other is the node of cursor or lies below it; 0, and code 5 when cursor has no
// node.
int32_t IsChildOf(TDBManager& db, int32_t cursor, int32_t other);

}  // namespace verdal::engine
