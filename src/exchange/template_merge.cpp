#include "exchange/template_merge.h"

#include <algorithm>
#include <cstdio>

#include "platform/cp1252.h"
#include "platform/file_system.h"

namespace verdal::exchange {
namespace {

std::string WithBreaks(const std::string& value, LineBreaks breaks) {
  if (breaks == LineBreaks::kKeep) return value;
  const char* lineBreak = breaks == LineBreaks::kRtf ? "\\par " : "<br>";
  std::string out;
  out.reserve(value.size());
  for (char c : value) {
    if (c == '\n') out += lineBreak;
    else if (c != '\r') out += c;
  }
  return out;
}

// Every occurrence of `word` in text replaced by `value`; caseless compares in upper case.
void ReplaceAll(std::string& text, const std::string& word, const std::string& value, bool caseless) {
  if (word.empty()) return;
  std::string upperText, upperWord;
  if (caseless) {
    upperText = text;
    upperWord = word;
    cp1252::ToUpper(upperText);
    cp1252::ToUpper(upperWord);
  }
  const std::string& haystack = caseless ? upperText : text;
  const std::string& needle = caseless ? upperWord : word;
  size_t found = haystack.find(needle);
  if (found == std::string::npos) return;
  std::string out;
  size_t done = 0;
  for (; found != std::string::npos; found = haystack.find(needle, done)) {
    out.append(text, done, found - done);
    out += value;
    done = found + needle.size();
  }
  out.append(text, done, std::string::npos);
  text.swap(out);
}

}  // namespace

std::vector<TReplacerWord> ReplacerWords(const std::vector<std::unique_ptr<model::TDBFieldInfo>>& fields) {
  std::vector<TReplacerWord> words;
  for (size_t i = 0; i < fields.size(); ++i) words.push_back({fields[i]->name, static_cast<int32_t>(i)});
  std::stable_sort(words.begin(), words.end(), [](const TReplacerWord& a, const TReplacerWord& b) {
    return a.name.size() > b.name.size();
  });
  return words;
}

LineBreaks LineBreaksFor(const std::string& templatePath) {
  if (platform::HasExtension(templatePath.c_str(), ".rtf")) return LineBreaks::kRtf;
  if (platform::HasExtension(templatePath.c_str(), ".htm") ||
      platform::HasExtension(templatePath.c_str(), ".html"))
    return LineBreaks::kHtml;
  return LineBreaks::kKeep;
}

std::string MergeTemplate(const std::string& templateText, const std::vector<TReplacerWord>& words,
                          const std::function<std::string(int32_t field)>& valueOf, LineBreaks breaks,
                          const platform::LocalTime& today) {
  std::string text = templateText;
  for (const TReplacerWord& word : words) {
    if (word.name.empty()) continue;  // "$" alone is no word
    ReplaceAll(text, "$" + word.name, WithBreaks(valueOf(word.field), breaks), true);
  }
  char date[32];
  std::snprintf(date, sizeof date, "%02d.%02d.%d", today.day, today.month, today.year);
  ReplaceAll(text, "$DATE", date, false);
  return text;
}

}  // namespace verdal::exchange
