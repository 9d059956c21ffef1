#include "query/qx_scanner.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "query/qx_math_expr.h"
#include "query/qx_value_expr.h"

using namespace verdal::query;

namespace {

struct Scan {
  QX_SymbolTable local{QX_SymbolTable::kLocalBuckets, &QX_GlobalSymbols()};
  QX_Scanner scanner{local};
  std::unique_ptr<QX_Token> token = std::make_unique<QX_Token>();

  // All tokens of text as "code@position:text", up to the end.
  std::vector<std::string> All(const char* text) {
    scanner.Reset(text);
    std::vector<std::string> out;
    for (;;) {
      scanner.NextToken(*token);
      if (token->type == kTokEnd) return out;
      out.push_back(std::to_string(token->type) + "@" + std::to_string(token->position) + ":" +
                    token->text);
      EXPECT_EQ(token->length, static_cast<int32_t>(std::strlen(token->text)));
    }
  }
};

}  // namespace

TEST(QxScanner, EveryOperatorAndKeywordHasItsCode) {
  Scan s;
  const std::vector<std::string> expected = {
      "4@0:@",     "5@2:Field", "10@8:?",    "11@10::",   "12@12:and", "13@16:or",
      "14@19:not", "15@23:-",   "16@25:+",   "19@27:<",   "20@29:<=",  "21@32:=",
      "22@34:<>",  "23@37:>=",  "24@40:>",   "25@42:*=",  "26@45:^",   "27@47:#",
      "28@49:$",   "29@51:(",   "30@53:)",   "31@55:{",   "33@57:}",   "34@59:[",
      "35@61:]",   "37@63:,",   "60@65:;",   "61@67:if",  "62@70:then", "63@75:else",
      "64@80::=",  "65@83:*",   "66@85:/",   "67@87:&",   "68@89:global", "69@96:var",
      "70@100:while", "71@106:do", "72@109:repeat", "73@116:until"};
  EXPECT_EQ(s.All("@ Field ? : and or not - + < <= = <> >= > *= ^ # $ ( ) { } [ ] , ; if then "
                  "else := * / & global var while do repeat until"),
            expected);
  // Without blanks the two-character forms still win.
  EXPECT_EQ(s.All("a:=<=<>>=*=")[0], "1@0:a");
  EXPECT_EQ(s.All("1:=<=<>>=*="),
            (std::vector<std::string>{"2@0:1", "64@1::=", "20@3:<=", "22@5:<>", "23@7:>=",
                                      "25@9:*="}));
  for (int32_t code = kTokMathFirst; code <= kTokMathLast; ++code) {
    const char* name = QX_MathFunctionName(code);
    EXPECT_EQ(s.All(name), std::vector<std::string>{std::to_string(code) + "@0:" + name});
    EXPECT_NE(code == kTokMod || code == kTokPow ? QX_MathFunction2(code) != nullptr
                                                 : QX_MathFunction1(code) != nullptr,
              false);
  }
}

TEST(QxScanner, NumbersStringsNamesAndBadCharacters) {
  Scan s;
  s.local.DefineVariable("\xE4rger_2", false, std::make_unique<QX_NumExpr>(0), nullptr);
  s.scanner.Reset("\v\f 12.5e1x");
  s.scanner.NextToken(*s.token);
  EXPECT_EQ(s.token->type, kTokNumber);
  EXPECT_EQ(s.token->position, 3);
  EXPECT_EQ(s.token->number, 125.0L);
  EXPECT_STREQ(s.token->text, "12.5e1");

  EXPECT_EQ(s.All("1.e2 1e+ 0x1"),
            (std::vector<std::string>{"2@0:1.e2", "2@5:1", "1@6:e", "16@7:+", "2@9:0",
                                      "1@10:x1"}));
  EXPECT_EQ(s.All("\xE4rger_2 _ \"a\\\"b\" \"\\\\\""),
            (std::vector<std::string>{"16384@0:\xE4rger_2", "1@8:_", "3@10:a\"b", "3@17:\\"}));
  EXPECT_EQ(s.All("%%a !~\x01;"),
            (std::vector<std::string>{"1@0:%%", "1@2:a", "1@4:!~\x01", "60@7:;"}));
  EXPECT_EQ(s.token->error, nullptr);

  s.scanner.Reset("1.5e99999");
  s.scanner.NextToken(*s.token);
  EXPECT_EQ(s.token->error, QX_ErrDefs::Err(QX_ErrDefs::kOverflow));

  // The longest name still fits; a string of the same length is fine too.
  const std::string name(kQxMaxTextLength, 'z');
  s.scanner.Reset(name.c_str());
  s.scanner.NextToken(*s.token);
  EXPECT_EQ(s.token->error, QX_ErrDefs::Err(QX_ErrDefs::kUnknownIdentifier));
  EXPECT_EQ(s.token->length, kQxMaxTextLength);
  const std::string text = "\"" + name + "\"";
  s.scanner.Reset(text.c_str());
  s.scanner.NextToken(*s.token);
  EXPECT_EQ(s.token->type, kTokString);
  EXPECT_EQ(s.token->length, kQxMaxTextLength);
}
