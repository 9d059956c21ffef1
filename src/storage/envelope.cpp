#include "storage/envelope.h"

#include <bzlib.h>
#include <unistd.h>

#include <climits>
#include <cstdio>
#include <cstring>
#include <memory>
#include <new>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "io/memfile.h"
#include "io/read_ahead_file.h"
#include "io/stream_io.h"
#include "platform/fault.h"
#include "storage/database_file.h"
#include "crypto/memory_container.h"

namespace verdal::storage {

namespace {

constexpr int32_t kFirstBlock = 2000000;  // start and growth step of the memory file of a save
constexpr int kBlockSize100k = 9;
constexpr int kVerbosity = 0;
constexpr int kWorkFactor = 30;

// Header fields that arrived with later versions.
constexpr int16_t kIdentifierSince = 11;
constexpr int16_t kCursorSince = 12;
constexpr int16_t kRootExpandedSince = 13;

// Holds the byte range for the whole save, whichever way it ends.
class RangeLock {
 public:
  explicit RangeLock(TBaseFile& file) : file_(file), length_(file.GetLength()) {
    if (length_ < 0) length_ = 0;
    file_.LockRange(0, length_);
  }
  ~RangeLock() { file_.UnlockRange(0, length_); }
  RangeLock(const RangeLock&) = delete;
  RangeLock& operator=(const RangeLock&) = delete;

 private:
  TBaseFile& file_;
  int32_t length_;
};

void SeekTo(TBaseFile& file, int32_t position) {
  if (file.Seek(position) != position) throw TReadWriteException();
}

void WriteLengths(const StoredDatabase& db, TBaseFile& file) {
  WriteBool(db.compressed, file);
  WriteBool(db.enciphered, file);
  WriteUInt32(db.plainLength, file);
  WriteUInt32(db.storedLength, file);
}

// The four length and flag fields once more, now that they are known, and the file cut behind
// the payload.
bool FinishHeader(const StoredDatabase& db, TBaseFile& file, int32_t flagsAt) {
  const int32_t end = file.Tell();
  SeekTo(file, flagsAt);
  WriteLengths(db, file);
  SeekTo(file, end);
  file.SetLength(end);
  return true;
}

// The body without compression or cipher. It is put together in memory and written in one piece:
// the body writer's many small writes would each be a system call on a disk file. Where memory
// fails, it goes straight into the file.
bool WritePlain(StoredDatabase& db, TBaseFile& file, const BodyCodec& body, int32_t flagsAt,
                int32_t payloadAt) {
  SeekTo(file, payloadAt);
  bool inMemory = false;
  try {
    TMemFile mem(kFirstBlock);
    if (mem.IsOpen() && body.write(db, mem)) {
      file.Write(mem.Data(), mem.GetLength());
      inMemory = true;
    }
  } catch (const TMemFileReadWriteException&) {
    SeekTo(file, payloadAt);
  }
  if (!inMemory && !body.write(db, file)) return false;
  const uint32_t written = static_cast<uint32_t>(file.Tell() - payloadAt);
  db.plainLength = written;
  db.storedLength = written;
  db.compressed = false;
  db.enciphered = false;
  return FinishHeader(db, file, flagsAt);
}

bool WriteEnvelopeOrThrow(StoredDatabase& db, TBaseFile& file, const BodyCodec& body) {
  RangeLock lock(file);
  file.SeekToBegin();
  if (!db.store.views.empty()) db.store.rootExpanded = db.store.MainView().root.expanded;
  db.version = kFileVersion;
  WriteUInt32(kSectionMark, file);
  WriteInt16(db.version, file);
  WriteUInt32(db.reservedWord, file);
  const int32_t flagsAt = file.Tell();
  WriteLengths(db, file);
  WriteString(db.identifier, file);
  WriteInt32(db.store.currentCursor, file);
  WriteBool(db.store.rootExpanded, file);
  const int32_t payloadAt = file.Tell();

  // Without a password there is no key: the payload is not enciphered, as the Part says.
  if (db.enciphered && db.password.empty()) db.enciphered = false;
  if (!db.compressed && !db.enciphered) return WritePlain(db, file, body, flagsAt, payloadAt);

  // A payload that is to be enciphered is never written in clear: where the body cannot reach the
  // cipher, or the cipher fails, the save fails and the file under the name stays as it was (the
  // Part's silent fallback to plain is not taken, for the password's sake). Compression that
  // fails only leaves the body uncompressed, enciphered all the same.
  const bool seal = db.enciphered;
  const bool wasCompressed = db.compressed;
  auto refuse = [&]() {
    db.compressed = wasCompressed;
    return false;
  };

  auto mem = std::make_unique<TMemFile>(kFirstBlock);
  if (!body.write(db, *mem)) {
    mem.reset();
    if (seal) return refuse();
    return WritePlain(db, file, body, flagsAt, payloadAt);
  }
  db.plainLength = static_cast<uint32_t>(mem->Tell());
  mem->Seek(0);
  const uint8_t* data = mem->Data();
  uint32_t length = db.plainLength;

  std::unique_ptr<char[]> packed;
  if (db.compressed) {
    // bzip2 reports failure when its output would pass one and a half times the input, which
    // is what a tiny body does: that body is simply stored uncompressed.
    const uint64_t room = uint64_t{length} * 3 / 2;
    unsigned int packedLength = static_cast<unsigned int>(room);
    packed.reset(new (std::nothrow) char[room > 0 ? room : 1]);
    const int rc = packed == nullptr
                       ? BZ_MEM_ERROR
                       : BZ2_bzBuffToBuffCompress(packed.get(), &packedLength,
                                                  reinterpret_cast<char*>(const_cast<uint8_t*>(data)),
                                                  length, kBlockSize100k, kVerbosity, kWorkFactor);
    if (rc != BZ_OK) {
      packed.reset();
      db.compressed = false;
      if (!seal) {
        mem.reset();
        return WritePlain(db, file, body, flagsAt, payloadAt);
      }
    } else {
      mem.reset();
      data = reinterpret_cast<const uint8_t*>(packed.get());
      length = packedLength;
    }
  }

  std::vector<uint8_t> sealed;
  if (seal) {
    try {
      int32_t sealedLength = 0, headerLength = 0;
      if (platform::InjectFault(platform::FaultSite::kEncipher))
        throw std::runtime_error("Crypto: enciphering failed");
      crypto::EncryptMemory(db.password.c_str(), data, static_cast<int32_t>(length), sealed,
                            sealedLength, headerLength);
    } catch (...) {
      return refuse();
    }
    packed.reset();
    mem.reset();
    data = sealed.data();
    length = static_cast<uint32_t>(sealed.size());
  }

  file.Write(data, static_cast<int32_t>(length));
  db.storedLength = length;
  return FinishHeader(db, file, flagsAt);
}

// Bytes of memory the system can still give without swapping; the physical size where that is
// not told.
uint64_t AvailableMemory() {
  if (std::FILE* f = std::fopen("/proc/meminfo", "r")) {
    char line[256];
    unsigned long long kib = 0;
    bool found = false;
    while (!found && std::fgets(line, sizeof line, f) != nullptr)
      found = std::sscanf(line, "MemAvailable: %llu kB", &kib) == 1;
    std::fclose(f);
    if (found) return uint64_t{kib} * 1024;
  }
  const long pages = sysconf(_SC_PHYS_PAGES), size = sysconf(_SC_PAGESIZE);
  return pages > 0 && size > 0 ? uint64_t(pages) * uint64_t(size) : uint64_t{INT32_MAX};
}

// A block holds at most level x 100,000 bytes before the first run-length stage is undone;
// undoing it turns at most 5 bytes (4 equal ones and a count) into 259.
uint64_t Bzip2BlockBound(uint8_t levelDigit) { return uint64_t(levelDigit - '0') * 100000 * 52; }

// A plain length the header claims is believed only as far as the payload can produce it and
// memory can hold it twice (the decompressed data and the memory file it is copied into).
bool PlainLengthFits(uint32_t plainLength, const uint8_t* data, uint64_t length, bool compressed) {
  if (plainLength > uint32_t{INT32_MAX}) return false;
  if (compressed) {
    if (length < 4 || std::memcmp(data, "BZh", 3) != 0 || data[3] < '1' || data[3] > '9')
      return false;
    // Up to one block's worth is taken without counting blocks.
    const uint64_t oneBlock = Bzip2BlockBound(data[3]);
    if (plainLength > oneBlock && plainLength > Bzip2OutputBound(data, length)) return false;
  } else if (plainLength != length) {
    return false;
  }
  return uint64_t{plainLength} * 2 <= AvailableMemory();
}

// Deciphers the payload with the database's password, the one the source remembers, or the ones it
// asks for, until one fits. False when the source has no more.
bool Decipher(StoredDatabase& db, PasswordSource& passwords, const uint8_t* stored,
              uint32_t storedLength, std::vector<uint8_t>& plain, uint32_t& plainLength) {
  if (db.password.empty()) {
    if (std::optional<std::string> remembered = passwords.Remembered()) db.password = *remembered;
  }
  for (;;) {
    if (!db.password.empty()) {
      int32_t length = 0;
      if (crypto::DecryptMemory(db.password.c_str(), stored, static_cast<int32_t>(storedLength),
                                plain, length)) {
        passwords.Opened(db.password);
        plainLength = static_cast<uint32_t>(length);
        return true;
      }
      std::vector<uint8_t>().swap(plain);
    }
    std::optional<std::string> entered = passwords.Ask();
    if (!entered) {
      db.password.clear();
      return false;
    }
    db.password = *entered;
  }
}

bool ReadEnvelopeOrThrow(StoredDatabase& db, TBaseFile& file, PasswordSource& passwords,
                         const BodyCodec& body) {
  model::ClearStore(db.store, false);
  file.SeekToBegin();
  if (ReadUInt32(file) != kSectionMark) return false;
  db.version = ReadInt16(file);
  if (db.version > kFileVersion) return false;
  ReadUInt32(file);  // reserved word, of no meaning to the reader
  db.compressed = ReadBool(file);
  db.enciphered = ReadBool(file);
  db.plainLength = ReadUInt32(file);
  db.storedLength = ReadUInt32(file);
  if (db.version >= kIdentifierSince) ReadString(db.identifier, file);
  if (db.version >= kCursorSince) db.store.currentCursor = ReadInt32(file);
  if (db.version >= kRootExpandedSince) db.store.rootExpanded = ReadBool(file);

  if (!db.compressed && !db.enciphered) {
    // A plain payload is parsed as it streams past in a window: no copy of the file is made.
    const int64_t at = file.Tell(), length = file.GetLength();
    if (at < 0 || length < at) return false;
    TReadAheadFile rest(file, static_cast<int32_t>(length - at));
    return body.read(db, rest);
  }

  // Lengths from the file are believed only as far as the file and memory can back them.
  const int64_t at = file.Tell(), fileLength = file.GetLength();
  if (at < 0 || fileLength < at || int64_t{db.storedLength} > fileLength - at) return false;
  std::unique_ptr<uint8_t[]> stored(new uint8_t[size_t{db.storedLength} + 1]);
  file.Read(stored.get(), static_cast<int32_t>(db.storedLength));
  const uint8_t* data = stored.get();
  uint32_t length = db.storedLength;

  std::vector<uint8_t> plain;
  if (db.enciphered) {
    if (!Decipher(db, passwords, stored.get(), db.storedLength, plain, length)) return false;
    stored.reset();
    data = plain.data();
  }
  if (!PlainLengthFits(db.plainLength, data, length, db.compressed)) return false;

  std::unique_ptr<char[]> unpacked;
  if (db.compressed) {
    unpacked.reset(new char[db.plainLength > 0 ? db.plainLength : 1]);
    unsigned int unpackedLength = db.plainLength;
    const int rc = BZ2_bzBuffToBuffDecompress(unpacked.get(), &unpackedLength,
                                              reinterpret_cast<char*>(const_cast<uint8_t*>(data)),
                                              length, 0, kVerbosity);
    if (rc != BZ_OK || unpackedLength != db.plainLength) return false;
    stored.reset();
    std::vector<uint8_t>().swap(plain);
    data = reinterpret_cast<const uint8_t*>(unpacked.get());
  }

  TMemFile mem(static_cast<int32_t>(db.plainLength));
  if (!mem.IsOpen()) return false;
  mem.Write(data, static_cast<int32_t>(db.plainLength));
  unpacked.reset();
  stored.reset();
  std::vector<uint8_t>().swap(plain);
  mem.Seek(0);
  return body.read(db, mem);
}

}  // namespace

BodyCodec DatabaseBody() { return BodyCodec{&storage::WriteBody, &storage::ReadBody}; }

uint64_t Bzip2OutputBound(const uint8_t* stream, uint64_t length) {
  if (length < 4 || std::memcmp(stream, "BZh", 3) != 0 || stream[3] < '1' || stream[3] > '9')
    return 0;
  const uint64_t perBlock = Bzip2BlockBound(stream[3]);
  // Blocks are not byte-aligned: count the 48-bit block mark at every bit offset. A chance
  // match only makes the bound larger.
  constexpr uint64_t kBlockMark = 0x314159265359ULL;
  constexpr uint64_t kMask = (uint64_t{1} << 48) - 1;
  uint64_t blocks = 0, window = 0;
  for (uint64_t i = 4; i < length; ++i) {
    window = (window << 8) | stream[i];
    if (i < 4 + 5) continue;  // fewer than six bytes seen
    for (int shift = 0; shift < 8; ++shift)
      if (((window >> shift) & kMask) == kBlockMark) ++blocks;
  }
  return blocks * perBlock;
}

bool WriteEnvelope(StoredDatabase& db, TBaseFile& file, const BodyCodec& body) {
  try {
    return WriteEnvelopeOrThrow(db, file, body);
  } catch (...) {
    return false;
  }
}

bool ReadEnvelope(StoredDatabase& db, TBaseFile& file, PasswordSource& passwords,
                  const BodyCodec& body) {
  try {
    return ReadEnvelopeOrThrow(db, file, passwords, body);
  } catch (...) {
    return false;
  }
}

bool WriteEnvelope(StoredDatabase& db, TBaseFile& file) {
  return WriteEnvelope(db, file, DatabaseBody());
}

bool ReadEnvelope(StoredDatabase& db, TBaseFile& file, PasswordSource& passwords) {
  return ReadEnvelope(db, file, passwords, DatabaseBody());
}

}  // namespace verdal::storage
