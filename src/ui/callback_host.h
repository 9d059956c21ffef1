#pragma once
// A host made of the plain C callbacks of VerdalUserInterface. Members left null fall back to
// what the headless host does.
#include "ui/host.h"

namespace verdal::ui {

class CallbackHost : public HeadlessHost {
 public:
  // Takes the members the host's record has (its size; 0 for the first five callbacks).
  explicit CallbackHost(const VerdalUserInterface& callbacks);

  Answer MessageBox(VerdalWindow parent, const std::string& title, const std::string& text,
                    Buttons buttons, Icon icon, Answer defaultAnswer) override;
  std::optional<std::string> PromptPassword(VerdalWindow parent, const std::string& title,
                                            const std::string& prompt, int32_t limit) override;
  std::optional<std::string> PickFile(VerdalWindow parent, const FileRequest& request) override;
  std::optional<std::string> PickFolder(VerdalWindow parent, const std::string& title,
                                        const std::string& initialPath) override;
  bool RunSheet(VerdalWindow parent, Sheet& sheet) override;
  void SetClipboardText(const std::string& text) override;
  void OpenDocument(const std::string& path) override;
  bool StopRequested() override;
  std::optional<PreviewCommand> ShowPrintPreview(VerdalWindow parent, PrintPreview& preview) override;

 private:
  VerdalUserInterface c_{};
};

// Installs a copy of the callbacks as the current host; null goes back to headless.
void InstallCallbacks(const VerdalUserInterface* callbacks);

}  // namespace verdal::ui
