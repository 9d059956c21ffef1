#include "ui/callback_host.h"

#include <cstddef>
#include <cstring>

#include "io/text_buffer.h"

namespace verdal::ui {

namespace {

constexpr size_t kPathSize = 260;

// Callbacks of a host at work. A host may install another user interface from inside one; the
// engine code that called out still holds the host it called, so a replaced host is deleted only
// once no callback is at work, which is when no engine call can be holding it either.
int g_callsOut = 0;
struct CallOut {
  CallOut() { ++g_callsOut; }
  ~CallOut() { --g_callsOut; }
  CallOut(const CallOut&) = delete;
  CallOut& operator=(const CallOut&) = delete;
};

// What a C host sees of a sheet: the C structure first, so the callbacks can find the rest.
struct SheetBridge {
  VerdalSheet c{};
  Sheet* sheet = nullptr;
  std::string title;
  std::vector<std::string> pages;
  std::vector<Control> controls;
  std::string text;  // the last text handed out
  bool accepted = false;
  bool ended = false;

  static SheetBridge& Of(const VerdalSheet* s) { return *static_cast<SheetBridge*>(s->engine); }

  // Pages and controls as the sheet has them now; a call may have changed them.
  void Refresh() {
    std::vector<std::string> nowPages = sheet->Pages();
    std::vector<Control> nowControls = sheet->Controls();
    pages.swap(nowPages);
    controls.swap(nowControls);
    c.pageCount = static_cast<int32_t>(pages.size());
    c.controlCount = static_cast<int32_t>(controls.size());
  }

  // After a call of the host's, where nothing may throw back into C: a sheet that cannot say
  // what it shows keeps what it showed before.
  void RefreshQuietly() {
    try {
      Refresh();
    } catch (...) {
    }
  }

  const Control* Find(int32_t id) const {
    for (const Control& control : controls)
      if (control.id == id) return &control;
    return nullptr;
  }
};

const char* BridgePageTitle(const VerdalSheet* s, int32_t page) {
  SheetBridge& b = SheetBridge::Of(s);
  if (page < 0 || page >= static_cast<int32_t>(b.pages.size())) return "";
  return b.pages[static_cast<size_t>(page)].c_str();
}

void BridgeControl(const VerdalSheet* s, int32_t index, VerdalControl* out) {
  SheetBridge& b = SheetBridge::Of(s);
  if (out == nullptr) return;
  if (index < 0 || index >= static_cast<int32_t>(b.controls.size())) {
    *out = VerdalControl{-1, 0, VERDAL_CONTROL_TEXT, 0, ""};
    return;
  }
  const Control& c = b.controls[static_cast<size_t>(index)];
  *out = VerdalControl{c.id, c.page, static_cast<int32_t>(c.kind), c.limit, c.label.c_str()};
}

const char* BridgeGetText(const VerdalSheet* s, int32_t id) {
  SheetBridge& b = SheetBridge::Of(s);
  try {
    b.text = b.sheet->Text(id);
  } catch (...) {
    b.text.clear();
  }
  return b.text.c_str();
}

void BridgeSetText(const VerdalSheet* s, int32_t id, const char* text) {
  SheetBridge& b = SheetBridge::Of(s);
  try {
    b.sheet->SetText(id, text != nullptr ? text : "");
  } catch (...) {
  }
  b.RefreshQuietly();
}

int32_t BridgeItemCount(const VerdalSheet* s, int32_t id) {
  const Control* c = SheetBridge::Of(s).Find(id);
  return c != nullptr ? static_cast<int32_t>(c->items.size()) : 0;
}

const char* BridgeItem(const VerdalSheet* s, int32_t id, int32_t index) {
  const Control* c = SheetBridge::Of(s).Find(id);
  if (c == nullptr || index < 0 || index >= static_cast<int32_t>(c->items.size())) return "";
  return c->items[static_cast<size_t>(index)].c_str();
}

int32_t BridgeEnabled(const VerdalSheet* s, int32_t id) {
  const Control* c = SheetBridge::Of(s).Find(id);
  return c != nullptr && c->enabled ? 1 : 0;
}

int32_t BridgePressOk(const VerdalSheet* s) {
  SheetBridge& b = SheetBridge::Of(s);
  if (b.ended) return b.accepted ? 1 : 0;
  try {
    b.accepted = b.sheet->PressOk();
  } catch (...) {
    b.accepted = false;
  }
  b.ended = b.accepted;
  if (!b.ended) b.RefreshQuietly();
  return b.accepted ? 1 : 0;
}

void BridgePressCancel(const VerdalSheet* s) {
  SheetBridge& b = SheetBridge::Of(s);
  if (b.ended) return;
  b.ended = true;
  try {
    b.sheet->PressCancel();
  } catch (...) {
  }
}

}  // namespace

Answer CallbackHost::MessageBox(VerdalWindow parent, const std::string& title,
                                const std::string& text, Buttons buttons, Icon icon,
                                Answer defaultAnswer) {
  CallOut out;
  if (c_.messageBox == nullptr)
    return HeadlessHost::MessageBox(parent, title, text, buttons, icon, defaultAnswer);
  return static_cast<Answer>(c_.messageBox(c_.user, parent, title.c_str(), text.c_str(),
                                           static_cast<int32_t>(buttons),
                                           static_cast<int32_t>(icon),
                                           static_cast<int32_t>(defaultAnswer)));
}

std::optional<std::string> CallbackHost::PromptPassword(VerdalWindow parent,
                                                        const std::string& title,
                                                        const std::string& prompt, int32_t limit) {
  CallOut out;
  if (c_.promptPassword == nullptr || limit < 0) return std::nullopt;
  std::vector<char> text(static_cast<size_t>(limit) + 1, '\0');
  if (c_.promptPassword(c_.user, parent, title.c_str(), prompt.c_str(), limit, text.data()) == 0)
    return std::nullopt;
  text.back() = '\0';  // a host that filled the whole buffer still gives at most `limit`
  return std::string(text.data());
}

std::optional<std::string> CallbackHost::PickFile(VerdalWindow parent, const FileRequest& r) {
  CallOut out;
  if (c_.pickFile == nullptr) return std::nullopt;
  char path[kPathSize];
  CopyCut(path, kPathSize, r.initialPath);
  if (c_.pickFile(c_.user, parent, r.title.c_str(), r.filter.c_str(), r.save ? 1 : 0, path) == 0)
    return std::nullopt;
  path[kPathSize - 1] = '\0';
  return std::string(path);
}

std::optional<std::string> CallbackHost::PickFolder(VerdalWindow parent, const std::string& title,
                                                    const std::string& initialPath) {
  CallOut out;
  if (c_.pickFolder == nullptr) return std::nullopt;
  char path[kPathSize];
  CopyCut(path, kPathSize, initialPath);
  if (c_.pickFolder(c_.user, parent, title.c_str(), path) == 0) return std::nullopt;
  path[kPathSize - 1] = '\0';
  return std::string(path);
}

bool CallbackHost::RunSheet(VerdalWindow parent, Sheet& sheet) {
  CallOut out;
  if (c_.runSheet == nullptr) return HeadlessHost::RunSheet(parent, sheet);
  SheetBridge b;
  b.sheet = &sheet;
  b.title = sheet.Title();
  b.Refresh();
  b.c.title = b.title.c_str();
  b.c.pageTitle = BridgePageTitle;
  b.c.control = BridgeControl;
  b.c.getText = BridgeGetText;
  b.c.setText = BridgeSetText;
  b.c.pressOk = BridgePressOk;
  b.c.pressCancel = BridgePressCancel;
  b.c.engine = &b;
  b.c.itemCount = BridgeItemCount;
  b.c.item = BridgeItem;
  b.c.enabled = BridgeEnabled;
  c_.runSheet(c_.user, parent, &b.c);
  if (!b.accepted) BridgePressCancel(&b.c);
  return b.accepted;
}

CallbackHost::CallbackHost(const VerdalUserInterface& callbacks) {
  constexpr size_t kFirstEdition = offsetof(VerdalUserInterface, runSheet) + sizeof(c_.runSheet);
  size_t known = callbacks.size <= 0 ? kFirstEdition : static_cast<size_t>(callbacks.size);
  if (known > sizeof c_) known = sizeof c_;
  std::memcpy(&c_, &callbacks, known);
}

void CallbackHost::SetClipboardText(const std::string& text) {
  CallOut out;
  if (c_.setClipboardText == nullptr) return HeadlessHost::SetClipboardText(text);
  c_.setClipboardText(c_.user, text.c_str());
}

void CallbackHost::OpenDocument(const std::string& path) {
  CallOut out;
  if (c_.openDocument == nullptr) return HeadlessHost::OpenDocument(path);
  c_.openDocument(c_.user, path.c_str());
}

bool CallbackHost::StopRequested() {
  CallOut out;
  return c_.stopRequested != nullptr && c_.stopRequested(c_.user) != 0;
}

namespace {

// What a C host sees of the preview: the C structure first, so its function finds the rest.
struct PreviewBridge {
  VerdalPrintPreview c{};
  PrintPreview* preview = nullptr;

  static int32_t RenderPage(const VerdalPrintPreview* p, int32_t page, int32_t zoomIndex, const char* pngPath) {
    if (p == nullptr || pngPath == nullptr) return 0;
    try {
      return static_cast<PreviewBridge*>(p->engine)->preview->RenderPage(page, zoomIndex, pngPath) ? 1 : 0;
    } catch (...) {
      return 0;
    }
  }
};

}  // namespace

std::optional<PreviewCommand> CallbackHost::ShowPrintPreview(VerdalWindow parent, PrintPreview& preview) {
  CallOut out;
  if (c_.showPrintPreview == nullptr) return std::nullopt;
  PreviewBridge bridge;
  bridge.preview = &preview;
  bridge.c.pageCount = preview.PageCount();
  bridge.c.statusText = preview.StatusText().c_str();
  bridge.c.engine = &bridge;
  bridge.c.renderPage = &PreviewBridge::RenderPage;
  switch (c_.showPrintPreview(c_.user, parent, &bridge.c)) {
    case VERDAL_PREVIEW_CONFIGURE: return PreviewCommand::kConfigure;
    case VERDAL_PREVIEW_PRINT: return PreviewCommand::kPrint;
    case VERDAL_PREVIEW_PRINTER_SETUP: return PreviewCommand::kPrinterSetup;
    default: return PreviewCommand::kClose;  // an answer we do not know closes, as a window would
  }
}

void InstallCallbacks(const VerdalUserInterface* callbacks) {
  // Kept past static destruction: the unload hook may still reach the current host.
  static CallbackHost* installed = nullptr;
  static std::vector<CallbackHost*> replaced;
  CallbackHost* next = callbacks != nullptr ? new CallbackHost(*callbacks) : nullptr;
  SetHost(next);
  if (installed != nullptr) replaced.push_back(installed);
  installed = next;
  if (g_callsOut > 0) return;
  for (CallbackHost* host : replaced) delete host;
  replaced.clear();
}

}  // namespace verdal::ui
