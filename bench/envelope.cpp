// The envelope on a large body: save and load, compressed, enciphered and both, into a memory
// file, each iteration timed (thread CPU time) against libbz2 alone on the same bytes in the
// same iteration (counter "ratio" = envelope time / libbz2 time). The body is that of the
// benchmarks' large database cut to 100,000 records, serialised once; the envelope carries those
// bytes, so the figures show the envelope's own cost. The full save and load with the body writer and
// reader are measured as well.
#include <benchmark/benchmark.h>
#include <bzlib.h>

#include <time.h>

#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "io/memfile.h"
#include "engine/db_manager.h"
#include "engine/handle_table.h"
#include "storage/database_file.h"
#include "crypto/memory_container.h"
#include "storage/envelope.h"
#include "verdal.h"
#include "support/big_database.h"

namespace {

// Thread CPU time: the machine is shared, and wall time would count other processes' turns.
struct Clock {
  using time_point = double;
  static double now() {
    timespec ts;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &ts);
    return double(ts.tv_sec) + double(ts.tv_nsec) * 1e-9;
  }
};
using verdal::TMemFile;
using verdal::engine::TDBManager;

constexpr int kRecords = 100000;
constexpr char kPassword[] = "Bench-Passwort-1";

VerdalHandle BuildDatabase() {
  VerdalHandle db = bench_support::NewDatabaseWithFields();
  bench_support::AddRecords(db, bench_support::AddCategories(db), kRecords, bench_support::Values());
  return db;
}

struct Shared {
  VerdalHandle handle = 0;
  std::vector<uint8_t> body;  // the serialised body of the database
};

Shared& Data() {
  static Shared* shared = [] {
    auto* s = new Shared;
    s->handle = BuildDatabase();
    TDBManager* db = verdal::engine::Handles().Lookup(s->handle);
    TMemFile f(2000000);
    verdal::storage::WriteBody(*db, f);
    s->body.assign(f.Data(), f.Data() + f.GetLength());
    return s;
  }();
  return *shared;
}

// The envelope carries the prepared body bytes.
bool WritePrepared(verdal::storage::StoredDatabase&, verdal::TBaseFile& file) {
  const std::vector<uint8_t>& b = Data().body;
  file.Write(b.data(), static_cast<int32_t>(b.size()));
  return true;
}
std::vector<uint8_t> g_readInto;
bool ReadPrepared(verdal::storage::StoredDatabase&, verdal::TBaseFile& file) {
  g_readInto.resize(Data().body.size());
  file.Read(g_readInto.data(), static_cast<int32_t>(g_readInto.size()));
  return true;
}
const verdal::storage::BodyCodec kPrepared{WritePrepared, ReadPrepared};
// The benchmark databases carry their password: nothing else is tried.
verdal::storage::NoPasswords g_noPasswords;

double Seconds(double a, double b) { return b - a; }

// What the peer does: libbz2 alone (plus the cipher, for the form that has one) on the same bytes.
std::vector<char> PeerCompress(const std::vector<uint8_t>& body) {
  std::vector<char> out(body.size() * 3 / 2);
  unsigned int n = static_cast<unsigned int>(out.size());
  BZ2_bzBuffToBuffCompress(out.data(), &n, reinterpret_cast<char*>(const_cast<uint8_t*>(body.data())),
                           static_cast<unsigned int>(body.size()), 9, 0, 30);
  out.resize(n);
  return out;
}
void PeerDecompress(const std::vector<char>& packed, size_t plain) {
  std::vector<char> out(plain);
  unsigned int n = static_cast<unsigned int>(plain);
  BZ2_bzBuffToBuffDecompress(out.data(), &n, const_cast<char*>(packed.data()),
                             static_cast<unsigned int>(packed.size()), 0, 0);
  benchmark::DoNotOptimize(out.data());
}

void Configure(TDBManager& db, bool compress, bool encipher) {
  db.compressed = compress;
  db.enciphered = encipher;
  db.password = encipher ? kPassword : "";
}

// state.range(0): 1 compressed, 2 enciphered, 3 both.
void BM_EnvelopeSave(benchmark::State& state) {
  const bool compress = state.range(0) & 1, encipher = state.range(0) & 2;
  const std::vector<uint8_t>& body = Data().body;
  TDBManager db(1);
  double ours = 0, peer = 0;
  size_t stored = 0;
  for (auto _ : state) {
    Configure(db, compress, encipher);
    TMemFile file(2000000);
    auto t0 = Clock::now();
    if (!verdal::storage::WriteEnvelope(db, file, kPrepared)) state.SkipWithError("save failed");
    auto t1 = Clock::now();
    stored = db.storedLength;
    std::vector<uint8_t> sealed;
    int32_t sealedLength = 0, header = 0;
    auto p0 = Clock::now();
    if (compress) {
      std::vector<char> packed = PeerCompress(body);
      if (encipher)
        verdal::crypto::EncryptMemory(kPassword, reinterpret_cast<uint8_t*>(packed.data()),
                                      static_cast<int32_t>(packed.size()), sealed, sealedLength, header);
    } else {
      verdal::crypto::EncryptMemory(kPassword, body.data(), static_cast<int32_t>(body.size()),
                                    sealed, sealedLength, header);
    }
    auto p1 = Clock::now();
    ours += Seconds(t0, t1);
    peer += Seconds(p0, p1);
    state.SetIterationTime(Seconds(t0, t1));
  }
  state.counters["ratio"] = ours / peer;
  state.counters["body_MB"] = body.size() / 1e6;
  state.counters["stored_MB"] = stored / 1e6;
  state.SetBytesProcessed(int64_t(state.iterations()) * int64_t(body.size()));
}
BENCHMARK(BM_EnvelopeSave)->Arg(1)->Arg(2)->Arg(3)->UseManualTime()->Iterations(3)->Unit(benchmark::kMillisecond);

void BM_EnvelopeLoad(benchmark::State& state) {
  const bool compress = state.range(0) & 1, encipher = state.range(0) & 2;
  const std::vector<uint8_t>& body = Data().body;
  TDBManager db(1);
  Configure(db, compress, encipher);
  TMemFile file(2000000);
  verdal::storage::WriteEnvelope(db, file, kPrepared);
  const std::vector<char> packed = compress ? PeerCompress(body) : std::vector<char>();
  std::vector<uint8_t> sealed;
  int32_t sealedLength = 0, header = 0;
  if (encipher) {
    const uint8_t* src = compress ? reinterpret_cast<const uint8_t*>(packed.data()) : body.data();
    const size_t n = compress ? packed.size() : body.size();
    verdal::crypto::EncryptMemory(kPassword, src, static_cast<int32_t>(n), sealed, sealedLength, header);
  }
  double ours = 0, peer = 0;
  for (auto _ : state) {
    TDBManager back(1);
    back.password = encipher ? kPassword : "";
    auto t0 = Clock::now();
    if (!verdal::storage::ReadEnvelope(back, file, g_noPasswords, kPrepared)) state.SkipWithError("load failed");
    auto t1 = Clock::now();
    auto p0 = Clock::now();
    std::vector<uint8_t> plain;
    int32_t plainLength = 0;
    if (encipher)
      verdal::crypto::DecryptMemory(kPassword, sealed.data(), sealedLength, plain, plainLength);
    if (compress) {
      if (encipher) {
        std::vector<char> again(plain.begin(), plain.begin() + plainLength);
        PeerDecompress(again, body.size());
      } else {
        PeerDecompress(packed, body.size());
      }
    }
    auto p1 = Clock::now();
    ours += Seconds(t0, t1);
    peer += Seconds(p0, p1);
    state.SetIterationTime(Seconds(t0, t1));
  }
  if (g_readInto != body) state.SkipWithError("body differs");
  state.counters["ratio"] = ours / peer;
  state.SetBytesProcessed(int64_t(state.iterations()) * int64_t(body.size()));
}
BENCHMARK(BM_EnvelopeLoad)->Arg(1)->Arg(2)->Arg(3)->UseManualTime()->Iterations(3)->Unit(benchmark::kMillisecond);

// The whole database, body writer and reader included: 0 plain, 1 compressed, 3 both (wall and
// process CPU time as Google Benchmark measures them).
void BM_DatabaseSave(benchmark::State& state) {
  TDBManager* db = verdal::engine::Handles().Lookup(Data().handle);
  for (auto _ : state) {
    Configure(*db, state.range(0) & 1, state.range(0) & 2);
    TMemFile file(2000000);
    if (!verdal::storage::WriteEnvelope(*db, file)) state.SkipWithError("save failed");
  }
  state.counters["file_MB"] = db->storedLength / 1e6;
}
BENCHMARK(BM_DatabaseSave)->Arg(0)->Arg(1)->Arg(3)->Iterations(3)->Unit(benchmark::kMillisecond);

void BM_DatabaseLoad(benchmark::State& state) {
  TDBManager* db = verdal::engine::Handles().Lookup(Data().handle);
  Configure(*db, state.range(0) & 1, state.range(0) & 2);
  TMemFile file(2000000);
  verdal::storage::WriteEnvelope(*db, file);
  for (auto _ : state) {
    auto back = std::make_unique<TDBManager>(3);
    back->password = db->password;
    if (!verdal::storage::ReadEnvelope(*back, file, g_noPasswords)) state.SkipWithError("load failed");
  }
}
BENCHMARK(BM_DatabaseLoad)->Arg(0)->Arg(1)->Arg(3)->Iterations(3)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
