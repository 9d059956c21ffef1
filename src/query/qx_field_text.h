#pragma once
// What a query's GetField hands to the field nodes.

namespace verdal::query {

struct QX_FieldText {
  // Null reads as the empty string.
  const char* text = nullptr;
  // Set: text is a block from malloc that the value takes over and frees. Clear: text stays
  // valid until the query is asked about its next node, and the value only borrows it.
  bool owned = false;
};

}  // namespace verdal::query
