// Phase 3: the plug-in initialized once while client threads fire random callbacks, headsets
// press random buttons and are plugged in and out, and the hub simulator comes and goes. After
// the storm every event the client produced must have been consumed by the worker (waited for
// by count, with a time-out), uninitialize must return within the limit and the threads must
// be back to the baseline.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

#include "PhaseReport.h"
#include "PluginCycle.h"

namespace colloqvalidate {

struct StormPhaseSettings {
    std::string pluginPath;
    std::string hubSimulatorPath;
    std::chrono::seconds duration{20};
    uint32_t seed = 1;
    bool hub = true;
    int clientThreads = 8;
    CycleLimits limits;
    std::chrono::seconds drainTimeout{60};
};

PhaseReport runStormPhase(const StormPhaseSettings& settings);

}  // namespace colloqvalidate
