// Hands the plug-in a client device identifier through onActiveDeviceChanged, from a thread with
// the stack the client's secondary threads get, and waits for it at most a limit, so that a
// plug-in that never returns cannot hang the validator.
#pragma once

#include <chrono>
#include <string>

#include "hostharness/HarnessStatus.h"

namespace colloqvalidate {

struct DeviceChangeTiming {
    bool started = false;   // false when no thread could be started for it (nothing was called)
    bool returned = false;  // false: it is still running and the library must be left alone
    // How the harness fired it, once returned (not registered, no callback in the slot, ...).
    hostharness::HarnessStatus status = hostharness::HarnessStatus::Ok;
    // Inside the callback when it returned, else how long it was waited for.
    std::chrono::microseconds elapsed{0};
};

DeviceChangeTiming deviceChangeWithin(const std::string& identifier, std::chrono::milliseconds limit);

}  // namespace colloqvalidate
