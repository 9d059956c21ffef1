// Every error of the table that the language can raise, with the place the parser stopped at.
#include <gtest/gtest.h>

#include <string>

#include "query/qx_compare_expr.h"
#include "query/qx_convert_expr.h"
#include "query/qx_value_expr.h"
#include "query_test_support.h"

using namespace verdal::query;
using verdal::query::testing::RunQuery;
using verdal::query::testing::TestQuery;

namespace {

struct Row {
  std::string text;
  std::string result;  // "E<row> at <position> '<token>'" for parse errors, "E<row>" at run time
};

}  // namespace

TEST(QueryErrors, ParseErrorsWithPositionAndToken) {
  const std::string deep = std::string(600, '(') + "1" + std::string(600, ')') + ";";
  const Row rows[] = {
      {deep, "E0 at 499 '('"},  // nesting beyond what the stack is allowed to take
      {" \t\r\n ", "E2 at 5 ''"},
      {"@\"a\";", "E3 at 1 'a'"},
      {"-abs(1);", "E3 at 7 ';'"},
      {"1e5000;", "E5 at 0 '1e5000'"},
      {"@3000000000;", "E9 at 1 '3000000000'"},
      {"global x := 1;", "E11 at 7 'x'"},
      {"var if := 1;", "E12 at 4 'if'"},
      {"a = 1;", "E15 at 0 'a'"},
      {"@0;", "E16 at 1 '0'"},
      {"@4097;", "E16 at 1 '4097'"},
      {std::string(31999, 'n') + ";", "E20 at 0 '" + std::string(31999, 'n') + "'"},
      {"\"" + std::string(31999, 's') + "\";", "E21 at 0 '" + std::string(31999, 's') + "'"},
      {"\"abc", "E22 at 0 'abc'"},
      {"%%a;", "E23 at 0 '%%'"},
      {"1 + .5;", "E23 at 4 '.'"},
      {"then;", "E24 at 0 'then'"},
      {"1 := 2;", "E25 at 2 ':='"},
      {"var x 1;", "E26 at 6 '1'"},
      {"if 1 2;", "E27 at 5 '2'"},
      {"while 0 1;", "E28 at 8 '1'"},
      {"repeat 1; 2;", "E29 at 10 '2'"},
      {"1", "E30 at 1 ''"},
      {"1 < 2 < 3;", "E30 at 6 '<'"},
      {"if 1 then 2 else 3;", "E30 at 12 'else'"},
      {"1 ? 2;", "E31 at 5 ';'"},
      {"{ 1;", "E32 at 4 ''"},
      {"(1;", "E33 at 2 ';'"},
      {"Field 1;", "E34 at 6 '1'"},
      {"Field[1;", "E35 at 7 ';'"},
      {"abs 1;", "E36 at 4 '1'"},
      {"Join 1;", "E36 at 5 '1'"},
      {"mod(1 2);", "E37 at 6 '2'"},
      {"Join(\"a\" \"b\");", "E37 at 9 'b'"},
      {"abs(1, 2);", "E38 at 5 ','"},
      {"Join(1, 2, 3);", "E38 at 9 ','"},
      {"Zero();", "E30 at 4 '('"},  // a function without parameters takes no parentheses
  };
  for (const Row& row : rows) {
    TestQuery q;
    EXPECT_EQ(RunQuery(q, row.text.c_str()), row.result) << row.text.substr(0, 60);
    EXPECT_EQ(q.Tree(), nullptr);
  }
}

TEST(QueryErrors, RunTimeErrors) {
  const Row rows[] = {
      {"{ }", "E1"},
      {"sqrt(-1);", "E4"},
      {"log(0);", "E4"},  // a singularity counts as a domain error
      {"exp(100000);", "E5"},
      {"\"1e99999\" + 0;", "E5"},
      {"exp(-100000);", "E6"},
      {"#\"1e-99999\";", "E6"},
      {"1/0;", "E7"},
      {"Field[3e9];", "E9"},
      {"Field[0];", "E16"},
      {"Field[\"x\"] := 1;", "E16"},
      {"Stop;", "E39"},
      {"BadIndex & 1;", "E40"},
      {"var k := 0; while 1 do { k := k + 1; if k = 3 then Stop; }", "E39"},
  };
  for (const Row& row : rows) {
    TestQuery q;
    EXPECT_EQ(RunQuery(q, row.text.c_str()), row.result) << row.text;
  }
}

TEST(QueryErrors, ErrorsOfTheBaseQueryAndOfNodesBuiltByHand) {
  QueryExpr plain;
  std::string value;
  bool truth = true;
  EXPECT_EQ(plain.EvalString(&value), QX_ErrDefs::Err(QX_ErrDefs::kNoQuery));
  EXPECT_EQ(plain.EvalBool(&truth), QX_ErrDefs::Err(QX_ErrDefs::kNoQuery));
  EXPECT_TRUE(truth);  // untouched after an error
  ASSERT_EQ(plain.Parse("@1;"), nullptr);
  EXPECT_EQ(plain.EvalString(&value), QX_ErrDefs::Err(QX_ErrDefs::kFieldReadFailed));
  ASSERT_EQ(plain.Parse("@1 := 1;"), nullptr);
  EXPECT_EQ(plain.EvalString(&value), QX_ErrDefs::Err(QX_ErrDefs::kAssignmentFailed));
  plain.Clear();
  EXPECT_EQ(plain.EvalString(&value), QX_ErrDefs::Err(QX_ErrDefs::kNoQuery));

  // The parser wraps the operands of *= and ^, so only a tree built by hand reaches row 10.
  QX_SearchExpr search(std::make_unique<QX_NumExpr>(1), QX_StrExpr::Copy("1", 1));
  QX_UpcaseExpr upcase(std::make_unique<QX_NumExpr>(1));
  QX_Value out;
  EXPECT_EQ(search.Eval(out), QX_ErrDefs::Err(QX_ErrDefs::kStringExpected));
  EXPECT_EQ(upcase.Eval(out), QX_ErrDefs::Err(QX_ErrDefs::kStringExpected));
  EXPECT_EQ(out, nullptr);
  EXPECT_EQ(QX_NumExpr(1).Assign(nullptr), QX_ErrDefs::Err(QX_ErrDefs::kIllegalAssignment));

  // Errors are compared by identity: an equal text elsewhere is no error of the table.
  const std::string copy = QX_ErrDefs::Err(QX_ErrDefs::kSyntax);
  EXPECT_EQ(copy, "Syntax Fehler");
  EXPECT_EQ(QX_ErrDefs::IndexOf(copy.c_str()), -1);
  EXPECT_STREQ(QX_ErrDefs::Err(QX_ErrDefs::kNoQuery), "keine g\xFCltige Abfrage definiert");
  EXPECT_STREQ(QX_ErrDefs::Err(QX_ErrDefs::kOverflow), "Gleitkomma-Wertebereich \xFC" "berschritten");
  EXPECT_STREQ(QX_ErrDefs::Err(QX_ErrDefs::kStringIndex),
               "Zugriff auf ung\xFCltigen Index in der Zeichenkette!");
}
