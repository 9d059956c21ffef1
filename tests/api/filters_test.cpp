// Filter texts through the C interface: single conditions, and the failures of both functions
// with their codes and trace lines.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "field_helpers.h"
#include "verdal.h"

namespace {

std::vector<std::string> g_trace;
// Only the failure lines of exported functions; the pool traces lines of its own.
void Collect(const char* line) {
  if (std::string(line).rfind("Error in ", 0) == 0) g_trace.push_back(line);
}

}  // namespace

TEST(Filters, SingleConditionsAndFailures) {
  VerdalHandle db = OpenMemoryDatabase();
  AddField(db, "Ort", 0);
  AddField(db, "Preis", 1);
  VERDAL_SetTraceSink(Collect);
  EXPECT_STREQ(VERDAL_GetInternalParseString(db, 0, "Kiel", 0), "   \\eval{Ort|=|\"Kiel\"|0} ");
  EXPECT_STREQ(VERDAL_GetInternalParseString(db, 0, "Kiel", 6), "   \\eval{Ort|*=|\"Kiel\"|4} ");
  EXPECT_STREQ(VERDAL_GetInternalParseString(db, 0, "K*l", 16 | 4), "   \\eval{Ort|=|\"K*l\"|20} ");
  EXPECT_STREQ(VERDAL_GetInternalParseString(db, 0, nullptr, 8), "   \\eval{Ort|=|\"\"|8} ");
  EXPECT_STREQ(VERDAL_GetInternalParseString(db, 1, "1,5", 30), "   \\eval{Preis|=|1,5|0} ");
  EXPECT_EQ(VERDAL_GetFilter(db, "Neuer Filter"), nullptr);  // unknown name: no error
  EXPECT_EQ(VERDAL_GetFilter(db, nullptr), nullptr);
  EXPECT_EQ(VERDAL_GetLastError(), 0);
  EXPECT_TRUE(g_trace.empty());

  EXPECT_EQ(VERDAL_GetInternalParseString(db, 2, "x", 0), nullptr);
  EXPECT_EQ(VERDAL_GetInternalParseString(0, 0, "x", 0), nullptr);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_HANDLE);
  EXPECT_EQ(VERDAL_GetFilter(db + 1000, "x"), nullptr);
  EXPECT_EQ(VERDAL_GetLastError(), VERDAL_ERR_HANDLE);
  EXPECT_EQ(g_trace, (std::vector<std::string>{"Error in VERDAL_GetInternalParseString: ID=0",
                                               "Error in VERDAL_GetInternalParseString: ID=1",
                                               "Error in VERDAL_GetFilter: ID=1"}));
  VERDAL_SetTraceSink(nullptr);
  VERDAL_CloseAllDBs();
}
