// A host of plain C callbacks: prompts and pickers pass through fixed buffers, and what a host
// leaves out behaves as without a user interface.
#include "ui/callback_host.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {

using verdal::ui::Answer;

int32_t FillPrompt(intptr_t user, VerdalWindow, const char*, const char* prompt, int32_t limit,
                   char* text) {
  // A careless host fills the whole buffer, terminator included.
  std::memset(text, 'x', static_cast<size_t>(limit) + 1);
  return user == 1 && std::strcmp(prompt, "Passwort?") == 0 ? 1 : 0;
}

int32_t PickIntoPath(intptr_t, VerdalWindow, const char*, char* path) {
  std::strcat(path, "/unter");
  return 1;
}

TEST(CallbackHost, BuffersAndMissingMembers) {
  VerdalUserInterface c{};
  c.user = 1;
  c.promptPassword = FillPrompt;
  c.pickFolder = PickIntoPath;
  verdal::ui::InstallCallbacks(&c);
  verdal::ui::Host& host = verdal::ui::CurrentHost();
  EXPECT_EQ(host.PromptPassword(nullptr, "T", "Passwort?", 31), std::string(31, 'x'));
  EXPECT_EQ(host.PromptPassword(nullptr, "T", "anders", 31), std::nullopt);
  EXPECT_EQ(host.PickFolder(nullptr, "T", "/daten"), "/daten/unter");
  // Not given: the message box answers its default, the file picker is cancelled.
  EXPECT_EQ(host.MessageBox(nullptr, "T", "Text", verdal::ui::Buttons::kYesNo,
                            verdal::ui::Icon::kQuestion, Answer::kNo),
            Answer::kNo);
  EXPECT_EQ(host.PickFile(nullptr, {}), std::nullopt);
  verdal::ui::InstallCallbacks(nullptr);
  EXPECT_EQ(verdal::ui::CurrentHost().PromptPassword(nullptr, "T", "Passwort?", 31), std::nullopt);
}

// A record whose size stops before the later members: they are not read, whatever lies there,
// and the host behaves as a headless one for them.
TEST(CallbackHost, MembersPastTheRecordsSizeAreNotRead) {
  static std::string copied;
  VerdalUserInterface c{};
  c.setClipboardText = [](intptr_t, const char* text) { copied = text; };
  c.stopRequested = [](intptr_t) { return int32_t{1}; };
  for (int32_t size : {0, static_cast<int32_t>(sizeof c)}) {
    c.size = size;
    copied.clear();
    verdal::ui::CallbackHost host(c);
    host.SetClipboardText("Kopie");
    EXPECT_EQ(copied, size == 0 ? "" : "Kopie");
    EXPECT_EQ(host.ClipboardText(), size == 0 ? "Kopie" : "");
    EXPECT_EQ(host.StopRequested(), size != 0);
  }
}

}  // namespace
