#pragma once
// A hook through which tests make file operations fail, or the process die, at a chosen step, to
// prove that a save never leaves the database without a whole file. Without a hook (always, outside
// tests) every operation goes ahead.

namespace verdal::platform {

// kEncipher is asked by the envelope just before it enciphers a payload at save.
enum class FaultSite { kWrite, kSync, kRename, kCopy, kDelete, kEncipher };

// Returns true when the operation at this site is to fail.
using FaultHook = bool (*)(FaultSite site);

void SetFaultHook(FaultHook hook);

// Asked by each operation before it touches the file system.
bool InjectFault(FaultSite site);

}  // namespace verdal::platform
