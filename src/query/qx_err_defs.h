#pragma once
// The error table of the query language. An error is the address of its message; null is
// success. Errors are compared by address, never by text.
#include <cstdint>

namespace verdal::query {

using QX_Error = const char*;

class QX_ErrDefs {
 public:
  enum Index : int32_t {
    kNoMemory = 0,
    kNoQuery = 1,
    kEmptyInput = 2,
    kNumberExpected = 3,
    kDomain = 4,
    kOverflow = 5,
    kUnderflow = 6,
    kDivisionByZero = 7,
    kArithmetic = 8,
    kIntRange = 9,
    kStringExpected = 10,
    kVarExpected = 11,
    kVariableNameExpected = 12,
    kTooManyDefinitions = 13,
    kAlreadyDefined = 14,
    kUnknownIdentifier = 15,
    kBadFieldIndex = 16,
    kFieldReadFailed = 17,
    kAssignmentFailed = 18,
    kReadOnlyField = 19,
    kNameTooLong = 20,
    kStringTooLong = 21,
    kMissingQuote = 22,
    kIllegalCharacter = 23,
    kSyntax = 24,
    kIllegalAssignment = 25,
    kAssignExpected = 26,
    kThenExpected = 27,
    kDoExpected = 28,
    kUntilExpected = 29,
    kSemicolonExpected = 30,
    kColonExpected = 31,
    kBraceExpected = 32,
    kParenExpected = 33,
    kBracketOpenExpected = 34,
    kBracketCloseExpected = 35,
    kParameterListOpen = 36,
    kParameterExpected = 37,
    kParameterListClose = 38,
    kCancelled = 39,
    kStringIndex = 40,
  };
  static constexpr int32_t kCount = 41;

  static QX_Error Err(Index index) { return kMessages[index]; }
  // The row of an error of this table; -1 for success or a foreign pointer.
  static int32_t IndexOf(QX_Error error);

 private:
  static const char* const kMessages[kCount];
};

}  // namespace verdal::query
