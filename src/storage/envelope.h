#pragma once
// The envelope of a database file: the clear header and the payload behind it, which holds the
// body plain, as one bzip2 stream, in a cipher container, or compressed and then enciphered.
//
//   offset 0   4  magic 0x41524D59          offset 12  4  plainLength (body bytes)
//          4   2  version (written as 13)          16  4  storedLength (payload bytes)
//          6   4  reserved word                    20     identifier (string, since 11),
//         10   1  compressed                              current cursor (4, since 12),
//         11   1  enciphered                              root expanded (1, since 13), payload
//
// No password or key is stored; only the digest inside the container proves a password.
#include "io/base_file.h"

namespace verdal::engine {
class TDBManager;
}

namespace verdal::storage {

// The body inside the envelope. Saves and loads use the database body; tests and benchmarks may
// put another in its place.
struct BodyCodec {
  bool (*write)(engine::TDBManager& db, TBaseFile& file);
  bool (*read)(engine::TDBManager& db, TBaseFile& file);
};
BodyCodec DatabaseBody();

// Writes header and payload from the start of `file` and cuts it behind them. A payload that
// cannot be compressed or enciphered is written plain, with the flags cleared in the database.
// False only when writing failed; the byte range stays locked during the call.
bool WriteEnvelope(engine::TDBManager& db, TBaseFile& file);
bool WriteEnvelope(engine::TDBManager& db, TBaseFile& file, const BodyCodec& body);

// Clears the store and reads the file into it. An enciphered file is opened with the database's
// password, else the session password of its file name, else by asking the user until a
// password fits or the prompt is cancelled (then the password is emptied). False for a foreign
// or newer file, a cancelled prompt, damaged or truncated data, or a failing body.
bool ReadEnvelope(engine::TDBManager& db, TBaseFile& file);
bool ReadEnvelope(engine::TDBManager& db, TBaseFile& file, const BodyCodec& body);

// The most bytes a bzip2 stream of these bytes can decompress to, from its block size and the
// number of block headers it can hold; 0 if it is not a bzip2 stream.
uint64_t Bzip2OutputBound(const uint8_t* stream, uint64_t length);

}  // namespace verdal::storage
