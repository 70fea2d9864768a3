// Phase 4: hostile device names. With two headsets plugged in and headset 1 the client's device,
// every hostile name is handed through onActiveDeviceChanged from a thread with the client's
// 512 KiB secondary stack. Each call must return within the limit, and after each the next valid
// name must still make the runtime switch headsets. Then uninitialize and the thread check.
#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "PhaseReport.h"
#include "PluginCycle.h"
#include "hostharness/HostileDeviceNames.h"

namespace colloqvalidate {

struct NamePhaseSettings {
    std::string pluginPath;
    // The names handed, in order (the validator hands hostharness::hostileDeviceNames()).
    std::vector<hostharness::HostileDeviceName> names;
    std::chrono::milliseconds callbackLimit{2000};  // longest allowed onActiveDeviceChanged
    // How long the runtime may take to show the headset a valid name chose.
    std::chrono::milliseconds selectionTimeout{10000};
    CycleLimits limits;
};

PhaseReport runNamePhase(const NamePhaseSettings& settings);

}  // namespace colloqvalidate
