#pragma once
// A query with fields held in memory and a few host functions, for the language tests.
#include <cstring>
#include <map>
#include <string>

#include "query/query_expr.h"

namespace verdal::query::testing {

class TestQuery : public QueryExpr {
 public:
  TestQuery() {
    DefineFunction("StartsWith", false, 2, StartsWith, nullptr);
    DefineFunction("Join", false, 2, Join, this);
    DefineFunction("Zero", false, 0, Zero, nullptr);
    DefineFunction("Stop", false, 0, Stop, nullptr);
    DefineFunction("BadIndex", false, 0, BadIndex, nullptr);
    DefineFunction("Nothing", false, 1, Nothing, nullptr);
  }

  QX_Error GetField(QX_FieldText* textOut, int32_t index) override {
    ++reads;
    if (index < 0 || index > 4095) return Err(kBadFieldIndex);
    auto it = fields.find(index);
    if (it == fields.end()) {
      textOut->text = nullptr;
    } else if (ownedReads) {
      textOut->text = strdup(it->second.c_str());
      textOut->owned = true;
    } else {
      textOut->text = it->second.c_str();
    }
    return nullptr;
  }
  QX_Error SetField(int32_t index, const char* text) override {
    fields[index] = text;
    return nullptr;
  }

  std::map<int32_t, std::string> fields;
  bool ownedReads = false;
  int reads = 0;
  std::string joined;

 private:
  static QX_Error StartsWith(const char** out, void*, const char* text, const char* prefix,
                             const char*, const char*) {
    *out = std::strncmp(text, prefix, std::strlen(prefix)) == 0 ? "1" : "0";
    return nullptr;
  }
  static QX_Error Join(const char** out, void* self, const char* a, const char* b, const char* c,
                       const char*) {
    auto* q = static_cast<TestQuery*>(self);
    q->joined = std::string(a) + "+" + b + (c == nullptr ? "" : "?");
    *out = q->joined.c_str();
    return nullptr;
  }
  static QX_Error Zero(const char** out, void*, const char* a, const char*, const char*,
                       const char*) {
    *out = a == nullptr ? "Z" : "?";
    return nullptr;
  }
  static QX_Error Stop(const char**, void*, const char*, const char*, const char*, const char*) {
    return QX_ErrDefs::Err(QX_ErrDefs::kCancelled);
  }
  static QX_Error BadIndex(const char**, void*, const char*, const char*, const char*,
                           const char*) {
    return QX_ErrDefs::Err(QX_ErrDefs::kStringIndex);
  }
  static QX_Error Nothing(const char** out, void*, const char*, const char*, const char*,
                          const char*) {
    *out = nullptr;
    return nullptr;
  }
};

// "value" for a program that evaluates, or "E<row> at <position> '<token>'" when parsing fails,
// or "E<row>" when evaluation fails.
inline std::string RunQuery(TestQuery& q, const char* text) {
  if (QX_Error e = q.Parse(text)) {
    return "E" + std::to_string(QX_ErrDefs::IndexOf(e)) + " at " +
           std::to_string(q.ErrorPosition()) + " '" + q.ErrorToken() + "'";
  }
  std::string value;
  if (QX_Error e = q.EvalString(&value)) return "E" + std::to_string(QX_ErrDefs::IndexOf(e));
  return value;
}

}  // namespace verdal::query::testing
