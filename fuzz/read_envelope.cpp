// Arbitrary bytes as a database file: ReadEnvelope must answer true or false, never crash, and
// never allocate more than the file and its payload can back. Inputs of odd length are read by a
// database that knows the password of the enciphered seeds, so the deciphered payload (its
// lengths, its bzip2 stream, the body inside) is reached too; even ones meet the headless prompt,
// which cancels.
#include <cstddef>
#include <cstdint>

#include "io/memfile.h"
#include "engine/db_manager.h"
#include "engine/file_passwords.h"
#include "storage/envelope.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size > (4u << 20)) return 0;
  verdal::TMemFile file(static_cast<int32_t>(size));
  if (size > 0) file.Write(data, static_cast<int32_t>(size));
  verdal::engine::TDBManager db(1);
  const bool withPassword = size % 2 == 1;
  // Separate names keep the session password of one kind of run away from the other.
  db.fileName = withPassword ? "known.dbd" : "unknown.dbd";
  if (withPassword) db.password = "Fuzz-Seed-42";
  verdal::engine::FilePasswords passwords(db.fileName);
  verdal::storage::ReadEnvelope(db, file, passwords);
  return 0;
}
