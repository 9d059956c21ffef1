#pragma once
// A host that records every notification the engine sends, and can veto or change flags.
#include <cstdint>
#include <string>
#include <vector>

#include "verdal.h"

struct Heard {
  int32_t reason, cursor, categoryId, field, value;
  bool operator==(const Heard& o) const {
    return reason == o.reason && cursor == o.cursor && categoryId == o.categoryId &&
           field == o.field && value == o.value;
  }
};

inline std::ostream& operator<<(std::ostream& os, const Heard& h) {
  return os << "{" << h.reason << ", " << h.cursor << ", " << h.categoryId << ", " << h.field
            << ", " << h.value << "}";
}

class RecordingHost {
 public:
  RecordingHost() { VERDAL_SetNotification(&RecordingHost::Callback, reinterpret_cast<intptr_t>(this)); }
  ~RecordingHost() { VERDAL_SetNotification(nullptr, 0); }

  std::vector<Heard> heard;
  int32_t vetoReason = 0;      // answer no to this reason
  int32_t rewriteValue = -1;   // when not -1, written into the value word of reason 3

  std::vector<Heard> Take() {
    std::vector<Heard> out;
    out.swap(heard);
    return out;
  }

 private:
  static int32_t Callback(intptr_t user, VerdalNotification* n) {
    auto* self = reinterpret_cast<RecordingHost*>(user);
    self->heard.push_back({n->reason, n->cursor, n->categoryId, n->field, n->value});
    if (n->reason == 3 && self->rewriteValue != -1) n->value = self->rewriteValue;
    return n->reason == self->vetoReason ? 0 : 1;
  }
};
