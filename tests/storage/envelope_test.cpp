// The envelope around a body: the four payload forms, the fallbacks to plain, passwords from the
// database, the session list and the prompt, header fields by version, damaged headers.
#include "storage/envelope.h"

#include <gtest/gtest.h>

#include <bzlib.h>
#include <unistd.h>

#include <cctype>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "io/memfile.h"
#include "io/stream_io.h"
#include "engine/db_manager.h"
#include "engine/file_passwords.h"
#include "engine/pool_manager.h"
#include "platform/language.h"
#include "ui/scripted_host.h"

// The largest single allocation through operator new while a test watches: damaged headers must
// be refused before their lengths turn into buffers.
namespace {
bool g_watch = false;
size_t g_largest = 0;

__attribute__((noinline)) void* TakeBlock(size_t size) {
  if (g_watch && size > g_largest) g_largest = size;
  if (void* p = std::malloc(size > 0 ? size : 1)) return p;
  throw std::bad_alloc();
}
__attribute__((noinline)) void GiveBlock(void* p) { std::free(p); }
}  // namespace

void* operator new(size_t size) { return TakeBlock(size); }
void* operator new[](size_t size) { return TakeBlock(size); }
void* operator new(size_t size, const std::nothrow_t&) noexcept {
  try {
    return TakeBlock(size);
  } catch (...) {
    return nullptr;
  }
}
void* operator new[](size_t size, const std::nothrow_t& tag) noexcept { return operator new(size, tag); }
void operator delete(void* p, const std::nothrow_t&) noexcept { GiveBlock(p); }
void operator delete[](void* p, const std::nothrow_t&) noexcept { GiveBlock(p); }
void operator delete(void* p) noexcept { GiveBlock(p); }
void operator delete[](void* p) noexcept { GiveBlock(p); }
void operator delete(void* p, size_t) noexcept { GiveBlock(p); }
void operator delete[](void* p, size_t) noexcept { GiveBlock(p); }

namespace {

using verdal::TMemFile;
using verdal::engine::TDBManager;
using verdal::storage::BodyCodec;

// A stand-in body: a length and that many bytes. What was read lands in g_readBack.
std::string g_body;
std::string g_readBack;
int g_writes = 0;

bool WriteBlob(verdal::storage::StoredDatabase&, verdal::TBaseFile& file) {
  ++g_writes;
  verdal::WriteString(g_body, file);
  return true;
}
bool ReadBlob(verdal::storage::StoredDatabase&, verdal::TBaseFile& file) {
  verdal::ReadString(g_readBack, file);
  return true;
}
// Fails into memory, works on the file itself.
bool WriteBlobNotToMemory(verdal::storage::StoredDatabase& db, verdal::TBaseFile& file) {
  if (g_writes > 0) return WriteBlob(db, file);
  ++g_writes;
  return false;
}
const BodyCodec kBlob{WriteBlob, ReadBlob};

// Text that compresses well but not trivially.
std::string SampleBody(size_t size) {
  std::string s;
  for (uint32_t i = 0; s.size() < size; ++i) s += "Eintrag " + std::to_string(i * 7919 % 1000) + ";";
  s.resize(size);
  return s;
}

std::vector<uint8_t> Bytes(TMemFile& f) { return {f.Data(), f.Data() + f.GetLength()}; }

uint32_t U32At(const std::vector<uint8_t>& b, size_t at) {
  uint32_t v;
  std::memcpy(&v, b.data() + at, 4);
  return v;
}
void PutU32(std::vector<uint8_t>& b, size_t at, uint32_t v) { std::memcpy(b.data() + at, &v, 4); }

std::unique_ptr<TMemFile> FileOf(const std::vector<uint8_t>& bytes) {
  auto f = std::make_unique<TMemFile>(static_cast<int32_t>(bytes.size()));
  f->Write(bytes.data(), static_cast<int32_t>(bytes.size()));
  return f;
}

// Where the payload begins in a version-13 file with the identifier of db.
size_t PayloadAt(const TDBManager& db) { return 20 + 4 + db.identifier.size() + 4 + 1; }

class Envelope : public ::testing::Test {
 protected:
  void SetUp() override {
    g_body = SampleBody(50000);
    g_readBack.clear();
    g_writes = 0;
    verdal::platform::SetLanguageId(0x407);
  }
  void TearDown() override { verdal::platform::SetLanguageId(0); }

  // Saves db with the blob body and gives the bytes.
  std::vector<uint8_t> Save(TDBManager& db, const BodyCodec& codec = kBlob) {
    TMemFile f(100);
    EXPECT_TRUE(verdal::storage::WriteEnvelope(db, f, codec));
    return Bytes(f);
  }
  bool Load(TDBManager& db, const std::vector<uint8_t>& bytes) {
    verdal::engine::FilePasswords passwords(db.fileName);
    return verdal::storage::ReadEnvelope(db, *FileOf(bytes), passwords, kBlob);
  }
  ScriptedHost host;
};

TEST_F(Envelope, FourPayloadFormsRoundTrip) {
  struct Case {
    bool compress;
    const char* password;
  } cases[] = {{false, ""}, {true, ""}, {false, "geheim123"}, {true, "geheim123"}};
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.compress ? "compressed " : "plain ") + c.password);
    TDBManager db(1);
    db.compressed = c.compress;
    db.password = c.password;
    db.enciphered = *c.password != '\0';
    db.store.currentCursor = 17;
    db.store.MainView().root.expanded = false;
    std::vector<uint8_t> bytes = Save(db);

    const uint32_t plain = static_cast<uint32_t>(4 + g_body.size());
    EXPECT_EQ(U32At(bytes, 0), 0x41524D59u);
    EXPECT_EQ(bytes[4] | bytes[5] << 8, 13);
    EXPECT_EQ(bytes[10], c.compress ? 1 : 0);
    EXPECT_EQ(bytes[11], *c.password ? 1 : 0);
    EXPECT_EQ(U32At(bytes, 12), plain);
    const uint32_t stored = U32At(bytes, 16);
    EXPECT_EQ(stored, db.storedLength);
    EXPECT_EQ(bytes.size(), PayloadAt(db) + stored);
    const uint8_t* payload = bytes.data() + PayloadAt(db);
    if (!c.compress && !*c.password) { EXPECT_EQ(stored, plain); }
    if (c.compress && !*c.password) { EXPECT_EQ(std::memcmp(payload, "BZh9", 4), 0); }
    if (c.compress) { EXPECT_LT(stored, plain / 4); }
    if (!c.compress && *c.password) { EXPECT_EQ(stored, 69 + (plain + 31) / 32 * 32); }
    // The body must not be readable in the file once it is enciphered.
    const std::string text(bytes.begin(), bytes.end());
    EXPECT_EQ(text.find("Eintrag 7;") != std::string::npos, !c.compress && !*c.password);

    TDBManager back(1);
    back.password = c.password;
    ASSERT_TRUE(Load(back, bytes));
    EXPECT_EQ(g_readBack, g_body);
    EXPECT_EQ(back.compressed, c.compress);
    EXPECT_EQ(back.enciphered, *c.password != '\0');
    EXPECT_EQ(back.plainLength, plain);
    EXPECT_EQ(back.identifier, db.identifier);
    EXPECT_EQ(back.store.currentCursor, 17);
    EXPECT_FALSE(back.store.rootExpanded);
    EXPECT_TRUE(host.prompts.empty());
  }
}

TEST_F(Envelope, FallbacksSavePlain) {
  {
    // A tiny body grows under bzip2 past the one-and-a-half limit: stored plain, password kept.
    g_body = "kurz";
    TDBManager db(1);
    db.compressed = true;
    db.password = "geheim123";
    std::vector<uint8_t> bytes = Save(db);
    EXPECT_FALSE(db.compressed);
    EXPECT_FALSE(db.enciphered);
    EXPECT_EQ(db.password, "geheim123");
    EXPECT_EQ(bytes[10], 0);
    EXPECT_EQ(db.storedLength, 8u);
    EXPECT_EQ(db.plainLength, 8u);
    EXPECT_EQ(bytes.size(), PayloadAt(db) + 8);
  }
  {
    // Enciphered without a password: the compressed stream alone is the payload.
    g_body = SampleBody(50000);
    TDBManager db(1);
    db.compressed = true;
    db.enciphered = true;
    std::vector<uint8_t> bytes = Save(db);
    EXPECT_TRUE(db.compressed);
    EXPECT_FALSE(db.enciphered);
    EXPECT_EQ(bytes[11], 0);
    EXPECT_EQ(std::memcmp(bytes.data() + PayloadAt(db), "BZh9", 4), 0);
    TDBManager back(1);
    ASSERT_TRUE(Load(back, bytes));
    EXPECT_EQ(g_readBack, g_body);
  }
  {
    // A body that cannot be written into memory is written straight into the file, when it is
    // only to be compressed.
    g_writes = 0;
    TDBManager db(1);
    db.compressed = true;
    db.password = "geheim123";
    std::vector<uint8_t> bytes = Save(db, BodyCodec{WriteBlobNotToMemory, ReadBlob});
    EXPECT_EQ(g_writes, 2);
    EXPECT_FALSE(db.compressed);
    EXPECT_FALSE(db.enciphered);
    TDBManager back(1);
    ASSERT_TRUE(Load(back, bytes));
    EXPECT_EQ(g_readBack, g_body);
  }
}

// Where the payload is to be enciphered, no fallback writes it in clear: compression that fails
// leaves the body uncompressed but enciphered, and a body that cannot reach the cipher fails the
// save, with the password and the flags kept for the next one.
TEST_F(Envelope, FallbacksKeepTheCipher) {
  TDBManager tiny(1);
  tiny.compressed = tiny.enciphered = true;
  tiny.password = "geheim123";
  g_body = "kurz";  // too short for bzip2 to take
  std::vector<uint8_t> bytes = Save(tiny);
  EXPECT_EQ(bytes[10], 0);
  EXPECT_EQ(bytes[11], 1);
  EXPECT_EQ(std::string(bytes.begin(), bytes.end()).find("kurz"), std::string::npos);
  TDBManager back(1);
  back.password = "geheim123";
  ASSERT_TRUE(Load(back, bytes));
  EXPECT_EQ(g_readBack, "kurz");

  g_body = SampleBody(50000);
  for (bool compress : {false, true}) {
    g_writes = 0;
    TDBManager db(1);
    db.compressed = compress;
    db.enciphered = true;
    db.password = "geheim123";
    TMemFile f(100);
    EXPECT_FALSE(verdal::storage::WriteEnvelope(db, f, BodyCodec{WriteBlobNotToMemory, ReadBlob}));
    EXPECT_EQ(db.compressed, compress);
    EXPECT_TRUE(db.enciphered);
    const std::vector<uint8_t> written = Bytes(f);
    EXPECT_EQ(std::string(written.begin(), written.end()).find("Eintrag"), std::string::npos);
  }
}

TEST_F(Envelope, PasswordsFromSessionAndPrompt) {
  TDBManager db(1);
  db.password = "richtig12";
  db.enciphered = true;
  db.compressed = true;
  const std::vector<uint8_t> bytes = Save(db);
  const std::string name = "/tmp/envelope_session_" + std::to_string(::getpid()) + ".dbd";
  auto& pool = verdal::engine::Pool();

  // The session list knows the file (in other letter case): no prompt.
  pool.SetSessionPassword(name, "richtig12");
  {
    TDBManager back(1);
    back.fileName = name;
    for (char& ch : back.fileName) ch = static_cast<char>(std::toupper(static_cast<unsigned char>(ch)));
    ASSERT_TRUE(Load(back, bytes));
    EXPECT_EQ(back.password, "richtig12");
    EXPECT_TRUE(host.prompts.empty());
  }
  // A stale session password leads to the prompt; a wrong answer and an empty one ask again.
  pool.SetSessionPassword(name, "veraltet1");
  host.answers = {std::string("falsch123"), std::string(""), std::string("richtig12")};
  {
    TDBManager back(1);
    back.fileName = name;
    ASSERT_TRUE(Load(back, bytes));
    EXPECT_EQ(g_readBack, g_body);
    ASSERT_EQ(host.prompts.size(), 3u);
    EXPECT_EQ(host.prompts[0].title, verdal::ui::ApplicationName());
    EXPECT_EQ(host.prompts[0].prompt, "Bitte geben Sie das Pa\xDFwort ein:");
    EXPECT_EQ(host.prompts[0].limit, 31);
    ASSERT_NE(pool.SessionPassword(name), nullptr);
    EXPECT_EQ(*pool.SessionPassword(name), "richtig12");
  }
  // Cancel: false, and the password is gone.
  host.prompts.clear();
  verdal::platform::SetLanguageId(0x409);
  {
    TDBManager back(1);
    back.password = "falsch123";
    host.answers = {std::string("auch falsch"), std::nullopt};
    EXPECT_FALSE(Load(back, bytes));
    EXPECT_EQ(back.password, "");
    ASSERT_EQ(host.prompts.size(), 2u);
    EXPECT_EQ(host.prompts[0].prompt, "Please enter the password:");
  }
}

TEST_F(Envelope, HeaderFieldsFollowTheVersion) {
  TDBManager db(1);
  db.password = "geheim123";
  db.enciphered = true;
  std::vector<uint8_t> bytes = Save(db);

  // A newer version is refused before any password is asked for.
  std::vector<uint8_t> newer = bytes;
  newer[4] = 14;
  TDBManager refused(1);
  EXPECT_FALSE(Load(refused, newer));
  EXPECT_EQ(refused.version, 14);
  EXPECT_TRUE(host.prompts.empty());

  // Version 10: no identifier, cursor or root flag; the body begins at offset 20. The bytes at
  // offset 6 do not matter.
  std::vector<uint8_t> old = {0x59, 0x4D, 0x52, 0x41, 10, 0, 0xDE, 0xAD, 0xBE, 0xEF, 0, 0};
  old.resize(20, 0);
  const std::string body = "alt";
  const uint32_t n = static_cast<uint32_t>(body.size());
  old.insert(old.end(), {uint8_t(n), 0, 0, 0});
  old.insert(old.end(), body.begin(), body.end());
  TDBManager back(1);
  const std::string identifier = back.identifier;
  back.store.currentCursor = 5;
  back.store.rootExpanded = true;
  ASSERT_TRUE(Load(back, old));
  EXPECT_EQ(g_readBack, "alt");
  EXPECT_EQ(back.version, 10);
  EXPECT_EQ(back.identifier, identifier);
  EXPECT_EQ(back.store.currentCursor, 5);
  EXPECT_TRUE(back.store.rootExpanded);

  std::vector<uint8_t> foreign = bytes;
  foreign[0] = 'Z';
  EXPECT_FALSE(Load(back, foreign));
}

TEST_F(Envelope, DamagedLengthsAreRefusedBeforeAllocation) {
  TDBManager db(1);
  db.compressed = true;
  db.password = "geheim123";
  db.enciphered = true;
  const std::vector<uint8_t> both = Save(db);
  db.password.clear();
  db.enciphered = false;
  const std::vector<uint8_t> packed = Save(db);
  db.password = "geheim123";
  db.enciphered = true;
  db.compressed = false;
  const std::vector<uint8_t> sealed = Save(db);
  const uint32_t plain = db.plainLength;

  struct Case {
    const char* what;
    const std::vector<uint8_t>* file;
    size_t at;
    uint32_t value;
  } cases[] = {
      {"stored length past the end", &packed, 16, 0xFFFFFFF0u},
      {"plain length beyond what bzip2 can give", &packed, 12, 0x7FFFFFF0u},
      {"plain length above 2 GiB", &packed, 12, 0xFFFFFFFFu},
      {"plain length one short", &packed, 12, plain - 1},
      {"plain length of the compressed container", &both, 12, 0x7FFFFFF0u},
      {"plain length against the container", &sealed, 12, 0x40000000u},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    std::vector<uint8_t> bytes = *c.file;
    PutU32(bytes, c.at, c.value);
    TDBManager back(1);
    back.password = "geheim123";
    g_largest = 0;
    g_watch = true;
    const bool loaded = Load(back, bytes);
    g_watch = false;
    EXPECT_FALSE(loaded);
    EXPECT_LT(g_largest, 1u << 20);
  }

  // A file cut anywhere fails cleanly.
  for (const std::vector<uint8_t>* file : {&packed, &both, &sealed}) {
    for (size_t cut = 0; cut < file->size(); cut += 97) {
      std::vector<uint8_t> bytes(file->begin(), file->begin() + static_cast<long>(cut));
      TDBManager back(1);
      back.password = "geheim123";
      EXPECT_FALSE(Load(back, bytes)) << cut;
    }
  }
  EXPECT_TRUE(host.prompts.empty());
}

TEST(Bzip2OutputBound, CountsBlocksOfRealStreams) {
  // Five blocks of level 1 (100,000 bytes each at most) from 450,000 varied bytes.
  std::string text;
  for (uint32_t i = 0; text.size() < 450000; ++i) text += std::to_string(i * 2654435761u) + " ";
  std::vector<char> out(text.size() * 2);
  unsigned int outLength = static_cast<unsigned int>(out.size());
  ASSERT_EQ(BZ2_bzBuffToBuffCompress(out.data(), &outLength, text.data(),
                                     static_cast<unsigned int>(text.size()), 1, 0, 30),
            BZ_OK);
  const auto* s = reinterpret_cast<const uint8_t*>(out.data());
  const uint64_t bound = verdal::storage::Bzip2OutputBound(s, outLength);
  EXPECT_GE(bound, text.size());
  EXPECT_EQ(bound % (100000 * 52), 0u);
  EXPECT_GE(bound / (100000 * 52), 5u);
  EXPECT_LE(bound / (100000 * 52), 6u);
  EXPECT_EQ(verdal::storage::Bzip2OutputBound(s, 4), 0u);
  const uint8_t foreign[] = {'B', 'Z', 'h', '0', 0x31, 0x41, 0x59, 0x26, 0x53, 0x59};
  EXPECT_EQ(verdal::storage::Bzip2OutputBound(foreign, sizeof foreign), 0u);
}

}  // namespace
