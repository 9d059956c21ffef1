// The host's path mapper takes a buffer of 260 bytes: a path that does not fit is refused with
// code 11, never cut and passed on as a name that would then count as missing.
#include "engine/path_mapper.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "engine/last_error.h"
#include "verdal.h"

TEST(PathMapper, MapsWhatFitsItsBufferAndRefusesTheRest) {
  std::string path = "a.csv";
  ASSERT_TRUE(verdal::engine::MapPath(path));  // no mapper: unchanged
  EXPECT_EQ(path, "a.csv");
  VERDAL_SetPathMapper([](char* buffer) { buffer[0] = 'A'; });
  const bool mapped = verdal::engine::MapPath(path);
  VERDAL_SetPathMapper(nullptr);
  ASSERT_TRUE(mapped);
  EXPECT_EQ(path, "A.csv");

  // The longest path that fits, and a mapper that fills the whole buffer without a terminator.
  path = std::string(259, 'p');
  ASSERT_TRUE(verdal::engine::MapPath(path, [](char* buffer) { std::memset(buffer, 'u', 260); }));
  EXPECT_EQ(path, std::string(259, 'u'));

  for (size_t length : {260u, 4000u}) {
    path = std::string(length, 'q');
    verdal::engine::SetLastError(VERDAL_ERR_NONE);
    EXPECT_FALSE(verdal::engine::MapPath(path, [](char*) { ADD_FAILURE() << "mapper called"; })) << length;
    EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_INPUT);
    EXPECT_EQ(path, std::string(length, 'q'));
  }
}
