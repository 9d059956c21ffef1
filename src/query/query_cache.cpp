#include "query/query_cache.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string_view>

#include "model/data_type_info.h"
#include "model/fields.h"
#include "model/prefetch.h"
#include "platform/collation.h"
#include "query/qx_char_upper.h"

namespace verdal::query {

namespace {

constexpr std::string_view kMacroOpen = "\\eval{";
constexpr const char kCarriageReturn[] = "\r\n";
constexpr const char kTab[] = "\t";

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

std::string_view Strip(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

std::string_view StripAll(std::string_view text, char c) {
  while (!text.empty() && text.front() == c) text.remove_prefix(1);
  while (!text.empty() && text.back() == c) text.remove_suffix(1);
  return text;
}

std::string_view StripQuotes(std::string_view text) { return StripAll(StripAll(text, '\''), '"'); }

// The flags part reads like atoi: leading digits with an optional sign, nothing else counts.
int32_t ReadFlags(const std::string& text) {
  errno = 0;
  long value = std::strtol(text.c_str(), nullptr, 10);
  if (value > INT32_MAX) return INT32_MAX;
  if (value < INT32_MIN) return INT32_MIN;
  return static_cast<int32_t>(value);
}

// Dates reach the language as whole numbers, which it compares as numbers.
void PrintWhole(long double number, std::string& out) {
  char buffer[64];
  int n = std::snprintf(buffer, sizeof buffer, "%.0Lf", number);
  if (n >= 0 && static_cast<size_t>(n) < sizeof buffer) {
    out.assign(buffer, static_cast<size_t>(n));
    return;
  }
  // Only absurd magnitudes come here; they are printed in full all the same.
  std::vector<char> big(static_cast<size_t>(n > 0 ? n : 0) + 1);
  std::snprintf(big.data(), big.size(), "%.0Lf", number);
  out.assign(big.data());
}

bool IsDateType(int16_t type) {
  return type == model::kTypeDateTime || type == model::kTypeDate || type == model::kTypeTime;
}

// Whether a field is handed to the language in a computed form (dates as numbers, links as their
// display) rather than as stored.
bool IsComputed(int16_t type, int32_t flags) {
  return IsDateType(type) || (type == model::kTypeLink && (flags & QX_QueryCache::kFlagLinkId) == 0);
}

// Two strings compare as the system compares text: case-sensitive word sort.
int SystemCompare(const char* left, const char* right) {
  return platform::CompareWordSort(left, right);
}

// Engine queries alive; the system comparison is installed while there is one.
int g_liveQueries = 0;

}  // namespace

QX_QueryCache::QX_QueryCache(model::NodeStore& store, const char* text, model::TLinkResolver* links)
    : database(&store), links_(links) {
  if (g_liveQueries++ == 0) QX_Utilities::SetTextCompare(SystemCompare);
  fieldFlags.assign(store.fields.size(), 0);
  if (store.fields.empty()) return;

  std::string_view source = Strip(text != nullptr ? std::string_view(text) : std::string_view());
  while (!source.empty() && source.back() == ';') source.remove_suffix(1);
  queryText.assign(source);
  if (!queryText.empty()) queryText += ';';

  InstallFunctions();
  std::vector<Binding> bindings;
  size_t searchFrom = 0;
  while (ExpandOne(bindings, searchFrom)) {
  }
  // Values handed out as stored, by field index, for the quick way through GetField.
  storedAt_.assign(store.fields.size(), -1);
  for (size_t i = 0; i < store.fields.size(); ++i) {
    const model::TDBFieldInfo* field = store.fields[i].get();
    if (field == nullptr) continue;
    if (!IsComputed(field->type.dataType, fieldFlags[i])) storedAt_[i] = field->position;
  }
  // A name bound twice answers "already defined", which changes nothing.
  for (const Binding& b : bindings) DefineField(b.name.c_str(), false, b.index);
  lastError = Parse(queryText.c_str());
  if (lastError == nullptr) predicate_ = QX_Predicate::Compile(Tree());
  if (predicate_ == nullptr) return;
  for (const QX_Predicate::FieldUse& use : predicate_->Fields()) {
    // A searched text is read with wide loads that reach 64 bytes past its start in the slot.
    const size_t bytes = use.asText ? 1 + 64 : 1;
    const size_t index = static_cast<size_t>(use.field);
    if (use.field == kTitleField) {
      reads_.push_back({kTitlePosition, bytes});
    } else if (use.field >= 0 && index < store.fields.size() && store.fields[index] != nullptr &&
               store.fields[index]->position >= 0) {
      reads_.push_back({static_cast<size_t>(store.fields[index]->position), bytes});
    }
  }
}

void QX_QueryCache::Prefetch(const model::TDBDataRecord& record) const {
  if (predicate_ == nullptr) return PlaceFilter::Prefetch(record);
  if (record.values.SlotOfTitle() == nullptr) return;
  for (const Read& read : reads_) {
    if (read.position == kTitlePosition)
      model::PrefetchBytes(record.values.SlotOfTitle(), read.bytes);
    else if (read.position < record.values.size())
      model::PrefetchBytes(record.values.SlotOfValue(read.position), read.bytes);
  }
}

// The language alone compares bytes; the system comparison holds while engine queries live.
QX_QueryCache::~QX_QueryCache() {
  if (--g_liveQueries == 0) QX_Utilities::SetTextCompare(nullptr);
}

void QX_QueryCache::InstallFunctions() {
  DefineString("CR", false, kCarriageReturn);
  DefineString("TAB", false, kTab);
  DefineFunction("StrStartsWith", false, 2, StartsWith, this);
  DefineFunction("StrFindWildCard", false, 2, FindWildCardFunction, this);
}

bool QX_QueryCache::ExpandOne(std::vector<Binding>& bindings, size_t& searchFrom) {
  const size_t start = queryText.find(kMacroOpen, searchFrom);
  if (start == std::string::npos) return false;
  const size_t inner = start + kMacroOpen.size();
  const size_t close = queryText.find('}', inner);
  if (close == std::string::npos || close == inner) return false;

  const std::string_view body(queryText.data() + inner, close - inner);
  std::string parts[4];
  int count = 0;
  size_t from = 0;
  while (count < 3) {
    const size_t bar = body.find('|', from);
    if (bar == std::string_view::npos) break;
    parts[count++] = Strip(body.substr(from, bar - from));
    from = bar + 1;
  }
  parts[count++] = Strip(body.substr(from));
  if (parts[count - 1].empty()) --count;
  if (count < 3) return false;
  const int32_t flags = count == 4 ? ReadFlags(parts[3]) : 0;

  std::string name;
  int32_t index = kTitleField;
  const model::TDBFieldInfo* field = nullptr;
  if (parts[0].empty()) {
    DefineField(kTitleMarker, false, kTitleField);
    name = kTitleMarker;
  } else {
    field = model::FieldByName(*database, parts[0].c_str(), &index);
    if (field == nullptr) return false;
    std::string upper = parts[0];
    QX_UpcaseInPlace(upper.data());
    name = SafeName(upper);
    bindings.push_back({name, index});
  }

  const bool call = (flags & (kFlagBeginsWith | kFlagWildcard)) != 0;
  std::string replacement;
  if (flags & kFlagBeginsWith) replacement += "StrStartsWith(";
  if (flags & kFlagWildcard) replacement += "StrFindWildCard(";
  if (flags & kFlagNoCase) replacement += '^';
  replacement += name;
  replacement += call ? std::string(",") : parts[1];
  if (flags & kFlagNoCase) replacement += '^';
  replacement += MacroValue(field, index, std::move(parts[2]), flags);
  if (call) replacement += ")=1";

  queryText.replace(start, close + 1 - start, replacement);
  // A value may end in part of a macro's opening that the text behind completes.
  searchFrom = start >= kMacroOpen.size() ? start - kMacroOpen.size() : 0;
  return true;
}

std::string QX_QueryCache::MacroValue(const model::TDBFieldInfo* field, int32_t index,
                                      std::string value, int32_t flags) {
  if (field == nullptr) return value;
  const model::TDataTypeInfo& type = field->type;
  if (type.dataType == model::kTypeText) return value;
  if (IsDateType(type.dataType)) {
    long double number = 0;
    type.Compare(StripQuotes(value), "", true, false, false, &number, nullptr);
    std::string out;
    PrintWhole(number, out);
    return out;
  }
  if (type.dataType == model::kTypeLink) {
    if ((flags & kFlagLinkId) == 0) return value;
    fieldFlags[static_cast<size_t>(index)] = flags;
    return std::string(StripQuotes(value));
  }
  std::string out;
  type.ToInternal(value, out, false, nullptr);
  return out;
}

std::string QX_QueryCache::SafeName(std::string_view upperName) {
  static constexpr std::string_view kSpecial = " @?:+-*/&<>=^#$(){}[],;.\"";
  static constexpr std::string_view kLetters = "_abcdefghijklmnopqrstuvwxyz";
  std::string out;
  out.reserve(upperName.size() + 1);
  if (!upperName.empty() && upperName.front() >= '0' && upperName.front() <= '9') out += '_';
  for (char c : upperName) {
    const size_t at = kSpecial.find(c);
    out += at != std::string_view::npos ? kLetters[at] : c;
  }
  return out;
}

bool QX_QueryCache::FindWildcard(const char* pattern, const char* text, size_t* positionOut,
                                 size_t* lengthOut) {
  if (pattern == nullptr || text == nullptr || *text == '\0') return false;
  const std::string_view haystack(text);
  std::string_view rest(pattern);
  size_t searchAt = 0;
  size_t first = std::string_view::npos;
  while (true) {
    const size_t star = rest.find('*');
    const std::string_view piece = rest.substr(0, star);
    if (!piece.empty()) {
      const size_t found = haystack.find(piece, searchAt);
      if (found == std::string_view::npos) return false;
      if (first == std::string_view::npos) first = found;
      searchAt = found + piece.size();
    }
    if (star == std::string_view::npos) break;
    rest.remove_prefix(star + 1);
  }
  if (first == std::string_view::npos) return false;
  if (positionOut != nullptr) *positionOut = first;
  if (lengthOut != nullptr) *lengthOut = searchAt - first;
  return true;
}

const char* QX_QueryCache::Answer(bool yes) {
  resultText = yes ? "1" : "0";
  return resultText.c_str();
}

QX_Error QX_QueryCache::StartsWith(const char** resultOut, void* context, const char* text,
                                   const char* prefix, const char*, const char*) {
  auto* self = static_cast<QX_QueryCache*>(context);
  const bool yes = text != nullptr && prefix != nullptr &&
                   std::strncmp(text, prefix, std::strlen(prefix)) == 0;
  *resultOut = self->Answer(yes);
  return nullptr;
}

QX_Error QX_QueryCache::FindWildCardFunction(const char** resultOut, void* context,
                                             const char* text, const char* pattern, const char*,
                                             const char*) {
  auto* self = static_cast<QX_QueryCache*>(context);
  *resultOut = self->Answer(FindWildcard(pattern, text));
  return nullptr;
}

bool QX_QueryCache::Accepts(const model::TDBCategoryData& place) { return Evaluate(place.cursor, &place); }

bool QX_QueryCache::Test(int32_t cursor) { return Evaluate(cursor, nullptr); }

bool QX_QueryCache::Evaluate(int32_t cursor, const model::TDBCategoryData* knownPlace) {
  currentCursor = cursor;
  ++generation_;
  if (knownPlace != nullptr) {
    place_ = knownPlace;
    record_ = model::DataOf(*database, knownPlace);
    nodeFor_ = generation_;
  }
  if (lastError != nullptr) return false;
  if (predicate_ != nullptr) {
    const QX_Predicate::Answer answer = predicate_->Decide(*this);
    if (answer != QX_Predicate::kUndecided) return answer == QX_Predicate::kYes;
  }
  bool result = true;
  if (QX_Error e = EvalBool(&result)) lastError = e;
  return result;
}

QX_Error QX_QueryCache::SetField(int32_t, const char*) { return nullptr; }

QX_Error QX_QueryCache::GetField(QX_FieldText* textOut, int32_t index) {
  textOut->text = nullptr;
  textOut->owned = false;
  // The common case first: a stored value of the record a walk has handed over.
  if (nodeFor_ == generation_ && record_ != nullptr && static_cast<size_t>(index) < storedAt_.size()) {
    const int32_t at = storedAt_[static_cast<size_t>(index)];
    if (at >= 0 && static_cast<size_t>(at) < record_->values.size()) {
      textOut->text = record_->values[static_cast<size_t>(at)].data();  // followed by a NUL
      return nullptr;
    }
  }
  model::NodeStore& store = *database;
  const size_t fieldCount = store.fields.size();
  if (index < 0 || (static_cast<size_t>(index) >= fieldCount && index != kTitleField))
    return Err(kBadFieldIndex);
  textOut->text = "";
  // The node is looked up once per Test, however many fields the query reads.
  if (nodeFor_ != generation_) {
    place_ = model::LookupPlace(store, currentCursor);
    record_ = model::DataOf(store, place_);
    nodeFor_ = generation_;
  }
  const model::TDBCategoryData* place = place_;
  if (index == kTitleField) {
    if (place == nullptr) return nullptr;
    if (place->isCategory) {
      if (const model::TDBCategoryRecord* c = store.categories.Find(place->categoryId))
        textOut->text = c->name.c_str();
    } else if (record_ != nullptr) {
      textOut->text = record_->Title().data();  // followed by a NUL
    }
    return nullptr;
  }
  model::TDBFieldInfo* field = store.fields[static_cast<size_t>(index)].get();
  if (field == nullptr) return nullptr;
  std::optional<std::string_view> stored;
  const size_t position = static_cast<size_t>(field->position);
  if (record_ != nullptr && field->position >= 0 && position < record_->values.size())
    stored = record_->values[position];
  const int16_t type = field->type.dataType;
  const int32_t flags = static_cast<size_t>(index) < fieldFlags.size() ? fieldFlags[static_cast<size_t>(index)] : 0;
  if (!IsComputed(type, flags)) {
    if (stored) textOut->text = stored->data();  // followed by a NUL
    return nullptr;
  }
  if (slots_.size() < fieldCount) slots_.resize(fieldCount);
  Slot& slot = slots_[static_cast<size_t>(index)];
  if (slot.generation != generation_) {
    const std::string_view value = stored.value_or(std::string_view());
    if (IsDateType(type)) {
      long double number = 0;
      field->type.Compare(value, "", false, false, true, &number, nullptr);
      PrintWhole(number, slot.text);
    } else {
      field->type.CreateDisplayString(value, slot.text, false, false, links_);
    }
    slot.generation = generation_;
  }
  textOut->text = slot.text.c_str();
  return nullptr;
}

}  // namespace verdal::query
