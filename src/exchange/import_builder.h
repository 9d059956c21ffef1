#pragma once
// Builds fields, categories and records in a store from the rows of an import exchange file:
// columns become fields (or are matched to the fields there are), leading path columns become
// categories, and each row a record, updated in place in mode 1 when it names an existing place.
// New places are attached to the views once, at Finish.
#include <cstdint>
#include <string>
#include <vector>

#include "exchange/import_exchange.h"
#include "exchange/import_helper.h"
#include "model/data_type_info.h"
#include "model/node_store.h"
#include "verdal.h"

namespace verdal::exchange {

// The flags of an import that the builder reads.
constexpr int32_t kImportRaw = 0x100;            // values as they come, no conversion
constexpr int32_t kImportAlways = 0x200;         // always added by the engine
constexpr int32_t kImportConfigureOnly = 0x400;  // the bridge only configures

class ImportBuilder {
 public:
  ImportBuilder(model::NodeStore& store, const ImportHeader& header, int32_t flags,
                VerdalProgressFn progress);

  // Whether two columns that would be fields share a name, regardless of case: fields are found
  // by name, so such a source cannot be imported.
  static bool NamesRepeat(const ImportHeader& header);

  // Reads the column descriptions into fields or field positions. In modes 1 and 2 a column that
  // is no field (nor the free column) ends the import: false, and nothing has been changed.
  bool PrepareColumns();
  // Mode 2: the categories there are, entered level by level, so that paths find them.
  void EnterExistingCategories();
  // One row of the file, the index counted from 0.
  void AddRow(std::vector<std::string>& cells, int32_t rowKey, int32_t rowIndex);
  // Mode 3: the identity counter; then the new places join the views.
  void Finish();

  // The identity field's column in mode 3, -1 if none.
  int32_t IdentityColumn() const { return identityColumn_; }

 private:
  void ConvertCell(size_t column, std::string& cell);
  void SetFieldValues(model::TDBDataRecord& record);
  void UpdateExisting(model::TDBCategoryData& place, std::vector<std::string>& cells);
  void AddUnderPath(std::vector<std::string>& cells, int32_t rowKey);
  int32_t MakeCategory(const std::string& name, int32_t parentId, int32_t rowKey);
  void MakeRecord(int32_t parentId, int32_t rowKey);
  model::TDBDataRecord* NewDataRecord(int32_t rowKey);

  model::NodeStore& store_;
  const ImportHeader& header_;
  int32_t flags_;
  VerdalProgressFn progress_;
  std::vector<model::TDataTypeInfo> columnTypes_;  // what each column's values convert by
  std::vector<int32_t> fieldPositions_;            // per column: the field position, or -1
  int32_t nodeIdColumn_ = -1;
  int32_t identityColumn_ = -1;
  long double largestIdentity_ = 0;
  bool anyIdentity_ = false;
  TImportHelper helper_;
  std::vector<model::TDBCategoryData*> added_;
  std::vector<std::string> pathValues_;
  std::vector<std::string> recordValues_;  // by field position, for the record being made
};

}  // namespace verdal::exchange
