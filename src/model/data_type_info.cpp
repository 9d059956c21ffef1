#include "model/data_type_info.h"

#include <algorithm>

#include "model/link_resolver.h"
#include "model/number_text.h"

namespace verdal::model {

const TypeLabel kDataTypeLabels[7] = {
    {"Text", kTypeText},          {"Zahl", kTypeNumber}, {"Ja/Nein", kTypeYesNo},
    {"Datum und Zeit", kTypeDateTime}, {"Datum", kTypeDate}, {"Zeit", kTypeTime},
    {"Link zu einer Datenbank", kTypeLink}};

const TypeLabel kExtendedTypeLabels[7] = {
    {"", 0},          {"Allgemeines Dokument", 1}, {"URL", 2},
    {"Emailadresse", 4}, {"Telefonnummer", 8},       {"Faxnummer", 16},
    {"Multimediaobjekt", 32}};

const TypeLabel kSqlTypeLabels[22] = {
    {"Automatisch", 0},  {"SQL_CHAR", 1},      {"SQL_VARCHAR", 12},     {"SQL_LONGVARCHAR", -1},
    {"SQL_DECIMAL", 3},  {"SQL_NUMERIC", 2},   {"SQL_REAL", 7},         {"SQL_FLOAT", 6},
    {"SQL_DOUBLE", 8},   {"SQL_BIT", -7},      {"SQL_TINYINT", -6},     {"SQL_INTEGER", 4},
    {"SQL_SMALLINT", 5}, {"SQL_BIGINT", -5},   {"SQL_CHAR", 1},         {"SQL_BINARY", -2},
    {"SQL_VARBINARY", -3}, {"SQL_LONGVARBINARY", -4}, {"SQL_DATETIME", 9}, {"SQL_DATE", 9},
    {"SQL_TIME", 10},    {"SQL_TIMESTAMP", 11}};

namespace {
// Link fields are followed from database to database; a ring of links must not recurse forever.
constexpr int kMaxLinkDepth = 16;
}  // namespace

const char* TDataTypeInfo::FixedFormat(int16_t type) {
  switch (type) {
    case kTypeDateTime: return "%d.%m.%y %H:%M:%S";
    case kTypeDate: return "%d.%m.%y";
    case kTypeTime: return "%H:%M:%S";
    default: return nullptr;
  }
}

int TDataTypeInfo::DisplayClass(TLinkResolver* database) const { return ClassOfLink(database, 0); }

int TDataTypeInfo::ClassOfLink(TLinkResolver* database, int depth) const {
  switch (dataType) {
    case kTypeNumber: return kDisplayNumber;
    case kTypeYesNo:
    case kTypeDateTime:
    case kTypeDate:
    case kTypeTime: return kDisplayFixed;
    case kTypeLink: {
      if (database == nullptr) return kDisplayLink;
      TLinkResolver* targetDatabase = nullptr;
      const TDataTypeInfo* target = nullptr;
      if (depth < kMaxLinkDepth && database->LinkTarget(*this, targetDatabase, target) &&
          targetDatabase != nullptr && target != nullptr && targetDatabase != database)
        return target->ClassOfLink(targetDatabase, depth + 1);
      return kDisplayText;
    }
    default: return kDisplayText;
  }
}

void TDataTypeInfo::SqlToType(int16_t columnSqlType, int32_t columnDigits) {
  switch (columnSqlType) {
    case 2: case 3: case 6: case 7: case 8:
      dataType = kTypeNumber;
      if (columnDigits != -1)
        decimals = static_cast<int16_t>(std::clamp<int32_t>(columnDigits, INT16_MIN, INT16_MAX));
      break;
    case 4: case 5: case -5: case -6:
      dataType = kTypeNumber;
      decimals = 0;
      break;
    case -7: dataType = kTypeYesNo; break;
    case 9: case 10: case 11: {
      dataType = columnSqlType == 9 ? kTypeDate : columnSqlType == 10 ? kTypeTime : kTypeDateTime;
      format = FixedFormat(dataType);
      break;
    }
    case -2: case -3: case -4: dataType = kTypeBinary; break;
    case 1: case 12: case -1: dataType = kTypeText; break;
    default: break;
  }
}

int16_t TDataTypeInfo::TypeToSql() const {
  switch (dataType) {
    case kTypeNumber: return decimals < 1 ? 4 : 8;
    case kTypeYesNo: return -7;
    case kTypeBinary: return -3;
    case kTypeDateTime: return 11;
    case kTypeDate: return 9;
    case kTypeTime: return 10;
    default: return 12;
  }
}

std::string TDataTypeInfo::NewRecordValue() {
  std::string value;
  if (isCounter) {
    counterValue += 1;
    FormatNumber(counterValue, 0, value);
  } else {
    ToInternal(initValue, value, false, nullptr);
  }
  return value;
}

}  // namespace verdal::model
