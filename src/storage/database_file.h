#pragma once
// The body of a database file: everything a database holds, in one stream, count-first with
// counts patched after the fact (so the stream must be seekable). The header before it and the
// envelope around it (compression, cipher) are written by the envelope, which calls these two.
#include "io/base_file.h"
#include "storage/stored_database.h"

namespace verdal::storage {

// Section mark and data record mark of the file format.
constexpr uint32_t kSectionMark = 0x41524D59;     // the bytes "YMRA"
constexpr uint32_t kDataRecordMark = 0x0427EEF3;  // the bytes F3 EE 27 04
// The version every save writes; files of a higher version are refused.
constexpr int16_t kFileVersion = 13;

// Writes the body at the stream's position. Failure reaches the caller as the stream's exception.
bool WriteBody(StoredDatabase& db, TBaseFile& file);

// Reads a body of the version held in db.version into an empty store; false at the first wrong
// mark or failed section. A stream that ends early throws its read exception.
bool ReadBody(StoredDatabase& db, TBaseFile& file);

}  // namespace verdal::storage
