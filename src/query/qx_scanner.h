#pragma once
// Splits a query text into tokens; names are resolved against the symbol tables as they are read.
#include <cstddef>

#include "query/qx_symbol_table.h"
#include "query/qx_token.h"

namespace verdal::query {

class QX_Scanner {
 public:
  explicit QX_Scanner(const QX_SymbolTable& symbols) : symbols_(symbols) {}

  void Reset(const char* text);
  // Reads the next token into token and stands behind it.
  void NextToken(QX_Token& token);

 private:
  void ScanName(QX_Token& token);
  void ScanString(QX_Token& token);
  void ScanNumber(QX_Token& token);
  void ScanOperator(QX_Token& token);
  void ScanBadWord(QX_Token& token);
  void Fail(QX_Token& token, QX_ErrDefs::Index index);

  const QX_SymbolTable& symbols_;
  const unsigned char* text_ = nullptr;
  size_t pos_ = 0;
};

}  // namespace verdal::query
