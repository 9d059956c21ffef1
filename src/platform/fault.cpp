#include "platform/fault.h"

namespace verdal::platform {

namespace {
FaultHook g_hook = nullptr;
}

void SetFaultHook(FaultHook hook) { g_hook = hook; }

bool InjectFault(FaultSite site) { return g_hook != nullptr && g_hook(site); }

}  // namespace verdal::platform
