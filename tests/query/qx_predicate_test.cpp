// The predicate must answer exactly as the tree does, or leave the node to it.
#include "query/qx_predicate.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "query_test_support.h"

using verdal::query::QX_Error;
using verdal::query::QX_Predicate;
using verdal::query::testing::TestQuery;

namespace {

// Texts that stress the number reader and the comparisons: plain and signed numbers, forms the
// one-pass reader leaves to the general one, numbers out of range (an error in the tree), text.
const char* const kValues[] = {
    "",      "0",    "100",   "100.00", "199.99", "200", "-3.5", "  42", "12abc", ".5",  "-",
    "1.",    "1e2",  "1e",    "2E-3",   "1e99999", "1e-99999", "12345678901234567890123",
    "0.0000000000000000000000000000001", "100.000000000000001", "99.9999999999999999",
    "100.0000000000000000001", "0.2500", "-3.50", "19.90", "ab", "Ab", "AB", "xab", "\xe4" "b", "b",
};

struct Case {
  const char* text;
  bool compiles;
};

const Case kCases[] = {
    {"@1 >= 100 and @1 < 200;", true},
    {"@1 = 100;", true},
    {"100 <= @1 and 200 > @1;", true},
    {"@1 >= 0.25 or @1 = -3.5;", true},
    {"@1 > 19.9;", true},
    {"@1 <> 1 or @2 > 2;", true},
    {"not (@1 < 5);", true},
    {"@1 <= @2;", true},
    {"@1 > -0.5 and not (@2 = 3) or @1 = 42;", true},
    {"not @2 = 3;", false},
    {"@1 *= \"b\";", true},
    {"^@1 *= \"AB\";", true},
    {"^@1 = ^\"ab\";", true},
    {"@1 < \"b\";", true},
    {"\"ab\" >= @2;", true},
    {"@1 + 1 > 2;", false},
    {"@1;", false},
    {"#@1 > 2;", false},
    {"@1 *= 5;", false},
    {"var a := 1; @1 > a;", false},
};

}  // namespace

TEST(QxPredicate, AnswersAsTheTreeOrLeavesTheNode) {
  int decided = 0;
  for (const Case& c : kCases) {
    TestQuery q;
    ASSERT_EQ(q.Parse(c.text), nullptr) << c.text;
    std::unique_ptr<QX_Predicate> predicate = QX_Predicate::Compile(q.Tree());
    ASSERT_EQ(predicate != nullptr, c.compiles) << c.text;
    if (predicate == nullptr) continue;
    for (const char* first : kValues) {
      for (const char* second : {"3", "100", "ab", "1e99999"}) {
        q.fields[0] = first;
        q.fields[1] = second;
        bool truth = false;
        const QX_Error error = q.EvalBool(&truth);
        const QX_Predicate::Answer answer = predicate->Decide(q);
        const std::string where = std::string(c.text) + " with '" + first + "', '" + second + "'";
        if (error != nullptr) {
          EXPECT_EQ(answer, QX_Predicate::kUndecided) << where;
        } else {
          ASSERT_NE(answer, QX_Predicate::kUndecided) << where;
          EXPECT_EQ(answer == QX_Predicate::kYes, truth) << where;
          ++decided;
        }
      }
    }
  }
  EXPECT_GT(decided, 1200);
}

TEST(QxPredicate, ReadsEachFieldOncePerNodeAndLeavesHandedOverTexts) {
  TestQuery q;
  q.fields[0] = "150";
  ASSERT_EQ(q.Parse("@1 >= 100 and @1 < 200 and @1 <> 170;"), nullptr);
  std::unique_ptr<QX_Predicate> predicate = QX_Predicate::Compile(q.Tree());
  ASSERT_NE(predicate, nullptr);
  EXPECT_EQ(predicate->Fields(), (std::vector<QX_Predicate::FieldUse>{{0, false}}));
  EXPECT_EQ(predicate->Decide(q), QX_Predicate::kYes);
  EXPECT_EQ(q.reads, 1);
  // The next node is read afresh.
  q.fields[0] = "250";
  EXPECT_EQ(predicate->Decide(q), QX_Predicate::kNo);
  EXPECT_EQ(q.reads, 2);
  // A field searched is read as text, even where it is also compared as a number.
  TestQuery mixed;
  ASSERT_EQ(mixed.Parse("@1 *= \"b\" and @2 > 1 and @1 < 5;"), nullptr);
  EXPECT_EQ(QX_Predicate::Compile(mixed.Tree())->Fields(),
            (std::vector<QX_Predicate::FieldUse>{{0, true}, {1, false}}));
  // Variables report the kind of their value but are no literals: such trees stay with the tree.
  TestQuery variables;
  variables.DefineString("TAB", false, "\t");
  variables.DefineNumber("N", false, 3);
  for (const char* text : {"TAB = \"\";", "@1 > N;", "^TAB *= @1;"}) {
    ASSERT_EQ(variables.Parse(text), nullptr) << text;
    EXPECT_EQ(QX_Predicate::Compile(variables.Tree()), nullptr) << text;
  }
  // Texts handed over (owned) are freed and the node left to the tree.
  q.ownedReads = true;
  EXPECT_EQ(predicate->Decide(q), QX_Predicate::kUndecided);
}
