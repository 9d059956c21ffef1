#pragma once
// A query bound to one open database for the length of one call: the filter macros (\eval{...})
// are expanded against the field types, the named fields are bound, the engine's string functions
// are registered, and the text is compiled once. Test then answers for one node after another.
//
// Who owns what GetField hands out: a stored value or title is lent straight from the store,
// which no query changes (SetField does nothing). A value that has to be computed (dates as
// numbers, the shown text of a link) lives in a slot of this object, one per field, refilled
// only when the field is read for another node. Either text stays valid until the next Test or
// the end of the query, which is what field values need; nothing is handed over, so nothing can
// leak, and a read allocates nothing once a slot has grown to its size.
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "model/node_store.h"
#include "model/place_walk.h"
#include "query/query_expr.h"
#include "query/qx_predicate.h"

namespace verdal::model {
class TLinkResolver;
}

namespace verdal::query {

class QX_QueryCache : public QueryExpr, public model::PlaceFilter {
 public:
  // The field index of a node's title, and the name a macro without field is bound to.
  static constexpr int32_t kTitleField = 4095;
  static constexpr const char* kTitleMarker = "_2957160qmzbrt8164kvxhsnp";

  // Macro flags.
  enum MacroFlags : int32_t {
    kFlagLinkId = 1,
    kFlagNoCase = 4,
    kFlagBeginsWith = 8,
    kFlagWildcard = 16,
  };

  // links: follows link fields to their shown texts; null while the database has no links.
  QX_QueryCache(model::NodeStore& database, const char* text, model::TLinkResolver* links = nullptr);
  ~QX_QueryCache() override;

  // Whether the node passes. After the first error every later node fails; the node at which an
  // evaluation error occurs still passes.
  bool Test(int32_t cursor);
  // The same for a place a walk holds already, without looking it up again.
  bool Accepts(const model::TDBCategoryData& place) override;
  // Only the values the filter reads, where that is known.
  void Prefetch(const model::TDBDataRecord& record) const override;

  QX_Error GetField(QX_FieldText* textOut, int32_t index) override;
  // Assignments to fields change nothing and are no error.
  QX_Error SetField(int32_t index, const char* text) override;

  // The text after macro expansion, as compiled (empty for a database without fields).
  const std::string& QueryText() const { return queryText; }
  const std::vector<int32_t>& FieldFlags() const { return fieldFlags; }

  // The name the language binds a field to; upperName is the field's name upper-cased.
  static std::string SafeName(std::string_view upperName);

  // Whether the pieces of pattern between "*" occur in text in order; position and length of
  // the match go to the outputs where given.
  static bool FindWildcard(const char* pattern, const char* text, size_t* positionOut = nullptr,
                           size_t* lengthOut = nullptr);

  QX_Error lastError = nullptr;

 private:
  struct Binding {
    std::string name;
    int32_t index;
  };
  struct Slot {
    uint64_t generation = 0;  // the Test the text was made for
    std::string text;
  };

  bool Evaluate(int32_t cursor, const model::TDBCategoryData* knownPlace);
  // One macro at a time; false when no further macro can be expanded.
  bool ExpandOne(std::vector<Binding>& bindings, size_t& searchFrom);
  std::string MacroValue(const model::TDBFieldInfo* field, int32_t index, std::string value,
                         int32_t flags);
  void InstallFunctions();

  static QX_Error StartsWith(const char** resultOut, void* context, const char* text,
                             const char* prefix, const char*, const char*);
  static QX_Error FindWildCardFunction(const char** resultOut, void* context, const char* text,
                                       const char* pattern, const char*, const char*);
  const char* Answer(bool yes);

  // The filter's common shape decided without the tree; null for other shapes.
  std::unique_ptr<QX_Predicate> predicate_;
  // What the predicate reads of a record: values by position, perhaps the title. Texts are
  // searched with wide loads that reach past a short text's own line.
  struct Read {
    size_t position;  // the title at kTitlePosition
    size_t bytes;
  };
  static constexpr size_t kTitlePosition = SIZE_MAX;
  std::vector<Read> reads_;
  int32_t currentCursor = -1;
  model::NodeStore* database;
  model::TLinkResolver* links_;
  std::string queryText;
  std::string resultText = "0";
  std::vector<int32_t> fieldFlags;
  std::vector<int32_t> storedAt_;  // a field's position where its stored text is its value, else -1
  std::vector<Slot> slots_;
  uint64_t generation_ = 1;  // counts Tests; 0 marks nothing as fresh
  uint64_t nodeFor_ = 0;  // the Test place_ and record_ were looked up for
  const model::TDBCategoryData* place_ = nullptr;
  const model::TDBDataRecord* record_ = nullptr;
};

}  // namespace verdal::query
