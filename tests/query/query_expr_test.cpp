#include "query/query_expr.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <utility>

#include "query_test_support.h"

using namespace verdal::query;
using verdal::query::testing::RunQuery;
using verdal::query::testing::TestQuery;

TEST(QueryExpr, PrintsLeavesFieldsCallsAndKinds) {
  TestQuery q;
  ASSERT_EQ(q.DefineField("NAME", false, 0), nullptr);
  ASSERT_EQ(q.Parse("Join(^NAME, Field[@2]) *= sqrt(4);"), nullptr);
  std::ostringstream out;
  q.PrintTree(out);
  EXPECT_EQ(out.str(),
            "  search(\n"
            "    fnc 'Join' (\n"
            "      upcase(\n"
            "        @(0)\n"
            "      )\n"
            "      field (\n"
            "        @(1)\n"
            "      )\n"
            "    )\n"
            "    tostr(\n"
            "      sqrt(\n"
            "        num(4)\n"
            "      )\n"
            "    )\n"
            "  )\n");
  EXPECT_EQ(q.Tree()->Kind(), kKindSearch);
  EXPECT_TRUE(q.Tree()->IsNumber());
  EXPECT_FALSE(q.Tree()->IsString());
}

TEST(QueryExpr, EvaluationLeavesTheTreeAndItsLiteralsUnchanged) {
  TestQuery q;
  q.fields[0] = "Graben";
  ASSERT_EQ(q.Parse("^\"ab\" & ^@1;"), nullptr);
  std::string first, second;
  ASSERT_EQ(q.EvalString(&first), nullptr);
  ASSERT_EQ(q.EvalString(&second), nullptr);
  EXPECT_EQ(first, "ABGRABEN");
  EXPECT_EQ(second, first);
  EXPECT_EQ(q.fields[0], "Graben");
  std::ostringstream out;
  q.PrintTree(out);
  EXPECT_NE(out.str().find("str(\"ab\",0)"), std::string::npos);

  // Owned field texts are handed over to the values and freed with them.
  q.ownedReads = true;
  ASSERT_EQ(q.EvalString(&second), nullptr);
  EXPECT_EQ(second, first);
}

TEST(QueryExpr, EvalBoolDefinesAndGlobalVariables) {
  TestQuery q;
  bool truth = true;
  ASSERT_EQ(q.Parse("while 0 do x := 1;"), q.Err(QX_ErrDefs::kUnknownIdentifier));
  ASSERT_EQ(q.Parse("var x := 0; while 0 do x := 1;"), nullptr);
  ASSERT_EQ(q.EvalBool(&truth), nullptr);
  EXPECT_FALSE(truth);  // an absent value is false
  std::string text = "?";
  ASSERT_EQ(q.EvalString(&text), nullptr);
  EXPECT_EQ(text, "");

  static const char kBorrowed[] = "geliehen";
  ASSERT_EQ(q.DefineString("S", false, kBorrowed), nullptr);
  ASSERT_EQ(q.DefineNumber("N", false, 2.5L), nullptr);
  EXPECT_EQ(RunQuery(q, "S & N;"), "geliehen2.5");
  ASSERT_EQ(q.DefineNumber("S", false, 1), nullptr);  // a variable takes a new value
  EXPECT_EQ(RunQuery(q, "S + N;"), "3.5");
  EXPECT_EQ(q.DefineString("Join", false, "x"), q.Err(QX_ErrDefs::kVariableNameExpected));
  EXPECT_EQ(q.DefineField("S", false, 1), q.Err(QX_ErrDefs::kAlreadyDefined));

  // Global variables keep their values from one query to the next.
  {
    TestQuery a;
    EXPECT_EQ(RunQuery(a, "global var queryTestCounter := 41; queryTestCounter;"), "41");
  }
  TestQuery b;
  EXPECT_EQ(RunQuery(b, "queryTestCounter := queryTestCounter + 1;"), "42");
  EXPECT_EQ(RunQuery(b, "queryTestCounter;"), "42");
  ASSERT_EQ(b.Parse("queryTestCounter = 42;"), nullptr);
  ASSERT_EQ(b.EvalBool(&truth), nullptr);
  EXPECT_TRUE(truth);
}

TEST(QueryExpr, StepHookStopsEndlessLoops) {
  struct Counter {
    int steps = 0;
    static QX_Error Step(void* self) {
      return ++static_cast<Counter*>(self)->steps > 100 ? QX_ErrDefs::Err(QX_ErrDefs::kCancelled)
                                                       : nullptr;
    }
  } counter;
  TestQuery q;
  q.SetStepHook(Counter::Step, &counter);
  EXPECT_EQ(RunQuery(q, "while 1 do { }"), "E39");
  EXPECT_EQ(counter.steps, 101);
  counter.steps = 0;
  EXPECT_EQ(RunQuery(q, "repeat 1; until 0;"), "E39");
  counter.steps = 0;
  EXPECT_EQ(RunQuery(q, "var i := 0; while i < 50 do i := i + 1; i;"), "50");
  EXPECT_EQ(counter.steps, 50);
}

TEST(QueryExpr, LongProgramsAndDeepTreesStayOffTheStackLimit) {
  std::string program;
  for (int i = 0; i < 100000; ++i) program += "1;";
  program += "\"fertig\";";
  TestQuery q;
  EXPECT_EQ(RunQuery(q, program.c_str()), "fertig");

  // Chains of one operator level are as long as their text; nesting is bounded far above use.
  std::string sum = "0", any = "0", all = "1", text = "\"\"", deepest = "1";
  for (int i = 0; i < 3000; ++i) {
    sum += i % 2 ? "-1" : "+2";
    any += " or 0";
    all += " and 1";
    text += " & \"x\"";
  }
  any += " or \"ja\"";
  for (int i = 0; i < 495; ++i) deepest = "(1+" + deepest + ")";  // just inside the bound
  const std::pair<std::string, std::string> rows[] = {
      {sum, "1500"}, {any, "1"}, {all, "1"}, {text, std::string(3000, 'x')}, {deepest, "496"}};
  for (const auto& [query, result] : rows) {
    EXPECT_EQ(RunQuery(q, (query + ";").c_str()), result) << query.substr(0, 40);
  }
  // Printed along the chain too, not by recursion: one line per operand and per link.
  ASSERT_EQ(q.Parse((any + ";").c_str()), nullptr);
  std::ostringstream printed;
  q.Tree()->Print(printed, 0);
  const std::string lines = printed.str();
  EXPECT_EQ(std::count(lines.begin(), lines.end(), '\n'), 3 * 3001 + 1);
}
