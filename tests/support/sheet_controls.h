#pragma once
// Finds a control of a sheet as a host in C sees it, by its page and label, and sets its text.
#include <gtest/gtest.h>

#include <cstring>

#include "verdal.h"

inline int32_t ControlId(const VerdalSheet* s, int32_t page, const char* label) {
  for (int32_t i = 0; i < s->controlCount; ++i) {
    VerdalControl c;
    s->control(s, i, &c);
    if (c.page == page && std::strcmp(c.label, label) == 0) return c.id;
  }
  ADD_FAILURE() << "no control " << label;
  return -1;
}

inline void Set(const VerdalSheet* s, int32_t page, const char* label, const char* text) {
  s->setText(s, ControlId(s, page, label), text);
}
