#pragma once
// A user interface for tests, written against verdal.h alone: its sheets are run by the test's
// script, file pickers answer `pickPath`, message boxes ("title|text|buttons|icon"), the
// clipboard and opened documents are kept, and
// `stopAfter` answers the stop question with yes from its n-th asking on (0: never).
// MakeOption builds a named option of a kind on its sheet, as a user would.
#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "support/sheet_controls.h"
#include "verdal.h"

struct ScriptedUi {
  std::function<void(const VerdalSheet*)> script;
  std::string pickPath;
  std::string clipboard;
  std::vector<std::string> opened;
  std::vector<std::string> boxes;
  int32_t stopAfter = 0;
  int32_t stopAsked = 0;
  std::function<int32_t(const VerdalPrintPreview*)> preview;

  ScriptedUi() {
    VerdalUserInterface& ui = record;
    ui.size = sizeof ui;
    ui.user = reinterpret_cast<intptr_t>(this);
    ui.runSheet = [](intptr_t user, VerdalWindow, const VerdalSheet* sheet) { Of(user).script(sheet); };
    ui.pickFile = [](intptr_t user, VerdalWindow, const char*, const char*, int32_t, char* path) {
      std::strcpy(path, Of(user).pickPath.c_str());
      return int32_t{1};
    };
    ui.messageBox = [](intptr_t user, VerdalWindow, const char* title, const char* text, int32_t buttons,
                       int32_t icon, int32_t answer) {
      Of(user).boxes.push_back(std::string(title) + "|" + text + "|" + std::to_string(buttons) + "|" +
                               std::to_string(icon));
      return answer;
    };
    ui.setClipboardText = [](intptr_t user, const char* text) { Of(user).clipboard = text; };
    ui.openDocument = [](intptr_t user, const char* path) { Of(user).opened.push_back(path); };
    ui.stopRequested = [](intptr_t user) {
      ScriptedUi& self = Of(user);
      return int32_t{self.stopAfter > 0 && ++self.stopAsked >= self.stopAfter};
    };
    VERDAL_SetUserInterface(&ui);
  }
  ~ScriptedUi() { VERDAL_SetUserInterface(nullptr); }
  // From now on print previews are shown to `show`, which answers with a command.
  void ShowPreviews(std::function<int32_t(const VerdalPrintPreview*)> show) {
    preview = std::move(show);
    record.showPrintPreview = [](intptr_t user, VerdalWindow, const VerdalPrintPreview* p) { return Of(user).preview(p); };
    VERDAL_SetUserInterface(&record);
  }
  VerdalUserInterface record{};
  static ScriptedUi& Of(intptr_t user) { return *reinterpret_cast<ScriptedUi*>(user); }
};

// The page of the sheet that holds a control of this label; -1 if none.
inline int32_t PageWith(const VerdalSheet* s, const char* label) {
  for (int32_t i = 0; i < s->controlCount; ++i) {
    VerdalControl c;
    s->control(s, i, &c);
    if (std::strcmp(c.label, label) == 0) return c.page;
  }
  return -1;
}

// A new option `name` of `kind` under owner 0 with `fields` made active, then `more` on the kind's
// own page before OK. ui must be the installed ScriptedUi.
inline void MakeOption(ScriptedUi& ui, VerdalHandle db, int32_t kind, const char* name,
                       const std::vector<std::string>& fields,
                       const std::function<void(const VerdalSheet*)>& more = {}) {
  ui.script = [&](const VerdalSheet* s) {
    Set(s, 0, "Name:", name);
    Set(s, 0, "&Neu", "1");
    const int32_t page = PageWith(s, "Verf\xFCgbare Felder:");
    for (const std::string& field : fields) {
      s->setText(s, ControlId(s, page, "Verf\xFCgbare Felder:"), field.c_str());
      Set(s, page, "-->", "1");
    }
    if (more) more(s);
    EXPECT_EQ(s->pressOk(s), 1);
  };
  ASSERT_EQ(VERDAL_ConfigOptions(db, nullptr, kind, 0, "Optionen", ""), 1);
  ui.script = nullptr;
}
