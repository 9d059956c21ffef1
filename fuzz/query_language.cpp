// Arbitrary text through the query language: parse, then evaluate as text and as truth. A step
// limit stops loops through the cancellation error, so that no input can hang the run. Where the
// tree has the shape of a simple filter, the predicate must answer as the tree does.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <sstream>
#include <string>

#include "query/query_expr.h"
#include "query/qx_predicate.h"

using namespace verdal::query;

namespace {

constexpr int kStepLimit = 2000;

class FuzzQuery : public QueryExpr {
 public:
  QX_Error GetField(QX_FieldText* textOut, int32_t index) override {
    if (index == 2) {  // an owned block, as an engine query hands out computed texts
      char* block = static_cast<char*>(std::malloc(6));
      std::memcpy(block, "19.90", 6);
      textOut->text = block;
      textOut->owned = true;
      return nullptr;
    }
    // Numbers of several forms, so that comparisons with constants take every path.
    static const char* const kTexts[] = {"Graben", nullptr,  "100",
                                         "-3.50",  "1e5",    "  0.25",
                                         "99.99999999999999999999", "200.000"};
    textOut->text = kTexts[static_cast<uint32_t>(index) % 8];
    textOut->owned = false;
    return index > 100 ? Err(kBadFieldIndex) : nullptr;
  }
  QX_Error SetField(int32_t, const char*) override { return nullptr; }

  int steps = 0;
};

QX_Error CountStep(void* context) {
  auto* q = static_cast<FuzzQuery*>(context);
  return ++q->steps > kStepLimit ? QX_ErrDefs::Err(QX_ErrDefs::kCancelled) : nullptr;
}

QX_Error StartsWith(const char** resultOut, void*, const char* text, const char* prefix,
                    const char*, const char*) {
  *resultOut = std::strncmp(text, prefix, std::strlen(prefix)) == 0 ? "1" : "0";
  return nullptr;
}

QX_Error Nothing(const char** resultOut, void*, const char*, const char*, const char*,
                 const char*) {
  *resultOut = nullptr;
  return nullptr;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string text(reinterpret_cast<const char*>(data), size);
  auto query = std::make_unique<FuzzQuery>();
  query->SetStepHook(CountStep, query.get());
  query->DefineFunction("StrStartsWith", false, 2, StartsWith, nullptr);
  query->DefineFunction("nothing", false, 0, Nothing, nullptr);
  query->DefineField("NAME", false, 0);
  query->DefineField("PREIS", false, 2);
  query->DefineString("TAB", false, "\t");
  if (query->Parse(text.c_str()) == nullptr) {
    std::string result;
    query->EvalString(&result);
    query->steps = 0;
    bool truth = false;
    const QX_Error error = query->EvalBool(&truth);
    if (auto predicate = QX_Predicate::Compile(query->Tree())) {
      const QX_Predicate::Answer answer = predicate->Decide(*query);
      if (answer != QX_Predicate::kUndecided && (error != nullptr || truth != (answer == QX_Predicate::kYes)))
        __builtin_trap();
    }
    std::ostringstream printed;
    query->PrintTree(printed);
  }
  // Global definitions outlive the query; drop them so that runs do not pile up names and values.
  query.reset();
  QX_GlobalSymbols().Clear();
  return 0;
}
