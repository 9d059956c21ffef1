#pragma once
// The packed field record of the interface, to and from a field definition.
#include "model/field_info.h"
#include "verdal.h"

namespace verdal::engine {

// Points the record's strings into the field, so they live as long as the field is unchanged.
void FillParams(const model::TDBFieldInfo& field, TDBFieldParams& params);

// A new definition: the defaults, with every value of the record and its two names.
model::TDBFieldInfo FieldFromParams(const TDBFieldParams& params);

}  // namespace verdal::engine
