#include "query/qx_scanner.h"

#include <cstring>

#include "query/qx_number_text.h"

namespace verdal::query {

namespace {

bool IsBlank(unsigned char c) { return c == ' ' || (c >= 9 && c <= 13); }
bool IsLetter(unsigned char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool IsDigit(unsigned char c) { return c >= '0' && c <= '9'; }
bool BeginsName(unsigned char c) { return IsLetter(c) || c == '_' || c >= 0x7F; }
bool InName(unsigned char c) { return BeginsName(c) || IsDigit(c); }

// Where the text of a bad character ends: at anything that can begin a token.
bool EndsBadWord(unsigned char c) {
  return c == 0 || IsBlank(c) || BeginsName(c) || IsDigit(c) || c == '"' ||
         std::strchr("@?:+-*/&<>=^#$(){}[],;", c) != nullptr;
}

struct Operator {
  char first;
  char second;  // 0: one character
  int32_t code;
};

// Two-character forms first, so that they win over their first character.
constexpr Operator kOperators[] = {
    {'*', '=', kTokSearch}, {':', '=', kTokAssign}, {'<', '=', kTokLe},     {'<', '>', kTokNe},
    {'>', '=', kTokGe},     {'@', 0, kTokAt},       {'?', 0, kTokQuestion}, {':', 0, kTokColon},
    {'-', 0, kTokMinus},    {'+', 0, kTokPlus},     {'<', 0, kTokLt},       {'=', 0, kTokEq},
    {'>', 0, kTokGt},       {'*', 0, kTokMul},      {'^', 0, kTokUpcase},   {'#', 0, kTokToNum},
    {'$', 0, kTokToStr},    {'(', 0, kTokLParen},   {')', 0, kTokRParen},   {'{', 0, kTokLBrace},
    {'}', 0, kTokRBrace},   {'[', 0, kTokLBracket}, {']', 0, kTokRBracket}, {',', 0, kTokComma},
    {';', 0, kTokSemicolon}, {'/', 0, kTokDiv},     {'&', 0, kTokAppend},
};

}  // namespace

void QX_Scanner::Reset(const char* text) {
  text_ = reinterpret_cast<const unsigned char*>(text != nullptr ? text : "");
  pos_ = 0;
}

void QX_Scanner::Fail(QX_Token& token, QX_ErrDefs::Index index) {
  token.type = kTokError;
  token.error = QX_ErrDefs::Err(index);
}

void QX_Scanner::NextToken(QX_Token& token) {
  token.type = kTokEnd;
  token.error = nullptr;
  token.symbol = nullptr;
  token.length = 0;
  token.text[0] = '\0';
  while (IsBlank(text_[pos_])) ++pos_;
  token.position = static_cast<int32_t>(pos_);
  const unsigned char c = text_[pos_];
  if (c == 0) return;
  if (BeginsName(c)) {
    ScanName(token);
  } else if (c == '"') {
    ScanString(token);
  } else if (IsDigit(c)) {
    ScanNumber(token);
  } else {
    ScanOperator(token);
  }
}

void QX_Scanner::ScanName(QX_Token& token) {
  size_t n = 0;
  while (InName(text_[pos_])) {
    if (n < static_cast<size_t>(kQxTextBuffer)) token.text[n] = static_cast<char>(text_[pos_]);
    ++n;
    ++pos_;
  }
  const size_t stored = n < static_cast<size_t>(kQxTextBuffer) ? n : kQxTextBuffer;
  token.text[stored] = '\0';
  token.length = static_cast<int32_t>(stored);
  if (n >= static_cast<size_t>(kQxTextBuffer)) return Fail(token, QX_ErrDefs::kNameTooLong);
  QX_Symbol* symbol = symbols_.Lookup(token.text);
  if (symbol == nullptr) return Fail(token, QX_ErrDefs::kUnknownIdentifier);
  token.type = symbol->code;
  token.symbol = symbol;
}

void QX_Scanner::ScanString(QX_Token& token) {
  ++pos_;
  size_t n = 0;
  bool closed = false;
  for (;;) {
    unsigned char ch = text_[pos_];
    if (ch == 0) break;
    ++pos_;
    if (ch == '"') {
      closed = true;
      break;
    }
    if (ch == '\\') {
      ch = text_[pos_];
      if (ch == 0) break;
      ++pos_;
    }
    if (n < static_cast<size_t>(kQxTextBuffer)) token.text[n] = static_cast<char>(ch);
    ++n;
  }
  const size_t stored = n < static_cast<size_t>(kQxTextBuffer) ? n : kQxTextBuffer;
  token.text[stored] = '\0';
  token.length = static_cast<int32_t>(stored);
  if (!closed) return Fail(token, QX_ErrDefs::kMissingQuote);
  if (n >= static_cast<size_t>(kQxTextBuffer)) return Fail(token, QX_ErrDefs::kStringTooLong);
  token.type = kTokString;
}

void QX_Scanner::ScanNumber(QX_Token& token) {
  const char* start = reinterpret_cast<const char*>(text_ + pos_);
  const size_t n = QX_DecimalLength(start, false);
  pos_ += n;
  const size_t stored = n < static_cast<size_t>(kQxTextBuffer) ? n : kQxTextBuffer;
  std::memcpy(token.text, start, stored);
  token.text[stored] = '\0';
  token.length = static_cast<int32_t>(stored);
  // A literal that does not fit the token's buffer is refused like an overlong string.
  if (n >= static_cast<size_t>(kQxTextBuffer)) return Fail(token, QX_ErrDefs::kStringTooLong);
  bool rangeError = false;
  token.number = QX_ConvertDecimal(start, n, &rangeError);
  if (rangeError) return Fail(token, QX_ErrDefs::kOverflow);
  token.type = kTokNumber;
}

void QX_Scanner::ScanOperator(QX_Token& token) {
  const unsigned char c = text_[pos_];
  for (const Operator& op : kOperators) {
    if (op.first != static_cast<char>(c)) continue;
    if (op.second != 0 && text_[pos_ + 1] != static_cast<unsigned char>(op.second)) continue;
    const int width = op.second != 0 ? 2 : 1;
    std::memcpy(token.text, text_ + pos_, width);
    token.text[width] = '\0';
    token.length = width;
    token.type = op.code;
    pos_ += width;
    return;
  }
  ScanBadWord(token);
}

void QX_Scanner::ScanBadWord(QX_Token& token) {
  size_t n = 0;
  do {
    if (n < static_cast<size_t>(kQxTextBuffer)) token.text[n++] = static_cast<char>(text_[pos_]);
    ++pos_;
  } while (!EndsBadWord(text_[pos_]));
  token.text[n] = '\0';
  token.length = static_cast<int32_t>(n);
  Fail(token, QX_ErrDefs::kIllegalCharacter);
}

}  // namespace verdal::query
