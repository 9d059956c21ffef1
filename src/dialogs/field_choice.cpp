#include "dialogs/field_choice.h"

namespace verdal::dialogs {

std::vector<std::string> OfferedFields(const model::NodeStore& store, bool alsoSort) {
  std::vector<std::string> names;
  for (const auto& field : store.fields) {
    const model::TDataTypeInfo& t = field->type;
    if (t.hiddenInLists == 0 && t.hiddenField == 0 && (!alsoSort || t.hiddenInSort == 0))
      names.push_back(field->name);
  }
  return names;
}

const char* const kFieldChoiceButtons[6] = {"-->", "Alle", "<--", "Leeren", "Nach oben", "Nach unten"};

}  // namespace verdal::dialogs
