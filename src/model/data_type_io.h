#pragma once
// The stored form of a field's type description: the members in declaration order, integers
// little-endian, 80-bit values as 10 bytes, flags as one byte, strings in the stream encoding.
// Later members are gated by the record's version; writing always writes version 4.
#include "io/base_file.h"
#include "model/data_type_info.h"

namespace verdal::model {

// Throws what the stream throws on a short or damaged read.
void ReadTypeInfo(TDataTypeInfo& type, TBaseFile& file);
void WriteTypeInfo(TDataTypeInfo& type, TBaseFile& file);

}  // namespace verdal::model
