#pragma once
// The type description inside every field definition, and the conversions built on it. Every value
// is stored as text in one internal form per type:
//   Text, Link   the text itself (a link holds the decimal id of a node of the linked database)
//   Number       decimal text with a point and exactly `decimals` digits after it, or ""
//   YesNo        "1" or "0"
//   Binary       always "" (the type exists for binary SQL columns)
//   DateTime, Date, Time
//                day.month.year.hour.minute.second.millisecond, plain decimals ("31.12.2001.13.5.9.0");
//                a date has the last four at 0, a time the first three and the last
// The empty string is the empty value of every type.
//
// ReadTypeInfo/WriteTypeInfo are not written yet: they belong beside the stream classes (TBaseFile)
// and follow once those exist. The stored form: fields in declaration order below, integers little-endian, 80-bit values as their 10 x87 bytes,
// flags one byte, strings in the stream encoding; hiddenInLists from version 2, hiddenInSort from
// 3, hiddenField and hostText2 from 4. Writing always writes version 4.
#include <cstdint>
#include <string>
#include <string_view>

namespace verdal::model {

class TLinkResolver;

enum DataType : int16_t {
  kTypeText = 0,
  kTypeNumber = 1,
  kTypeYesNo = 2,
  kTypeBinary = 3,
  kTypeDateTime = 4,
  kTypeDate = 5,
  kTypeTime = 6,
  kTypeLink = 7,
};

// How a value is shown and aligned: text, number, or a short fixed form (yes/no and dates).
enum DisplayClassCode : int {
  kDisplayText = 0,
  kDisplayNumber = 1,
  kDisplayFixed = 2,
  kDisplayLink = 7,  // a link field judged without its database
};

struct TDataTypeInfo {
  static constexpr int32_t kCurrentVersion = 4;

  int32_t version = kCurrentVersion;
  uint32_t flags = 0;  // bit 0: look for a linked database in this database's folder first
  int16_t dataType = kTypeText;
  int16_t sqlType = 0;  // ODBC type code, 0 for automatic
  uint32_t extendedType = 0;
  int32_t maxChars = -1;
  int16_t decimals = 2;
  // The engine stores minimum, maximum and maxChars for the host and enforces none of them.
  long double minValue = 0;
  long double maxValue = 0;
  uint8_t hasMin = 0;
  uint8_t hasMax = 0;
  uint8_t isCounter = 0;
  long double startValue = 0;
  long double counterValue = 0;  // the number last given out
  uint8_t hostFlag1 = 0;
  uint8_t hostFlag2 = 0;
  uint8_t allowEmpty = 1;
  uint8_t allowDuplicates = 1;
  uint8_t readOnly = 0;
  std::string format = "%d.%m.%Y";
  std::string initValue;
  std::string hostText1;
  std::string errorText;
  std::string linkDatabase;
  std::string linkField;
  uint8_t hiddenInLists = 0;
  uint8_t hiddenInSort = 0;
  uint8_t hiddenField = 0;
  std::string hostText2;

  // Brings text to the internal form. `value` may view `out`. With `validate`, an empty value that
  // the field does not allow and (for dates) an impossible date are refused: the result is false
  // and errorText goes to errorOut where given; `out` then holds the conversion anyway.
  bool ToInternal(std::string_view value, std::string& out, bool validate,
                  std::string* errorOut) const;

  // The text a user sees for a value. Date types show in their fixed format, which is also
  // written into `format`. useWords shows yes/no as "Ja"/"Nein". convertFirst runs ToInternal
  // first. A link needs its database to be shown; without one the text is empty.
  void CreateDisplayString(std::string_view value, std::string& out, bool useWords,
                           bool convertFirst, TLinkResolver* database);

  // Orders two values of this field: -1, 0 or 1. `canonical` says both are in internal form (as
  // taken from the store), which skips all copying. numericOut, where given, receives the first
  // value as a number for numbers, yes/no and dates. Text orders by word sort, or with stringSort
  // by string sort; a link with a database orders by the shown texts.
  int Compare(std::string_view first, std::string_view second, bool convertFirst, bool stringSort,
              bool canonical, long double* numericOut, TLinkResolver* database) const;

  // kDisplayText, kDisplayNumber or kDisplayFixed; a link follows its target field when the
  // database is given and the target lies in another database, else text; kDisplayLink without a
  // database.
  int DisplayClass(TLinkResolver* database) const;

  // Whether a value's internal form and shown text are the text itself (plain text): loops over
  // millions of values then pass it on without converting.
  bool KeepsTextAsIs() const {
    return dataType != kTypeNumber && dataType != kTypeYesNo && dataType != kTypeBinary &&
           dataType != kTypeDateTime && dataType != kTypeDate && dataType != kTypeTime &&
           dataType != kTypeLink;
  }

  // Types a field after an SQL column: its ODBC type and decimal digits (-1 for unknown). Other
  // ODBC types leave the field as it is.
  void SqlToType(int16_t columnSqlType, int32_t columnDigits);

  // The ODBC type for a column that holds this field.
  int16_t TypeToSql() const;

  // The value of this field in a new record: a counter's next number (counted here), otherwise
  // initValue converted.
  std::string NewRecordValue();

  // The fixed display format of a date type, null for other types.
  static const char* FixedFormat(int16_t type);

 private:
  void ShowValue(std::string_view value, std::string& out, bool useWords, bool convertFirst,
                 TLinkResolver* database) const;
  int ClassOfLink(TLinkResolver* database, int depth) const;
};

// The words a user sees for the type codes, extended types and SQL types, in the order of the field
// dialog.
struct TypeLabel {
  const char* label;
  int32_t code;
};
extern const TypeLabel kDataTypeLabels[7];
extern const TypeLabel kExtendedTypeLabels[7];
extern const TypeLabel kSqlTypeLabels[22];

}  // namespace verdal::model
