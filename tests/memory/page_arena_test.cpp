#include "memory/page_arena.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <utility>
#include <vector>

namespace verdal::memory {
namespace {

// Many pieces of mixed sizes across steps, mappings and pieces of their own, with mapping ahead
// stopped half way: each piece is aligned, apart from every other, and keeps what was written to
// it, including pieces in pages the stop gave back around.
TEST(PageArena, PiecesStayApartAlignedAndKeepTheirBytesThroughStepsAndTheStop) {
  PageArena arena(256 << 10, 64 << 10, true);
  std::vector<std::pair<uint8_t*, size_t>> pieces;
  auto fill = [](uint8_t* p, size_t n, size_t seed) {
    for (size_t i = 0; i < n; ++i) p[i] = static_cast<uint8_t>(seed * 31 + i);
  };
  for (size_t k = 0; k < 6000; ++k) {
    if (k == 3000) arena.StopMappingAhead();
    const size_t n = k % 97 == 0 ? 20000 + k : 1 + (k * 37) % 700;  // some above a quarter step
    auto* p = static_cast<uint8_t*>(arena.Allocate(n));
    ASSERT_EQ(reinterpret_cast<uintptr_t>(p) % PageArena::kAlignment, 0u);
    fill(p, n, k);
    pieces.emplace_back(p, n);
  }
  EXPECT_GT(arena.ReservedBytes(), size_t{256} << 10);  // the expected size did not suffice

  for (size_t k = 0; k < pieces.size(); ++k) {
    std::vector<uint8_t> expected(pieces[k].second);
    fill(expected.data(), expected.size(), k);
    ASSERT_EQ(std::memcmp(pieces[k].first, expected.data(), expected.size()), 0) << "piece " << k;
  }
  std::sort(pieces.begin(), pieces.end());
  for (size_t k = 1; k < pieces.size(); ++k)
    ASSERT_LE(pieces[k - 1].first + pieces[k - 1].second, pieces[k].first);
}

TEST(PageArena, WorksWithoutMappingAheadAndForZeroBytes) {
  PageArena arena(1, 1, false);
  void* a = arena.Allocate(0);
  void* b = arena.Allocate(0);
  EXPECT_NE(a, b);
  auto* big = static_cast<char*>(arena.Allocate(1 << 20));
  big[(1 << 20) - 1] = 'x';
  EXPECT_EQ(big[(1 << 20) - 1], 'x');
}

}  // namespace
}  // namespace verdal::memory
