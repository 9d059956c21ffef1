// The host's path mapper takes a buffer of 260 bytes: a path that does not fit is refused with
// code 11, never cut and passed on as a name that would then count as missing.
#include "engine/path_mapper.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "engine/last_error.h"
#include "verdal.h"

namespace {

int g_calls = 0;

void ToData(char path[260]) {
  ++g_calls;
  std::string mapped = std::string("/daten/") + path;
  std::strncpy(path, mapped.c_str(), 259);
  path[259] = '\0';
}

// A mapper that fills the whole buffer without a terminator.
void Unterminated(char path[260]) {
  ++g_calls;
  std::memset(path, 'u', 260);
}

class PathMapper : public ::testing::Test {
 protected:
  void SetUp() override { g_calls = 0; }
  void TearDown() override { VERDAL_SetPathMapper(nullptr); }
};

}  // namespace

TEST_F(PathMapper, MapsThroughTheMapperTheHostSet) {
  std::string path = "a.csv";
  ASSERT_TRUE(verdal::engine::MapPath(path));  // no mapper: unchanged
  EXPECT_EQ(path, "a.csv");
  VERDAL_SetPathMapper(ToData);
  ASSERT_TRUE(verdal::engine::MapPath(path));
  EXPECT_EQ(path, "/daten/a.csv");
  path = std::string(259, 'p');  // the longest that fits
  ASSERT_TRUE(verdal::engine::MapPath(path, Unterminated));
  EXPECT_EQ(path, std::string(259, 'u'));
  EXPECT_EQ(g_calls, 2);
}

TEST_F(PathMapper, RefusesAPathThatDoesNotFitItsBuffer) {
  VERDAL_SetPathMapper(ToData);
  for (size_t length : {260u, 300u, 4000u}) {
    std::string path(length, 'q');
    verdal::engine::SetLastError(VERDAL_ERR_NONE);
    EXPECT_FALSE(verdal::engine::MapPath(path)) << length;
    EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_INPUT);
    EXPECT_EQ(path, std::string(length, 'q'));
  }
  EXPECT_EQ(g_calls, 0);
}
