#include "exchange/template_merge.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>

using namespace verdal;
using exchange::LineBreaks;

namespace {

std::vector<std::unique_ptr<model::TDBFieldInfo>> Fields(std::initializer_list<const char*> names) {
  std::vector<std::unique_ptr<model::TDBFieldInfo>> fields;
  for (const char* name : names) {
    fields.push_back(std::make_unique<model::TDBFieldInfo>());
    fields.back()->name = name;
  }
  return fields;
}

}  // namespace

TEST(TemplateMerge, LongerNamesFirstAndFieldOrderAmongEqualLengths) {
  std::vector<std::pair<std::string, int32_t>> order;
  for (const auto& w : exchange::ReplacerWords(Fields({"NAME", "Ort", "NAME2", "PLZ", "Stra\xDF"}))) order.emplace_back(w.name, w.field);
  EXPECT_EQ(order, (std::vector<std::pair<std::string, int32_t>>{
                       {"NAME2", 2}, {"Stra\xDF", 4}, {"NAME", 0}, {"Ort", 1}, {"PLZ", 3}}));
}

TEST(TemplateMerge, ValuesDateAndLineBreaks) {
  const auto words = exchange::ReplacerWords(Fields({"NAME", "NAME2", "Notiz"}));
  const platform::LocalTime today{2026, 3, 0, 7, 0, 0, 0, 0};
  struct Case {
    const char* text;
    std::map<int32_t, std::string> values;
    LineBreaks breaks;
    const char* merged;
  } cases[] = {
      {"$NAME2 und $name, $Name!", {{0, "Anna"}, {1, "Berta"}}, LineBreaks::kKeep, "Berta und Anna, Anna!"},
      {"Stand $DATE, $date: $Notiz", {{2, "seit $DATE"}}, LineBreaks::kKeep, "Stand 07.03.2026, $date: seit 07.03.2026"},
      {"[$NAME]", {{0, "$NAME$NAME"}}, LineBreaks::kKeep, "[$NAME$NAME]"},  // inserted text not searched again
      {"$Notiz", {{2, "a\r\nb\nc"}}, LineBreaks::kRtf, "a\\par b\\par c"},
      {"$Notiz", {{2, "a\r\nb\nc"}}, LineBreaks::kHtml, "a<br>b<br>c"},
      {"$Notiz", {{2, "a\r\nb"}}, LineBreaks::kKeep, "a\r\nb"},
      {"$ $Unbekannt \xE4$notiz", {{2, "\xC4"}}, LineBreaks::kKeep, "$ $Unbekannt \xE4\xC4"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    auto valueOf = [&](int32_t field) {
      auto it = c.values.find(field);
      return it != c.values.end() ? it->second : std::string();
    };
    EXPECT_EQ(exchange::MergeTemplate(c.text, words, valueOf, c.breaks, today), c.merged);
  }
  EXPECT_EQ(exchange::LineBreaksFor("/a/brief.RTF"), LineBreaks::kRtf);
  EXPECT_EQ(exchange::LineBreaksFor("C:\\a\\brief.htm"), LineBreaks::kHtml);
  EXPECT_EQ(exchange::LineBreaksFor("brief.html "), LineBreaks::kHtml);
  EXPECT_EQ(exchange::LineBreaksFor("brief.rtf.txt"), LineBreaks::kKeep);
}
