#pragma once
// The surface the engine shows things on: message boxes, the password prompt, file and folder
// pickers, and dialogs. The dialogs themselves are logic classes (ui::Sheet); a host only shows
// their controls and presses their buttons. The default host is headless: it answers every
// message box with its default button and cancels prompts, pickers and sheets, so nothing blocks.
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "verdal.h"

namespace verdal::ui {

// Button sets and answers of a message box; the numbers are those the interface uses.
enum class Buttons : int32_t {
  kOk = VERDAL_MB_OK,
  kOkCancel = VERDAL_MB_OKCANCEL,
  kYesNo = VERDAL_MB_YESNO,
  kYesNoCancel = VERDAL_MB_YESNOCANCEL,
  kRetryCancel = VERDAL_MB_RETRYCANCEL,
};
enum class Icon : int32_t {
  kNone = VERDAL_ICON_NONE,
  kStop = VERDAL_ICON_STOP,
  kQuestion = VERDAL_ICON_QUESTION,
  kWarning = VERDAL_ICON_WARNING,
  kInformation = VERDAL_ICON_INFORMATION,
};
enum class Answer : int32_t {
  kOk = VERDAL_ID_OK,
  kCancel = VERDAL_ID_CANCEL,
  kRetry = VERDAL_ID_RETRY,
  kYes = VERDAL_ID_YES,
  kNo = VERDAL_ID_NO,
};

enum class ControlKind : int32_t {
  kText = VERDAL_CONTROL_TEXT,          // a label or note, read-only
  kEdit = VERDAL_CONTROL_EDIT,
  kMaskedEdit = VERDAL_CONTROL_MASKED,  // an edit whose text is shown as dots
  kCheckBox = VERDAL_CONTROL_CHECK,     // its text is "1" when checked, "0" otherwise
  // A list and a combo box: their text is the selected item, "" for none. Setting a text selects
  // the first item equal to it; "" clears a list's selection; other texts change nothing.
  kList = VERDAL_CONTROL_LIST,
  kChoice = VERDAL_CONTROL_CHOICE,
  kButton = VERDAL_CONTROL_BUTTON,  // setting any text presses it
};

struct Control {
  Control() = default;
  Control(int32_t id, int32_t page, ControlKind kind, std::string label, int32_t limit = 0,
          std::vector<std::string> items = {}, bool enabled = true)
      : id(id), page(page), kind(kind), label(std::move(label)), limit(limit), items(std::move(items)),
        enabled(enabled) {}

  int32_t id = 0;
  int32_t page = 0;
  ControlKind kind = ControlKind::kText;
  std::string label;
  int32_t limit = 0;  // longest text an edit takes; 0 for no limit
  std::vector<std::string> items;  // of a list or combo box
  bool enabled = true;             // false where the control cannot act now
};

// The item of a list or combo box that a text selects: the first one equal to it, -1 for none.
int32_t ItemIndex(const std::vector<std::string>& items, const std::string& text);

// A dialog or property sheet as logic: pages of controls whose texts the host reads and sets,
// and the two buttons. Pressing OK may refuse (after telling the user why through the host);
// the sheet then stays open. Pages and controls may change after SetText and PressOk.
class Sheet {
 public:
  virtual ~Sheet() = default;
  virtual std::string Title() const = 0;
  virtual std::vector<std::string> Pages() const = 0;
  virtual std::vector<Control> Controls() const = 0;
  virtual std::string Text(int32_t control) const = 0;
  virtual void SetText(int32_t control, const std::string& text) = 0;
  // True if the sheet takes the input over and closes.
  virtual bool PressOk() = 0;
  virtual void PressCancel() = 0;
};

struct FileRequest {
  std::string title;
  std::string filter;  // "Name|*.ext|Name|*.ext|"
  std::string initialPath;
  bool save = false;
};

// The print preview as a host sees it: pages it can draw to PNG, and the status line.
class PrintPreview {
 public:
  virtual ~PrintPreview() = default;
  virtual int32_t PageCount() const = 0;
  virtual const std::string& StatusText() = 0;
  // Page from 1, zoom step 0 to 11; false when nothing was written.
  virtual bool RenderPage(int32_t page, int32_t zoomIndex, const std::string& pngPath) = 0;
};

// The commands of the preview, as the interface numbers them.
enum class PreviewCommand : int32_t {
  kClose = VERDAL_PREVIEW_CLOSE,
  kConfigure = VERDAL_PREVIEW_CONFIGURE,
  kPrint = VERDAL_PREVIEW_PRINT,
  kPrinterSetup = VERDAL_PREVIEW_PRINTER_SETUP,
};

class Host {
 public:
  virtual ~Host() = default;
  virtual Answer MessageBox(VerdalWindow parent, const std::string& title, const std::string& text,
                            Buttons buttons, Icon icon, Answer defaultAnswer) = 0;
  // The entered text, at most `limit` characters, or nothing when cancelled.
  virtual std::optional<std::string> PromptPassword(VerdalWindow parent, const std::string& title,
                                                    const std::string& prompt, int32_t limit) = 0;
  virtual std::optional<std::string> PickFile(VerdalWindow parent, const FileRequest& request) = 0;
  virtual std::optional<std::string> PickFolder(VerdalWindow parent, const std::string& title,
                                                const std::string& initialPath) = 0;
  // Shows the sheet modally; true if it was closed with OK (PressOk answered true).
  virtual bool RunSheet(VerdalWindow parent, Sheet& sheet) = 0;
  // Puts code page 1252 text on the clipboard.
  virtual void SetClipboardText(const std::string& text) = 0;
  // Opens a file with the desktop's application for it.
  virtual void OpenDocument(const std::string& path) = 0;
  // True when the user asked to stop a long run (Esc or Enter); asked between records.
  virtual bool StopRequested() = 0;
  // Shows the preview until the user picks a command; nothing where the host shows no previews
  // (the preview then prints once and closes).
  virtual std::optional<PreviewCommand> ShowPrintPreview(VerdalWindow, PrintPreview&) { return std::nullopt; }
};

class HeadlessHost : public Host {
 public:
  Answer MessageBox(VerdalWindow, const std::string&, const std::string&, Buttons, Icon,
                    Answer defaultAnswer) override {
    return defaultAnswer;
  }
  std::optional<std::string> PromptPassword(VerdalWindow, const std::string&, const std::string&,
                                            int32_t) override {
    return std::nullopt;
  }
  std::optional<std::string> PickFile(VerdalWindow, const FileRequest&) override {
    return std::nullopt;
  }
  std::optional<std::string> PickFolder(VerdalWindow, const std::string&,
                                        const std::string&) override {
    return std::nullopt;
  }
  bool RunSheet(VerdalWindow, Sheet& sheet) override {
    sheet.PressCancel();
    return false;
  }
  // Without a window system the clipboard is this text, and a document opened is only noted.
  void SetClipboardText(const std::string& text) override { clipboardText_ = text; }
  void OpenDocument(const std::string& path) override { openedDocument_ = path; }
  bool StopRequested() override { return false; }

  const std::string& ClipboardText() const { return clipboardText_; }
  const std::string& OpenedDocument() const { return openedDocument_; }

 private:
  std::string clipboardText_;
  std::string openedDocument_;
};

// The host in force for the process; the headless one until another is set.
Host& CurrentHost();
// Null restores the headless host. The caller keeps ownership and keeps the host alive while set.
void SetHost(Host* host);

// The host's application name, at most 100 characters: the title of every message box and prompt.
const std::string& ApplicationName();
void SetApplicationName(const char* name);

// A stop message with OK, titled with the application name: how dialogs refuse input.
void StopMessage(VerdalWindow parent, const std::string& text);

}  // namespace verdal::ui
