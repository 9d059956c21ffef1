#include "ui/host.h"

namespace verdal::ui {

namespace {

HeadlessHost& Headless() {
  static HeadlessHost host;
  return host;
}

Host* g_host = nullptr;
std::string g_applicationName = "Verdal Version 1.0";

}  // namespace

Host& CurrentHost() { return g_host != nullptr ? *g_host : Headless(); }

void SetHost(Host* host) { g_host = host; }

const std::string& ApplicationName() { return g_applicationName; }

void SetApplicationName(const char* name) { g_applicationName = name != nullptr ? name : ""; }

int32_t ItemIndex(const std::vector<std::string>& items, const std::string& text) {
  for (size_t i = 0; i < items.size(); ++i)
    if (items[i] == text) return static_cast<int32_t>(i);
  return -1;
}

void StopMessage(VerdalWindow parent, const std::string& text) {
  CurrentHost().MessageBox(parent, ApplicationName(), text, Buttons::kOk,
                           Icon::kStop, Answer::kOk);
}

}  // namespace verdal::ui
