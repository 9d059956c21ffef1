#pragma once
// The scanner's current token and the token codes of the language.
#include <cstdint>

#include "query/qx_err_defs.h"

namespace verdal::query {

struct QX_Symbol;

enum QX_TokenCode : int32_t {
  kTokEnd = 0,
  kTokError = 1,
  kTokNumber = 2,
  kTokString = 3,
  kTokAt = 4,
  kTokField = 5,
  kTokQuestion = 10,
  kTokColon = 11,
  kTokAnd = 12,
  kTokOr = 13,
  kTokNot = 14,
  kTokMinus = 15,
  kTokPlus = 16,
  kTokLt = 19,
  kTokLe = 20,
  kTokEq = 21,
  kTokNe = 22,
  kTokGe = 23,
  kTokGt = 24,
  kTokSearch = 25,
  kTokUpcase = 26,
  kTokToNum = 27,
  kTokToStr = 28,
  kTokLParen = 29,
  kTokRParen = 30,
  kTokLBrace = 31,
  kTokRBrace = 33,
  kTokLBracket = 34,
  kTokRBracket = 35,
  kTokComma = 37,
  kTokMathFirst = 40,  // abs .. tan, see QX_MathFunctions
  kTokMod = 51,
  kTokPow = 52,
  kTokMathLast = 57,
  kTokSemicolon = 60,
  kTokIf = 61,
  kTokThen = 62,
  kTokElse = 63,
  kTokAssign = 64,
  kTokMul = 65,
  kTokDiv = 66,
  kTokAppend = 67,
  kTokGlobal = 68,
  kTokVar = 69,
  kTokWhile = 70,
  kTokDo = 71,
  kTokRepeat = 72,
  kTokUntil = 73,
  kTokFieldName = 0x1000,
  kTokFunctionName = 0x2000,
  kTokVariableName = 0x4000,
};

// Longest name or string: one less than the buffer, which also holds the terminator.
constexpr int32_t kQxTextBuffer = 31999;
constexpr int32_t kQxMaxTextLength = kQxTextBuffer - 1;

struct QX_Token {
  int32_t type = kTokEnd;
  QX_Error error = nullptr;
  int32_t position = 0;
  int32_t length = 0;
  QX_Symbol* symbol = nullptr;
  long double number = 0;
  char text[kQxTextBuffer + 1] = {};
};

}  // namespace verdal::query
