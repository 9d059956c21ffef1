#pragma once
// What value conversion needs of a database to follow link fields: the database implements this,
// and conversion sees no more of it. Fields are named by index; a field's type is found by
// address, since every TDataTypeInfo lives inside one field definition.
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace verdal::model {

struct TDataTypeInfo;

class TLinkResolver {
 public:
  struct Hop {
    TLinkResolver* database;
    int32_t fieldIndex;
  };

  virtual ~TLinkResolver() = default;

  // The chain of the link field of this database whose type is `linkField`: entry 0 is this
  // database and the link field, each further entry the database and field the previous link
  // leads to. False unless the field has exactly one sound chain.
  virtual bool LinkChain(const TDataTypeInfo& linkField, std::vector<Hop>& chain) = 0;

  // The database and field one link leads to, without walking on. False when the linked database
  // cannot be found or has no such field.
  virtual bool LinkTarget(const TDataTypeInfo& linkField, TLinkResolver*& database,
                          const TDataTypeInfo*& field) = 0;

  // The type of the field at an index, null when the index is out of range.
  virtual TDataTypeInfo* FieldType(int32_t fieldIndex) = 0;

  // The index of the field whose type this is, -1 when it belongs to no field of this database.
  virtual int32_t FieldIndexOf(const TDataTypeInfo& type) const = 0;

  // The value that node `nodeId` stores at the field. False when there is no such node or value.
  virtual bool StoredValue(int32_t nodeId, int32_t fieldIndex, std::string& out) = 0;

  // The database's name for diagnostics.
  virtual std::string_view Name() const = 0;
};

}  // namespace verdal::model
