#pragma once
// How the layers below follow link fields of an open database: through its chains, which the walk
// resolves anew at every use and which open the databases they lead to.
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "engine/link_walk.h"
#include "model/link_resolver.h"

namespace verdal::model {
struct TDBFieldInfo;
}

namespace verdal::engine {

class TDBManager;

class DatabaseLinks final : public model::TLinkResolver {
 public:
  explicit DatabaseLinks(TDBManager& db) : db_(db) {}

  bool LinkChain(const model::TDataTypeInfo& linkField, std::vector<Hop>& chain) override;
  bool LinkTarget(const model::TDataTypeInfo& linkField, model::TLinkResolver*& database,
                  const model::TDataTypeInfo*& field) override;
  model::TDataTypeInfo* FieldType(int32_t fieldIndex) override;
  int32_t FieldIndexOf(const model::TDataTypeInfo& type) const override;
  bool StoredValue(int32_t nodeId, int32_t fieldIndex, std::string& out) override;
  std::string_view Name() const override;

  // The one sound chain of the link field at fieldIndex, null if the field has none. Walked anew,
  // unless the last walk of the field went through open databases only and neither the pool, nor
  // the resolve-locally switch, nor any database's fields have changed since: walking again would
  // give the same chain, and every shown link value asks for it. Valid until the next call.
  const TDBRecursChecker* SoundChain(int32_t fieldIndex);

 private:
  struct KeptChain {
    TDBRecursChecker chain;
    bool kept = false;
    uint64_t linksEpoch = 0;
    uint64_t fieldsEpoch = 0;
  };

  TDBManager& db_;
  std::vector<KeptChain> kept_;  // by field index
};

// The one sound chain of the link field at fieldIndex, as every reader of a link demands it. A
// field that is no link, or whose link does not lead through to a field that is none, gives false;
// a broken link also traces the diagnostic `context` ("VERDAL_GetCrossData()", say).
bool ReadChain(TDBManager& db, int32_t fieldIndex, TDBRecursChecker& chain, const char* context);

// The last database and field of the chain of a link field; false unless it is sound.
bool ResolveField(TDBManager& db, int32_t fieldIndex, TDBManager*& lastDatabase,
                  model::TDBFieldInfo*& lastField);

}  // namespace verdal::engine
