#include "engine/actions.h"

#include <cstdio>

#include "engine/db_manager.h"
#include "engine/export.h"
#include "engine/print_table.h"
#include "engine/last_error.h"
#include "engine/mail_action.h"
#include "engine/values.h"
#include "model/fields.h"
#include "options/option_containers.h"
#include "platform/temporary_file.h"
#include "ui/host.h"

namespace verdal::engine {

using options::OptionKind;

namespace {

// A copy of the visible option of that name (case aside), so that a callback during the run
// cannot pull it away; null when there is none.
template <class Record>
const Record* FindOption(options::TBaseConfigClassContainer<Record>& options, const char* name,
                         Record& copy) {
  const Record* found = options.At(options.IndexOf(name != nullptr ? name : ""));
  if (found == nullptr) return nullptr;
  copy = *found;
  return &copy;
}

// The text of a separator code; a line break comes as CR LF.
const char* SeparatorText(int code) {
  static const char* const kTexts[options::kSeparatorCount] = {"\r\n", "\t", " ", ";", ",", ""};
  return code >= 0 && code < options::kSeparatorCount ? kTexts[code] : "";
}

int32_t CopyToClipboard(TDBManager& db, const options::TClipBoardData& option, int32_t count,
                        const int32_t* cursors) {
  const int fieldCode = option.fieldSeparator < options::kSeparatorCount ? option.fieldSeparator : 0;
  const std::string fieldSeparator = SeparatorText(fieldCode);
  const std::string recordSeparator = SeparatorText(option.recordSeparator);
  std::string text;
  text.reserve(64000);
  ui::Host& host = ui::CurrentHost();
  for (int32_t i = 0; i < count; ++i) {
    if (host.StopRequested()) break;
    for (size_t n = 0; n < option.fields.size(); ++n) {
      const int32_t field = model::FieldIndexByName(db.store, option.fields[n].c_str());
      if (field < 0) continue;
      text += ActionText(db, field, cursors[i]);
      if (n + 1 < option.fields.size()) text += fieldSeparator;
    }
    text += recordSeparator;
  }
  host.SetClipboardText(text);
  return 1;
}

int32_t ReplaceValues(TDBManager& db, const options::TReplaceData& option, int32_t count,
                      const int32_t* cursors) {
  ui::Host& host = ui::CurrentHost();
  char errorText[1024];
  for (int32_t i = 0; i < count; ++i) {
    if (host.StopRequested()) break;
    for (const std::string& name : option.fields) {
      const int32_t field = model::FieldIndexByName(db.store, name.c_str());
      // A field that refuses (read-only, a linked table that says no, a value it does not take)
      // is left as it is; the run goes on.
      if (field >= 0) SetData(db, field, option.text.c_str(), cursors[i], true, errorText, nullptr);
    }
  }
  SetLastError(VERDAL_ERR_NONE);
  return 1;
}

int32_t ExportWithDefinition(TDBManager& db, const options::TFileExpData& option, int32_t count,
                             const int32_t* cursors) {
  platform::ScopedTemporaryFile definition("tmp");
  if (!definition.path.empty()) {
    if (FILE* f = std::fopen(definition.path.c_str(), "wb")) {
      std::fwrite(option.definition.data(), 1, option.definition.size(), f);
      std::fclose(f);
    }
  }
  ExportRequest request;
  request.target = definition.path.c_str();
  request.flags = 0x4800;
  request.count = count;
  request.cursors = cursors;
  return Export(db, request);
}


}  // namespace

std::string ActionText(TDBManager& db, int32_t fieldIndex, int32_t cursor) {
  std::string shown;
  model::TDBFieldInfo* field = fieldIndex >= 0 && static_cast<size_t>(fieldIndex) < db.store.fields.size()
                                   ? db.store.fields[static_cast<size_t>(fieldIndex)].get()
                                   : nullptr;
  if (field == nullptr) return shown;
  const auto value = model::FieldValue(db.store, cursor, fieldIndex);
  if (value) field->type.CreateDisplayString(*value, shown, true, true, &db.links);
  return shown;
}

int32_t ExecAction(TDBManager& db, int32_t kind, const char* name, int32_t count,
                   const int32_t* cursors) {
  if (cursors == nullptr || count < 0) count = 0;
  options::OptionContainers& all = db.options;
  switch (static_cast<OptionKind>(kind)) {
    case OptionKind::kPrint:
      return PrintTable(db, name != nullptr ? name : "", nullptr, nullptr, count, count > 0 ? cursors : nullptr, -1);
    case OptionKind::kClipboard: {
      options::TClipBoardData copy;
      if (FindOption(all.clipboard, name, copy) == nullptr) break;
      return CopyToClipboard(db, copy, count, cursors);
    }
    case OptionKind::kExport: {
      options::TFileExpData copy;
      if (FindOption(all.exports, name, copy) == nullptr) break;
      return ExportWithDefinition(db, copy, count, cursors);
    }
    case OptionKind::kEmail: {
      options::TEmailData copy;
      if (FindOption(all.emails, name, copy) == nullptr) break;
      return RunMailAction(db, copy, count, cursors);
    }
    case OptionKind::kReplace: {
      options::TReplaceData copy;
      if (FindOption(all.replacements, name, copy) == nullptr) break;
      return ReplaceValues(db, copy, count, cursors);
    }
    default:
      return 1;
  }
  SetLastError(VERDAL_ERR_INPUT);
  return 0;
}

}  // namespace verdal::engine
