#include "engine/field_params.h"

namespace verdal::engine {

namespace {

std::string Text(const char* s) { return s != nullptr ? s : ""; }

}  // namespace

void FillParams(const model::TDBFieldInfo& field, TDBFieldParams& p) {
  const model::TDataTypeInfo& t = field.type;
  p.dataType = t.dataType;
  p.sqlType = t.sqlType;
  p.extendedType = t.extendedType;
  p.maxChars = t.maxChars;
  p.decimals = t.decimals;
  p.minValue = static_cast<double>(t.minValue);
  p.maxValue = static_cast<double>(t.maxValue);
  p.hasMin = t.hasMin;
  p.hasMax = t.hasMax;
  p.isCounter = t.isCounter;
  p.hostFlag1 = t.hostFlag1;
  p.startValue = static_cast<double>(t.startValue);
  p.counterValue = static_cast<double>(t.counterValue);
  p.hostFlag2 = t.hostFlag2;
  p.allowEmpty = t.allowEmpty;
  p.allowDuplicates = t.allowDuplicates;
  p.readOnly = t.readOnly;
  p.hiddenInLists = t.hiddenInLists;
  p.hiddenInSort = t.hiddenInSort;
  p.hiddenField = t.hiddenField;
  p.lookInOwnFolder = static_cast<uint8_t>(t.flags & 1u);
  p.format = t.format.c_str();
  p.initValue = t.initValue.c_str();
  p.hostText1 = t.hostText1.c_str();
  p.errorText = t.errorText.c_str();
  p.linkDatabase = t.linkDatabase.c_str();
  p.linkField = t.linkField.c_str();
  p.name = field.name.c_str();
  p.displayName = field.displayName.c_str();
  p.hostText2 = t.hostText2.c_str();
}

model::TDBFieldInfo FieldFromParams(const TDBFieldParams& p) {
  model::TDBFieldInfo field;
  model::TDataTypeInfo& t = field.type;
  t.dataType = p.dataType;
  t.sqlType = p.sqlType;
  t.extendedType = p.extendedType;
  t.maxChars = p.maxChars;
  t.decimals = p.decimals;
  t.minValue = p.minValue;
  t.maxValue = p.maxValue;
  t.hasMin = p.hasMin;
  t.hasMax = p.hasMax;
  t.isCounter = p.isCounter;
  t.hostFlag1 = p.hostFlag1;
  t.startValue = p.startValue;
  t.counterValue = p.counterValue;
  t.hostFlag2 = p.hostFlag2;
  t.allowEmpty = p.allowEmpty;
  t.allowDuplicates = p.allowDuplicates;
  t.readOnly = p.readOnly;
  t.hiddenInLists = p.hiddenInLists;
  t.hiddenInSort = p.hiddenInSort;
  t.hiddenField = p.hiddenField;
  t.flags = p.lookInOwnFolder & 1u;
  t.format = Text(p.format);
  t.initValue = Text(p.initValue);
  t.hostText1 = Text(p.hostText1);
  t.errorText = Text(p.errorText);
  t.linkDatabase = Text(p.linkDatabase);
  t.linkField = Text(p.linkField);
  t.hostText2 = Text(p.hostText2);
  field.name = Text(p.name);
  field.displayName = Text(p.displayName);
  return field;
}

}  // namespace verdal::engine
