// The exported function that gives the engine a user interface.
#include "platform/trace.h"
#include "ui/callback_host.h"
#include "verdal.h"

extern "C" {

VERDAL_API void VERDAL_SetUserInterface(const VerdalUserInterface* ui) {
  try {
    verdal::ui::InstallCallbacks(ui);
  } catch (...) {
    // Out of memory for the host object: stay headless rather than half-installed.
    verdal::ui::SetHost(nullptr);
    verdal::platform::Trace("Error in VERDAL_SetUserInterface");
  }
}

}  // extern "C"
