#pragma once
// The large database of the benchmarks, built the way a host builds it: through the C interface.
// 1,000 categories; each record has ten fields (four texts, two numbers, a date, a date and time,
// two yes/no), and records arrive spread over the categories.
#include <cstring>
#include <string>
#include <vector>

#include "verdal.h"

namespace bench_support {

constexpr int kCategories = 1000;
constexpr int kFields = 10;

// A field record with the defaults a new field has.
inline TDBFieldParams FieldRecord(const char* name, int16_t type) {
  TDBFieldParams p;
  std::memset(&p, 0, sizeof p);
  p.dataType = type;
  p.maxChars = -1;
  p.decimals = 2;
  p.allowEmpty = 1;
  p.allowDuplicates = 1;
  p.name = name;
  return p;
}

inline VerdalHandle NewDatabaseWithFields(const char* fileName = nullptr) {
  VerdalHandle db = VERDAL_OpenDB(fileName, nullptr, 1, 0, nullptr, 3, 0, 0);
  const struct { const char* name; int16_t type; } fields[kFields] = {
      {"Name", 0}, {"Vorname", 0}, {"Ort", 0}, {"Strasse", 0}, {"Preis", 1},
      {"Menge", 1}, {"Datum", 5},  {"Zeit", 4}, {"Aktiv", 2},   {"Bezahlt", 2}};
  for (const auto& f : fields) {
    TDBFieldParams p = FieldRecord(f.name, f.type);
    VERDAL_AddField(db, &p, -1, 1);
  }
  return db;
}

// The values a host would type, prepared once.
struct Values {
  std::vector<std::string> names, prices, dates;
  Values() : names(997), prices(101), dates(89) {
    for (size_t i = 0; i < names.size(); ++i) names[i] = "Name " + std::to_string(i * 7919 % 100000);
    for (size_t i = 0; i < prices.size(); ++i) prices[i] = std::to_string(i * 37 % 1000) + ",5";
    for (size_t i = 0; i < dates.size(); ++i)
      dates[i] = std::to_string(1 + i % 28) + "." + std::to_string(1 + i % 12) + "." + std::to_string(1950 + i);
  }
};

inline std::vector<int32_t> AddCategories(VerdalHandle db) {
  std::vector<int32_t> categories;
  for (int c = 0; c < kCategories; ++c) categories.push_back(VERDAL_AddCategory(db, -1, "Kategorie"));
  return categories;
}

// Adds `count` records with all ten values.
inline void AddRecords(VerdalHandle db, const std::vector<int32_t>& categories, int count, const Values& v) {
  for (int i = 0; i < count; ++i) {
    int32_t r = VERDAL_AddRecord(db, categories[static_cast<size_t>(i * 7 % kCategories)], "", 0,
                                 v.names[i % v.names.size()].c_str(), 0, 0, nullptr);
    VERDAL_SetData(db, 1, "Vorname", r, 0, nullptr, nullptr);
    VERDAL_SetData(db, 2, "Bonn", r, 0, nullptr, nullptr);
    VERDAL_SetData(db, 3, "Hauptstrasse 1", r, 0, nullptr, nullptr);
    VERDAL_SetData(db, 4, v.prices[i % v.prices.size()].c_str(), r, 0, nullptr, nullptr);
    VERDAL_SetData(db, 5, "3", r, 0, nullptr, nullptr);
    VERDAL_SetData(db, 6, v.dates[i % v.dates.size()].c_str(), r, 0, nullptr, nullptr);
    VERDAL_SetData(db, 7, "1.2.2003 10:11:12", r, 0, nullptr, nullptr);
    VERDAL_SetData(db, 8, "ja", r, 0, nullptr, nullptr);
    VERDAL_SetData(db, 9, "0", r, 0, nullptr, nullptr);
  }
}

}  // namespace bench_support
