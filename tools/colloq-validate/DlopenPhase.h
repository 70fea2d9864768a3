// Phase 2: the whole life of a plug-in in the client, again and again: dlopen, initialize,
// uninitialize, dlclose, with the checks of every cycle.
#pragma once

#include <chrono>
#include <string>

#include "PhaseReport.h"
#include "PluginCycle.h"

namespace colloqvalidate {

struct DlopenPhaseSettings {
    std::string pluginPath;
    int cycles = 50;
    CycleLimits limits;
};

PhaseReport runDlopenPhase(const DlopenPhaseSettings& settings);

}  // namespace colloqvalidate
