#include "ui/host.h"

#include "engine/settings.h"

namespace verdal::ui {

namespace {

HeadlessHost& Headless() {
  static HeadlessHost host;
  return host;
}

Host* g_host = nullptr;

}  // namespace

Host& CurrentHost() { return g_host != nullptr ? *g_host : Headless(); }

void SetHost(Host* host) { g_host = host; }

void StopMessage(VerdalWindow parent, const std::string& text) {
  CurrentHost().MessageBox(parent, engine::Switches().applicationName, text, Buttons::kOk,
                           Icon::kStop, Answer::kOk);
}

}  // namespace verdal::ui
