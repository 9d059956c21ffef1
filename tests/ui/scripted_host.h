#pragma once
// A user interface for tests: prompts answer from a script (nothing left means cancel), message
// boxes are recorded and answered with their default, and sheets run a test's function.
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "ui/host.h"

class ScriptedHost : public verdal::ui::HeadlessHost {
 public:
  ScriptedHost() { verdal::ui::SetHost(this); }
  ~ScriptedHost() override { verdal::ui::SetHost(nullptr); }

  struct Prompt {
    std::string title, prompt;
    int32_t limit;
  };
  std::deque<std::optional<std::string>> answers;
  std::vector<Prompt> prompts;
  std::vector<std::string> messages;
  std::function<bool(verdal::ui::Sheet&)> sheet;  // returns what RunSheet returns

  std::optional<std::string> PromptPassword(VerdalWindow, const std::string& title,
                                            const std::string& prompt, int32_t limit) override {
    prompts.push_back({title, prompt, limit});
    if (answers.empty()) return std::nullopt;
    std::optional<std::string> a = answers.front();
    answers.pop_front();
    return a;
  }
  verdal::ui::Answer MessageBox(VerdalWindow, const std::string&, const std::string& text,
                                verdal::ui::Buttons, verdal::ui::Icon,
                                verdal::ui::Answer defaultAnswer) override {
    messages.push_back(text);
    return defaultAnswer;
  }
  bool RunSheet(VerdalWindow parent, verdal::ui::Sheet& s) override {
    return sheet ? sheet(s) : HeadlessHost::RunSheet(parent, s);
  }
};
