#pragma once
// A user interface for tests: prompts and file pickers answer from a script (nothing left means
// cancel), message boxes are recorded and answered from theirs or with their default, and sheets
// run a test's function.
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
  std::deque<verdal::ui::Answer> boxAnswers;
  std::deque<std::string> files;
  std::vector<verdal::ui::FileRequest> fileRequests;
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
    if (boxAnswers.empty()) return defaultAnswer;
    const verdal::ui::Answer a = boxAnswers.front();
    boxAnswers.pop_front();
    return a;
  }
  std::optional<std::string> PickFile(VerdalWindow, const verdal::ui::FileRequest& request) override {
    fileRequests.push_back(request);
    if (files.empty()) return std::nullopt;
    std::string path = files.front();
    files.pop_front();
    return path;
  }
  bool RunSheet(VerdalWindow parent, verdal::ui::Sheet& s) override {
    return sheet ? sheet(s) : HeadlessHost::RunSheet(parent, s);
  }
};
