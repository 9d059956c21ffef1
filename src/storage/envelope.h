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
#include <optional>
#include <string>

#include "io/base_file.h"
#include "storage/stored_database.h"

namespace verdal::storage {

// Where the reader of an enciphered file finds passwords when the database's own does not open
// it: one remembered for the file, then what the user types. Those who know the session and can
// ask the user (the engine) supply it; the reader itself asks nobody.
class PasswordSource {
 public:
  virtual ~PasswordSource() = default;
  // A password remembered for this file, tried first when the database has none.
  virtual std::optional<std::string> Remembered() = 0;
  // The next password to try; none when the user cancels.
  virtual std::optional<std::string> Ask() = 0;
  // The password that opened the file.
  virtual void Opened(const std::string& password) = 0;
};

// A source with nothing to offer: only the database's own password is tried.
class NoPasswords : public PasswordSource {
 public:
  std::optional<std::string> Remembered() override { return std::nullopt; }
  std::optional<std::string> Ask() override { return std::nullopt; }
  void Opened(const std::string&) override {}
};

// The body inside the envelope. Saves and loads use the database body; tests and benchmarks may
// put another in its place.
struct BodyCodec {
  bool (*write)(StoredDatabase& db, TBaseFile& file);
  bool (*read)(StoredDatabase& db, TBaseFile& file);
};
BodyCodec DatabaseBody();

// Writes header and payload from the start of `file` and cuts it behind them. A payload that
// cannot be compressed or enciphered is written plain, with the flags cleared in the database.
// False only when writing failed; the byte range stays locked during the call.
bool WriteEnvelope(StoredDatabase& db, TBaseFile& file);
bool WriteEnvelope(StoredDatabase& db, TBaseFile& file, const BodyCodec& body);

// Clears the store and reads the file into it. An enciphered file is opened with the database's
// password, else the one the source remembers, else with what the source asks for until a
// password fits or the source has none (then the password is emptied). False for a foreign or
// newer file, a cancelled prompt, damaged or truncated data, or a failing body.
bool ReadEnvelope(StoredDatabase& db, TBaseFile& file, PasswordSource& passwords);
bool ReadEnvelope(StoredDatabase& db, TBaseFile& file, PasswordSource& passwords,
                  const BodyCodec& body);

// The most bytes a bzip2 stream of these bytes can decompress to, from its block size and the
// number of block headers it can hold; 0 if it is not a bzip2 stream.
uint64_t Bzip2OutputBound(const uint8_t* stream, uint64_t length);

}  // namespace verdal::storage
