#include "model/data_type_info.h"

#include <gtest/gtest.h>

#include "model/date_text.h"
#include "model/number_text.h"
#include "platform/clock.h"
#include "platform/environment_scope.h"

using namespace verdal::model;

namespace {

constexpr uint16_t kGerman = 0x407, kEnglish = 0x409;

TDataTypeInfo TypeOf(int16_t type, int16_t decimals = 2) {
  TDataTypeInfo t;
  t.dataType = type;
  t.decimals = decimals;
  return t;
}

struct ConversionCase {
  uint16_t language;
  int16_t type;
  int16_t decimals;
  const char* input;
  const char* expected;
};

// Input text to internal form, per type and system language. Dates and times read the same in
// both languages, so they run under both.
const ConversionCase kToInternal[] = {
    {kEnglish, kTypeNumber, 2, "1234", "1234.00"},
    {kEnglish, kTypeNumber, 2, "1,5", "1.50"},
    {kEnglish, kTypeNumber, 2, "abc", "0.00"},
    {kEnglish, kTypeNumber, 2, "1.234,56", "1.23"},  // the comma becomes a second point
    {kEnglish, kTypeNumber, 2, "", ""},
    {kEnglish, kTypeNumber, 2, " -7.891", "-7.89"},
    {kEnglish, kTypeNumber, 2, "1e3", "1000.00"},
    {kEnglish, kTypeNumber, 2, "inf", "0.00"},
    {kEnglish, kTypeNumber, 0, "12.7", "13"},
    {kEnglish, kTypeNumber, 4, ".5", "0.5000"},
    {kGerman, kTypeNumber, 2, "1.234,56", "1234.56"},
    {kGerman, kTypeNumber, 2, "1.234.567,8", "1234567.80"},
    {kGerman, kTypeNumber, 2, "1.234", "1.23"},  // a point alone is a decimal point
    {kGerman, kTypeNumber, 2, "1,5", "1.50"},
    {kEnglish, kTypeYesNo, 0, "Ja", "1"},
    {kEnglish, kTypeYesNo, 0, " yes ", "1"},
    {kEnglish, kTypeYesNo, 0, "-1", "1"},
    {kEnglish, kTypeYesNo, 0, "2", "0"},
    {kEnglish, kTypeYesNo, 0, "Nein", "0"},
    {kEnglish, kTypeYesNo, 0, "", "0"},
    {kGerman, kTypeYesNo, 0, "j", "1"},
    {kEnglish, kTypeBinary, 0, "payload", ""},
    {kEnglish, kTypeText, 0, " as typed ", " as typed "},
    {kEnglish, kTypeLink, 0, "42", "42"},
};

const ConversionCase kDates[] = {
    {0, kTypeDate, 0, "31.12.2001", "31.12.2001.0.0.0.0"},
    {0, kTypeDate, 0, " 5.6.2003 ", "5.6.2003.0.0.0.0"},
    {0, kTypeDate, 0, "1.1.20", "1.1.2020.0.0.0.0"},
    {0, kTypeDate, 0, "1.1.21", "1.1.1921.0.0.0.0"},
    {0, kTypeDate, 0, "1.1.5", "1.1.205.0.0.0.0"},  // the century goes in front of the text
    {0, kTypeDate, 0, "1a.02.2003", "1.2.2003.0.0.0.0"},
    {0, kTypeDate, 0, "5.6", ""},
    {0, kTypeDate, 0, "31.12.2001.13.5.9.0", "31.12.2001.13.5.9.0"},
    {0, kTypeTime, 0, "13:05:09", "0.0.0.13.5.9.0"},
    {0, kTypeTime, 0, "13:05", ""},
    {0, kTypeTime, 0, "0.0.0.13.5.9.0", "0.0.0.13.5.9.0"},
    {0, kTypeDateTime, 0, "31.12.2001 13:05:09", "31.12.2001.13.5.9.0"},
    {0, kTypeDateTime, 0, "31.12.01 13:05", "31.12.1.13.5.0.0"},  // no century for this type
    {0, kTypeDateTime, 0, "31.12.2001", "31.12.2001.0.0.0.0"},
    {0, kTypeDateTime, 0, "31.12 13:05", ""},
    {0, kTypeDateTime, 0, "31.12.2001.13.5.9.0", "31.12.2001.13.5.9.0"},
};

}  // namespace

TEST(DataTypeInfo, ToInternalByTypeAndLanguage) {
  SeparatorScope scope(kEnglish, ".");
  for (const ConversionCase& c : kToInternal) {
    scope.Apply(c.language, c.language == kGerman ? "," : ".");
    const TDataTypeInfo t = TypeOf(c.type, c.decimals);
    std::string out = "stale";
    EXPECT_TRUE(t.ToInternal(c.input, out, false, nullptr));
    EXPECT_EQ(out, c.expected) << "type " << c.type << " input '" << c.input << "' language "
                               << std::hex << c.language;
  }
  for (uint16_t language : {kGerman, kEnglish}) {
    scope.Apply(language, language == kGerman ? "," : ".");
    for (const ConversionCase& c : kDates) {
      const TDataTypeInfo t = TypeOf(c.type);
      std::string out = c.input;  // converted in place
      EXPECT_TRUE(t.ToInternal(out, out, true, nullptr));
      EXPECT_EQ(out, c.expected) << "type " << c.type << " input '" << c.input << "'";
      // The internal form converts to itself.
      std::string again;
      t.ToInternal(out, again, false, nullptr);
      EXPECT_EQ(again, out);
    }
  }
}

// Texts already in the form a number is kept in pass untouched; that shortcut must give exactly
// what reading and formatting would, up to the 18 digits a long double holds, and step aside
// for any other text.
TEST(DataTypeInfo, NumbersInTheirKeptFormConvertToThemselves) {
  SeparatorScope scope(kEnglish, ".");
  uint64_t h = 88172645463325252u;
  for (int i = 0; i < 20000; ++i) {
    h ^= h << 13, h ^= h >> 7, h ^= h << 17;
    const int decimals = static_cast<int>(h % 7);
    const int digits = 1 + static_cast<int>((h >> 8) % 18);
    std::string text = (h >> 20) % 3 == 0 ? "-" : "";
    std::string all = std::to_string(1 + (h >> 24) % 9);
    while (static_cast<int>(all.size()) < digits) all += static_cast<char>('0' + (h >> (all.size() * 3 % 60)) % 10);
    if (digits <= decimals) all = std::string(static_cast<size_t>(decimals - digits + 1), '0') + all;
    text += decimals > 0 ? all.substr(0, all.size() - decimals) + "." + all.substr(all.size() - decimals) : all;
    std::string slow;
    FormatNumber(ReadNumber(text), decimals, slow);
    std::string out;
    ASSERT_TRUE(TypeOf(kTypeNumber, static_cast<int16_t>(decimals)).ToInternal(text, out, false, nullptr));
    ASSERT_EQ(out, slow) << text << " with " << decimals;
  }
  // Not in kept form: another count of decimals, leading zeros, a plus, more than 18 digits.
  for (const char* text : {"1.5", "007.00", "+1.00", "1234567890123456789.00", "1.005"}) {
    std::string slow, out;
    FormatNumber(ReadNumber(text), 2, slow);
    TypeOf(kTypeNumber, 2).ToInternal(text, out, false, nullptr);
    EXPECT_EQ(out, slow) << text;
  }
}

TEST(DataTypeInfo, ValidationRefusesEmptyValuesAndImpossibleDates) {
  SeparatorScope scope(kEnglish, ".");
  TDataTypeInfo number = TypeOf(kTypeNumber);
  number.allowEmpty = 0;
  number.errorText = "Bitte eine Zahl eingeben";
  std::string out, error;
  EXPECT_FALSE(number.ToInternal("", out, true, &error));
  EXPECT_EQ(error, "Bitte eine Zahl eingeben");
  EXPECT_TRUE(number.ToInternal("", out, false, nullptr));
  EXPECT_EQ(out, "0.00");  // not refused without validation, and not empty either

  TDataTypeInfo date = TypeOf(kTypeDate);
  date.errorText = "Ung\xFCltiges Datum";
  error.clear();
  EXPECT_FALSE(date.ToInternal("32.1.2001", out, true, &error));
  EXPECT_EQ(error, "Ung\xFCltiges Datum");
  EXPECT_FALSE(date.ToInternal("1.13.2001", out, true, nullptr));
  EXPECT_TRUE(date.ToInternal("31.2.2001", out, true, nullptr));  // month lengths are not checked
  EXPECT_TRUE(date.ToInternal("32.1.2001", out, false, nullptr));
  TDataTypeInfo yesNo = TypeOf(kTypeYesNo);
  yesNo.allowEmpty = 0;
  EXPECT_FALSE(yesNo.ToInternal("", out, true, nullptr));
}

TEST(DataTypeInfo, NowStampsAllSevenNumbersForEveryDateType) {
  for (int16_t type : {kTypeDateTime, kTypeDate, kTypeTime}) {
    std::string out;
    const uint16_t year = verdal::platform::NowLocal().year;
    ASSERT_TRUE(TypeOf(type).ToInternal("\\RVALUE:NOW", out, true, nullptr));
    std::string_view parts[7];
    ASSERT_EQ(SplitText(out, '.', parts, 7), 7u) << out;
    EXPECT_EQ(std::string(parts[2]), std::to_string(year));
  }
  std::string out;
  TypeOf(kTypeText).ToInternal("\\RVALUE:NOW", out, false, nullptr);
  EXPECT_EQ(out, "\\RVALUE:NOW");
}

TEST(DataTypeInfo, ParseDateTextReadsFromTheEnd) {
  struct Case {
    const char* text;
    int32_t result;
    char separator;
  };
  const Case cases[] = {
      {"31.12.2001", 20011231, '.'}, {"1/2/03", 30201, '/'},      {"x1-2-2003y", 20030201, '-'},
      {"31.2.2001", 20010231, '.'},  {"32.1.2001", -1, '.'},      {"1.13.2001", -1, '.'},
      {"2001", -1, '.'},             {"", -1, '.'},               {"abc", -1, '.'},
      {"1.1.12345", -1, '.'},        {"7;8,1999", 19990807, ';'},
  };
  for (const Case& c : cases) {
    int d = -9, m = -9, y = -9;
    char separator = 0;
    EXPECT_EQ(ParseDateText(c.text, d, m, y, separator), c.result) << c.text;
    if (c.result >= 0) {
      EXPECT_EQ(y * 10000 + m * 100 + d, c.result);
      EXPECT_EQ(separator, c.separator) << c.text;
    }
  }
}

TEST(DataTypeInfo, DisplayStringsByTypeAndLanguage) {
  struct Case {
    uint16_t language;
    int16_t type;
    bool useWords, convertFirst;
    const char* value;
    const char* expected;
  };
  const Case cases[] = {
      {kGerman, kTypeNumber, false, false, "1234.56", "1234,56"},
      {kEnglish, kTypeNumber, false, false, "1234.56", "1234.56"},
      {kGerman, kTypeNumber, false, true, "1.234,5", "1234,50"},
      {kEnglish, kTypeYesNo, false, false, "1", "1"},
      {kEnglish, kTypeYesNo, true, false, "1", "Ja"},
      {kEnglish, kTypeYesNo, true, false, "-1", "Ja"},
      {kEnglish, kTypeYesNo, true, false, "0", "Nein"},
      {kEnglish, kTypeYesNo, true, true, "yes", "Ja"},
      {kGerman, kTypeDateTime, false, false, "31.12.2001.13.5.9.0", "31.12.2001 13:05:09"},
      {kGerman, kTypeDate, false, false, "1.1.2001.0.0.0.0", "01.01.2001"},
      {kEnglish, kTypeTime, false, false, "0.0.0.7.5.3.0", "07:05:03"},
      {kEnglish, kTypeDate, false, true, "5.6.07", "05.06.2007"},
      {kEnglish, kTypeDate, false, false, "5.6.2007", ""},
      {kEnglish, kTypeLink, false, false, "12", ""},  // no database to follow the link
      {kEnglish, kTypeText, true, false, "3.5", "3.5"},
  };
  SeparatorScope scope(kEnglish, ".");
  for (const Case& c : cases) {
    scope.Apply(c.language, c.language == kGerman ? "," : ".");
    TDataTypeInfo t = TypeOf(c.type);
    std::string out;
    t.CreateDisplayString(c.value, out, c.useWords, c.convertFirst, nullptr);
    EXPECT_EQ(out, c.expected) << "type " << c.type << " value '" << c.value << "'";
  }
}

TEST(DataTypeInfo, DateDisplayReplacesTheStoredFormat) {
  TDataTypeInfo t = TypeOf(kTypeDate);
  t.format = "%Y-%m-%d";
  std::string out = "9.8.2024.0.0.0.0";
  t.CreateDisplayString(out, out, false, false, nullptr);  // in place, as the host interface does
  EXPECT_EQ(out, "09.08.2024");
  EXPECT_EQ(t.format, "%d.%m.%y");
  FormatDateValue("%%%d|%q%", "1.2.3.4.5.6.7", out);
  EXPECT_EQ(out, "%01|q");
}

TEST(DataTypeInfo, CompareOrdersEachType) {
  struct Case {
    int16_t type;
    bool canonical, stringSort;
    const char* a;
    const char* b;
    int expected;
  };
  const Case cases[] = {
      {kTypeNumber, true, false, "9.00", "10.00", -1},
      {kTypeNumber, true, false, "-1.50", "-1.25", -1},
      {kTypeNumber, true, false, "2.00", "2.0", 0},
      {kTypeNumber, true, false, "", "0.00", 0},
      {kTypeNumber, false, false, "1,5", "1.25", 1},  // a comma counts only off the fast path
      {kTypeNumber, true, false, "1,5", "1.25", -1},
      {kTypeYesNo, true, false, "1", "0", 1},
      {kTypeYesNo, true, false, "0", "", 0},
      {kTypeDate, true, false, "31.12.2001.0.0.0.0", "1.1.2002.0.0.0.0", -1},
      {kTypeDate, true, false, "1.1.2002.23.0.0.0", "1.1.2002.1.0.0.0", 0},
      {kTypeTime, true, false, "1.1.2002.10.0.0.0", "5.5.1999.9.59.59.0", 1},
      {kTypeTime, true, false, "0.0.0.8.30", "1.1.1.8.30.0.0", 0},  // missing parts are 0
      {kTypeDateTime, true, false, "1.1.2002.10.0.0.0", "1.1.2002.10.0.0.1", -1},
      {kTypeDateTime, true, false, "1.2.2002", "28.1.2002.23.59.59.999", 1},
      {kTypeText, true, false, "apple", "Banana", -1},
      {kTypeText, true, false, "cooa", "co-op", -1},
      {kTypeText, true, true, "cooa", "co-op", 1},
      {kTypeText, true, true, "same", "same", 0},
      {kTypeLink, true, false, "10", "9", -1},  // without a database, as text
      {kTypeBinary, true, false, "a", "b", 0},
  };
  SeparatorScope scope(kEnglish, ".");
  for (const Case& c : cases) {
    const TDataTypeInfo t = TypeOf(c.type);
    EXPECT_EQ(t.Compare(c.a, c.b, false, c.stringSort, c.canonical, nullptr, nullptr), c.expected)
        << "type " << c.type << " '" << c.a << "' vs '" << c.b << "'";
    EXPECT_EQ(t.Compare(c.b, c.a, false, c.stringSort, c.canonical, nullptr, nullptr), -c.expected);
  }
}

TEST(DataTypeInfo, CompareConvertsFirstAndHandsOutTheNumber) {
  SeparatorScope scope(kGerman, ",");
  long double n = 0;
  const TDataTypeInfo number = TypeOf(kTypeNumber);
  EXPECT_EQ(number.Compare("1.234,5", "999", true, false, false, &n, nullptr), 1);
  EXPECT_EQ(n, 1234.5L);
  const TDataTypeInfo date = TypeOf(kTypeDate);
  EXPECT_EQ(date.Compare("1.1.01", "31.12.99", true, false, false, &n, nullptr), 1);
  EXPECT_EQ(n, 2001e13L + 1e11L + 1e9L);
  const TDataTypeInfo yesNo = TypeOf(kTypeYesNo);
  EXPECT_EQ(yesNo.Compare("Ja", "Nein", true, false, false, &n, nullptr), 1);
  EXPECT_EQ(n, 1.0L);
}

TEST(DataTypeInfo, SqlMappingBothWays) {
  struct Case {
    int16_t sql;
    int32_t digits;
    int16_t type, decimals;
    const char* format;
    int16_t back;
  };
  const Case cases[] = {
      {3, 4, kTypeNumber, 4, "%d.%m.%Y", 8},   {8, -1, kTypeNumber, 2, "%d.%m.%Y", 8},
      {4, 9, kTypeNumber, 0, "%d.%m.%Y", 4},   {-5, -1, kTypeNumber, 0, "%d.%m.%Y", 4},
      {-7, 0, kTypeYesNo, 2, "%d.%m.%Y", -7},  {9, 0, kTypeDate, 2, "%d.%m.%y", 9},
      {10, 0, kTypeTime, 2, "%H:%M:%S", 10},   {11, 0, kTypeDateTime, 2, "%d.%m.%y %H:%M:%S", 11},
      {-4, 0, kTypeBinary, 2, "%d.%m.%Y", -3}, {-1, 0, kTypeText, 2, "%d.%m.%Y", 12},
      {99, 3, kTypeLink, 2, "%d.%m.%Y", 12},  // unknown SQL types leave the field alone
  };
  for (const Case& c : cases) {
    TDataTypeInfo t = TypeOf(kTypeLink);
    t.SqlToType(c.sql, c.digits);
    EXPECT_EQ(t.dataType, c.type) << c.sql;
    EXPECT_EQ(t.decimals, c.decimals) << c.sql;
    EXPECT_EQ(t.format, c.format) << c.sql;
    EXPECT_EQ(t.TypeToSql(), c.back) << c.sql;
  }
}

TEST(DataTypeInfo, NewRecordsCountOrConvertTheInitialValue) {
  TDataTypeInfo counter = TypeOf(kTypeNumber);
  counter.isCounter = 1;
  counter.counterValue = 41;
  EXPECT_EQ(counter.NewRecordValue(), "42");
  EXPECT_EQ(counter.NewRecordValue(), "43");
  EXPECT_EQ(counter.counterValue, 43.0L);
  TDataTypeInfo number = TypeOf(kTypeNumber, 1);
  number.initValue = "7";
  EXPECT_EQ(number.NewRecordValue(), "7.0");
  TDataTypeInfo stamp = TypeOf(kTypeDate);
  stamp.initValue = "\\RVALUE:NOW";
  EXPECT_TRUE(IsSevenPartValue(stamp.NewRecordValue()));
}

TEST(DataTypeInfo, DateOrderKeyReadsDamagedPartsLikeIntegers) {
  struct Case {
    int16_t type;
    const char* value;
    long double key;
  };
  const Case cases[] = {
      {kTypeDateTime, "31.12.2001.13.5.9.7", 2001e13L + 12e11L + 31e9L + 13e7L + 5e5L + 9e3L + 7},
      {kTypeDateTime, " 3.x.-5.1a.+2", -5e13L + 3e9L + 1e7L + 2e5L},
      {kTypeDateTime, "1.1.999999", 999999e13L + 1e11L + 1e9L},  // beyond the integer shortcut
      {kTypeDateTime, "1.1.2001.1.1.1.1.99", 2001e13L + 1e11L + 1e9L + 1e7L + 1e5L + 1e3L + 1},
      {kTypeDateTime, "000001.2.3", 3e13L + 2e11L + 1e9L},
      {kTypeDate, "2.3.2004.23.59.59.999", 2004e13L + 3e11L + 2e9L},
      {kTypeTime, "2.3.2004.23.59.59.999", 23e7L + 59e5L + 59e3L + 999},
      {kTypeDate, "", 0},
  };
  for (const Case& c : cases) EXPECT_EQ(DateOrderKey(c.type, c.value), c.key) << c.value;
}
